#pragma once

#include <gtest/gtest.h>
#include <httplib.h>

#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/x509v3.h>

#include <chrono>
#include <cstdio>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

namespace forms_test {

/// A service with a certificate that nobody knows. It answers every request with what it was told to.
class TlsService {
public:
    explicit TlsService(const std::string& address = "127.0.0.1") {
        const auto answer = [this](const httplib::Request& request, httplib::Response& response) {
            const std::lock_guard<std::mutex> lock(m_Mutex);
            m_Authorization = request.get_header_value("Authorization");
            response.status = m_Location.empty() ? 200 : 302;
            response.set_header("Location", m_Location);
            if (!m_IsBreaking) {
                response.set_content("{}", "application/json");
                return;
            }
            response.set_content_provider(
                9, "application/json", [](auto, auto, httplib::DataSink& sink) { return sink.write("{", 1) && false; });
        };
        m_Server.Get(".*", answer);
        m_Server.set_keep_alive_timeout(1); // or its end waits for kept connections
        m_Port = m_Server.bind_to_any_port(address);
        EXPECT_GT(m_Port, 0);
        m_Thread = std::thread([this] { m_Server.listen_after_bind(); });
        for (int i = 0; i < 10000 && !m_Server.is_running(); ++i) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        EXPECT_TRUE(m_Server.is_running());
    }
    ~TlsService() {
        m_Server.stop();
        m_Thread.join();
    }
    TlsService(const TlsService&) = delete;
    TlsService& operator=(const TlsService&) = delete;

    std::string url(const std::string& host = "127.0.0.1") const {
        return "https://" + host + ":" + std::to_string(m_Port);
    }
    /// For those who should know it.
    std::string certificate() const {
        return written([this](BIO* text) { PEM_write_bio_X509(text, m_Identity.certificate.get()); });
    }
    std::string key() const {
        return written([this](BIO* text) {
            PEM_write_bio_PrivateKey(text, m_Identity.key.get(), nullptr, nullptr, 0, nullptr, nullptr);
        });
    }
    /// The name that its certificate has in a folder of authorities.
    std::string hashedName() const {
        char name[11];
        std::snprintf(name, sizeof(name), "%08lx.0", X509_subject_name_hash(m_Identity.certificate.get()));
        return name;
    }
    /// Speaks no later version of TLS from now on.
    void speakAtMost(int version) { SSL_CTX_set_max_proto_version(m_Server.ssl_context(), version); }
    /// From now on talks only to those who have its own certificate, too.
    void requireCertificate() {
        X509_STORE_add_cert(SSL_CTX_get_cert_store(m_Server.ssl_context()), m_Identity.certificate.get());
        SSL_CTX_set_verify(m_Server.ssl_context(), SSL_VERIFY_PEER | SSL_VERIFY_FAIL_IF_NO_PEER_CERT, nullptr);
    }
    /// Of the last request, once its response is there.
    std::string authorization() const {
        const std::lock_guard<std::mutex> lock(m_Mutex);
        return m_Authorization;
    }
    /// From now on ends the connection after the first byte of a body.
    void breakOff() {
        const std::lock_guard<std::mutex> lock(m_Mutex);
        m_IsBreaking = true;
    }
    /// An empty location ends the redirects.
    void redirectTo(const std::string& location) {
        const std::lock_guard<std::mutex> lock(m_Mutex);
        m_Location = location;
    }

private:
    template <class Write>
    static std::string written(Write write) {
        const std::unique_ptr<BIO, decltype(&BIO_free)> text(BIO_new(BIO_s_mem()), BIO_free);
        write(text.get());
        char* begin = nullptr;
        const auto size = BIO_get_mem_data(text.get(), &begin);
        return {begin, static_cast<std::size_t>(size)};
    }
    struct Identity {
        Identity() {
            X509_gmtime_adj(X509_getm_notBefore(certificate.get()), 0);
            X509_gmtime_adj(X509_getm_notAfter(certificate.get()), 3600);
            X509_set_version(certificate.get(), X509_VERSION_3);
            X509_NAME_add_entry_by_txt(X509_get_subject_name(certificate.get()), "CN", MBSTRING_ASC,
                                       reinterpret_cast<const unsigned char*>("test"), -1, -1, 0);
            X509_set_issuer_name(certificate.get(), X509_get_subject_name(certificate.get()));
            X509_EXTENSION* address =
                X509V3_EXT_conf_nid(nullptr, nullptr, NID_subject_alt_name, "IP:127.0.0.1,IP:::1");
            X509_add_ext(certificate.get(), address, -1);
            X509_EXTENSION_free(address);
            X509_set_pubkey(certificate.get(), key.get());
            X509_sign(certificate.get(), key.get(), EVP_sha256());
        }
        std::unique_ptr<EVP_PKEY, decltype(&EVP_PKEY_free)> key{EVP_EC_gen("P-256"), EVP_PKEY_free};
        std::unique_ptr<X509, decltype(&X509_free)> certificate{X509_new(), X509_free};
    };

    Identity m_Identity;
    httplib::SSLServer m_Server{m_Identity.certificate.get(), m_Identity.key.get()};
    int m_Port = 0;
    mutable std::mutex m_Mutex;
    bool m_IsBreaking = false;
    std::string m_Location;
    std::string m_Authorization;
    std::thread m_Thread;
};

} // namespace forms_test
