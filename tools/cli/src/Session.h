#pragma once

#include "Families.h"
#include "Options.h"
#include "Rows.h"

#include <VarnelAPI/Forms/transport/CallOptions.h>

#include <string>

namespace VarnelAPI::Forms::cli {

/// What a verb works with: the client, and how results are shown, as the options say.
class Session {
public:
    /// @throws Usage
    explicit Session(const Options& options);

    /// A client whose calls want this, too.
    Client client(const transport::CallOptions& wishes = {}) const { return m_Client->with(wishes); }
    /// @throws Usage if nothing says which project it is.
    Place place() const;
    /// Headers that go with every request.
    const std::map<std::string, std::string>& headers() const;
    bool hasToken() const { return !m_Settings.token.empty(); }
    const std::string& url() const { return m_Settings.url; }

private:
    Settings m_Settings;
    Client m_Client;
};

/// How results are shown.
/// @throws Usage
View viewOf(const Options& options, const Terminal& terminal, const std::string& defaultColumns = {});

/// The parts of a list that is separated by commas.
std::vector<std::string> split(const std::string& list);

/// A part of a path, percent-encoded.
/// @throws Usage if the text is empty.
std::string segment(const std::string& text, const std::string& what);

/// Says why the program fails, as one sentence with what to try next; and how it ends.
int explain(const std::exception_ptr& error, const Options& options);

/// A line on standard error.
void say(const std::string& text);

} // namespace VarnelAPI::Forms::cli
