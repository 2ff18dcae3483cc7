#pragma once

#include <gtest/gtest.h>
#include <httplib.h>

#include <openssl/evp.h>
#include <openssl/x509.h>

#include <chrono>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

namespace forms_test {

/// A service with a certificate that nobody knows. It answers every request with what it was told to.
class TlsService {
public:
    TlsService() {
        const auto answer = [this](const httplib::Request& request, httplib::Response& response) {
            const std::lock_guard<std::mutex> lock(m_Mutex);
            m_Authorization = request.get_header_value("Authorization");
            response.status = m_Location.empty() ? 200 : 302;
            response.set_header("Location", m_Location);
            response.set_content("{}", "application/json");
        };
        m_Server.Get(".*", answer);
        m_Port = m_Server.bind_to_any_port("127.0.0.1");
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

    std::string url() const { return "https://127.0.0.1:" + std::to_string(m_Port); }
    /// Of the last request, once its response is there.
    std::string authorization() const {
        const std::lock_guard<std::mutex> lock(m_Mutex);
        return m_Authorization;
    }
    /// An empty location ends the redirects.
    void redirectTo(const std::string& location) {
        const std::lock_guard<std::mutex> lock(m_Mutex);
        m_Location = location;
    }

private:
    struct Identity {
        Identity() {
            X509_gmtime_adj(X509_getm_notBefore(certificate.get()), 0);
            X509_gmtime_adj(X509_getm_notAfter(certificate.get()), 3600);
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
    std::string m_Location;
    std::string m_Authorization;
    std::thread m_Thread;
};

} // namespace forms_test
