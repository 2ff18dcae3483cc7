#include "SavedFile.h"

#include <cerrno>
#include <random>
#include <string>
#include <system_error>

namespace VarnelAPI::Forms::transport::detail {

namespace {

/// Beside the file, so that both are on one file system; and like no other, should several calls save to one path.
std::filesystem::path temporaryFor(const std::filesystem::path& path) {
    std::random_device random;
    std::filesystem::path temporary = path;
    temporary += "." + std::to_string(random()) + std::to_string(random()) + ".part";
    return temporary;
}

} // namespace

SavedFile::SavedFile(const utility::string_t& path)
    : m_Path(path), m_Temporary(temporaryFor(m_Path)), m_Block(std::size_t{256} << 10U) {
    // Pieces come in 16 KB, and are joined.
    m_Stream.rdbuf()->pubsetbuf(m_Block.data(), static_cast<std::streamsize>(m_Block.size()));
    std::error_code unknown;
    if (std::filesystem::is_directory(m_Path, unknown)) {
        m_IsOpen = false;
        errno = EISDIR;
        fail(); // rather than after the transfer
    }
    errno = 0;
    m_Stream.open(m_Temporary, std::ios_base::binary | std::ios_base::trunc);
    if (!m_Stream) {
        fail();
    }
}

SavedFile::~SavedFile() {
    discard();
}

void SavedFile::write(const uint8_t* bytes, std::size_t size) {
    const std::lock_guard<std::mutex> lock(m_Mutex);
    errno = 0;
    if (m_IsOpen && !m_Stream.write(reinterpret_cast<const char*>(bytes), static_cast<std::streamsize>(size))) {
        fail();
    }
}

std::shared_ptr<std::istream> SavedFile::keep() {
    const std::lock_guard<std::mutex> lock(m_Mutex);
    errno = 0;
    m_Stream.close();
    if (!m_Stream) {
        fail();
    }
    std::error_code error;
    std::filesystem::rename(m_Temporary, m_Path, error);
    if (error) {
        errno = error.value();
        fail();
    }
    m_IsOpen = false;
    return std::make_shared<std::ifstream>(m_Path, std::ios_base::binary);
}

void SavedFile::discard() {
    const std::lock_guard<std::mutex> lock(m_Mutex);
    close();
}

void SavedFile::close() {
    if (m_IsOpen) {
        m_IsOpen = false;
        m_Stream.close();
        std::error_code ignored;
        std::filesystem::remove(m_Temporary, ignored);
    }
}

void SavedFile::fail() {
    const std::error_code error(errno != 0 ? errno : EIO, std::generic_category());
    close();
    throw std::system_error(error, "can't write " + m_Path.u8string());
}

} // namespace VarnelAPI::Forms::transport::detail
