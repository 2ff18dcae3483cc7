#include <VarnelAPI/Forms/model/StreamBody.h>

#include "Conversion.h"
#include "Streams.h"

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <system_error>

namespace VarnelAPI::Forms::model {

StreamBody::StreamBody(std::shared_ptr<std::istream> stream, uint64_t size)
    : m_Stream(std::move(stream)), m_Size(size) {
    detail::bufferOf(*detail::required(m_Stream, "the stream of a body"));
}

StreamBody::~StreamBody() = default;

std::shared_ptr<StreamBody> StreamBody::ofFile(const utility::string_t& path) {
    const std::filesystem::path file(path);
    const auto size = std::filesystem::file_size(file); // refuses a directory
    errno = 0;
    auto stream = std::make_shared<std::ifstream>(file, std::ios_base::binary);
    if (!*stream) {
        throw std::system_error(errno != 0 ? errno : EIO, std::generic_category(), "can't read " + file.u8string());
    }
    return std::make_shared<StreamBody>(std::move(stream), size);
}

void StreamBody::writeTo(std::ostream& stream) {
    detail::copyAll(*m_Stream, stream);
}

} // namespace VarnelAPI::Forms::model
