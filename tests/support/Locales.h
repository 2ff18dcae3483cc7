#pragma once

#include <clocale>
#include <cstdlib>

/// The C library's locale, as a host application may choose it: one that writes decimal commas.
namespace forms_test {

#ifdef _WIN32
inline bool chooseGerman() {
    return std::setlocale(LC_ALL, "German_Germany") != nullptr;
}
inline void chooseNone() {
    std::setlocale(LC_ALL, "C");
}
#else
/// A new machine may have none: the build makes one.
inline bool chooseGerman() {
    setenv("LOCPATH", FORMS_TEST_LOCALES, 1);
    return std::setlocale(LC_ALL, "de_DE.UTF-8") != nullptr;
}
inline void chooseNone() {
    std::setlocale(LC_ALL, "C");
    unsetenv("LOCPATH");
}
#endif

} // namespace forms_test
