#include "CommandLine.h"

#include "Completion.h"
#include "Failures.h"
#include "Families.h"
#include "Interrupt.h"
#include "Manual.h"
#include "Session.h"
#include "Verbs.h"

#include <VarnelAPI/Forms/Version.h>

#include <CLI/CLI.hpp>

#include <algorithm>
#include <charconv>
#include <functional>
#include <iostream>
#include <limits>

namespace VarnelAPI::Forms::cli {
namespace {

using Setup = void (*)(CLI::App&, Options&);
using Run = void (*)(Options&);

/// One verb: what its help says, and what it does. Each example can be run on the repository of `varnel-forms demo`,
/// one after the other.
struct Verb {
    const char* name;
    const char* about;
    Setup setup;
    Run run;
    std::vector<const char*> examples;
};

/// Numbers within bounds. The checks of the library tell of all that a double can hold.
template <class Number>
CLI::Validator within(Number least, Number most, const char* kind) {
    return CLI::Validator(
        [=](const std::string& text) {
            Number value{};
            const char* const end = text.data() + text.size();
            const auto read = std::from_chars(text.data(), end, value);
            const bool isGood = read.ec == std::errc() && read.ptr == end && value >= least && value <= most;
            return isGood ? std::string() : "\"" + text + "\" is not " + kind;
        },
        "");
}
CLI::Validator wholeFrom(int least, const char* kind) {
    return within(least, std::numeric_limits<int>::max(), kind);
}

/// @name What several verbs take
/// @{
void family(CLI::App& app, Options& options) {
    app.add_option("FAMILY", options.family, "What it is about: issues, comments, attachments ...")->required();
}
void familyAndId(CLI::App& app, Options& options) {
    family(app, options);
    app.add_option("ID", options.id, "The id that the service gave the instance")->required();
}
void owner(CLI::App& app, Options& options) {
    app.add_option("--class", options.className, "The class of the issues, or of the issue after --of");
    app.add_option("--of", options.owner, "The issue that they belong to")
        ->check(
            CLI::Validator([](const std::string& id) { return id.empty() ? "the id is empty" : std::string(); }, ""));
}
void selection(CLI::App& app, Options& options) {
    owner(app, options);
    app.add_option("--filter", options.filter, "Only those for which it holds: \"Status eq 'Open'\"");
    app.add_option("--filter-settings", options.filterSettings, "What the service takes as api.filtersettings");
}
void order(CLI::App& app, Options& options) {
    app.add_option("--order", options.order, "Properties to sort by, separated by commas; with - for the other way");
    app.add_option("--select", options.select, "Properties to fetch, separated by commas");
    app.add_option("--skip", options.skip, "Leave out so many")->check(wholeFrom(0, "a whole number from 0"));
}
void content(CLI::App& app, Options& options, const char* set, const char* file) {
    app.add_option("--set", options.set, set)->allow_extra_args(false);
    app.add_option("-f,--file", options.file, file);
}
void properties(CLI::App& app, Options& options) {
    content(app, options, "A property: Name=text, or Name:=JSON for what is no text",
            "A file with the properties as JSON, as get writes them; - for standard input");
}
/// @}

const std::vector<Verb>& verbs() {
    static const std::vector<Verb> all{
        {"list",
         "List instances",
         [](CLI::App& app, Options& options) {
             family(app, options);
             selection(app, options);
             order(app, options);
             app.add_option("--top", options.top, "So many at most; 50 unless said otherwise")
                 ->check(wholeFrom(1, "a whole number from 1"));
             app.add_flag("--all", options.isAll, "All there are");
         },
         list,
         {"varnel-forms list issues",
          "varnel-forms list issues --class Defect --filter \"Status eq 'Open'\" --order -_CreatedDate --top 20",
          "varnel-forms list comments --of D-1", "varnel-forms list issues --all -o csv --add-column Floor",
          "varnel-forms list issues --all --jq '.[] | select(.properties.Floor > 2) | .instanceId'"}},
        {"get",
         "Show one instance",
         [](CLI::App& app, Options& options) {
             familyAndId(app, options);
             app.add_option("--select", options.select, "Properties to fetch, separated by commas");
         },
         get,
         {"varnel-forms get issues D-1", "varnel-forms get issues D-1 --jq .properties._Subject"}},
        {"count",
         "Count instances, for each class",
         [](CLI::App& app, Options& options) {
             family(app, options);
             selection(app, options);
         },
         count,
         {"varnel-forms count issues", "varnel-forms count issues --filter \"Status eq 'Open'\" --jq .total"}},
        {"create",
         "Create an instance",
         [](CLI::App& app, Options& options) {
             family(app, options);
             owner(app, options);
             properties(app, options);
         },
         create,
         {"varnel-forms create issues --class Defect --set _Subject='Door sticks' --set Status=Open --set Floor:=2",
          "varnel-forms create comments --of D-1 --set Text='Seen on Monday'",
          "varnel-forms get issues D-1 | varnel-forms create issues --class Defect --file -"}},
        {"update",
         "Change an instance, unless somebody else changed it meanwhile",
         [](CLI::App& app, Options& options) {
             familyAndId(app, options);
             properties(app, options);
         },
         update,
         {"varnel-forms update issues D-1 --set Status=Closed --set Floor:=4",
          "varnel-forms get issues D-2 | sed s/Open/Closed/ | varnel-forms update issues D-2 --file -"}},
        {"delete",
         "Delete an instance",
         [](CLI::App& app, Options& options) {
             familyAndId(app, options);
             app.add_flag("-y,--yes", options.isYes, "Don't ask");
         },
         remove,
         {"varnel-forms delete issues D-3 --yes"}},
        {"upload",
         "Send a file, to an instance or to a new one",
         [](CLI::App& app, Options& options) {
             family(app, options);
             app.add_option("TARGET", options.target,
                            "[ID] FILE: without an id a new instance is made; - for standard input")
                 ->expected(1, 2)
                 ->required();
             owner(app, options);
             app.add_option("--set", options.set, "A property of a new instance: Name=text or Name:=JSON")
                 ->allow_extra_args(false);
         },
         upload,
         {"date > today.txt; varnel-forms upload attachments today.txt --of D-1",
          "date | varnel-forms upload attachments A-1 -"}},
        {"download",
         "Fetch the file of an instance",
         [](CLI::App& app, Options& options) {
             familyAndId(app, options);
             app.add_option("--to", options.to, "The file or folder to save it to; - for standard output");
             app.add_flag("--force", options.isForced, "Replace a file that is there already");
         },
         download,
         {"varnel-forms download attachments A-2", "varnel-forms download attachments A-2 --to - | wc -c"}},
        {"export",
         "Write all instances to a file",
         [](CLI::App& app, Options& options) {
             family(app, options);
             selection(app, options);
             order(app, options);
             app.add_option("--to", options.to, "The file, whose name says the form: .json, .jsonl or .csv");
         },
         exportAll,
         {"varnel-forms export issues --to issues.csv", "varnel-forms export comments -o jsonl | head -n 2"}},
        {"api",
         "Send any request, for what no family has",
         [](CLI::App& app, Options& options) {
             app.add_option("METHOD", options.method, "GET, POST, PUT, DELETE ...")->required();
             app.add_option("PATH", options.path,
                            "From / on, where {location} stands for the project; else within the project")
                 ->required();
             app.add_option("--query", options.query, "A query option: name=value")->allow_extra_args(false);
             content(app, options, "A member of a JSON object that is the body: Name=text, or Name:=JSON",
                     "A file that is the body, as it is; - for standard input");
             app.add_option("--content-type", options.contentType, "What the body is")->default_val("application/json");
             app.add_flag("-i,--include", options.isIncluding, "Show status and headers, too");
         },
         request,
         {"varnel-forms api GET 'DynamicSchema/Defect/$count'",
          "varnel-forms api GET DynamicSchema/Defect --query '$top=1' --jq .instances[].instanceId"}},
        {"demo",
         "Start a local repository with a small project to try things on",
         [](CLI::App& app, Options& options) {
             app.add_option("--port", options.port, "Port to listen on; 0 takes any free one")
                 ->check(CLI::Range(0, 65535));
         },
         demo,
         {}},
    };
    return all;
}

/// What is under `profile`.
const std::vector<Verb>& profileVerbs() {
    static const Setup name = [](CLI::App& app, Options& options) {
        app.add_option("NAME", options.name, "What it is called")->required();
    };
    static const std::vector<Verb> all{
        {"add",
         "Keep --url, --location and --token-file under a name",
         name,
         addProfile,
         {"varnel-forms profile add site --url https://forms.example.com --location tower"}},
        {"list", "List the profiles", [](CLI::App&, Options&) {}, listProfiles, {"varnel-forms profile list"}},
        {"use", "Use a profile unless another is asked for", name, useProfile, {"varnel-forms profile use site"}},
        {"remove", "Forget a profile", name, removeProfile, {"varnel-forms profile remove site"}},
    };
    return all;
}

void addCommonOptions(CLI::App& app, Options& options) {
    const char* where = "Where and who";
    app.add_option("--url", options.access.url, "Where the service is (VARNEL_FORMS_URL)")->group(where);
    app.add_option("--location", options.access.location, "The project (VARNEL_FORMS_LOCATION)")->group(where);
    app.add_option(
           "--token-file", options.access.tokenFile,
           "A file with the bearer token, - to read it from standard input (VARNEL_FORMS_TOKEN holds the token itself)")
        ->group(where);
    app.add_option("--header", options.headers,
                   "A header of all requests, \"Name: value\", or @FILE for a file of them")
        ->allow_extra_args(false)
        ->group(where);
    app.add_option("--profile", options.profile, "The profile to use (VARNEL_FORMS_PROFILE)")->group(where);
    const char* output = "Output";
    app.add_option("-o,--output", options.output, "table (on a terminal), json (elsewhere), jsonl or csv")
        ->check(CLI::IsMember({"table", "json", "jsonl", "csv"}))
        ->group(output);
    app.add_option("--columns", options.columns, "What to show, separated by commas: id, class, properties, a.b")
        ->delimiter(',')
        ->allow_extra_args(false)
        ->group(output);
    app.add_option("--add-column", options.addedColumns, "A column more than usual")
        ->delimiter(',')
        ->allow_extra_args(false)
        ->group(output);
    app.add_option("--jq", options.jq, "What jq makes of the JSON")->group(output);
    const char* manners = "Manners";
    app.add_flag("-n,--dry-run", options.isDry, "Show the request and send nothing")->group(manners);
    app.add_flag("-v,--verbose", options.isVerbose, "Show requests and what was answered, without secrets")
        ->group(manners);
    app.add_option("--timeout", options.timeout, "Seconds for each call")
        ->check(within(0.001, 1e6, "a number of seconds from 0.001 to 1000000"))
        ->group(manners);
    app.add_option("--retries", options.retries,
                   "How often to try again what failed for a while; 2 unless said otherwise")
        ->check(CLI::Range(0, 100))
        ->group(manners);
}

/// Help that fits 80 columns.
class Help : public CLI::Formatter {
public:
    Help() { column_width(left); }
    std::string make_option_usage(const CLI::Option* option) const override {
        return option->get_required() ? option->get_name(true) : "[" + option->get_name(true) + "]";
    }
    std::string make_option_desc(const CLI::Option* option) const override {
        std::string text = Formatter::make_option_desc(option);
        for (std::size_t begin = 0; text.size() - begin > width - left;) {
            const std::size_t blank = text.rfind(' ', begin + width - left);
            if (blank == std::string::npos || blank <= begin) {
                break;
            }
            text[blank] = '\n';
            begin = blank + 1;
        }
        return text;
    }

private:
    static constexpr std::size_t width = 79;
    static constexpr std::size_t left = 28;
};

/// What stands below the help of a command.
std::string footer(const std::vector<const char*>& examples) {
    std::string text = examples.empty() ? "" : "\nExamples:\n";
    for (const char* example : examples) {
        text += "  " + std::string(example) + "\n";
    }
    return text + "\n\"varnel-forms --help\" lists the options of every command and the families.";
}

std::string familyText() {
    std::string text = "Families:\n";
    for (const Family& each : families()) {
        text += "  " + each.name + std::string(28 - each.name.size(), ' ') + each.about + "\n";
    }
    return text;
}

/// The whole command line. `chosen` becomes what the user wants done.
void build(CLI::App& app, Options& options, std::function<void()>& chosen) {
    app.formatter(std::make_shared<Help>());
    app.fallthrough();
    app.require_subcommand(1);
    app.set_version_flag("--version", "varnel-forms " VARNEL_FORMS_VERSION_TEXT);
    addCommonOptions(app, options);
    app.footer(
        "\nThe options above go with every command. \"varnel-forms COMMAND --help\" tells more, with examples.\n\n" +
        familyText() +
        "\nExit codes: 0 done, 1 other failure, 2 wrong usage, 3 not found, 4 not allowed, 5 temporary (try again), "
        "6 conflict.\n");
    const auto add = [&](CLI::App& below, const Verb& verb) {
        CLI::App* sub = below.add_subcommand(verb.name, verb.about);
        verb.setup(*sub, options);
        sub->footer(footer(verb.examples));
        sub->callback([&chosen, &options, run = verb.run] { chosen = [&options, run] { run(options); }; });
    };
    for (const Verb& verb : verbs()) {
        add(app, verb);
    }
    CLI::App* profile = app.add_subcommand("profile", "Keep where the service is and who asks");
    profile->require_subcommand(1);
    profile->footer(footer({}));
    for (const Verb& verb : profileVerbs()) {
        add(*profile, verb);
    }
    CLI::App* completion = app.add_subcommand("completion", "Write what completes commands in a shell");
    completion->add_option("SHELL", options.name, "bash, zsh or fish")
        ->required()
        ->check(CLI::IsMember({"bash", "zsh", "fish"}));
    completion->footer(
        footer({"varnel-forms completion bash", "varnel-forms completion zsh", "varnel-forms completion fish"}));
    completion->callback([&] { chosen = [&] { std::cout << completionScript(options.name); }; });
    app.add_subcommand("manual", "Write the manual page")->group("")->callback([&] {
        chosen = [&] { std::cout << manualPage(app); };
    });
}

} // namespace

int run(std::vector<std::string> arguments) {
    Options options;
    std::function<void()> chosen;
    CLI::App app("Issues, forms and all else that a forms and issues repository holds, from a terminal.",
                 "varnel-forms");
    build(app, options, chosen);
    // For the shells: what follows is a command line that is not whole yet.
    if (!arguments.empty() && arguments.front() == "complete") {
        for (const std::string& word : complete(app, options, {arguments.begin() + 1, arguments.end()})) {
            if (harmless(word) == word) { // or no shell would take it
                std::cout << word << '\n';
            }
        }
        return done;
    }
    try {
        std::reverse(arguments.begin(), arguments.end());
        app.parse(std::move(arguments));
    } catch (const CLI::Success& help) {
        return app.exit(help);
    } catch (const CLI::ParseError& wrong) {
        const auto unknown = app.remaining(true);
        const bool isNoCommand =
            dynamic_cast<const CLI::RequiredError*>(&wrong) != nullptr && !unknown.empty() && unknown.front()[0] != '-';
        say("varnel-forms: " +
            harmless(isNoCommand ? "there is no command \"" + unknown.front() + "\"" : std::string(wrong.what())) +
            "; \"varnel-forms --help\" tells what there is.");
        return wrongUsage;
    }
    try {
        chosen();
        return Interrupt::exitCode();
    } catch (...) {
        return explain(std::current_exception(), options);
    }
}

} // namespace VarnelAPI::Forms::cli
