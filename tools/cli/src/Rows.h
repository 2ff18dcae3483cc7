#pragma once

#include "Jq.h"
#include "Json.h"
#include "Sink.h"

#include <memory>
#include <string>
#include <vector>

namespace VarnelAPI::Forms::cli {

enum class Format { table, json, jsonl, csv };

/// How results are shown.
struct View {
    Format format = Format::json;
    /// Those to show; empty for the default ones in tables, and for whole instances in JSON.
    std::vector<std::string> columns;
    std::vector<std::string> defaultColumns;
    std::vector<std::string> addedColumns;
    std::shared_ptr<const Jq> jq;
};

/// Writes instances as one document, whatever their number.
class Rows {
public:
    Rows(Sink& sink, View view) : m_Sink(sink), m_View(std::move(view)) {}

    void add(const Json& row);
    /// The document is whole.
    void end();
    /// A document of one instance, which is no list.
    void only(const Json& row);

private:
    std::vector<std::string> columns() const;
    Json chosen(const Json& row) const;
    void line(const Json& value, bool isIndented);
    void csvLine(const std::vector<std::string>& cells);
    void table();
    void record(const Json& row, const std::vector<std::string>& names);
    std::string shown(const Json& value) const;

    Sink& m_Sink;
    const View m_View;
    /// Those that can't be written before all are known.
    std::vector<Json> m_Rows;
    std::size_t m_Written = 0;
};

} // namespace VarnelAPI::Forms::cli
