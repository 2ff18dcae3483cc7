#pragma once

#include <VarnelAPI/Forms/detail/HttpLibrary.h>
#include <VarnelAPI/Forms/model/IHttpBody.h>

#include <cstdint>
#include <memory>

namespace VarnelAPI::Forms::model {

/// A request body that is read while it is sent, and never held whole: a file, a `MultipartFormData::asStream()`, any
/// stream whose length is known.
///
/// Until the call's task has ended, nobody else may use the stream: it is read in threads of the transport, from its
/// start, and anew for each redirect. One that can't seek is read from where it stands, once. If it ends early, the
/// call fails with `web::http::http_exception`; what it throws ends the call too.
class VARNEL_FORMS_API StreamBody : public IHttpBody {
public:
    /// @param size how many bytes are sent.
    /// @throws std::invalid_argument if `stream` is an empty pointer or has no buffer.
    StreamBody(std::shared_ptr<std::istream> stream, uint64_t size);
    ~StreamBody() override;

    /// A whole file, as large as it is now.
    /// @throws std::system_error if it can't be opened, or is none.
    static std::shared_ptr<StreamBody> ofFile(const utility::string_t& path);

    const std::shared_ptr<std::istream>& getStream() const { return m_Stream; } ///< What is sent.
    uint64_t getSize() const { return m_Size; }                                 ///< In bytes.

    /// Copies the bytes of the stream. Calls don't need it.
    void writeTo(std::ostream& stream) override;

private:
    std::shared_ptr<std::istream> m_Stream;
    uint64_t m_Size;
};

} // namespace VarnelAPI::Forms::model
