#!/usr/bin/env bash
# The commands of the guide, on the small project of `varnel-forms demo`, in a folder of their own. The argument is the
# folder of the program.
set -eum
PATH="$1:$PATH"
unset "${!VARNEL_FORMS_@}"
folder=$(mktemp -d)
cd "$folder"
export XDG_CONFIG_HOME=$folder
serve() {
    # [demo]
    varnel-forms demo
    # [demo]
}
serve >shown &
server=$!
trap 'kill -- -$server; rm -rf "$folder"' EXIT
for _ in $(seq 300); do
    ! grep -q 'Try, in' shown || break
    sleep 0.1
done
url=$(grep -o 'http://[^ ]*' shown)
exec 3>&1 >printed

# [look]
varnel-forms profile add tower --url "$url" --location tower
varnel-forms profile use tower
varnel-forms list issues --filter "Status eq 'Open'" --order _DueDate --top 20
varnel-forms get issues D-1
varnel-forms count issues
# [look]

# [change]
varnel-forms create issues --class Defect --set _Subject="Wet floor" --set Floor:=3
varnel-forms update issues D-1 --set Status=Closed
varnel-forms delete issues D-3 --yes
# [change]

# [files]
varnel-forms download attachments A-1 --to measures.txt
varnel-forms upload attachments measures.txt --of D-2
varnel-forms export issues --to issues.csv
# [files]

# [script]
varnel-forms list issues --all --jq '.[] | select(.properties.Floor > 2) | .instanceId'
varnel-forms update issues D-1 --set Status=Open --dry-run
varnel-forms api GET 'DynamicSchema/Defect/$count'
# [script]

# [codes]
varnel-forms get issues nobody || case $? in
    3) echo "There is none." ;;
    5) echo "Try again later." ;;
    *) exit 1 ;;
esac
# [codes]

cat printed >&3
grep -q 'Wet floor' issues.csv
grep -q 'There is none.' printed
[ "$(varnel-forms get issues D-1 --jq .properties.Status | tr -d '"')" = Closed ]
