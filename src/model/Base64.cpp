#include <VarnelAPI/Forms/model/ModelBase.h>

#include "Conversion.h"
#include "Streams.h"

#include <algorithm>
#include <array>
#include <istream>

namespace VarnelAPI::Forms::model {

namespace {

constexpr char alphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

/// Two characters for every 12-bit number: three bytes take two look-ups.
constexpr auto characterPairs = [] {
    std::array<std::array<utility::char_t, 2>, 4096> pairs{};
    for (std::size_t i = 0; i < pairs.size(); ++i) {
        pairs[i] = {static_cast<utility::char_t>(alphabet[i >> 6U]), static_cast<utility::char_t>(alphabet[i & 63U])};
    }
    return pairs;
}();

constexpr uint32_t invalid = 0xFFU;

/// For each of the four places of a group, the character's six bits where they belong in the upper 24; `invalid`, in
/// the lower 8, for a character outside the alphabet.
constexpr auto characterBits = [] {
    std::array<std::array<uint32_t, 256>, 4> bits{};
    for (auto& place : bits) {
        for (auto& entry : place) {
            entry = invalid;
        }
    }
    for (uint32_t value = 0; value < 64; ++value) {
        for (std::size_t place = 0; place < 4; ++place) {
            bits[place][static_cast<unsigned char>(alphabet[value])] = value << (26U - 6U * place);
        }
    }
    return bits;
}();

template <class Char>
uint32_t bitsAt(std::size_t place, Char character) {
    const auto code = static_cast<std::make_unsigned_t<Char>>(character);
    return code < 256 ? characterBits[place][code] : invalid;
}

/// Encodes block by block: the text is written once, and the bytes are never copied whole.
class Encoder {
public:
    /// The bytes of a block: whole groups, that stay in the nearest cache with their characters and the table.
    static constexpr std::size_t blockSize = 6144;

    explicit Encoder(std::size_t size) { m_Text.reserve((size + 2) / 3 * 4); }

    /// Only the last block may be smaller than `blockSize`.
    void add(const unsigned char* in, std::size_t size) {
        auto* out = m_Characters.data();
        // Four groups a step: twelve bytes are three numbers of 32 bits.
        for (; size >= 12; size -= 12, in += 12) {
            const uint32_t first = bigEndian(in);
            const uint32_t second = bigEndian(in + 4);
            const uint32_t third = bigEndian(in + 8);
            out = put(out, first >> 20U);
            out = put(out, first >> 8U);
            out = put(out, first << 4U | second >> 28U);
            out = put(out, second >> 16U);
            out = put(out, second >> 4U);
            out = put(out, second << 8U | third >> 24U);
            out = put(out, third >> 12U);
            out = put(out, third);
        }
        for (; size >= 3; size -= 3, in += 3) {
            out = putGroup(out, static_cast<uint32_t>(in[0]) << 16U | static_cast<uint32_t>(in[1]) << 8U | in[2]);
        }
        if (size != 0) {
            out = putGroup(out, static_cast<uint32_t>(in[0]) << 16U | (size == 2 ? in[1] * 256U : 0U));
            std::fill_n(out - (3 - size), 3 - size, _XPLATSTR('='));
        }
        m_Text.append(m_Characters.data(), out);
    }

    utility::string_t take() { return std::move(m_Text); }

private:
    /// Four bytes as one number: compilers make one load of it.
    static uint32_t bigEndian(const unsigned char* in) {
        return static_cast<uint32_t>(in[0]) << 24U | static_cast<uint32_t>(in[1]) << 16U |
               static_cast<uint32_t>(in[2]) << 8U | in[3];
    }
    static utility::char_t* putGroup(utility::char_t* out, uint32_t group) {
        return put(put(out, group >> 12U), group);
    }
    /// The characters of the lowest 12 bits.
    static utility::char_t* put(utility::char_t* out, uint32_t number) {
        return std::copy_n(characterPairs[number & 0xFFFU].data(), 2, out);
    }

    utility::string_t m_Text;
    std::array<utility::char_t, blockSize / 3 * 4> m_Characters{};
};

utility::string_t encode(std::istream& stream) {
    Encoder encoder(detail::sizeOf(stream));
    std::streambuf& buffer = detail::rewound(stream);
    std::array<char, Encoder::blockSize> block{};
    std::size_t filled = 0;
    do {
        // A stream may give less than it is asked for before its end.
        std::size_t more = 0;
        filled = 0;
        while (filled < block.size() &&
               (more = detail::readSome(buffer, block.data() + filled, block.size() - filled)) != 0) {
            filled += more;
        }
        encoder.add(reinterpret_cast<const unsigned char*>(block.data()), filled);
    } while (filled == block.size());
    return encoder.take();
}

/// Says what is wrong from `start` on: a foreign character there, or a last group that is incomplete.
[[noreturn]] void refuse(const utility::string_t& encoded, std::size_t start) {
    std::size_t at = start;
    while (at < encoded.size() && bitsAt(0, encoded[at]) != invalid) {
        ++at;
    }
    throw web::json::json_exception(at < encoded.size() && encoded[at] == _XPLATSTR('=')
                                        ? "Invalid Padding in Base 64!"
                                        : "Non-Valid Character in Base 64!");
}

std::string decode(const utility::string_t& encoded) {
    const std::size_t size = encoded.size();
    std::size_t padding = 0;
    while (padding < 2 && padding < size && size % 4 == 0 && encoded[size - 1 - padding] == _XPLATSTR('=')) {
        ++padding;
    }
    const std::size_t wholeGroups = (size - (padding != 0 ? 4 : 0)) / 4;
    std::string bytes;
    bytes.reserve(wholeGroups * 3 + (padding != 0 ? 3 - padding : 0));
    std::array<char, Encoder::blockSize + 1> block{};
    const auto* in = encoded.data();
    const auto* const end = in + wholeGroups * 4;
    while (in != end) {
        const auto* const blockStart = in;
        const auto* const blockEnd = in + std::min<std::ptrdiff_t>(end - in, Encoder::blockSize / 3 * 4);
        auto* out = block.data();
        uint32_t seen = 0;
        for (; in != blockEnd; in += 4, out += 3) {
            const uint32_t group = bitsAt(0, in[0]) | bitsAt(1, in[1]) | bitsAt(2, in[2]) | bitsAt(3, in[3]);
            seen |= group;
            // Compilers make one store of it; the next group overwrites the fourth byte.
            out[0] = static_cast<char>(group >> 24U);
            out[1] = static_cast<char>(group >> 16U);
            out[2] = static_cast<char>(group >> 8U);
            out[3] = static_cast<char>(group);
        }
        if ((seen & invalid) != 0) {
            refuse(encoded, static_cast<std::size_t>(blockStart - encoded.data()));
        }
        bytes.append(block.data(), out);
    }
    if (padding != 0) {
        const uint32_t group = bitsAt(0, in[0]) | bitsAt(1, in[1]) | (padding == 1 ? bitsAt(2, in[2]) : 0U);
        if ((group & invalid) != 0) {
            refuse(encoded, wholeGroups * 4);
        }
        bytes.push_back(static_cast<char>(group >> 24U));
        if (padding == 1) {
            bytes.push_back(static_cast<char>(group >> 16U));
        }
    } else if (size % 4 != 0) {
        refuse(encoded, wholeGroups * 4);
    }
    return bytes;
}

} // namespace

utility::string_t ModelBase::toBase64(utility::string_t value) {
    return encode(*detail::streamOf(utility::conversions::to_utf8string(std::move(value))));
}

utility::string_t ModelBase::toBase64(std::shared_ptr<std::istream> value) {
    return encode(*detail::required(value, "the stream to encode"));
}

std::shared_ptr<std::istream> ModelBase::fromBase64(const utility::string_t& encoded) {
    return detail::streamOf(decode(encoded));
}

} // namespace VarnelAPI::Forms::model
