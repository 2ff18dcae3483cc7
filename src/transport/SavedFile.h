#pragma once

#include <VarnelAPI/Forms/detail/HttpLibrary.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <memory>
#include <mutex>
#include <vector>

namespace VarnelAPI::Forms::transport::detail {

/// A file that comes into being whole or not at all: it is written under another name beside it. Any thread may use it.
class SavedFile {
public:
    /// @throws std::system_error if the temporary file can't be made.
    explicit SavedFile(const utility::string_t& path);
    ~SavedFile();
    SavedFile(const SavedFile&) = delete;
    SavedFile& operator=(const SavedFile&) = delete;

    /// @throws std::system_error if it can't be written. What comes after `discard` is dropped.
    void write(const uint8_t* bytes, std::size_t size);
    /// Gives the file its name, and opens it.
    /// @throws std::system_error if that can't be done; then nothing is left.
    std::shared_ptr<std::istream> keep();
    /// Removes it, unless it was kept.
    void discard();

private:
    [[noreturn]] void fail();
    void close();

    const std::filesystem::path m_Path;
    const std::filesystem::path m_Temporary;
    std::mutex m_Mutex;
    std::vector<char> m_Block;
    std::ofstream m_Stream;
    bool m_IsOpen = true;
};

} // namespace VarnelAPI::Forms::transport::detail
