#pragma once

#include <VarnelAPI/Forms/model/HttpContent.h>
#include <VarnelAPI/Forms/model/IHttpBody.h>

#include <map>
#include <vector>

namespace VarnelAPI::Forms::model {

/// A request body of named parts in the "multipart/form-data" wire form.
///
/// Parts go out in the order in which they were added. A name may be added twice: both parts are written, and
/// `getContent` finds the later one.
class VARNEL_FORMS_API MultipartFormData : public IHttpBody {
public:
    /// Makes a fresh boundary: a random UUID in its 36-character text form.
    /// @throws boost::uuids::entropy_error if the operating system's random source fails.
    MultipartFormData();
    /// Uses the given boundary as it stands.
    explicit MultipartFormData(const utility::string_t& boundary);
    ~MultipartFormData() override;

    /// Writes all parts and the closing line. Each part's data is read from its start, so a body may be written again.
    /// Names, file names and types are written as they stand, in UTF-8, neither quoted nor escaped.
    /// @throws std::invalid_argument if a part has no data stream, or if its name, file name, disposition or type
    ///     holds CR, LF or NUL, which would let it write header lines of its own. Nothing is written then.
    void writeTo(std::ostream& stream) override;

    /// Appends a part.
    /// @throws std::invalid_argument if `content` is an empty pointer.
    virtual void add(std::shared_ptr<HttpContent> content);

    /// The number of bytes that `writeTo` writes.
    /// @throws std::invalid_argument as `writeTo` does.
    std::size_t size() const;

    /// What `writeTo` writes, as a stream that reads the parts' data only when it is read itself, and then from their
    /// start: for a `StreamBody` of `size()` bytes. It needs the parts' streams, but not this body. If one of them has
    /// fewer bytes than now, it ends early; further ones are left out.
    /// @throws std::invalid_argument as `writeTo` does, and if a part's stream can't tell its size.
    std::shared_ptr<std::istream> asStream() const;

    virtual utility::string_t getBoundary(); ///< What separates the parts.

    /// The part added last under exactly this name, or an empty pointer.
    virtual std::shared_ptr<HttpContent> getContent(const utility::string_t& name) const;

    /// Whether a part of exactly this name was added.
    virtual bool hasContent(const utility::string_t& name) const;

    /// All parts, in the order of adding.
    const std::vector<std::shared_ptr<HttpContent>>& getContents() const { return m_Contents; }

private:
    std::vector<std::string> partHeaders() const;
    std::string closingLine() const;

    std::vector<std::shared_ptr<HttpContent>> m_Contents;
    utility::string_t m_Boundary;
    std::map<utility::string_t, std::shared_ptr<HttpContent>> m_ContentLookup;
};

} // namespace VarnelAPI::Forms::model
