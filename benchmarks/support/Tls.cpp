#include "Tls.h"

#include <openssl/pem.h>
#include <openssl/x509v3.h>

#include <cstdio>
#include <stdexcept>
#include <string>

namespace bench {

namespace {

// Debian's bundle has about 140 certificates and 210 KB.
constexpr int authorities = 140;
constexpr int keyBits = 3072;
constexpr long secondsOfADay = 86400;

using Key = std::unique_ptr<EVP_PKEY, decltype(&EVP_PKEY_free)>;
using Certificate = std::unique_ptr<X509, decltype(&X509_free)>;
using File = std::unique_ptr<std::FILE, decltype(&std::fclose)>;

void require(bool succeeded, const char* what) {
    if (!succeeded) {
        throw std::runtime_error(std::string("OpenSSL can't ") + what);
    }
}

/// A certificate that its own key signed; with an address it is that of a server, else an authority.
Certificate certificateOf(const Key& key, const std::string& name, const char* address) {
    Certificate certificate(X509_new(), X509_free);
    X509_set_version(certificate.get(), X509_VERSION_3);
    X509_gmtime_adj(X509_getm_notBefore(certificate.get()), -secondsOfADay);
    X509_gmtime_adj(X509_getm_notAfter(certificate.get()), secondsOfADay);
    X509_NAME_add_entry_by_txt(X509_get_subject_name(certificate.get()), "CN", MBSTRING_ASC,
                               reinterpret_cast<const unsigned char*>(name.c_str()), -1, -1, 0);
    X509_set_issuer_name(certificate.get(), X509_get_subject_name(certificate.get()));
    X509_EXTENSION* extension =
        X509V3_EXT_conf_nid(nullptr, nullptr, address != nullptr ? NID_subject_alt_name : NID_basic_constraints,
                            address != nullptr ? address : "critical,CA:TRUE");
    require(extension != nullptr && X509_add_ext(certificate.get(), extension, -1) == 1, "make an extension");
    X509_EXTENSION_free(extension);
    X509_set_pubkey(certificate.get(), key.get());
    require(X509_sign(certificate.get(), key.get(), EVP_sha256()) != 0, "sign a certificate");
    return certificate;
}

File opened(const std::filesystem::path& path) {
    File file(std::fopen(path.c_str(), "w"), std::fclose);
    require(file != nullptr, "open a file");
    return file;
}

} // namespace

void makeAuthorities(const std::filesystem::path& folder) {
    const Key key(EVP_RSA_gen(keyBits), EVP_PKEY_free);
    require(key != nullptr, "make a key");
    const Certificate own = certificateOf(key, "benchmark", "IP:127.0.0.1");
    require(PEM_write_PrivateKey(opened(folder / keyFile).get(), key.get(), nullptr, nullptr, 0, nullptr, nullptr) == 1,
            "write the key");
    require(PEM_write_X509(opened(folder / certificateFile).get(), own.get()) == 1, "write the certificate");
    const File bundle = opened(folder / bundleFile);
    for (int i = 0; i < authorities; ++i) {
        const auto other =
            certificateOf(key, "A root certificate authority like others, " + std::to_string(i), nullptr);
        require(PEM_write_X509(bundle.get(), (i == authorities / 2 ? own : other).get()) == 1, "write the bundle");
    }
}

std::shared_ptr<SSL_CTX> serverContext(const std::filesystem::path& folder) {
    std::shared_ptr<SSL_CTX> context(SSL_CTX_new(TLS_server_method()), SSL_CTX_free);
    require(SSL_CTX_use_PrivateKey_file(context.get(), (folder / keyFile).c_str(), SSL_FILETYPE_PEM) == 1 &&
                SSL_CTX_use_certificate_file(context.get(), (folder / certificateFile).c_str(), SSL_FILETYPE_PEM) == 1,
            "load the certificate of the server");
    return context;
}

} // namespace bench
