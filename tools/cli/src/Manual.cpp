#include "Manual.h"

#include <VarnelAPI/Forms/Version.h>

#include <CLI/CLI.hpp>

namespace VarnelAPI::Forms::cli {
namespace {

/// Text as roff takes it: without lines that it would obey.
std::string plain(const std::string& text) {
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool isLineStart = i == 0 || text[i - 1] == '\n';
        if (isLineStart && (text[i] == '.' || text[i] == '\'')) {
            out += "\\&";
        }
        out += text[i] == '\\' ? "\\e" : text[i] == '-' ? "\\-" : std::string(1, text[i]);
    }
    return out;
}

std::string optionsOf(const CLI::App& app) {
    std::string text;
    for (const CLI::Option* option : app.get_options()) {
        const bool isPositional = option->get_positional();
        std::string name = isPositional ? option->get_name(true) : option->get_name(false, true);
        if (!isPositional && option->get_items_expected_max() > 0) {
            name += " VALUE";
        }
        text += ".TP\n.B " + plain(name) + "\n" + plain(option->get_description()) + "\n";
    }
    return text;
}

/// What stands below the options, line by line.
std::string footerOf(const CLI::App& app) {
    return ".nf\n" + plain(app.get_footer()) + "\n.fi\n";
}

void commandsOf(const CLI::App& app, const std::string& before, std::string& page) {
    for (const CLI::App* sub : app.get_subcommands([](const CLI::App*) { return true; })) {
        if (sub->get_group().empty()) {
            continue;
        }
        const std::string name = before + sub->get_name();
        page += ".SS " + plain(name) + "\n" + plain(sub->get_description()) + ".\n" + optionsOf(*sub) + footerOf(*sub);
        commandsOf(*sub, name + " ", page);
    }
}

} // namespace

std::string manualPage(const CLI::App& app) {
    std::string page = ".TH VARNEL\\-FORMS 1 \"\" \"varnel\\-forms " VARNEL_FORMS_VERSION_TEXT "\" \"User Commands\"\n"
                       ".SH NAME\nvarnel\\-forms \\- the forms and issues repository from a terminal\n"
                       ".SH SYNOPSIS\n.B varnel\\-forms\nCOMMAND [OPTIONS]\n.SH DESCRIPTION\n" +
                       plain(app.get_description()) + "\n.SH COMMANDS\n";
    commandsOf(app, "", page);
    return page + ".SH OPTIONS\n" + optionsOf(app) + footerOf(app);
}

} // namespace VarnelAPI::Forms::cli
