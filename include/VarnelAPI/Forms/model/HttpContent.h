#pragma once

#include <VarnelAPI/Forms/detail/Export.h>
#include <VarnelAPI/Forms/detail/HttpLibrary.h>

#include <iosfwd>
#include <memory>

namespace VarnelAPI::Forms::model {

/// One named piece of content: a part of a multipart body, the value of a file property, or what a download yields.
///
/// Copies share the data stream. A stream has one position, so two threads must not read it at the same time.
class VARNEL_FORMS_API HttpContent {
public:
    HttpContent();
    HttpContent(const HttpContent&);
    HttpContent(HttpContent&&) noexcept;
    HttpContent& operator=(const HttpContent&);
    HttpContent& operator=(HttpContent&&) noexcept;
    virtual ~HttpContent();

    /// The disposition word of the part, for example "form-data".
    virtual utility::string_t getContentDisposition() const;
    virtual void setContentDisposition(const utility::string_t& value);

    /// The form field's name.
    virtual utility::string_t getName() const;
    virtual void setName(const utility::string_t& value);

    /// The file's name; empty for a plain value.
    virtual utility::string_t getFileName() const;
    virtual void setFileName(const utility::string_t& value);

    /// The media type of the data; may be empty.
    virtual utility::string_t getContentType() const;
    virtual void setContentType(const utility::string_t& value);

    /// The content's bytes; an empty pointer until a stream is set. The stream is shared, not copied.
    virtual std::shared_ptr<std::istream> getData() const;
    virtual void setData(std::shared_ptr<std::istream> value);

    /// Writes the data, from its start to its end, without any header. The data stream is left at its end.
    /// @throws std::invalid_argument if there is no data stream, or it has no buffer.
    virtual void writeTo(std::ostream& stream);

private:
    utility::string_t m_ContentDisposition;
    utility::string_t m_Name;
    utility::string_t m_FileName;
    utility::string_t m_ContentType;
    std::shared_ptr<std::istream> m_Data;
};

} // namespace VarnelAPI::Forms::model
