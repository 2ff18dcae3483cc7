#include "CurlTransfer.h"

#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/ssl/stream.hpp>

#include <cpprest/http_compression.h>
#include <openssl/ssl.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <filesystem>

/// How a request and the settings of its call become a handle of libcurl.
namespace VarnelAPI::Forms::transport::detail {

using utility::conversions::to_string_t;
using utility::conversions::to_utf8string;
using web::http::header_names;
using web::http::methods;

namespace {

/// The real function reads a long, a pointer or a curl_off_t from variable arguments: another integer would leave half
/// of it undefined.
template <class Value>
void set(CURL* handle, CURLoption option, Value value) {
    static_assert(std::is_pointer_v<Value> || std::is_same_v<Value, long> || std::is_same_v<Value, curl_off_t>);
    const CURLcode code = curl_easy_setopt(handle, option, value);
    if (code != CURLE_OK) {
        throw std::invalid_argument(std::string("libcurl refuses a setting: ") + curl_easy_strerror(code));
    }
}

void set(CURL* handle, CURLoption option, const std::string& text) {
    set(handle, option, text.c_str());
}

std::string base64(const std::string& text) {
    return to_utf8string(utility::conversions::to_base64({text.begin(), text.end()}));
}

std::string passwordOf(const web::credentials& credentials) {
    return to_utf8string(*credentials._internal_decrypt());
}

long milliseconds(std::chrono::microseconds time) {
    return std::max(1L, static_cast<long>(std::chrono::duration_cast<std::chrono::milliseconds>(time).count()));
}

/// The file of the certificates that OpenSSL trusts, if it has one. libcurl's own default is another one.
std::string systemCertificates() {
    // NOLINTNEXTLINE(concurrency-mt-unsafe): who changes the environment must do that before there are threads
    const char* const named = std::getenv(X509_get_default_cert_file_env());
    const std::string file = named != nullptr ? named : X509_get_default_cert_file();
    std::error_code ignored;
    return named != nullptr || std::filesystem::exists(file, ignored) ? file : std::string();
}

} // namespace

bool CurlTransfer::mayBeRepeated() const {
    // Not DELETE: sent again by libcurl, a deletion that took effect would end as a 404.
    const std::array<web::http::method, 4> repeatable{methods::GET, methods::HEAD, methods::OPTIONS, methods::PUT};
    return std::find(repeatable.begin(), repeatable.end(), m_Request.method()) != repeatable.end() &&
           (!m_Source.is_valid() || m_Source.can_seek());
}

void CurlTransfer::addLine(const std::string& line) {
    curl_slist* const longer = curl_slist_append(m_Lines, line.c_str());
    if (longer == nullptr) {
        throw std::bad_alloc();
    }
    m_Lines = longer;
}

void CurlTransfer::configure() {
    set(m_Handle, CURLOPT_ERRORBUFFER, m_Text.data());
    set(m_Handle, CURLOPT_NOSIGNAL, 1L);
    set(m_Handle, CURLOPT_QUICK_EXIT, 1L); // or who cancels would wait for names that are being resolved
    set(m_Handle, CURLOPT_PROTOCOLS_STR, "http,https");
    set(m_Handle, CURLOPT_PATH_AS_IS, 1L);
    configureProxy();
    configureTarget();
    configureBody();
    configureHeader();
    configureConnection();
    if (m_Base.scheme() == _XPLATSTR("https")) {
        configureTls();
    }
}

void CurlTransfer::configureTarget() {
    const web::uri whole = web::uri_builder(m_Base).append(m_Request.relative_uri()).set_fragment({}).to_uri();
    const std::string host = to_utf8string(m_Base.host());
    const std::string origin = m_Base.is_port_default() ? host : host + ':' + std::to_string(m_Base.port());
    if (!m_Request.headers().has(header_names::host)) {
        addLine("Host: " + origin); // libcurl would spell 127.1 in another way
    }
    const bool mayMeetProxy = m_Settings.proxy().is_specified() || m_Loop->options().proxyFromEnvironment;
    if (mayMeetProxy && m_Base.scheme() == _XPLATSTR("http")) {
        set(m_Handle, CURLOPT_URL, to_utf8string(whole.to_string()));
        return;
    }
    // The target goes out as it is: libcurl would check and encode it again.
    const std::string target = to_utf8string(whole.resource().to_string());
    set(m_Handle, CURLOPT_URL, to_utf8string(m_Base.scheme()) + "://" + origin + "/");
    set(m_Handle, CURLOPT_REQUEST_TARGET, target.empty() ? std::string("/") : target);
}

void CurlTransfer::configureProxy() {
    const auto& proxy = m_Settings.proxy();
    if (proxy.is_default() && m_Loop->options().proxyFromEnvironment) {
        return;
    }
    set(m_Handle, CURLOPT_PROXY, ""); // none, whatever the environment says
    if (proxy.is_specified()) {
        set(m_Handle, CURLOPT_PROXY, to_utf8string(proxy.address().host()));
        set(m_Handle, CURLOPT_PROXYPORT,
            proxy.address().port() > 0 ? static_cast<long>(proxy.address().port()) : 8080L);
        set(m_Handle, CURLOPT_NOPROXY, "");
        if (proxy.credentials().is_set()) {
            set(m_Handle, CURLOPT_PROXYAUTH, static_cast<long>(CURLAUTH_BASIC));
            set(m_Handle, CURLOPT_PROXYUSERNAME, to_utf8string(proxy.credentials().username()));
            set(m_Handle, CURLOPT_PROXYPASSWORD, passwordOf(proxy.credentials()));
        }
    }
    set(m_Handle, CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L);
}

void CurlTransfer::configureHeader() {
    const auto& own = m_Request.headers();
    for (const auto& [name, value] : own) {
        // "Name:" alone would take the header away.
        addLine(to_utf8string(name) + (value.empty() ? ";" : ":" + to_utf8string(value)));
    }
    if (m_Settings.credentials().is_set()) {
        const auto& credentials = m_Settings.credentials();
        addLine("Authorization: Basic " +
                base64(to_utf8string(credentials.username()) + ':' + passwordOf(credentials)));
    }
    if (m_Settings.request_compressed_response()) {
        using namespace web::http::compression::details;
        addLine("Accept-Encoding: " + to_utf8string(build_supported_header(header_types::accept_encoding)));
        set(m_Handle, CURLOPT_ACCEPT_ENCODING, "gzip, deflate");
    }
    if (!m_Length && m_Source.is_valid()) {
        addLine("Transfer-Encoding:chunked");
    } else if (!m_Length && (m_Request.method() == methods::POST || m_Request.method() == methods::PUT)) {
        addLine("Content-Length: 0");
    }
    if (m_Settings.proxy().is_specified() && m_Base.scheme() == _XPLATSTR("http")) {
        addLine("Cache-Control: no-store, no-cache");
        addLine("Pragma: no-cache");
    }
    addLine("Connection: Keep-Alive");
    for (const std::string unasked : {"Accept", "Expect", "User-Agent"}) {
        if (!own.has(to_string_t(unasked))) {
            addLine(unasked + ":");
        }
    }
    set(m_Handle, CURLOPT_HTTPHEADER, m_Lines);
    set(m_Handle, CURLOPT_HEADEROPT, static_cast<long>(CURLHEADER_SEPARATE));
    set(m_Handle, CURLOPT_HEADERFUNCTION, &onHeader);
    set(m_Handle, CURLOPT_HEADERDATA, static_cast<void*>(this));
}

void CurlTransfer::configureBody() {
    const std::size_t chunk = std::clamp<std::size_t>(m_Settings.chunksize(), 16384, 2097152);
    if (m_Request.headers().has(header_names::content_length)) {
        m_Length = m_Request.headers().content_length();
    }
    if (m_Request.method() == methods::HEAD) {
        set(m_Handle, CURLOPT_NOBODY, 1L);
    } else if (m_Source.is_valid()) {
        m_Block.resize(static_cast<std::size_t>(std::clamp<uint64_t>(m_Length.value_or(chunk), 1, chunk)));
        set(m_Handle, CURLOPT_UPLOAD, 1L);
        set(m_Handle, CURLOPT_UPLOAD_BUFFERSIZE, static_cast<long>(chunk));
        if (m_Length) {
            set(m_Handle, CURLOPT_INFILESIZE_LARGE, static_cast<curl_off_t>(*m_Length));
        }
        set(m_Handle, CURLOPT_READFUNCTION, &onRead);
        set(m_Handle, CURLOPT_READDATA, static_cast<void*>(this));
        set(m_Handle, CURLOPT_SEEKFUNCTION, &onSeek);
        set(m_Handle, CURLOPT_SEEKDATA, static_cast<void*>(this));
    } else {
        set(m_Handle, CURLOPT_HTTPGET, 1L);
    }
    set(m_Handle, CURLOPT_CUSTOMREQUEST, to_utf8string(m_Request.method()));
    set(m_Handle, CURLOPT_BUFFERSIZE, static_cast<long>(std::min<std::size_t>(chunk, 524288)));
    set(m_Handle, CURLOPT_WRITEFUNCTION, &onWrite);
    set(m_Handle, CURLOPT_WRITEDATA, static_cast<void*>(this));
}

void CurlTransfer::configureConnection() {
    const CurlOptions& options = m_Loop->options();
    auto connecting = m_Timeout;
    if (options.connectTimeout.count() != 0) {
        connecting = std::min<std::chrono::microseconds>(connecting, options.connectTimeout);
    }
    set(m_Handle, CURLOPT_CONNECTTIMEOUT_MS, milliseconds(connecting));
    if (options.stallTime.count() != 0) {
        set(m_Handle, CURLOPT_LOW_SPEED_LIMIT, options.stallBytesPerSecond);
        set(m_Handle, CURLOPT_LOW_SPEED_TIME, static_cast<long>(options.stallTime.count()));
    }
    set(m_Handle, CURLOPT_PREREQFUNCTION, &onConnected);
    set(m_Handle, CURLOPT_PREREQDATA, static_cast<void*>(this));
    set(m_Handle, CURLOPT_SOCKOPTFUNCTION, &onSocket);
    set(m_Handle, CURLOPT_SOCKOPTDATA, static_cast<void*>(this));
    set(m_Handle, CURLOPT_TCP_NODELAY, 1L);
    set(m_Handle, CURLOPT_MAXAGE_CONN, static_cast<long>(options.idleTime.count()));
    const bool http2 = options.http2 && m_Base.scheme() == _XPLATSTR("https");
    set(m_Handle, CURLOPT_HTTP_VERSION, static_cast<long>(http2 ? CURL_HTTP_VERSION_2TLS : CURL_HTTP_VERSION_1_1));
    // libcurl does not know that a callback may make connections others than they look.
    // To libcurl an idle time of 0 means no end.
    const bool shares =
        options.idleConnections != 0 && options.idleTime.count() != 0 && !m_Settings.get_ssl_context_callback();
    if (!shares) {
        set(m_Handle, CURLOPT_FORBID_REUSE, 1L);
    }
    if (!shares || !mayBeRepeated()) {
        // A kept connection may end just when the request goes out, and libcurl would send it again: it can't know
        // whether the service had it.
        set(m_Handle, CURLOPT_FRESH_CONNECT, 1L);
    } else if (http2) {
        set(m_Handle, CURLOPT_PIPEWAIT, 1L);
    }
}

void CurlTransfer::configureTls() {
    const CurlOptions& options = m_Loop->options();
    set(m_Handle, CURLOPT_SSLVERSION,
        static_cast<long>(options.minimumTls == CurlOptions::Tls::V1_3 ? CURL_SSLVERSION_TLSv1_3
                                                                       : CURL_SSLVERSION_TLSv1_2));
    const char* const none = nullptr;
    if (!m_Settings.validate_certificates()) {
        set(m_Handle, CURLOPT_SSL_VERIFYPEER, 0L);
        set(m_Handle, CURLOPT_SSL_VERIFYHOST, 0L);
        set(m_Handle, CURLOPT_CAINFO, none);
        set(m_Handle, CURLOPT_CAPATH, none);
    } else {
        // With a folder libcurl keeps no certificates, and reads the file anew for each connection.
        const bool isOwn = !options.caFile.empty() || !options.caFolder.empty();
        const std::string file = isOwn ? to_utf8string(options.caFile) : systemCertificates();
        const std::string folder = to_utf8string(options.caFolder);
        if (isOwn || !file.empty()) {
            set(m_Handle, CURLOPT_CAINFO, file.empty() ? none : file.c_str());
        } // else libcurl's own default
        set(m_Handle, CURLOPT_CAPATH, folder.empty() ? none : folder.c_str());
    }
    if (m_Settings.get_ssl_context_callback()) {
        set(m_Handle, CURLOPT_SSL_SESSIONID_CACHE, 0L);
        set(m_Handle, CURLOPT_CA_CACHE_TIMEOUT, 0L);
        set(m_Handle, CURLOPT_SSL_CTX_FUNCTION, &onTls);
        set(m_Handle, CURLOPT_SSL_CTX_DATA, static_cast<void*>(this));
    }
}

void CurlTransfer::configureTlsContext(void* context) {
    auto* const native = static_cast<SSL_CTX*>(context);
    SSL_CTX_up_ref(native); // The wrapper lets go of one, and must live as long as what was told to it.
    m_TlsContexts.push_back(std::make_unique<boost::asio::ssl::context>(native));
    m_Settings.get_ssl_context_callback()(*m_TlsContexts.back());
}

void CurlTransfer::configureSocket(curl_socket_t descriptor) const {
    static auto* const service = new boost::asio::io_context; // used until the process has ended
    boost::asio::ip::tcp::socket socket(*service);
    sockaddr_storage address{};
    socklen_t size = sizeof(address);
    getsockname(descriptor, reinterpret_cast<sockaddr*>(&address), &size);
    socket.assign(address.ss_family == AF_INET6 ? boost::asio::ip::tcp::v6() : boost::asio::ip::tcp::v4(), descriptor);
    const auto release = std::shared_ptr<void>(nullptr, [&socket](auto) { socket.release(); });
    if (m_Base.scheme() == _XPLATSTR("https")) {
        // libcurl makes the TLS of the connection: this has its socket, and what is told to its TLS holds for nobody.
        boost::asio::ssl::context unused(boost::asio::ssl::context::tls_client);
        boost::asio::ssl::stream<boost::asio::ip::tcp::socket&> stream(socket, unused);
        const auto before = SSL_get_options(stream.native_handle());
        const auto verified = SSL_get_verify_mode(stream.native_handle());
        m_Settings.invoke_nativehandle_options(&stream);
        if (SSL_get_options(stream.native_handle()) != before ||
            SSL_get_verify_mode(stream.native_handle()) != verified ||
            SSL_get_servername(stream.native_handle(), TLSEXT_NAMETYPE_host_name) != nullptr) {
            throw std::invalid_argument(
                "the curl transport honours no TLS options of a native handle; use the callback for the TLS context");
        }
    } else {
        m_Settings.invoke_nativehandle_options(&socket);
    }
}

} // namespace VarnelAPI::Forms::transport::detail
