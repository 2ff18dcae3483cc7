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

constexpr uint32_t invalid = 0xFF000000U;

/// For each of the four places of a group, the character's six bits where they belong in the 24; `invalid` for a
/// character outside the alphabet.
constexpr auto characterBits = [] {
    std::array<std::array<uint32_t, 256>, 4> bits{};
    for (auto& place : bits) {
        for (auto& entry : place) {
            entry = invalid;
        }
    }
    for (uint32_t value = 0; value < 64; ++value) {
        for (std::size_t place = 0; place < 4; ++place) {
            bits[place][static_cast<unsigned char>(alphabet[value])] = value << (18U - 6U * place);
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
    /// The bytes of a block: whole groups, that fit in a cache with their characters.
    static constexpr std::size_t blockSize = 12288;

    explicit Encoder(std::size_t size) { m_Text.reserve((size + 2) / 3 * 4); }

    /// Only the last block may be smaller than `blockSize`.
    void add(const unsigned char* in, std::size_t size) {
        m_Out = m_Characters.data();
        for (; size >= 3; size -= 3, in += 3) {
            putGroup(static_cast<uint32_t>(in[0]) << 16U | static_cast<uint32_t>(in[1]) << 8U | in[2]);
        }
        if (size != 0) {
            putGroup(static_cast<uint32_t>(in[0]) << 16U | (size == 2 ? in[1] * 256U : 0U));
            std::fill_n(m_Out - (3 - size), 3 - size, _XPLATSTR('='));
        }
        m_Text.append(m_Characters.data(), m_Out);
    }

    utility::string_t take() { return std::move(m_Text); }

private:
    void putGroup(uint32_t group) {
        put(group >> 12U);
        put(group & 0xFFFU);
    }
    void put(uint32_t number) { m_Out = std::copy_n(characterPairs[number].data(), 2, m_Out); }

    utility::string_t m_Text;
    std::array<utility::char_t, blockSize / 3 * 4> m_Characters{};
    utility::char_t* m_Out = nullptr;
};

utility::string_t encode(std::istream& stream) {
    Encoder encoder(detail::sizeOf(stream));
    std::array<char, Encoder::blockSize> block{};
    std::size_t filled = 0;
    do {
        // A stream may give less than it is asked for before its end.
        std::streamsize more = 0;
        filled = 0;
        while (filled < block.size() &&
               (more = stream.rdbuf()->sgetn(block.data() + filled,
                                             static_cast<std::streamsize>(block.size() - filled))) > 0) {
            filled += static_cast<std::size_t>(more);
        }
        encoder.add(reinterpret_cast<const unsigned char*>(block.data()), filled);
    } while (filled == block.size());
    return encoder.take();
}

/// What is wrong with a last, incomplete or padded group, or with any group that holds a foreign character.
[[noreturn]] void refuse(const utility::string_t& encoded, std::size_t groupStart) {
    std::size_t at = groupStart;
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
    std::array<char, Encoder::blockSize> block{};
    const auto* in = encoded.data();
    auto* out = block.data();
    for (std::size_t i = 0; i < wholeGroups; ++i, in += 4) {
        const uint32_t group = bitsAt(0, in[0]) | bitsAt(1, in[1]) | bitsAt(2, in[2]) | bitsAt(3, in[3]);
        if (group >= invalid) {
            refuse(encoded, i * 4);
        }
        *out++ = static_cast<char>(group >> 16U);
        *out++ = static_cast<char>(group >> 8U);
        *out++ = static_cast<char>(group);
        if (out == block.data() + block.size()) {
            bytes.append(block.data(), out);
            out = block.data();
        }
    }
    bytes.append(block.data(), out);
    if (padding != 0) {
        const uint32_t group = bitsAt(0, in[0]) | bitsAt(1, in[1]) | (padding == 1 ? bitsAt(2, in[2]) : 0U);
        if (group >= invalid) {
            refuse(encoded, wholeGroups * 4);
        }
        bytes.push_back(static_cast<char>(group >> 16U));
        if (padding == 1) {
            bytes.push_back(static_cast<char>(group >> 8U));
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
