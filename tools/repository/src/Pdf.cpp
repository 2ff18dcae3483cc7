#include "Pdf.h"

#include <cstddef>
#include <cstdio>

namespace VarnelAPI::Forms::repository {
namespace {

constexpr std::size_t charactersPerLine = 90;
constexpr std::size_t linesPerPage = 56;

/// One byte a character, as the page's font takes it.
std::string toLatin1(const std::string& utf8) {
    std::string result;
    for (std::size_t i = 0; i < utf8.size(); ++i) {
        const auto byte = static_cast<unsigned char>(utf8[i]);
        if (byte < 0x80) {
            result += byte < 0x20 || byte == 0x7F ? ' ' : utf8[i];
        } else if ((byte == 0xC2 || byte == 0xC3) && i + 1 < utf8.size()) {
            const auto low = static_cast<unsigned>(static_cast<unsigned char>(utf8[++i]) & 0x3FU);
            const unsigned code = ((byte & 0x03U) << 6U) | low;
            result += code < 0xA0 ? ' ' : static_cast<char>(code);
        } else if (byte >= 0xC0) {
            result += '?'; // once per character: the bytes that follow the first are skipped
        }
    }
    return result;
}

std::vector<std::string> fold(const std::vector<std::string>& lines) {
    std::vector<std::string> folded;
    for (const std::string& line : lines) {
        const std::string text = toLatin1(line);
        for (std::size_t begin = 0; begin == 0 || begin < text.size(); begin += charactersPerLine) {
            if (folded.size() == linesPerPage) {
                folded.back() = "...";
                return folded;
            }
            folded.push_back(text.substr(begin, charactersPerLine));
        }
    }
    return folded;
}

std::string pageContent(const std::vector<std::string>& lines) {
    std::string content = "BT /F1 9 Tf 13 TL 50 790 Td\n";
    for (const std::string& line : fold(lines)) {
        content += '(';
        for (const char c : line) {
            if (c == '(' || c == ')' || c == '\\') {
                content += '\\';
            }
            content += c;
        }
        content += ") Tj T*\n";
    }
    return content + "ET";
}

} // namespace

std::string makePdf(const std::vector<std::string>& lines) {
    const std::string content = pageContent(lines);
    const std::string resources = "/Resources << /Font << /F1 4 0 R >> >>";
    const std::vector<std::string> objects = {
        "<< /Type /Catalog /Pages 2 0 R >>",
        "<< /Type /Pages /Kids [3 0 R] /Count 1 >>",
        "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 595 842] " + resources + " /Contents 5 0 R >>",
        "<< /Type /Font /Subtype /Type1 /BaseFont /Courier /Encoding /WinAnsiEncoding >>",
        "<< /Length " + std::to_string(content.size()) + " >>\nstream\n" + content + "\nendstream",
    };
    std::string pdf = "%PDF-1.4\n%\xE2\xE3\xCF\xD3\n"; // the second line marks the file as binary
    std::string offsets = "0000000000 65535 f \n";
    for (std::size_t i = 0; i < objects.size(); ++i) {
        char entry[32];
        std::snprintf(entry, sizeof entry, "%010zu 00000 n \n", pdf.size());
        offsets += entry;
        pdf += std::to_string(i + 1) + " 0 obj\n" + objects[i] + "\nendobj\n";
    }
    const std::string size = std::to_string(objects.size() + 1);
    const std::string start = std::to_string(pdf.size());
    return pdf + "xref\n0 " + size + "\n" + offsets + "trailer\n<< /Size " + size + " /Root 1 0 R >>\nstartxref\n" +
           start + "\n%%EOF\n";
}

} // namespace VarnelAPI::Forms::repository
