#include "CurlTransfer.h"

#include "transport/Continuation.h"

#include <netdb.h>
#include <openssl/err.h>
#include <openssl/ssl.h>

#include <algorithm>
#include <charconv>
#include <cstring>
#include <system_error>

namespace VarnelAPI::Forms::transport::detail {

using utility::conversions::to_string_t;
using web::http::header_names;
using web::http::http_exception;
using web::http::http_request;
using web::http::http_response;
using web::http::client::http_client_config;

namespace {

std::string trimmed(const char* begin, const char* end) {
    const auto isSpace = [](char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; };
    begin = std::find_if_not(begin, end, isSpace);
    while (begin != end && isSpace(end[-1])) {
        --end;
    }
    return {begin, end};
}

constexpr int firstFinalStatus = 200;

} // namespace

std::exception_ptr curlFailure(std::errc code, const char* text) noexcept {
    try {
        return std::make_exception_ptr(http_exception(std::make_error_code(code), to_string_t(text)));
    } catch (...) {
        return std::current_exception();
    }
}

CurlTransfer::CurlTransfer(std::shared_ptr<CurlLoop> loop, const web::uri& base, const http_client_config& settings,
                           const http_request& request)
    : m_Loop(std::move(loop)), m_Base(base), m_Settings(settings), m_Request(request), m_Handle(curl_easy_init()),
      m_Timeout(settings.timeout<std::chrono::microseconds>()), m_Source(m_Request.body()) {
    if (m_Handle == nullptr) {
        throw std::bad_alloc();
    }
    try {
        configure();
    } catch (...) {
        curl_easy_cleanup(m_Handle);
        curl_slist_free_all(m_Lines);
        throw;
    }
}

CurlTransfer::~CurlTransfer() {
    if (m_Handle != nullptr) {
        curl_easy_cleanup(m_Handle);
    }
    curl_slist_free_all(m_Lines);
}

pplx::task<http_response> CurlTransfer::start(const pplx::cancellation_token& token) {
    const auto impl = m_Response._get_impl();
    impl->set_outstream(m_Request._get_impl()->_response_stream(), false);
    impl->_prepare_to_receive_data();
    m_Target = impl->outstream();
    pplx::task<http_response> arrived(m_Arrived);
    m_Token = token;
    if (token.is_cancelable()) {
        // Before the loop has it: there, the end of the transfer takes the registration back.
        m_Registration = token.register_callback([loop = m_Loop, weak = weak_from_this()] {
            loop->post([loop, weak] {
                if (const auto transfer = weak.lock()) {
                    loop->take(transfer, curlFailure(std::errc::operation_canceled, "the request was canceled"));
                }
            });
        });
    }
    m_Loop->begin(shared_from_this());
    return arrived;
}

template <class Result, class Work>
Result CurlTransfer::guarded(Result failed, Work work) {
    try {
        return work();
    } catch (...) {
        m_Failure = m_Failure ? m_Failure : std::current_exception();
        return failed;
    }
}

template <class Result>
void CurlTransfer::continueAfter(const pplx::task<Result>& task, std::function<void(Result)> work) {
    continued(task, [self = shared_from_this(), work = std::move(work)](const pplx::task<Result>& done) {
        Result result{};
        std::exception_ptr failure;
        try {
            result = done.get();
        } catch (...) {
            failure = std::current_exception();
        }
        const auto goOn = [self, work, result, failure] {
            self->m_Failure = self->m_Failure ? self->m_Failure : failure;
            self->guarded(0, [&] {
                work(result);
                return 0;
            });
            if (!self->m_IsEnded) {
                curl_easy_pause(self->m_Handle, CURLPAUSE_CONT);
            } else if (!self->m_IsWriting && !self->m_IsSettled) {
                self->settle();
                self->m_Loop->waits(false);
            }
        };
        try {
            self->m_Loop->post(goOn);
        } catch (...) {
            // There is no memory for it: the transfer is silent from now on, and ends by its time-out.
        }
    });
}

bool CurlTransfer::header(const char* line, std::size_t size) {
    const char* const end = line + size;
    m_HeaderSize += size;
    if (m_HeaderSize > m_Loop->options().headerSize) {
        std::rethrow_exception(curlFailure(std::errc::message_size, "the header of the answer is too long"));
    }
    if (m_HasHeader) {
        return true; // a trailer
    }
    if (size > 6 && std::memcmp(line, "HTTP/", 5) == 0) {
        const char* const code = std::find(line, end, ' ');
        const char* const reason = code == end ? end : std::find(code + 1, end, ' ');
        web::http::status_code status = 0;
        std::from_chars(code == end ? end : code + 1, reason, status);
        m_HasFrames = std::memcmp(line, "HTTP/1", 6) != 0;
        m_Response.headers().clear();
        m_Response.set_status_code(status);
        m_Response.set_reason_phrase(to_string_t(trimmed(reason, end)));
        m_IsFinal = status >= firstFinalStatus; // an interim reply is no answer
    } else if (m_IsFinal && trimmed(line, end).empty()) {
        m_HasHeader = true;
        // What a service sends piece by piece: chunks, or the frames of HTTP/2.
        m_IsInPieces = !m_Response.headers().has(header_names::content_length) &&
                       (m_Response.headers().has(header_names::transfer_encoding) || m_HasFrames);
        begins();
        m_Arrived.set(m_Response);
    } else if (m_IsFinal) {
        const char* const colon = std::find(line, end, ':');
        if (colon != end) {
            m_Response.headers().add(to_string_t(trimmed(line, colon)), to_string_t(trimmed(colon + 1, end)));
        }
    }
    return true;
}

std::size_t CurlTransfer::write(const char* data, std::size_t size) {
    if (m_Failure) {
        return 0;
    }
    if (m_IsWriting) {
        return CURL_WRITEFUNC_PAUSE; // It comes again.
    }
    // A leg is a block of the body: who drips within one counts as silent. Of chunks nothing is seen here.
    if (m_IsInPieces || m_Received + size - m_LegBegin >= m_Settings.chunksize()) {
        m_LegBegin = m_Received + size;
        begins();
    }
    m_Received += size;
    m_Piece.assign(data, data + size);
    const auto put = m_Target.streambuf().putn_nocopy(m_Piece.data(), size);
    if (put.is_done()) {
        put.get();
    } else {
        m_IsWriting = true;
        continueAfter<std::size_t>(put, [this](std::size_t) {
            m_IsWriting = false;
            begins();
        });
    }
    progress(web::http::message_direction::download, m_Received);
    return size;
}

std::size_t CurlTransfer::read(char* target, std::size_t room) {
    begins();
    if (m_BlockBegin == m_BlockEnd && !m_IsRead && !m_IsReading) {
        fetch();
    }
    if (m_Failure) {
        return CURL_READFUNC_ABORT;
    }
    if (m_IsReading) {
        return CURL_READFUNC_PAUSE;
    }
    const std::size_t size = std::min(room, m_BlockEnd - m_BlockBegin);
    std::copy_n(m_Block.data() + m_BlockBegin, size, target);
    m_BlockBegin += size;
    m_Sent += size;
    progress(web::http::message_direction::upload, m_Sent);
    return size;
}

void CurlTransfer::fetch() {
    const auto size =
        static_cast<std::size_t>(std::min<uint64_t>(m_Length.value_or(UINT64_MAX) - m_Fetched, m_Block.size()));
    if (size == 0) {
        m_IsRead = true;
        return;
    }
    const auto got = m_Source.streambuf().getn(m_Block.data(), size);
    if (got.is_done()) {
        fetched(got.get());
    } else {
        m_IsReading = true;
        continueAfter<std::size_t>(got, [this](std::size_t count) {
            m_IsReading = false;
            if (!m_Failure) {
                fetched(count);
            }
        });
    }
}

void CurlTransfer::fetched(std::size_t size) {
    m_BlockBegin = 0;
    m_BlockEnd = size;
    m_Fetched += size;
    if (size == 0) {
        m_IsRead = true;
        if (m_Length) {
            std::rethrow_exception(curlFailure(std::errc::io_error, "the request's body ended before its length"));
        }
    }
}

/// For a request that is sent again, on another connection.
bool CurlTransfer::rewind() {
    if (m_IsReading || !m_Source.can_seek()) {
        return false;
    }
    m_Source.seek(0);
    m_Fetched = 0;
    m_Sent = 0;
    m_BlockBegin = 0;
    m_BlockEnd = 0;
    m_IsRead = false;
    return true;
}

void CurlTransfer::progress(web::http::message_direction::direction direction, uint64_t bytes) const {
    if (const auto& handler = m_Request._get_impl()->_progress_handler()) {
        (*handler)(direction, bytes);
    }
}

std::exception_ptr CurlTransfer::failureOf(CURLcode code) const noexcept {
    try {
        return code == CURLE_OK && m_HasHeader ? nullptr : endedBy(code);
    } catch (...) {
        return std::current_exception();
    }
}

std::exception_ptr CurlTransfer::endedBy(CURLcode code) const {
    const char* const text = m_Text[0] != '\0' ? m_Text.data() : curl_easy_strerror(code);
    long system = 0;
    curl_easy_getinfo(m_Handle, CURLINFO_OS_ERRNO, &system);
    const auto orElse = [system](std::errc otherwise) { return system != 0 ? std::errc(system) : otherwise; };
    // What no `std::errc` says has the numbers that the default transport gives it: those of `netdb.h` and of OpenSSL.
    const auto numbered = [text](unsigned long number) {
        return std::make_exception_ptr(
            web::http::http_exception(static_cast<int>(number), utility::conversions::to_string_t(text)));
    };
    switch (code) {
    case CURLE_COULDNT_RESOLVE_HOST:
    case CURLE_COULDNT_RESOLVE_PROXY:
        return numbered(HOST_NOT_FOUND);
    case CURLE_PEER_FAILED_VERIFICATION:
        return numbered(ERR_PACK(ERR_LIB_SSL, 0, SSL_R_CERTIFICATE_VERIFY_FAILED));
    case CURLE_COULDNT_CONNECT:
        return curlFailure(orElse(std::errc::host_unreachable), text);
    case CURLE_OPERATION_TIMEDOUT:
        return curlFailure(std::errc::timed_out, text);
    case CURLE_SEND_ERROR:
    case CURLE_RECV_ERROR:
    case CURLE_HTTP2:
    case CURLE_HTTP2_STREAM:
        return curlFailure(orElse(std::errc::connection_reset), text);
    case CURLE_OK:
    case CURLE_GOT_NOTHING:
    case CURLE_PARTIAL_FILE:
        return curlFailure(std::errc::connection_aborted, text);
    case CURLE_BAD_CONTENT_ENCODING: // An unknown Transfer-Encoding is one, too.
        if (m_Settings.request_compressed_response() && m_Response.headers().has(header_names::content_encoding)) {
            return std::make_exception_ptr(std::runtime_error(text)); // as the HTTP library says it
        }
        return curlFailure(std::errc::protocol_error, text);
    case CURLE_OUT_OF_MEMORY:
        return curlFailure(std::errc::not_enough_memory, text);
    default:
        return curlFailure(std::errc::protocol_error, text);
    }
}

void CurlTransfer::ends(std::exception_ptr failure, CurlLoop::End end) noexcept {
    m_IsEnded = true;
    const bool isOurs = m_Failure != nullptr;
    m_Failure = m_Failure ? m_Failure : std::move(failure);
    curl_easy_cleanup(std::exchange(m_Handle, nullptr));
    if (!m_IsWriting || isOurs || end == CurlLoop::End::AtOnce) {
        settle();
    } else {
        m_Loop->waits(true);
    }
}

void CurlTransfer::settle() noexcept {
    if (m_IsSettled) {
        return;
    }
    m_IsSettled = true;
    if (m_Token.is_cancelable()) {
        m_Token.deregister_callback(m_Registration);
    }
    const auto impl = m_Response._get_impl();
    guarded(0, [&] {
        if (!m_Failure) {
            impl->_complete(m_Received);
        }
        return 0;
    });
    if (!m_Failure) {
        return;
    }
    try {
        const bool isHere = !m_Arrived.set_exception(m_Failure);
        impl->_complete(0, isHere ? m_Failure : nullptr);
    } catch (...) {
        // There is no memory for it. Without its event the task is canceled.
        const auto dropped = std::move(m_Arrived);
    }
}

std::size_t CurlTransfer::onHeader(char* data, std::size_t size, std::size_t count, void* self) {
    return of(self).guarded(std::size_t{0}, [&] { return of(self).header(data, size * count) ? size * count : 0; });
}

std::size_t CurlTransfer::onWrite(char* data, std::size_t size, std::size_t count, void* self) {
    return of(self).guarded(std::size_t{0}, [&] { return of(self).write(data, size * count); });
}

std::size_t CurlTransfer::onRead(char* data, std::size_t size, std::size_t count, void* self) {
    return of(self).guarded(std::size_t{CURL_READFUNC_ABORT}, [&] { return of(self).read(data, size * count); });
}

int CurlTransfer::onSeek(void* self, curl_off_t offset, int origin) {
    return of(self).guarded(int{CURL_SEEKFUNC_FAIL}, [&] {
        return offset == 0 && origin == SEEK_SET && of(self).rewind() ? CURL_SEEKFUNC_OK : CURL_SEEKFUNC_CANTSEEK;
    });
}

int CurlTransfer::onConnected(void* self, char*, char*, int, int) {
    of(self).begins();
    return CURL_PREREQFUNC_OK;
}

CURLcode CurlTransfer::onTls(CURL*, void* context, void* self) {
    return of(self).guarded(CURLE_ABORTED_BY_CALLBACK, [&] {
        of(self).configureTlsContext(context);
        return CURLE_OK;
    });
}

int CurlTransfer::onSocket(void* self, curl_socket_t descriptor, curlsocktype) {
    return of(self).guarded(int{CURL_SOCKOPT_ERROR}, [&] {
        of(self).configureSocket(descriptor);
        return int{CURL_SOCKOPT_OK};
    });
}

} // namespace VarnelAPI::Forms::transport::detail
