#include "Session.h"

#include "Exchange.h"
#include "Failures.h"
#include "Interrupt.h"
#include "Progress.h"

#include <VarnelAPI/Forms/Version.h>
#include <VarnelAPI/Forms/api/ApiException.h>
#include <VarnelAPI/Forms/kit/Errors.h>

#include <chrono>
#include <cmath>
#include <iostream>

namespace VarnelAPI::Forms::cli {
namespace {

/// Headers that the caller gave may be anybody's secret.
std::set<std::string> namesOf(const std::map<std::string, std::string>& headers) {
    std::set<std::string> names;
    for (const auto& [name, value] : headers) {
        std::string small;
        for (const char c : name) {
            small += c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
        }
        names.insert(small);
    }
    return names;
}

std::chrono::milliseconds milliseconds(double seconds) {
    return std::chrono::milliseconds(std::llround(seconds * 1000));
}

ExitCode codeOf(const kit::Failure& failure) {
    switch (failure.status()) {
    case 401:
    case 403:
        return notAllowed;
    case 404:
    case 410:
        return notFound;
    case 409:
    case 412:
        return conflict;
    default:
        return failure.isTemporary() ? temporary : otherFailure;
    }
}

/// What to try next.
std::string advice(ExitCode code, const kit::Failure& failure, const Options& options) {
    switch (code) {
    case notAllowed:
        return failure.status() == 401 ? "give a token that is good, by --token-file, VARNEL_FORMS_TOKEN or a profile"
                                       : "ask somebody who administers the project for the right to do it";
    case notFound:
        return options.family.empty() ? "check the path"
                                      : "see what there is with \"varnel-forms list " + options.family +
                                            "\", and check --url and --location";
    case conflict:
        return options.id.empty() ? "read it again, and repeat the command"
                                  : "somebody else changed it meanwhile: look at it with \"varnel-forms get " +
                                        options.family + " " + options.id + "\", and repeat the command";
    case temporary:
        return failure.trouble() == kit::Trouble::refused    ? "check --url, and whether the service runs"
               : failure.trouble() == kit::Trouble::timedOut ? "try again later, or with a longer --timeout"
                                                             : "try again later, or with more --retries";
    default:
        return failure.trouble() == kit::Trouble::noSuchHost ? "check --url"
               : failure.trouble() == kit::Trouble::certificate
                   ? "check --url, and which certificates this system trusts"
               : failure.status() == 400 ? "check what you gave; --dry-run shows what is sent"
                                         : "-v shows what was sent and answered";
    }
}

} // namespace

void say(const std::string& text) {
    Progress::takeAway();
    std::cerr << text << std::endl;
}

Session::Session(const Options& options) : m_Settings(settings(options.access, options.profile, options.headers)) {
    const auto configuration = std::make_shared<api::ApiConfiguration>();
    configuration->setBaseUrl(m_Settings.url);
    configuration->setUserAgent("varnel-forms/" VARNEL_FORMS_VERSION_TEXT);
    auto& headers = configuration->getDefaultHeaders();
    headers = m_Settings.headers;
    if (!m_Settings.token.empty()) {
        headers["Authorization"] = "Bearer " + m_Settings.token;
    }
    if (options.isDry || options.isVerbose) {
        configuration->setTransport(std::make_shared<Exchange>(
            [isDry = options.isDry](const std::string& text) { (isDry ? std::cout : std::cerr) << text << std::flush; },
            namesOf(m_Settings.headers), options.isDry));
    }
    if (options.isVerbose && !m_Settings.withheld.empty()) {
        say("* " + m_Settings.withheld);
    }
    transport::CallOptions wishes;
    wishes.cancelOn(Interrupt::token());
    if (options.timeout > 0) {
        wishes.deadline(milliseconds(options.timeout));
        configuration->getHttpConfig().set_timeout(milliseconds(options.timeout));
    }
    if (!options.isDry) {
        transport::RetryPolicy policy;
        policy.attempts = options.retries + 1;
        wishes.retry(policy);
    }
    m_Client = std::make_shared<api::ApiClient>(configuration)->with(wishes);
}

Place Session::place() const {
    if (m_Settings.location.empty()) {
        throw Usage("nothing says which project: give --location, VARNEL_FORMS_LOCATION, or a profile with one");
    }
    return {segment(m_Settings.location, "the location"), {}, {}};
}

const std::map<std::string, std::string>& Session::headers() const {
    return m_Client->getConfiguration()->getDefaultHeaders();
}

std::vector<std::string> split(const std::string& list) {
    std::vector<std::string> parts;
    for (std::size_t begin = 0, end = 0; begin < list.size(); begin = end + 1) {
        end = std::min(list.find(',', begin), list.size());
        if (end > begin) {
            parts.push_back(list.substr(begin, end - begin));
        }
    }
    return parts;
}

View viewOf(const Options& options, const Terminal& terminal, const std::string& defaultColumns) {
    View view;
    view.format = options.output == "table"                                                 ? Format::table
                  : options.output == "csv"                                                 ? Format::csv
                  : options.output == "jsonl"                                               ? Format::jsonl
                  : options.output == "json" || !terminal.isTerminal || !options.jq.empty() ? Format::json
                                                                                            : Format::table;
    view.columns = options.columns;
    view.defaultColumns = split(defaultColumns);
    view.addedColumns = options.addedColumns;
    if (!options.jq.empty()) {
        if (view.format == Format::table || view.format == Format::csv) {
            throw Usage("--jq goes with -o json and -o jsonl");
        }
        view.jq = std::make_shared<Jq>(options.jq);
    }
    return view;
}

std::string segment(const std::string& text, const std::string& what) {
    if (text.empty()) {
        throw Usage(what + " is empty");
    }
    if (text == "." || text == "..") {
        throw Usage(what + " can't be \"" + text + "\", which would lead elsewhere");
    }
    return web::uri::encode_data_string(text);
}

int explain(const std::exception_ptr& error, const Options& options) {
    if (Interrupt::exitCode() != 0) {
        Progress::takeAway();
        return Interrupt::exitCode();
    }
    const auto complain = [](const std::string& text) { say("varnel-forms: " + harmless(text) + "."); };
    try {
        std::rethrow_exception(error);
    } catch (const NothingSent&) {
        return done;
    } catch (const ReaderGone&) {
        return done;
    } catch (const Usage& usage) {
        complain(usage.what());
        return wrongUsage;
    } catch (const Told& failure) {
        complain(failure.what());
        return otherFailure;
    } catch (const web::uri_exception& wrong) {
        complain(options.attempt + " is not possible: " + wrong.what());
        return wrongUsage;
    } catch (const std::invalid_argument& wrong) {
        complain(options.attempt + " is not possible: " + wrong.what());
        return wrongUsage;
    } catch (const web::http::http_exception&) {
        // As below.
    } catch (const std::system_error& system) {
        complain(options.attempt + " failed: " + system.what());
        return otherFailure;
    } catch (...) {
        // As below.
    }
    const kit::Failure failure(error, options.attempt);
    const ExitCode code = codeOf(failure);
    std::string sentence = failure.sentence();
    // The service's message and what it says of this case, which may both be sentences.
    if (const std::size_t stop = sentence.find(". ("); stop != std::string::npos) {
        sentence.erase(stop, 1);
    }
    sentence.erase(sentence.find_last_not_of(". \r\n") + 1);
    complain(sentence + "; " + advice(code, failure, options));
    return code;
}

} // namespace VarnelAPI::Forms::cli
