#include "Completion.h"

#include "Families.h"
#include "Verbs.h"

#include <CLI/CLI.hpp>

#include <algorithm>

namespace VarnelAPI::Forms::cli {
namespace {

constexpr const char* bashScript = R"sh(_varnel_forms() {
    local IFS=$'\n' word="${COMP_WORDS[COMP_CWORD]}"
    COMPREPLY=($(compgen -W "$(varnel-forms complete "${COMP_WORDS[@]:1:COMP_CWORD}" 2>/dev/null)" -- "$word"))
    [[ ${COMPREPLY[0]} == *, ]] && compopt -o nospace
}
complete -o default -F _varnel_forms varnel-forms
)sh";

constexpr const char* zshScript = R"sh(#compdef varnel-forms
_varnel_forms() {
    local -a candidates
    candidates=(${(f)"$(varnel-forms complete "${(@)words[2,CURRENT]}" 2>/dev/null)"})
    if (( ${#candidates} )); then
        compadd -a candidates
    else
        _files
    fi
}
compdef _varnel_forms varnel-forms
)sh";

constexpr const char* fishScript = R"sh(function __varnel_forms
    set -l words (commandline -opc) (commandline -ct)
    varnel-forms complete $words[2..-1] 2>/dev/null
end
complete -c varnel-forms -a '(__varnel_forms)'
)sh";

using Names = std::vector<std::string>;

const CLI::Option* optionOf(const CLI::App& app, const std::string& word) {
    return word.size() > 1 && word.front() == '-' ? app.get_option_no_throw(word.substr(0, word.find('='))) : nullptr;
}

bool takesValue(const CLI::Option& option) {
    return option.get_items_expected_max() > 0;
}

void addOptions(const CLI::App& app, Names& names) {
    for (const CLI::Option* option : app.get_options()) {
        for (const std::string& name : option->get_lnames()) {
            if (std::find(names.begin(), names.end(), "--" + name) == names.end()) {
                names.push_back("--" + name);
            }
        }
    }
}

Names commandsOf(const CLI::App& app) {
    Names names;
    for (const CLI::App* sub : app.get_subcommands([](const CLI::App*) { return true; })) {
        if (!sub->get_group().empty()) {
            names.push_back(sub->get_name());
        }
    }
    return names;
}

/// The names after what is given of a list already.
Names listed(const std::string& word, Names names) {
    const std::string begin = word.substr(0, word.rfind(',') + 1);
    const std::string sign = word.substr(begin.size(), 1) == "-" ? "-" : "";
    for (std::string& name : names) {
        name.insert(0, begin + sign);
    }
    return names;
}

Names valuesOf(const std::string& option, const std::string& word, const Options& options) {
    if (option == "output") {
        return {"table", "json", "jsonl", "csv"};
    }
    if (option == "profile") {
        return Profiles().names();
    }
    if (option == "class") {
        return liveClasses(options);
    }
    if (option == "columns" || option == "add-column") {
        return listed(word, liveColumns(options, {"id", "class", "eTag"}));
    }
    if (option == "select" || option == "order") {
        return listed(word, liveColumns(options, {}));
    }
    return {};
}

} // namespace

std::string completionScript(const std::string& shell) {
    return shell == "bash" ? bashScript : shell == "zsh" ? zshScript : fishScript;
}

Names complete(const CLI::App& app, Options options, Names words) {
    if (words.empty()) {
        words.emplace_back();
    }
    const std::string word = words.back();
    words.pop_back();

    // What stands before: commands, positional words, and options that say where to look.
    const CLI::App* command = &app;
    const CLI::Option* open = nullptr;
    Names positional;
    const auto keep = [&](const CLI::Option& option, const std::string& value) {
        const std::string name = option.get_lnames().front();
        (name == "url"        ? options.access.url
         : name == "location" ? options.access.location
         : name == "profile"  ? options.profile
                              : options.name) = value;
    };
    for (const std::string& before : words) {
        if (open != nullptr) {
            keep(*open, before);
            open = nullptr;
            continue;
        }
        const CLI::Option* option = optionOf(*command, before);
        option = option != nullptr ? option : optionOf(app, before);
        if (option != nullptr) {
            const std::size_t equals = before.find('=');
            open = takesValue(*option) && equals == std::string::npos ? option : nullptr;
            if (equals != std::string::npos) {
                keep(*option, before.substr(equals + 1));
            }
            continue;
        }
        const auto commands = commandsOf(*command);
        if (positional.empty() && std::find(commands.begin(), commands.end(), before) != commands.end()) {
            command = command->get_subcommand(before);
        } else {
            positional.push_back(before);
        }
    }
    options.family = positional.empty() ? "" : positional.front();
    if (open != nullptr) {
        return valuesOf(open->get_lnames().front(), word, options);
    }
    Names names;
    if (!word.empty() && word.front() == '-') {
        addOptions(*command, names);
        addOptions(app, names);
        return names;
    }
    names = commandsOf(*command);
    if (names.empty() && positional.empty()) {
        if (command->get_option_no_throw("FAMILY") != nullptr) {
            for (const Family& each : families()) {
                names.push_back(each.name);
            }
        } else if (command->get_option_no_throw("SHELL") != nullptr) {
            names = {"bash", "zsh", "fish"};
        } else if (command->get_option_no_throw("NAME") != nullptr) {
            names = Profiles().names();
        }
    }
    return names;
}

} // namespace VarnelAPI::Forms::cli
