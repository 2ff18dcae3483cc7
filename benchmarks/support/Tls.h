#pragma once

#include <openssl/ssl.h>

#include <filesystem>
#include <memory>

namespace bench {

/// The names of what `makeAuthorities` leaves in its folder.
constexpr const char* keyFile = "key.pem";
constexpr const char* certificateFile = "certificate.pem";
constexpr const char* bundleFile = "bundle.pem";

/// Makes a key and a certificate for 127.0.0.1, and a bundle of authorities that holds it among as many others, of as
/// many bytes, as a system trusts.
void makeAuthorities(const std::filesystem::path& folder);

/// What a server needs to show that certificate.
std::shared_ptr<SSL_CTX> serverContext(const std::filesystem::path& folder);

} // namespace bench
