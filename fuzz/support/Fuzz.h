#pragma once

#include <VarnelAPI/Forms.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size);

/// What the fuzz targets share. Inputs are texts as far as they can be, for those who read a finding.
namespace forms_fuzz {

/// Ends the process, which is what the fuzzer takes for a finding.
inline void require(bool holds, const char* what) {
    if (!holds) {
        std::fprintf(stderr, "does not hold: %s\n", what);
        std::abort();
    }
}

/// Takes an input apart, front to back. At its end, everything is empty.
class Input {
public:
    Input(const uint8_t* data, std::size_t size) : m_Bytes(data, data + size) {}

    bool empty() const { return m_At == m_Bytes.size(); }
    char letter() { return empty() ? '\0' : m_Bytes[m_At++]; }
    /// The bytes up to `end`, which is skipped, or up to the end of the input.
    std::string field(char end = '\t') {
        const std::size_t stop = std::min(m_Bytes.find(end, m_At), m_Bytes.size());
        std::string bytes = m_Bytes.substr(m_At, stop - m_At);
        m_At = std::min(stop + 1, m_Bytes.size());
        return bytes;
    }
    std::string rest() { return m_Bytes.substr(std::exchange(m_At, m_Bytes.size())); }

private:
    std::string m_Bytes;
    std::size_t m_At = 0;
};

/// What `work` throws, in words, or an empty text. Any exception but those of `Allowed` ends the process.
template <class... Allowed, class Work>
std::string failureOf(Work work) {
    std::string failure;
    try {
        work();
    } catch (const std::exception& error) {
        if (!(... || (dynamic_cast<const Allowed*>(&error) != nullptr))) {
            throw;
        }
        failure = std::string("failed: ") + error.what();
    }
    return failure;
}

/// The JSON in a text, if there is any. The HTTP library's parser has two ways to refuse a text.
std::optional<web::json::value> jsonIn(const std::string& text);

/// One class of models.
struct ModelClass {
    std::string name;
    std::function<std::shared_ptr<VarnelAPI::Forms::model::ModelBase>()> make;

    /// The class of this name; a text that names none stands for some class.
    static const ModelClass& of(const std::string& name);
};

/// Whether two JSON values say the same: members in any order, 2 and 2.0 alike, and an issue's view definition by the
/// JSON in its text. The dates that were never set count as missing: they go out as null and don't come back.
bool same(const web::json::value& a, const web::json::value& b);

/// Requires that what `model` writes as JSON reads back into a model that writes the same.
void requireStable(const ModelClass& type, const VarnelAPI::Forms::model::ModelBase& model);

std::string bytesOf(VarnelAPI::Forms::model::IHttpBody& body);
std::string bytesOf(const VarnelAPI::Forms::model::HttpContent& content);

} // namespace forms_fuzz
