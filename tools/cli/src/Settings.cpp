#include "Settings.h"

#include "Failures.h"
#include "Sink.h"
#include "Terminal.h"

#include <VarnelAPI/Forms/detail/HttpClientLibrary.h>

#include <boost/algorithm/string/predicate.hpp>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <sstream>

#include <sys/stat.h>
#include <unistd.h>

namespace VarnelAPI::Forms::cli {
namespace {

std::string environment(const char* name) {
    const char* value = std::getenv(name); // NOLINT(concurrency-mt-unsafe): there are no other threads yet
    return value == nullptr ? std::string() : value;
}

std::string configFile() {
    std::filesystem::path folder = environment("XDG_CONFIG_HOME");
    if (!folder.is_absolute()) {
        folder = std::filesystem::path(environment("HOME")) / ".config";
    }
    return folder / "varnel-forms" / "profiles.json";
}

std::string trimmed(const std::string& text) {
    const std::size_t begin = text.find_first_not_of(" \t\r\n");
    return begin == std::string::npos ? std::string()
                                      : text.substr(begin, text.find_last_not_of(" \t\r\n") - begin + 1);
}

void addHeader(std::map<std::string, std::string>& headers, const std::string& line) {
    const std::size_t colon = line.find(':');
    const std::string name = trimmed(line.substr(0, colon));
    if (colon == std::string::npos || name.empty()) {
        throw Usage("a header is \"Name: value\" or @FILE");
    }
    headers[name] = trimmed(line.substr(colon + 1));
}

/// What was given, and what stands in files that were.
std::map<std::string, std::string> headersOf(const std::vector<std::string>& given) {
    std::map<std::string, std::string> headers;
    for (const std::string& header : given) {
        if (header.empty() || header.front() != '@') {
            addHeader(headers, header);
            continue;
        }
        std::istringstream lines(readFile(header.substr(1)));
        for (std::string line; std::getline(lines, line);) {
            if (!trimmed(line).empty()) {
                addHeader(headers, line);
            }
        }
    }
    return headers;
}

std::string checkedToken(std::string token, const std::string& place) {
    if (token.empty() || std::any_of(token.begin(), token.end(), [](char c) { return c <= ' ' || c > '~'; })) {
        throw Usage(place + " holds no token: it is one word");
    }
    return token;
}

std::string tokenOf(const Access& access) {
    return access.tokenFile.empty() ? checkedToken(access.token, "VARNEL_FORMS_TOKEN or the profile")
                                    : readToken(access.tokenFile);
}

std::string textOf(const Json& profile, const char* name) {
    const Json* value = member(profile, name);
    return value == nullptr ? std::string() : cell(*value);
}

} // namespace

std::string readFile(const std::string& file) {
    std::ifstream stream(file, std::ios::binary);
    stream.peek(); // which a folder fails
    if (!stream.is_open() || stream.bad()) {
        throw Usage(file + " can't be read");
    }
    stream.clear(); // of the end of an empty one
    return {std::istreambuf_iterator<char>(stream), {}};
}

Profiles::Profiles() : m_File(configFile()) {
    m_Content = std::filesystem::exists(m_File) ? parse(readFile(m_File), m_File) : Json::object(true);
    if (!m_Content.is_object()) {
        throw Usage(m_File + " holds no profiles");
    }
    if (const Json* all = member(m_Content, "profiles"); all == nullptr || !all->is_object()) {
        m_Content["profiles"] = Json::object(true);
    }
}

std::vector<std::string> Profiles::names() const {
    std::vector<std::string> all;
    for (const auto& [name, profile] : m_Content.at("profiles").as_object()) {
        all.push_back(name);
    }
    return all;
}

std::string Profiles::current() const {
    return textOf(m_Content, "current");
}

Access Profiles::at(const std::string& name) const {
    const Json* profile = member(m_Content.at("profiles"), name);
    if (profile == nullptr) {
        throw Usage("there is no profile \"" + name + "\": \"varnel-forms profile list\" shows those there are");
    }
    return {textOf(*profile, "url"), textOf(*profile, "location"), textOf(*profile, "token"),
            textOf(*profile, "tokenFile")};
}

void Profiles::put(const std::string& name, const Access& access) {
    Json profile = Json::object(true);
    for (const auto& [key, value] : {std::pair("url", access.url), std::pair("location", access.location),
                                     std::pair("token", access.token), std::pair("tokenFile", access.tokenFile)}) {
        if (!value.empty()) {
            profile[key] = Json::string(value);
        }
    }
    m_Content["profiles"][name] = profile;
    if (current().empty()) {
        m_Content["current"] = Json::string(name);
    }
    save();
}

void Profiles::remove(const std::string& name) {
    at(name);
    m_Content["profiles"].erase(name);
    if (current() == name) {
        m_Content.erase("current");
    }
    save();
}

void Profiles::use(const std::string& name) {
    at(name);
    m_Content["current"] = Json::string(name);
    save();
}

void Profiles::save() const {
    const auto folder = std::filesystem::path(m_File).parent_path();
    std::filesystem::create_directories(folder.parent_path());
    if (mkdir(folder.c_str(), 0700) != 0 && errno != EEXIST) {
        throw std::system_error(errno, std::generic_category(), folder.string() + " can't be made");
    }
    const mode_t mask = umask(077);
    Sink file(m_File);
    umask(mask);
    file.write(toText(m_Content, true) + "\n");
    file.close();
}

std::string originOf(const std::string& url) {
    try {
        const web::uri uri(url);
        if (!uri.user_info().empty()) {
            throw Usage("a URL is no place for a name or a password: give them by --header @FILE");
        }
        const bool isSecure = uri.scheme() == "https";
        if ((isSecure || uri.scheme() == "http") && !uri.host().empty() && uri.fragment().empty()) {
            const int port = uri.port() > 0 ? uri.port() : isSecure ? 443 : 80;
            return uri.scheme() + "://" + uri.host() + ":" + std::to_string(port); // in lower case both
        }
    } catch (const web::uri_exception&) {
        // As below.
    }
    throw Usage("\"" + harmless(url) + "\" is no URL of a service, such as https://forms.example.com");
}

std::string readToken(const std::string& file) {
    std::string token;
    if (file != "-") {
        token = trimmed(readFile(file));
    } else if (isatty(STDIN_FILENO) != 0) {
        token = trimmed(ask("Token: ", true));
    } else {
        token = trimmed({std::istreambuf_iterator<char>(std::cin), {}});
    }
    return checkedToken(std::move(token), file == "-" ? "standard input" : file);
}

/// There is one authorization, a header of one's own or a token.
void preferHeader(Settings& settings, bool isTokenFlag) {
    const auto own = std::find_if(settings.headers.begin(), settings.headers.end(), [](const auto& header) {
        return boost::algorithm::iequals(header.first, "Authorization");
    });
    if (own != settings.headers.end() && !isTokenFlag) {
        settings.token.clear(); // A flag beats what is elsewhere.
        settings.withheld.clear();
    } else if (own != settings.headers.end()) {
        settings.headers.erase(own);
    }
}

Settings settings(const Access& flags, const std::string& profile, const std::vector<std::string>& headers) {
    const Access variables{
        environment("VARNEL_FORMS_URL"), environment("VARNEL_FORMS_LOCATION"), environment("VARNEL_FORMS_TOKEN"), {}};
    Access chosen;
    const std::string variable = environment("VARNEL_FORMS_PROFILE");
    if (const Profiles profiles; !profile.empty() || !variable.empty() || !profiles.current().empty()) {
        chosen = profiles.at(!profile.empty() ? profile : !variable.empty() ? variable : profiles.current());
    }
    Settings result;
    for (const Access* source : {&flags, &variables, &std::as_const(chosen)}) {
        result.url = result.url.empty() ? source->url : result.url;
        result.location = result.location.empty() ? source->location : result.location;
    }
    if (result.url.empty()) {
        throw Usage("nothing says where the service is: give --url, VARNEL_FORMS_URL, or a profile "
                    "(\"varnel-forms profile add NAME --url URL\")");
    }
    const std::string origin = originOf(result.url);
    for (const Access* source : {&flags, &variables, &std::as_const(chosen)}) {
        if (source->token.empty() && source->tokenFile.empty()) {
            continue;
        }
        if (source->url.empty() || originOf(source->url) == origin) {
            result.token = tokenOf(*source);
            result.withheld.clear();
            break;
        }
        result.withheld = "the token for " + originOf(source->url) + " is not sent to " + origin;
    }
    result.headers = headersOf(headers);
    preferHeader(result, !flags.tokenFile.empty());
    return result;
}

} // namespace VarnelAPI::Forms::cli
