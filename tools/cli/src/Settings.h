#pragma once

#include "Json.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace VarnelAPI::Forms::cli {

/// What is known of where the service is and who asks, from one source: the flags, the environment, or a profile.
struct Access {
    std::string url;
    std::string location;
    std::string token;
    /// The file that holds the token.
    std::string tokenFile;
};

/// Where the calls go, and what goes with them.
struct Settings {
    std::string url;
    std::string location;
    std::string token;
    std::map<std::string, std::string> headers;
    /// Why a token that there is stays here.
    std::string withheld;
};

/// The profiles of the user: a file that only the user may read, in the folder that XDG_CONFIG_HOME names.
class Profiles {
public:
    Profiles();

    std::vector<std::string> names() const;
    /// The one that holds if none is named; an empty text if there is none.
    std::string current() const;
    /// @throws Usage if there is no such profile.
    Access at(const std::string& name) const;

    /// These write the file, all of it or nothing of it.
    /// @{
    void put(const std::string& name, const Access& access);
    void remove(const std::string& name);
    void use(const std::string& name);
    /// @}

private:
    void save() const;

    std::string m_File;
    Json m_Content;
};

/// The bytes of a file.
/// @throws Usage if it can't be read.
std::string readFile(const std::string& file);

/// Scheme, host and port of a URL.
/// @throws Usage if it is none, or holds a name or password.
std::string originOf(const std::string& url);

/// The text of a file without the end of its line, standard input for "-".
/// @throws Usage if it can't be read, or is no token.
std::string readToken(const std::string& file);

/// A flag beats the environment, which beats the profile. A token goes to the host that its own source names, and if
/// that names none, to wherever the calls go.
/// @param profile empty for that of the environment, or the current one.
/// @param headers "Name: value", or "@FILE" for a file of such lines.
/// @throws Usage
Settings settings(const Access& flags, const std::string& profile, const std::vector<std::string>& headers);

} // namespace VarnelAPI::Forms::cli
