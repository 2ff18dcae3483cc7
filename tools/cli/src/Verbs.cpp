#include "Verbs.h"

#include "Exchange.h"
#include "Failures.h"
#include "Families.h"
#include "Interrupt.h"
#include "Progress.h"
#include "Rows.h"
#include "Session.h"

#include <VarnelAPI/Forms/api/ApiException.h>
#include <VarnelAPI/Forms/detail/HttpClientLibrary.h>
#include <VarnelAPI/Forms/model/BinaryBody.h>
#include <VarnelAPI/Forms/model/StreamBody.h>

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <iterator>
#include <map>
#include <sstream>

#include <unistd.h>

namespace VarnelAPI::Forms::cli {
namespace {

constexpr const char* repositories = "/sv1.2/Repositories/Varnel.Forms--";

/// @throws Usage if the service offers no such thing for the family.
template <class Operation>
const Operation& offered(const Operation& operation, const Family& of, const char* verb) {
    if (!operation) {
        throw Usage("the service can't " + std::string(verb) + " " + of.name);
    }
    return operation;
}

std::string readAll(const std::string& file) {
    if (file == "-") {
        return {std::istreambuf_iterator<char>(std::cin), {}};
    }
    return readFile(file);
}

/// The class as it goes into a path.
const std::string& checkedClass(const std::string& name) {
    const bool isName = std::all_of(name.begin(), name.end(), [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
    });
    if (!isName) {
        throw Usage("a class is named by letters, digits and \"_\", not \"" + name + "\"");
    }
    return name;
}

/// Whether the options lead to what is within something: an owner, or where there are no owners, a class.
bool isWithin(const Options& options, const Family& of) {
    if (!options.owner.empty() && of.owner.empty()) {
        throw Usage(of.name + " belong to no instance: --of is not for them");
    }
    if (options.owner.empty() && !options.className.empty() && !of.owner.empty()) {
        throw Usage("--class is the class of the one that " + of.name + " belong to: say which, by --of ID");
    }
    return !options.owner.empty() || !options.className.empty();
}

Place within(Place place, const Options& options, const Family& of) {
    if (!of.owner.empty() && !options.owner.empty()) {
        // All classes of issues derive from it.
        place.className = options.className.empty() ? "BaseClass" : checkedClass(options.className);
        place.owner = segment(options.owner, "the id after --of");
    } else if (of.owner.empty()) {
        place.className = checkedClass(options.className);
    }
    return place;
}

/// "-_CreatedDate,Status" as the service writes it.
std::string orderOf(const std::string& text) {
    std::string order;
    for (const std::string& part : split(text)) {
        const bool isDescending = part.front() == '-';
        order += (order.empty() ? "" : ",") + part.substr(isDescending ? 1 : 0) + (isDescending ? " desc" : "");
    }
    return order;
}

NextPage pages(const Session& session, const Options& options, const Family& of, int top) {
    const auto option = [](const std::string& text) {
        return text.empty() ? api::TextOption() : api::TextOption(text);
    };
    ListQuery query;
    query.options.filter = option(options.filter);
    query.options.select = option(options.select);
    query.options.orderby = option(orderOf(options.order));
    query.options.filtersettings = option(options.filterSettings);
    query.skip = options.skip;
    query.top = top;
    if (isWithin(options, of)) {
        return offered(of.listWithin, of, "list a part of")(session.client(), within(session.place(), options, of),
                                                            query);
    }
    return of.list || !of.listWithin ? offered(of.list, of, "list")(session.client(), session.place(), query)
                                     : of.listWithin(session.client(), session.place(), query);
}

/// Calls `use` with one instance after the other, until it wants no more.
template <class Use>
void each(const NextPage& next, Use use) {
    for (auto page = next(); !page.empty(); page = next()) {
        for (const Json& instance : page) {
            if (!use(instance)) {
                return;
            }
        }
    }
}

std::int64_t totalOf(const std::vector<Json>& rows) {
    std::int64_t total = 0;
    for (const Json& row : rows) {
        const Json* count = member(row, "count");
        total += count != nullptr && count->is_number() ? count->as_number().to_int64() : 0;
    }
    return total;
}

/// What --file and --set give: {"className", "eTag", "properties"}, each if it is given.
Json contentOf(const Options& options) {
    Json given = Json::object(true);
    if (!options.file.empty()) {
        given = parse(readAll(options.file), options.file == "-" ? "standard input" : options.file);
        if (const Json* inner = member(given, "instance")) {
            given = Json(*inner);
        }
        if (!given.is_object()) {
            throw Usage("one instance is wanted, as a JSON object");
        }
    }
    const Json* inner = member(given, "properties");
    Json properties = options.file.empty() ? Json::object(true) : inner != nullptr ? *inner : given;
    if (!properties.is_object()) {
        throw Usage("the properties are no JSON object");
    }
    for (const std::string& assignment : options.set) {
        const std::size_t equals = assignment.find('=');
        if (equals == std::string::npos || equals == 0 || assignment[0] == ':') {
            throw Usage("--set takes Name=text or Name:=JSON, not \"" + assignment + "\"");
        }
        const bool isJson = assignment[equals - 1] == ':';
        const std::string value = assignment.substr(equals + 1);
        const std::string name = assignment.substr(0, isJson ? equals - 1 : equals);
        properties[name] = isJson ? parse(value, "what " + name + " is set to") : Json::string(value);
    }
    std::vector<std::pair<std::string, Json>> members;
    for (const char* name : {"className", "eTag"}) {
        if (const Json* value = inner == nullptr ? nullptr : member(given, name)) {
            members.emplace_back(name, *value);
        }
    }
    members.emplace_back("properties", properties);
    return object(std::move(members));
}

const Json& propertiesOf(const Json& instance) {
    static const Json none = Json::object();
    const Json* properties = member(instance, "properties");
    return properties == nullptr ? none : *properties;
}

std::string idOf(const Json& instance) {
    return cell(column(instance, "id"));
}

/// The result of a change: on a terminal a line tells enough, unless more is asked for.
void show(const Options& options, const Json& instance) {
    Sink sink;
    if (!sink.terminal().isTerminal || !options.output.empty() || !options.jq.empty() || !options.columns.empty()) {
        Rows(sink, viewOf(options, sink.terminal())).only(instance);
        sink.close();
    }
}

/// Says which properties differ.
void sayChanges(const Json& before, const Json& after) {
    const auto tell = [](const std::string& name, const Json& from, const Json& to) {
        const auto text = [](const Json& value) { return value.is_null() ? "(nothing)" : harmless(cell(value)); };
        say("  " + harmless(name) + ": " + text(from) + " -> " + text(to));
    };
    for (const auto& [name, value] : propertiesOf(after).as_object()) {
        const Json* old = member(propertiesOf(before), name);
        if (old == nullptr || toText(*old) != toText(value)) {
            tell(name, old == nullptr ? Json::null() : *old, value);
        }
    }
    for (const auto& [name, value] : propertiesOf(before).as_object()) {
        if (member(propertiesOf(after), name) == nullptr) {
            tell(name, value, Json::null());
        }
    }
}

Json createdBy(const Session& session, const Options& options, const Family& of, Json content) {
    if (of.owner.empty() && !options.className.empty()) {
        content["className"] = Json::string(checkedClass(options.className));
    }
    if (!options.owner.empty() || (!of.create && of.createWithin)) {
        isWithin(options, of);
        return offered(of.createWithin, of, "relate")(session.client(), within(session.place(), options, of), content);
    }
    return offered(of.create, of, "create")(session.client(), session.place(), content);
}

/// Shared with the call, whose last word may come after its end.
transport::CallOptions withProgress(transport::Progress::Direction direction) {
    return transport::CallOptions().onProgress(
        [progress = std::make_shared<Progress>(), direction](const transport::Progress& now) {
            if (now.direction == direction) {
                progress->show(now.bytes, now.total);
            }
        });
}

/// Waits for the answer of `callApi` and its body.
/// @throws api::ApiException as operations do.
std::vector<unsigned char> bodyOf(web::http::http_response& response) {
    auto bytes = response.extract_vector().get();
    if (response.status_code() >= 400) {
        std::map<utility::string_t, utility::string_t> headers(response.headers().begin(), response.headers().end());
        throw api::ApiException(response.status_code(), response.reason_phrase(), headers,
                                std::make_shared<std::istringstream>(std::string(bytes.begin(), bytes.end())));
    }
    return bytes;
}

/// What the service answered.
/// @throws std::runtime_error if it is not JSON.
Json answerOf(const std::string& text) {
    try {
        return parse(text, "the answer");
    } catch (const Usage& wrong) {
        throw std::runtime_error(wrong.what()); // The user did nothing wrong.
    }
}

/// A name for a file from a text of the service's, which must not lead anywhere else.
std::string fileName(const std::string& text, const std::string& otherwise) {
    const std::string name = std::filesystem::path(harmless(text)).filename().string();
    return name.empty() || name.front() == '.' ? otherwise : name;
}

} // namespace

void list(Options& options) {
    const Family& of = family(options.family);
    options.attempt = "Listing " + of.name;
    if (options.isAll && options.top > 0) {
        throw Usage("--all and --top exclude each other");
    }
    constexpr int usual = 50;
    Sink sink;
    Rows rows(sink, viewOf(options, sink.terminal(), of.columns));
    const Session session(options);
    const bool isCut = !options.isAll && options.top == 0;
    int left = options.isAll ? -1 : options.top > 0 ? options.top : usual;
    bool isMore = false;
    const int top = options.isAll ? 0 : left + (isCut ? 1 : 0);
    Progress progress(of.name);
    std::uint64_t read = 0;
    each(pages(session, options, of, top), [&](const Json& instance) {
        isMore = left == 0;
        if (!isMore) {
            rows.add(instance);
            --left;
            if (!sink.terminal().isTerminal) {
                progress.show(++read, {});
            }
        }
        return !isMore;
    });
    rows.end();
    sink.close();
    if (isMore) {
        say("These are the first " + std::to_string(usual) + ": --all lists all of them, --top N more.");
    }
}

void get(Options& options) {
    const Family& of = family(options.family);
    options.attempt = "Reading " + of.one + " " + options.id;
    Sink sink;
    Rows rows(sink, viewOf(options, sink.terminal()));
    const Session session(options);
    rows.only(offered(of.get, of,
                      "read single")(session.client(), session.place(), segment(options.id, "the id"),
                                     options.select.empty() ? api::TextOption() : api::TextOption(options.select)));
    sink.close();
}

void count(Options& options) {
    const Family& of = family(options.family);
    options.attempt = "Counting " + of.name;
    Sink sink;
    const View view = viewOf(options, sink.terminal(), "class,count");
    const Session session(options);
    std::vector<Json> rows;
    const auto rowOf = [](const Json& schema, const Json& name, const Json& number) {
        return object({{"schemaName", schema}, {"className", name}, {"count", number}});
    };
    if (of.count && options.filter.empty() && options.filterSettings.empty() && options.owner.empty()) {
        for (const Json& row : of.count(session.client(), session.place())) {
            if (options.className.empty() || cell(column(row, "ECClassName")) == options.className) {
                rows.push_back(rowOf(column(row, "ECSchemaName"), column(row, "ECClassName"), column(row, "count")));
            }
        }
    } else {
        std::map<std::pair<std::string, std::string>, std::int64_t> counts;
        each(pages(session, options, of, 0), [&](const Json& instance) {
            ++counts[{cell(column(instance, "schema")), cell(column(instance, "class"))}];
            return true;
        });
        for (const auto& [type, number] : counts) {
            rows.push_back(rowOf(Json::string(type.first), Json::string(type.second), Json::number(number)));
        }
    }
    const Json total = Json::number(totalOf(rows));
    Rows out(sink, view);
    if (view.format == Format::json) {
        out.only(object({{"total", total}, {"classes", Json::array(rows)}}));
    } else {
        if (view.format == Format::table && rows.size() != 1) {
            rows.push_back(rowOf(Json::null(), Json::string("total"), total));
        }
        for (const Json& row : rows) {
            out.add(row);
        }
        out.end();
    }
    sink.close();
}

void create(Options& options) {
    const Family& of = family(options.family);
    options.attempt = "Creating the " + of.one;
    if (options.set.empty() && options.file.empty()) {
        throw Usage("nothing says what the " + of.one + " is to be: give --set Name=value or --file FILE");
    }
    const Session session(options);
    const Json stored = createdBy(session, options, of, contentOf(options));
    say("Created " + of.one + " " + harmless(idOf(stored)) + ".");
    show(options, stored);
}

void update(Options& options) {
    const Family& of = family(options.family);
    options.attempt = "Updating " + of.one + " " + options.id;
    if (options.set.empty() && options.file.empty()) {
        throw Usage("nothing says what is to change: give --set Name=value or --file FILE");
    }
    const Session session(options);
    const auto& send = offered(of.update, of, "update");
    const std::string id = segment(options.id, "the id");
    Json change = contentOf(options);
    Json before = Json::object();
    if (of.get) {
        try {
            before = of.get(session.client(), session.place(), id, {});
        } catch (const NothingSent&) {
            std::cout << '\n';
            before["eTag"] = Json::string("(that of the answer)");
        }
    }
    // Only what differs is sent, so that what others do elsewhere in the instance stays.
    Json properties = Json::object(true);
    for (const auto& [name, value] : propertiesOf(change).as_object()) {
        const Json* now = member(propertiesOf(before), name);
        const bool isSame = now != nullptr && lost(value, *now).empty() && lost(*now, value).empty();
        if (now == nullptr ? !value.is_null() || options.isDry || !of.get : !isSame) {
            properties[name] = value;
        }
    }
    if (properties.size() == 0) {
        say("Nothing to change: " + of.one + " " + options.id + " is like that already.");
        show(options, before);
        return;
    }
    change["properties"] = properties;
    if (member(change, "eTag") == nullptr && member(before, "eTag") != nullptr) {
        change["eTag"] = *member(before, "eTag");
    }
    if (const Json* type = member(before, "className")) {
        change["className"] = *type;
    }
    const Json after = send(session.client(), session.place(), id, change);
    say("Updated " + of.one + " " + harmless(options.id) + ":");
    sayChanges(before, after);
    show(options, after);
}

void remove(Options& options) {
    const Family& of = family(options.family);
    options.attempt = "Deleting " + of.one + " " + options.id;
    const Session session(options);
    const auto& send = offered(of.remove, of, "delete");
    const std::string id = segment(options.id, "the id");
    if (!options.isYes && !options.isDry) {
        if (isatty(STDIN_FILENO) == 0 || isatty(STDERR_FILENO) == 0) {
            throw Usage("there is no terminal to ask at: give --yes to delete " + of.one + " " + options.id);
        }
        const std::string answer = ask("Delete " + of.one + " " + harmless(options.id) + "? [y/N] ");
        if (answer != "y" && answer != "Y" && answer != "yes") {
            throw Told("nothing was deleted, since you did not say yes");
        }
    }
    send(session.client(), session.place(), id);
    say("Deleted " + of.one + " " + harmless(options.id) + ".");
}

void upload(Options& options) {
    const Family& of = family(options.family);
    const bool isNew = options.target.size() == 1;
    const std::string file = options.target.back();
    if (!of.takesFiles) {
        throw Usage("the service takes no files of " + of.name);
    }
    if (!isNew && !options.owner.empty()) {
        throw Usage("--of is for a new " + of.one + ": leave out its id");
    }
    if (!isNew && !options.set.empty()) {
        throw Usage("--set is for a new " + of.one + ": leave out its id, or change it by \"varnel-forms update\"");
    }
    options.attempt = "Uploading " + file;
    const Session session(options);
    std::shared_ptr<model::StreamBody> body;
    if (file == "-") {
        auto bytes = std::make_shared<std::istringstream>(readAll(file));
        const auto size = bytes->str().size();
        body = std::make_shared<model::StreamBody>(std::move(bytes), size);
    } else if (!std::filesystem::is_regular_file(file)) {
        throw Usage(file + " can't be read");
    } else {
        body = model::StreamBody::ofFile(file);
    }
    if (isNew) {
        if (file == "-" && options.set.empty()) {
            throw Usage("standard input has no name: give the new " + of.one + " one, by --set Name=NAME");
        }
        Json content = contentOf(options);
        if (member(propertiesOf(content), "Name") == nullptr) {
            content["properties"]["Name"] = Json::string(std::filesystem::path(file).filename().string());
        }
        try {
            options.id = idOf(createdBy(session, options, of, content));
        } catch (const NothingSent&) {
            std::cout << '\n';
            options.id = "NEW-ID";
        }
    } else {
        options.id = options.target.front();
    }
    options.attempt = "Uploading " + file + " to " + of.one + " " + options.id;
    auto headers = session.headers();
    headers["Accept"] = "application/json";
    auto response = session.client(withProgress(transport::Progress::Direction::Upload))
                        ->callApi(repositories + session.place().location + "/" + of.path + "/" +
                                      segment(options.id, "the id") + "/$file",
                                  "PUT", {}, body, headers, {}, {}, "application/octet-stream")
                        .get();
    const auto bytes = bodyOf(response);
    const Json changed = bytes.empty() ? Json::null() : answerOf(std::string(bytes.begin(), bytes.end()));
    say("Uploaded " + file + " to " + of.one + " " + harmless(options.id) + ".");
    const Json* inner = member(changed, "changedInstance");
    const Json* after = inner == nullptr ? nullptr : member(*inner, "instanceAfterChange");
    show(options, after == nullptr ? object({{"instanceId", Json::string(options.id)}}) : *after);
}

void download(Options& options) {
    const Family& of = family(options.family);
    options.attempt = "Downloading the file of " + of.one + " " + options.id;
    const Session session(options);
    const auto& fetch = offered(of.download, of, "give files of");
    const std::string id = segment(options.id, "the id");
    auto wishes = withProgress(transport::Progress::Direction::Download);
    if (options.to == "-") {
        const auto sink = std::make_shared<Sink>();
        wishes.saveTo([sink](const uint8_t* bytes, std::size_t size) {
            sink->write(std::string(reinterpret_cast<const char*>(bytes), size));
        });
        fetch(session.client(wishes), session.place(), id);
        sink->close();
        return;
    }
    std::filesystem::path path = options.to;
    if (path.empty() || std::filesystem::is_directory(path)) {
        Json instance;
        try {
            instance = of.get ? of.get(session.client(), session.place(), id, {}) : Json::null();
        } catch (const NothingSent&) {
            std::cout << '\n';
        }
        path /= fileName(cell(column(instance, "Name")), fileName(options.id, "download"));
    }
    if (std::filesystem::exists(path) && !options.isForced) {
        throw Usage(path.string() + " is there already: give another name by --to, or --force to replace it");
    }
    fetch(session.client(wishes.saveTo(path.string())), session.place(), id);
    say("Saved " + path.string() + ".");
}

void exportAll(Options& options) {
    const Family& of = family(options.family);
    options.attempt = "Exporting " + of.name;
    options.to = options.to == "-" ? "" : options.to;
    const std::string extension = std::filesystem::path(options.to).extension();
    if (options.output.empty() && !options.to.empty()) {
        if (extension != ".json" && extension != ".jsonl" && extension != ".csv") {
            throw Usage("the name of " + options.to + " does not say its form: give -o json, jsonl, csv or table");
        }
        options.output = extension.substr(1);
    }
    const auto sink = options.to.empty() ? std::make_unique<Sink>() : std::make_unique<Sink>(options.to);
    const Session session(options);
    Rows rows(*sink, viewOf(options, sink->terminal(), of.columns));
    std::uint64_t read = 0;
    {
        std::optional<std::uint64_t> total;
        if (Terminal::of(stderr).isTerminal && of.count && !options.isDry && options.filter.empty() &&
            options.filterSettings.empty() && !isWithin(options, of)) {
            const std::int64_t all = totalOf(of.count(session.client(), session.place()));
            total = static_cast<std::uint64_t>(std::max<std::int64_t>(all - options.skip, 0));
        }
        Progress progress(of.name);
        each(pages(session, options, of, 0), [&](const Json& instance) {
            rows.add(instance);
            progress.show(++read, total);
            return true;
        });
    }
    rows.end();
    sink->close();
    say("Exported " + std::to_string(read) + " " + (read == 1 ? of.one : of.name) +
        (options.to.empty() ? "." : " to " + options.to + "."));
}

void request(Options& options) {
    options.attempt = options.method + " " + options.path;
    Sink sink;
    Rows rows(sink, viewOf(options, sink.terminal()));
    const Session session(options);
    std::string path = options.path;
    const std::string mark = "{location}";
    if (path.empty() || path.front() != '/') {
        path = repositories + session.place().location + "/" + path;
    } else if (const std::size_t place = path.find(mark); place != std::string::npos) {
        path.replace(place, mark.size(), session.place().location);
    }
    std::map<std::string, std::string> query;
    for (const std::string& pair : options.query) {
        const std::size_t equals = pair.find('=');
        if (equals == std::string::npos) {
            throw Usage("--query takes name=value, not \"" + pair + "\"");
        }
        query[pair.substr(0, equals)] = pair.substr(equals + 1);
    }
    std::shared_ptr<model::IHttpBody> body;
    if (!options.file.empty() && !options.set.empty()) {
        throw Usage("the body is either --file or --set");
    }
    if (!options.file.empty() || !options.set.empty()) {
        const std::string bytes =
            options.set.empty() ? readAll(options.file) : toText(propertiesOf(contentOf(options)));
        body = std::make_shared<model::BinaryBody>(bytes.data(), bytes.size());
    }
    auto headers = session.headers();
    headers.emplace("Accept", "application/json");
    auto response =
        session.client()->callApi(path, options.method, query, body, headers, {}, {}, options.contentType).get();
    const auto bytes = bodyOf(response);
    if (options.isIncluding) {
        std::string text = std::to_string(response.status_code()) + " " + harmless(response.reason_phrase()) + "\n";
        for (const auto& [name, value] : response.headers()) {
            text += harmless(name) + ": " + harmless(value) + "\n";
        }
        sink.write(text + "\n");
    }
    const std::string text(bytes.begin(), bytes.end());
    if (isJson(response.headers().content_type()) && !text.empty()) {
        rows.only(answerOf(text));
    } else if (sink.terminal().isTerminal) {
        sink.write(harmless(text) + (text.empty() ? "" : "\n"));
    } else {
        sink.write(text);
    }
    sink.close();
}

void addProfile(Options& options) {
    Access access = options.access;
    options.attempt = "Adding the profile " + options.name;
    if (options.name.empty() || access.url.empty()) {
        throw Usage("a profile has a name and a --url");
    }
    originOf(access.url);
    if (access.tokenFile == "-") {
        access.token = readToken("-");
        access.tokenFile.clear();
    } else if (!access.tokenFile.empty()) {
        readToken(access.tokenFile);
        access.tokenFile = std::filesystem::absolute(access.tokenFile);
    }
    Profiles profiles;
    profiles.put(options.name, access);
    say("Profile " + options.name + (profiles.current() == options.name ? " is in use." : " was added."));
}

void listProfiles(Options& options) {
    const Profiles profiles;
    Sink sink;
    Rows rows(sink, viewOf(options, sink.terminal(), "name,current,url,location,token"));
    for (const std::string& name : profiles.names()) {
        const Access access = profiles.at(name);
        rows.add(object({{"name", Json::string(name)},
                         {"current", Json::boolean(name == profiles.current())},
                         {"url", Json::string(access.url)},
                         {"location", Json::string(access.location)},
                         {"token", Json::string(!access.tokenFile.empty() ? "in " + access.tokenFile
                                                : access.token.empty()    ? ""
                                                                          : "stored")}}));
    }
    rows.end();
    sink.close();
}

void removeProfile(Options& options) {
    Profiles().remove(options.name);
    say("Profile " + options.name + " is gone.");
}

void useProfile(Options& options) {
    Profiles().use(options.name);
    say("Profile " + options.name + " is in use.");
}

namespace {

template <class Find>
std::vector<std::string> live(Options& options, Find find) {
    options.timeout = 2;
    options.retries = 0;
    try {
        return find(Session(options), family(options.family.empty() ? "issues" : options.family));
    } catch (const std::exception&) {
        return {}; // A completion is no place to complain.
    }
}

} // namespace

std::vector<std::string> liveClasses(Options options) {
    return live(options, [](const Session& session, const Family& of) {
        std::vector<std::string> names;
        const Family& classed = of.owner.empty() ? of : family(of.owner);
        for (const Json& row : offered(classed.count, classed, "count")(session.client(), session.place())) {
            names.push_back(cell(column(row, "ECClassName")));
        }
        return names;
    });
}

std::vector<std::string> liveColumns(Options options, const std::vector<std::string>& identity) {
    return live(options, [&](const Session& session, const Family& of) {
        std::vector<std::string> names = identity;
        options.filter.clear();
        each(pages(session, options, of, 20), [&](const Json& instance) {
            for (const auto& [name, value] : propertiesOf(instance).as_object()) {
                if (std::find(names.begin(), names.end(), name) == names.end()) {
                    names.push_back(name);
                }
            }
            return true;
        });
        return names;
    });
}

} // namespace VarnelAPI::Forms::cli
