#include "Rows.h"

#include <algorithm>
#include <numeric>

namespace VarnelAPI::Forms::cli {
namespace {

constexpr std::size_t gap = 2;

/// The properties of the rows, in the order in which they turn up.
std::vector<std::string> propertiesOf(const std::vector<Json>& rows) {
    std::vector<std::string> names;
    const auto add = [&](const std::string& name) {
        if (std::find(names.begin(), names.end(), name) == names.end()) {
            names.push_back(name);
        }
    };
    for (const Json& row : rows) {
        const Json* properties = member(row, "properties");
        if (member(row, "instanceId") != nullptr) {
            add("id");
        }
        if (const Json& all = properties == nullptr ? row : *properties; all.is_object()) {
            for (const auto& [name, value] : all.as_object()) {
                add(name);
            }
        }
    }
    return names;
}

/// All of one instance, identity first.
std::vector<std::string> allOf(const Json& row) {
    std::vector<std::string> names;
    for (const char* name : {"id", "class", "eTag"}) {
        if (!column(row, name).is_null()) {
            names.emplace_back(name);
        }
    }
    for (const std::string& name : propertiesOf({row})) {
        if (std::find(names.begin(), names.end(), name) == names.end()) {
            names.push_back(name);
        }
    }
    return names;
}

std::size_t sum(const std::vector<std::size_t>& widths) {
    return std::accumulate(widths.begin(), widths.end(), widths.empty() ? 0 : gap * (widths.size() - 1));
}

/// Makes the widest columns narrower until all fit, but none narrower than `least`, and the first `whole` not at all.
bool fit(std::vector<std::size_t>& widths, std::size_t width, std::ptrdiff_t whole) {
    constexpr std::size_t least = 8;
    while (sum(widths) > width) {
        const auto widest = std::max_element(widths.begin() + whole, widths.end());
        if (widest == widths.end() || *widest <= least) {
            return false;
        }
        --*widest;
    }
    return true;
}

std::string padded(const std::string& text, std::size_t width) {
    const std::size_t taken = widthOf(text);
    return text + std::string(width > taken ? width - taken : 0, ' ');
}

/// The end of a line is no place for blanks.
std::string trimmed(std::string line) {
    line.erase(line.find_last_not_of(' ') + 1);
    return line;
}

/// The text in lines of a width, broken at blanks where there are some.
std::vector<std::string> wrapped(std::string text, std::size_t width) {
    std::vector<std::string> lines;
    while (widthOf(text) > width) {
        std::string line = clipped(text, width + 1);
        line.resize(line.size() - 3); // the ellipsis
        const std::size_t blank = line.rfind(' ');
        const std::size_t length = blank == std::string::npos || blank == 0 ? line.size() : blank;
        if (length == 0) {
            break;
        }
        lines.push_back(text.substr(0, length));
        text.erase(0, text.find_first_not_of(' ', length));
    }
    lines.push_back(text);
    return lines;
}

} // namespace

std::vector<std::string> Rows::columns() const {
    std::vector<std::string> names = m_View.columns.empty() ? m_View.defaultColumns : m_View.columns;
    if (names.empty()) {
        names = propertiesOf(m_Rows);
    }
    names.insert(names.end(), m_View.addedColumns.begin(), m_View.addedColumns.end());
    return names;
}

Json Rows::chosen(const Json& row) const {
    if (m_View.columns.empty()) {
        return row;
    }
    std::vector<std::pair<std::string, Json>> members;
    for (const std::string& name : columns()) {
        members.emplace_back(name, column(row, name));
    }
    return object(std::move(members));
}

void Rows::line(const Json& value, bool isIndented) {
    if (!m_View.jq) {
        m_Sink.write(toText(value, isIndented) + "\n");
        return;
    }
    for (const std::string& result : m_View.jq->run(value)) {
        std::string text = result;
        if (m_Sink.terminal().isTerminal) {
            text.clear();
            for (std::size_t begin = 0, end = 0; begin <= result.size(); begin = end + 1) {
                end = std::min(result.find('\n', begin), result.size());
                text += (begin == 0 ? "" : "\n") + harmless(result.substr(begin, end - begin));
            }
        }
        m_Sink.write(text + "\n");
    }
}

void Rows::csvLine(const std::vector<std::string>& cells) {
    std::string text;
    for (const std::string& given : cells) {
        const std::string cell = m_Sink.terminal().isTerminal ? harmless(given) : given;
        const bool isPlain = cell.find_first_of(",\"\r\n") == std::string::npos;
        text += &given == cells.data() ? "" : ",";
        if (isPlain) {
            text += cell;
            continue;
        }
        text += '"';
        for (const char character : cell) {
            text.append(character == '"' ? 2 : 1, character);
        }
        text += '"';
    }
    m_Sink.write(text + "\n");
}

void Rows::add(const Json& row) {
    const bool isFirst = m_Written == 0;
    switch (m_View.format) {
    case Format::jsonl:
        line(chosen(row), false);
        ++m_Written;
        return;
    case Format::json:
        if (m_View.jq) {
            break;
        }
        m_Sink.write(isFirst ? "[\n" : ",\n");
        m_Sink.write(toText(chosen(row), m_Sink.terminal().isTerminal));
        ++m_Written;
        return;
    case Format::csv:
        if (m_View.columns.empty() && m_View.defaultColumns.empty()) {
            break; // The columns are those of all rows.
        }
        if (isFirst) {
            csvLine(columns());
        }
        ++m_Written;
        {
            std::vector<std::string> cells;
            for (const std::string& name : columns()) {
                cells.push_back(cell(column(row, name)));
            }
            csvLine(cells);
        }
        return;
    case Format::table:
        break;
    }
    m_Rows.push_back(row);
}

void Rows::end() {
    if (m_View.format == Format::json && m_View.jq) {
        std::vector<Json> all;
        for (const Json& row : m_Rows) {
            all.push_back(chosen(row));
        }
        line(Json::array(std::move(all)), false);
    } else if (m_View.format == Format::json) {
        m_Sink.write(m_Written == 0 ? "[]\n" : "\n]\n");
    } else if (m_View.format == Format::csv && m_Written == 0) {
        const auto names = columns();
        csvLine(names);
        for (const Json& row : m_Rows) {
            std::vector<std::string> cells;
            for (const std::string& name : names) {
                cells.push_back(cell(column(row, name)));
            }
            csvLine(cells);
        }
    } else if (m_View.format == Format::table) {
        table();
    }
}

void Rows::only(const Json& row) {
    switch (m_View.format) {
    case Format::json:
        line(chosen(row), m_Sink.terminal().isTerminal && !m_View.jq);
        return;
    case Format::jsonl:
        line(chosen(row), false);
        return;
    case Format::csv:
        add(row);
        end();
        return;
    case Format::table:
        record(row, m_View.columns.empty() ? allOf(row) : m_View.columns);
    }
}

std::string Rows::shown(const Json& value) const {
    const std::string text = cell(value);
    return harmless(m_Sink.terminal().isTerminal ? localTime(text) : text);
}

void Rows::record(const Json& row, const std::vector<std::string>& names) {
    std::size_t labels = 0;
    for (const std::string& name : names) {
        labels = std::max(labels, widthOf(harmless(name)));
    }
    const Terminal& terminal = m_Sink.terminal();
    labels = terminal.isTerminal ? std::min(labels, terminal.width / 3) : labels;
    const std::size_t room =
        terminal.isTerminal ? std::max<std::size_t>(terminal.width - labels - gap, 8) : std::string::npos / 2;
    for (const std::string& name : names) {
        const std::string value = shown(column(row, name));
        if (name == "id" && widthOf(value) > room && widthOf(value) <= terminal.width) {
            m_Sink.write(terminal.bold(value) + "\n"); // It is there to be copied.
            continue;
        }
        std::string label = padded(clipped(harmless(name), labels), labels);
        for (const std::string& part : wrapped(value, room)) {
            m_Sink.write(trimmed(terminal.dim(label) + "  " + part) + "\n");
            label.assign(labels, ' ');
        }
    }
}

void Rows::table() {
    const Terminal& terminal = m_Sink.terminal();
    auto names = columns();
    std::vector<std::vector<std::string>> cells(m_Rows.size());
    std::vector<std::size_t> widths;
    for (auto name = names.begin(); name != names.end();) {
        std::size_t width = 0;
        std::vector<std::string> texts;
        for (const Json& row : m_Rows) {
            texts.push_back(shown(column(row, *name)));
            width = std::max(width, widthOf(texts.back()));
        }
        const auto isNamed = [&](const std::vector<std::string>& list) {
            return std::find(list.begin(), list.end(), *name) != list.end();
        };
        // What nothing stands in takes room from what does, unless it was asked for.
        if (width == 0 && !m_Rows.empty() && !isNamed(m_View.columns) && !isNamed(m_View.addedColumns)) {
            name = names.erase(name);
            continue;
        }
        for (std::size_t i = 0; i < texts.size(); ++i) {
            cells[i].push_back(std::move(texts[i]));
        }
        widths.push_back(std::max(width, widthOf(harmless(*name))));
        ++name;
    }
    std::vector<std::string> left;
    if (terminal.isTerminal) {
        // Ids are there to be copied.
        const std::ptrdiff_t whole = !names.empty() && names.front() == "id" ? 1 : 0;
        auto fitting = widths;
        while (!fit(fitting, terminal.width, whole) && widths.size() > 2) {
            left.insert(left.begin(), names[widths.size() - 1]);
            widths.pop_back();
            fitting = widths;
        }
        if (sum(fitting) > terminal.width) {
            // Too narrow for a table: one instance below the other.
            for (const Json& row : m_Rows) {
                m_Sink.write(&row == m_Rows.data() ? "" : "\n");
                record(row, names);
            }
            return;
        }
        widths = fitting;
    }
    const auto write = [&](const std::vector<std::string>& texts, bool isHead) {
        std::string text;
        for (std::size_t i = 0; i < widths.size(); ++i) {
            text += padded(clipped(texts[i], widths[i]), widths[i] + gap);
        }
        text = trimmed(std::move(text));
        m_Sink.write((isHead ? terminal.bold(text) : text) + "\n");
    };
    for (std::string& name : names) {
        name = harmless(name);
    }
    write(names, true);
    for (const auto& texts : cells) {
        write(texts, false);
    }
    if (!left.empty()) {
        std::string text = "Not shown:";
        for (const std::string& name : left) {
            text += (&name == left.data() ? " " : ", ") + name;
        }
        m_Sink.write(terminal.dim(clipped(text, terminal.width)) + "\n");
    }
}

} // namespace VarnelAPI::Forms::cli
