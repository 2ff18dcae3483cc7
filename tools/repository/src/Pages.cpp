#include "Pages.h"

#include "ServiceError.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>
#include <ctime>
#include <map>
#include <string_view>

namespace VarnelAPI::Forms::repository {
namespace {

constexpr std::int64_t rowsPerPage = 50;
constexpr std::int64_t recordsShown = 100;
constexpr std::size_t columnsShown = 5;
constexpr std::size_t requestsShown = 200;
constexpr std::size_t shortText = 80;

constexpr const char* style = R"(
:root{color-scheme:light dark;--text:#1d2430;--back:#fff;--soft:#f3f5f8;--line:#d7dce3;--link:#0b57d0;--mark:#fff0d6;--bad:#b3261e}
@media(prefers-color-scheme:dark){:root{--text:#e4e7ec;--back:#14171c;--soft:#1d2129;--line:#363c47;--link:#8ab4f8;--mark:#4a3510;--bad:#ff8a80}}
*{box-sizing:border-box}body{margin:0;font:15px/1.45 system-ui,sans-serif;color:var(--text);background:var(--back)}
header,main{max-width:72rem;margin:0 auto;padding:.8rem 1rem}header{border-bottom:1px solid var(--line);display:flex;flex-wrap:wrap;gap:.3rem 1rem}
a{color:var(--link);text-decoration:none}a:hover{text-decoration:underline}h1{font-size:1.3rem;margin:.6rem 0;overflow-wrap:anywhere}h2{font-size:1.05rem;margin:1.4rem 0 .4rem}
.wide{overflow-x:auto;border:1px solid var(--line);border-radius:6px}table{border-collapse:collapse;width:100%}
th,td{text-align:left;vertical-align:top;padding:.35rem .6rem;border-top:1px solid var(--line);overflow-wrap:anywhere;min-width:3rem}
thead th{border-top:0;background:var(--soft);white-space:nowrap}td{white-space:pre-wrap}td:first-child{overflow-wrap:normal}
.whole{white-space:nowrap}.long{display:block;min-width:min(16rem,48vw)}
.fault td{background:var(--mark)}.bad{color:var(--bad)}.soft{opacity:.7}img{max-width:100%;height:auto;border:1px solid var(--line)}nav{margin:.6rem 0;display:flex;gap:1rem})";

std::string escaped(std::string_view text) {
    std::string result;
    for (const char c : text) {
        switch (c) {
        case '&':
            result += "&amp;";
            break;
        case '<':
            result += "&lt;";
            break;
        case '>':
            result += "&gt;";
            break;
        case '"':
            result += "&quot;";
            break;
        case '\'':
            result += "&#39;";
            break;
        default:
            result += c;
        }
    }
    return result;
}

std::string encoded(std::string_view text) {
    std::string result;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if ((c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' || c == '_') {
            result += c;
        } else {
            std::array<char, 4> hex{};
            std::snprintf(hex.data(), hex.size(), "%%%02X", byte);
            result += hex.data();
        }
    }
    return result;
}

std::string link(const std::string& query, std::string_view text) {
    return "<a href=\"" + escaped(query) + "\">" + escaped(text) + "</a>";
}

/// A value as it is shown: texts as they are, anything else as JSON.
std::string shown(const Json& value, std::size_t limit) {
    std::string text = value.is_string() ? value.get<std::string>() : toText(value);
    if (text.size() > limit) {
        std::size_t end = limit;
        while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U) {
            --end; // not within a character
        }
        text.resize(end);
        text += "…";
    }
    return escaped(text);
}

/// A table: its head, and rows of cells that are HTML already.
class Table {
public:
    explicit Table(std::initializer_list<std::string_view> head) {
        m_html = "<div class=wide><table><thead><tr>";
        for (const std::string_view name : head) {
            m_html += "<th>" + escaped(name);
        }
        m_html += "<tbody>";
    }
    void add(const std::vector<std::string>& cells, const char* kind = "") {
        m_html += std::string("<tr") + (*kind == '\0' ? "" : " class=") + kind + ">";
        for (const std::string& cell : cells) {
            m_html += "<td>" + cell;
        }
    }
    std::string html() const { return m_html + "</table></div>"; }

private:
    std::string m_html;
};

std::string document(const std::string& title, const std::string& trail, const std::string& content,
                     const char* head = "") {
    return "<!doctype html><html lang=en><meta charset=utf-8><meta name=viewport content=\"width=device-width,"
           "initial-scale=1\"><link rel=icon href=\"data:,\">" +
           std::string(head) + "<title>" + escaped(title) + "</title><style>" + style + "</style><header>" +
           link("?", "Repository") + trail + link("?requests=1", "Requests") + "</header><main><h1>" + escaped(title) +
           "</h1>" + content + "</main></html>";
}

std::string locations(Database& database) {
    Table table{"Location", "Instances"};
    Statement row(database, "SELECT location, count(*) FROM instances GROUP BY location ORDER BY location");
    bool isEmpty = true;
    for (; row.step(); isEmpty = false) {
        table.add({link("?location=" + encoded(row.view(0)), row.view(0)), std::to_string(row.integer(1))});
    }
    return document("Local repository", "", isEmpty ? "<p>Nothing is stored yet." : table.html());
}

std::string toLocation(const std::string& location) {
    return link("?location=" + encoded(location), location);
}

std::string toClass(const std::string& location, const std::string& schema, const std::string& name) {
    return link("?location=" + encoded(location) + "&class=" + encoded(schema + "." + name), schema + "." + name);
}

std::string toInstance(const std::string& location, const std::string& id, const std::string& text) {
    return link("?location=" + encoded(location) + "&id=" + encoded(id), text);
}

std::string classes(Database& database, const std::string& location) {
    Table table{"Class", "Instances"};
    Statement row(database,
                  "SELECT schema, class, count(*) FROM instances WHERE location = ? GROUP BY schema, class"
                  " ORDER BY schema, class",
                  location);
    while (row.step()) {
        table.add({toClass(location, row.text(0), row.text(1)), std::to_string(row.integer(2))});
    }
    return document(location, "", table.html());
}

/// The first properties of each instance, and where each leads.
std::string instanceRows(Statement& row, const std::string& location) {
    Table table{"Instance", "Properties"};
    while (row.step()) {
        std::string values;
        std::size_t count = 0;
        const Json properties = Json::parse(row.view(1));
        for (const auto& [name, value] : properties.items()) {
            if (++count > columnsShown) {
                values += " …";
                break;
            }
            values += (values.empty() ? "<b>" : "\n<b>") + shown(name, shortText) + "</b> " + shown(value, shortText);
        }
        table.add({toInstance(location, row.text(0), row.text(0)), values});
    }
    return table.html();
}

std::string instances(Database& database, const std::string& location, const std::string& className,
                      std::int64_t page) {
    const std::size_t dot = std::min(className.find('.'), className.size());
    const std::string schema = className.substr(0, dot);
    const std::string name = dot < className.size() ? className.substr(dot + 1) : "";
    Statement count(database, "SELECT count(*) FROM instances WHERE location = ? AND schema = ? AND class = ?",
                    location, schema, name);
    count.step();
    const std::int64_t pages = std::max<std::int64_t>(1, (count.integer(0) + rowsPerPage - 1) / rowsPerPage);
    page = std::clamp<std::int64_t>(page, 1, pages);
    Statement rows(database,
                   "SELECT id, properties FROM instances WHERE location = ? AND schema = ? AND class = ?"
                   " ORDER BY number LIMIT ? OFFSET ?",
                   location, schema, name, rowsPerPage, (page - 1) * rowsPerPage);
    const std::string self = "?location=" + encoded(location) + "&class=" + encoded(className) + "&page=";
    std::string navigation = "<nav>";
    if (page > 1) {
        navigation += link(self + "1", "First") + link(self + std::to_string(page - 1), "Previous");
    }
    navigation += "<span>Page " + std::to_string(page) + " of " + std::to_string(pages) + ", " +
                  std::to_string(count.integer(0)) + " instances</span>";
    if (page < pages) {
        navigation += link(self + std::to_string(page + 1), "Next") + link(self + std::to_string(pages), "Last");
    }
    navigation += "</nav>";
    return document(className, toLocation(location), navigation + instanceRows(rows, location) + navigation);
}

/// The type of a picture that a browser can show without running anything; "" for other bytes.
const char* pictureType(std::string_view bytes) {
    const auto begins = [&](std::string_view mark) { return bytes.substr(0, mark.size()) == mark; };
    return begins("\x89PNG\r\n\x1a\n")                    ? "image/png"
           : begins("\xFF\xD8\xFF")                       ? "image/jpeg"
           : begins("GIF87a") || begins("GIF89a")         ? "image/gif"
           : begins("RIFF") && bytes.find("WEBP", 8) == 8 ? "image/webp"
                                                          : "";
}

std::string fileOf(Database& database, std::int64_t number, const std::string& link) {
    Statement row(database, "SELECT substr(bytes, 1, 12), length(bytes) FROM files WHERE instance = ?", number);
    if (!row.step()) {
        return "";
    }
    const std::string address = escaped(link + "&file=1");
    return "<h2>File</h2><p><a href=\"" + address + "\">" + std::to_string(row.integer(1)) + " bytes</a>" +
           (*pictureType(row.view(0)) == '\0' ? "" : "<p><img alt=\"The stored picture\" src=\"" + address + "\">");
}

std::string related(Database& database, const std::string& location, std::int64_t number) {
    Statement row(
        database,
        "SELECT r.number, r.schema || '.' || r.class, 'forward', i.schema || '.' || i.class, i.id"
        " FROM relationships r JOIN instances i ON i.number = r.target WHERE r.source = ?1"
        " UNION ALL SELECT r.number, r.schema || '.' || r.class, 'backward', i.schema || '.' || i.class, i.id"
        " FROM relationships r JOIN instances i ON i.number = r.source WHERE r.target = ?1 ORDER BY 1 LIMIT ?2",
        number, recordsShown);
    Table table{"Relationship", "Direction", "Class", "Instance"};
    bool isEmpty = true;
    for (; row.step(); isEmpty = false) {
        table.add(
            {escaped(row.view(1)), row.text(2), escaped(row.view(3)), toInstance(location, row.text(4), row.text(4))});
    }
    return isEmpty ? "" : "<h2>Relationships</h2>" + table.html();
}

std::string records(Database& database, const std::string& location, const std::string& id) {
    std::string html;
    Statement kind(
        database,
        "SELECT schema, class, count(*) FROM instances WHERE location = ? AND owner = ? AND class <> 'AuditRecord'"
        " GROUP BY schema, class ORDER BY schema, class",
        location, id);
    while (kind.step()) {
        Statement row(
            database,
            "SELECT id, properties FROM instances WHERE location = ? AND owner = ? AND schema = ? AND class = ?"
            " ORDER BY number LIMIT ?",
            location, id, kind.text(0), kind.text(1), recordsShown);
        html += "<h2>" + escaped(kind.view(1)) + " (" + std::to_string(kind.integer(2)) + ")</h2>" +
                instanceRows(row, location);
    }
    return html;
}

std::string history(Database& database, const std::string& location, const std::string& id) {
    Statement row(database,
                  "SELECT properties FROM instances WHERE location = ? AND owner = ? AND class = 'AuditRecord'"
                  " ORDER BY number DESC LIMIT ?",
                  location, id, recordsShown);
    Table table{"When", "Who", "What", "Changes"};
    bool isEmpty = true;
    for (; row.step(); isEmpty = false) {
        const Json record = Json::parse(row.view(0));
        std::string changes;
        for (const Json& change : record.value("Values", Json::array())) {
            changes += (changes.empty() ? "" : "\n") + shown(change.value("Property", ""), shortText) + ": " +
                       shown(change.value("OldValue", ""), shortText) + " → " +
                       shown(change.value("NewValue", ""), shortText);
        }
        table.add({shown(record.value("RecordDate", ""), shortText), shown(record.value("RecordBy", ""), shortText),
                   shown(record.value("Action", ""), shortText), changes});
    }
    return isEmpty ? "" : "<h2>History</h2>" + table.html();
}

std::string instance(Database& database, const std::string& location, const std::string& id) {
    Statement row(database,
                  "SELECT number, schema, class, etag, owner, properties FROM instances WHERE location = ? AND id = ?",
                  location, id);
    if (!row.step()) {
        // Its history may have outlived it.
        const std::string kept = history(database, location, id);
        if (kept.empty()) {
            throw ServiceError(404, "There is no instance \"" + id + "\" in \"" + location + "\"");
        }
        return document(id, toLocation(location), "<p>This instance was deleted." + kept);
    }
    Table table{"Property", "Value"};
    table.add({"<span class=soft>Class</span>", escaped(row.view(1)) + "." + escaped(row.view(2))});
    table.add({"<span class=soft>eTag</span>", escaped(row.view(3))});
    if (!row.view(4).empty()) {
        table.add({"<span class=soft>Owner</span>", toInstance(location, row.text(4), row.text(4))});
    }
    const Json properties = Json::parse(row.view(5));
    for (const auto& [name, value] : properties.items()) {
        table.add({escaped(name), shown(value, 100'000)});
    }
    const std::string self = "?location=" + encoded(location) + "&id=" + encoded(id);
    return document(id, toLocation(location) + toClass(location, row.text(1), row.text(2)),
                    table.html() + fileOf(database, row.integer(0), self) +
                        related(database, location, row.integer(0)) + records(database, location, id) +
                        history(database, location, id));
}

Reply file(Database& database, const std::string& location, const std::string& id) {
    Statement row(database, "SELECT bytes FROM files JOIN instances ON number = instance WHERE location = ? AND id = ?",
                  location, id);
    if (!row.step()) {
        throw ServiceError(404, "There is no such file");
    }
    const char* type = pictureType(row.view(0));
    Reply reply(200, row.text(0), *type == '\0' ? "application/octet-stream" : type);
    reply.headers.emplace_back("Content-Disposition", *type == '\0' ? "attachment" : "inline");
    return reply;
}

std::string timeOf(std::chrono::system_clock::time_point time) {
    const std::time_t seconds = std::chrono::system_clock::to_time_t(time);
    const auto milliseconds =
        std::chrono::duration_cast<std::chrono::milliseconds>(time.time_since_epoch()).count() % 1000;
    std::tm parts{};
#ifdef _WIN32
    gmtime_s(&parts, &seconds);
#else
    gmtime_r(&seconds, &parts);
#endif
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%02d:%02d:%02d.%03d", parts.tm_hour, parts.tm_min, parts.tm_sec,
                  static_cast<int>(milliseconds));
    return text.data();
}

std::string describe(const Fault& fault) {
    std::string text = (fault.operation.empty() ? "all operations" : fault.operation) + " of " +
                       (fault.className.empty() ? "all classes" : fault.className) + ":";
    const auto note = [&](bool isSo, const std::string& what) { text += isSo ? " " + what : ""; };
    note(fault.delay.count() != 0, std::to_string(fault.delay.count()) + " ms late");
    note(fault.status != 0, "status " + std::to_string(fault.status));
    note(fault.isStall, "no answer");
    note(fault.isReset, "reset");
    note(fault.truncateAfter.has_value(), "cut after " + std::to_string(fault.truncateAfter.value_or(0)) + " bytes");
    note(fault.dripBytes != 0, "dripping");
    note(fault.isAfterEffect, "after the effect");
    return text;
}

std::string requests(Service& service) {
    std::string html;
    const std::vector<FaultState> faults = service.faults().all();
    if (!faults.empty()) {
        Table table{"Fault", "What", "For", "Met", "Left"};
        for (const FaultState& state : faults) {
            table.add({std::to_string(state.id), escaped(describe(state.fault)), std::to_string(state.seen),
                       std::to_string(state.met), state.left < 0 ? "all" : std::to_string(state.left)});
        }
        html += table.html() + "<h2>Served</h2>";
    }
    std::vector<LoggedRequest> all = service.log().all();
    Table table{"#", "Status", "Request", "Time (UTC)", "Bytes in / out", "Effect", "Fault"};
    for (std::size_t i = 0; i < std::min(all.size(), requestsShown); ++i) {
        const LoggedRequest& one = all[all.size() - 1 - i];
        const std::string status = one.status == 0 ? "none" : std::to_string(one.status);
        table.add({std::to_string(one.number),
                   one.status == 0 || one.status >= 400 ? "<span class=bad>" + status + "</span>" : status,
                   "<span class=long>" +
                       escaped(one.method + " " + one.path + (one.query.empty() ? "" : "?" + one.query)) + "</span>",
                   "<span class=whole>" + timeOf(one.time) + "</span>",
                   std::to_string(one.requestBytes) + " / " + std::to_string(one.answerBytes),
                   one.tookEffect ? "<span class=whole>changed</span>" : "",
                   one.fault == 0 ? "" : "fault " + std::to_string(one.fault)},
                  one.fault == 0 ? "" : "fault");
    }
    return document("Requests", "", html + (all.empty() ? "<p>None yet." : table.html()),
                    "<meta http-equiv=refresh content=2>");
}

Reply answerPage(Service& service, const HttpRequest& request) {
    if (request.method != "GET" && request.method != "HEAD") {
        throw ServiceError(405, "Pages are only read", "GET, HEAD");
    }
    std::map<std::string, std::string> options;
    for (auto& [name, value] : parseOptions(request.query())) {
        options.emplace(name, value);
    }
    const std::string type = "text/html; charset=utf-8";
    if (options.count("requests") != 0) {
        return {200, requests(service), type};
    }
    return service.store().read([&](Database& database) -> Reply {
        const std::string& location = options["location"];
        if (location.empty()) {
            return {200, locations(database), type};
        }
        if (options.count("id") != 0) {
            return options.count("file") != 0 ? file(database, location, options["id"])
                                              : Reply(200, instance(database, location, options["id"]), type);
        }
        if (options.count("class") != 0) {
            const std::string& page = options["page"];
            std::int64_t number = 1;
            std::from_chars(page.data(), page.data() + page.size(), number);
            return {200, instances(database, location, options["class"], number), type};
        }
        return {200, classes(database, location), type};
    });
}

} // namespace

Reply page(Service& service, const HttpRequest& request) {
    Reply reply = answerPage(service, request);
    reply.headers.insert(reply.headers.end(),
                         {{"Content-Security-Policy",
                           "default-src 'none'; style-src 'unsafe-inline'; img-src 'self' data:; base-uri 'none';"
                           " form-action 'none'; frame-ancestors 'none'"},
                          {"X-Content-Type-Options", "nosniff"},
                          {"Referrer-Policy", "no-referrer"},
                          {"Cache-Control", "no-store"}});
    return reply;
}

} // namespace VarnelAPI::Forms::repository
