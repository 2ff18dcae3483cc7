#include "Inflate.h"

#include "ServiceError.h"

#include <zlib.h>

#include <algorithm>
#include <array>
#include <cctype>

namespace VarnelAPI::Forms::repository {

std::string inflated(std::string body, const std::string& name, std::size_t maxBytes) {
    std::string coding = name;
    std::transform(coding.begin(), coding.end(), coding.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    if (coding.empty() || coding == "identity") {
        return body;
    }
    if (coding != "gzip" && coding != "x-gzip" && coding != "deflate") {
        throw ServiceError(415, "The Content-Encoding \"" + name + "\" is not gzip or deflate");
    }
    constexpr int eitherHeader = 32; // gzip's or zlib's
    z_stream stream{};
    if (inflateInit2(&stream, MAX_WBITS + eitherHeader) != Z_OK) {
        throw std::bad_alloc();
    }
    stream.next_in = reinterpret_cast<Bytef*>(body.data());
    std::string result;
    std::array<char, 16384> part{};
    int status = Z_OK;
    for (std::size_t left = body.size(); status == Z_OK && result.size() <= maxBytes;) {
        if (stream.avail_in == 0) {
            stream.avail_in = static_cast<uInt>(std::min<std::size_t>(left, 1U << 30U));
            left -= stream.avail_in;
        }
        stream.next_out = reinterpret_cast<Bytef*>(part.data());
        stream.avail_out = static_cast<uInt>(part.size());
        status = inflate(&stream, Z_NO_FLUSH);
        result.append(part.data(), part.size() - stream.avail_out);
        if (status == Z_STREAM_END && (stream.avail_in != 0 || left != 0)) {
            status = inflateReset(&stream); // what gzip makes may be joined
        }
    }
    inflateEnd(&stream);
    if (result.size() > maxBytes) {
        throw ServiceError(413, "At most " + std::to_string(maxBytes) + " bytes are accepted");
    }
    if (status != Z_STREAM_END) {
        throw ServiceError(400, "The body is not " + coding);
    }
    return result;
}

} // namespace VarnelAPI::Forms::repository
