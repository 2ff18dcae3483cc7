#pragma once

#include <stdexcept>

namespace VarnelAPI::Forms::cli {

/// How the program ends.
enum ExitCode {
    done = 0,
    otherFailure = 1,
    wrongUsage = 2,
    notFound = 3,
    notAllowed = 4,
    temporary = 5,
    conflict = 6,
};

/// What the user asked for can't be: found before anything is sent. Its text is a whole sentence without a stop.
class Usage : public std::runtime_error {
    using runtime_error::runtime_error;
};

/// What fails for a reason that its text tells in full: a whole sentence without a stop.
class Told : public std::runtime_error {
    using runtime_error::runtime_error;
};

/// A request of a dry run was shown and not sent.
class NothingSent : public std::runtime_error {
public:
    NothingSent() : runtime_error("nothing was sent, since this is a dry run") {}
};

/// Nobody reads what is written any more: the reader has what it wanted.
class ReaderGone : public std::runtime_error {
public:
    ReaderGone() : runtime_error("nobody reads the output any more") {}
};

} // namespace VarnelAPI::Forms::cli
