#pragma once

#include <VarnelAPI/Forms/model/IHttpBody.h>

#include <cstdint>
#include <memory>

namespace VarnelAPI::Forms::model {

/// A request body of raw bytes, for callers that send them through `ApiClient::callApi` themselves (for example to
/// store a file's bytes): no resource operation builds one.
class VARNEL_FORMS_API BinaryBody : public IHttpBody {
public:
    /// Copies `size` bytes from `data`.
    /// @throws std::invalid_argument if `size` is negative, or `data` is null and `size` is not 0.
    BinaryBody(const char* data, int64_t size);
    ~BinaryBody() override;
    BinaryBody(const BinaryBody&) = delete;
    BinaryBody& operator=(const BinaryBody&) = delete;

    /// Writes the bytes, unchanged.
    void writeTo(std::ostream& stream) override;

private:
    std::unique_ptr<char[]> m_Data;
    int64_t m_Size;
};

} // namespace VarnelAPI::Forms::model
