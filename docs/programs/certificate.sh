#!/usr/bin/env bash
# Makes a certificate for the program of the guide, in the current folder, and shows it with the repository's program, whose
# folder is the argument.
set -eum
PATH="$1:$PATH"
# [certificate]
openssl req -x509 -newkey rsa:2048 -nodes -days 30 -subj /CN=localhost -addext subjectAltName=DNS:localhost \
    -keyout key.pem -out certificate.pem
# [certificate]
serve() {
    # [serve]
    varnel-forms-repository --certificate certificate.pem --key key.pem --token secret
    # [serve]
}
serve >url &
server=$!
trap 'kill -- -$server' EXIT
for _ in $(seq 300); do
    [ ! -s url ] || break
    sleep 0.1
done
grep -q '^https://127.0.0.1:' url
