#pragma once

#include <VarnelAPI/Forms/detail/HttpClientLibrary.h>

#include "CurlLoop.h"

#include <array>
#include <optional>

namespace VarnelAPI::Forms::transport::detail {

/// An exception as calls of this transport fail with it.
/// Without memory for it, that is the exception.
std::exception_ptr curlFailure(std::errc code, const char* text) noexcept;

/// One request on its way. Once it was given to the loop, only the loop's thread touches it.
class CurlTransfer : public std::enable_shared_from_this<CurlTransfer> {
public:
    using Clock = CurlLoop::Clock;

    CurlTransfer(std::shared_ptr<CurlLoop> loop, const web::uri& base,
                 const web::http::client::http_client_config& settings, const web::http::http_request& request);
    ~CurlTransfer();
    CurlTransfer(const CurlTransfer&) = delete;
    CurlTransfer& operator=(const CurlTransfer&) = delete;

    /// The response as soon as its header is there.
    pplx::task<web::http::http_response> start(const pplx::cancellation_token& token);

    CURL* handle() const { return m_Handle; }
    void begins() { m_LastActivity = Clock::now(); }
    Clock::time_point isLateAt() const { return m_LastActivity + m_Timeout; }
    /// What it fails with, given how libcurl ended it; null for a success.
    std::exception_ptr failureOf(CURLcode code) const noexcept;
    /// It was taken out of the loop.
    void ends(std::exception_ptr failure, CurlLoop::End end) noexcept;

private:
    void configure();
    void configureTarget();
    void configureProxy();
    void configureHeader();
    void configureBody();
    void configureConnection();
    void configureTls();
    bool mayBeRepeated() const;
    void addLine(const std::string& line);

    bool header(const char* line, std::size_t size);
    std::size_t write(const char* data, std::size_t size);
    std::size_t read(char* target, std::size_t room);
    void fetch();
    void fetched(std::size_t size);
    bool rewind();
    void configureTlsContext(void* context);
    void configureSocket(curl_socket_t descriptor) const;
    void progress(web::http::message_direction::direction direction, uint64_t bytes) const;
    void settle() noexcept;
    std::exception_ptr endedBy(CURLcode code) const;
    /// What a callback throws must not go through libcurl. It is kept, and ends the transfer.
    template <class Result, class Work>
    Result guarded(Result failed, Work work);
    /// Goes on, in the loop's thread, when a stream has done what it was asked for.
    template <class Result>
    void continueAfter(const pplx::task<Result>& task, std::function<void(Result)> work);
    static CurlTransfer& of(void* self) { return *static_cast<CurlTransfer*>(self); }
    static std::size_t onHeader(char* data, std::size_t size, std::size_t count, void* self);
    static std::size_t onWrite(char* data, std::size_t size, std::size_t count, void* self);
    static std::size_t onRead(char* data, std::size_t size, std::size_t count, void* self);
    static int onSeek(void* self, curl_off_t offset, int origin);
    static int onConnected(void* self, char*, char*, int, int);
    static CURLcode onTls(CURL*, void* context, void* self);
    static int onSocket(void* self, curl_socket_t descriptor, curlsocktype);

    const std::shared_ptr<CurlLoop> m_Loop;
    const web::uri m_Base;
    const web::http::client::http_client_config m_Settings;
    web::http::http_request m_Request;
    web::http::http_response m_Response;
    pplx::task_completion_event<web::http::http_response> m_Arrived;
    pplx::cancellation_token m_Token = pplx::cancellation_token::none();
    pplx::cancellation_token_registration m_Registration;

    CURL* m_Handle;
    curl_slist* m_Lines = nullptr;
    std::array<char, CURL_ERROR_SIZE> m_Text{};
    std::chrono::microseconds m_Timeout;
    Clock::time_point m_LastActivity;
    std::exception_ptr m_Failure;
    std::vector<std::unique_ptr<boost::asio::ssl::context>> m_TlsContexts;
    bool m_IsEnded = false;
    bool m_IsSettled = false;

    // The answer.
    concurrency::streams::ostream m_Target;
    std::size_t m_HeaderSize = 0;
    bool m_IsFinal = false;
    bool m_HasHeader = false;
    bool m_HasFrames = false;
    bool m_IsInPieces = false;
    std::vector<uint8_t> m_Piece;
    bool m_IsWriting = false;
    uint64_t m_Received = 0;
    uint64_t m_LegBegin = 0;

    // The request's body.
    concurrency::streams::istream m_Source;
    std::optional<uint64_t> m_Length;
    std::vector<uint8_t> m_Block;
    std::size_t m_BlockBegin = 0;
    std::size_t m_BlockEnd = 0;
    bool m_IsReading = false;
    bool m_IsRead = false;
    uint64_t m_Fetched = 0;
    uint64_t m_Sent = 0;
};

} // namespace VarnelAPI::Forms::transport::detail
