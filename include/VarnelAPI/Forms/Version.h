#pragma once

#include <VarnelAPI/Forms/detail/Export.h>

/// The version of the library that a program is compiled with. Those of the packages are read from here.
#define VARNEL_FORMS_VERSION_MAJOR 1
#define VARNEL_FORMS_VERSION_MINOR 0
#define VARNEL_FORMS_VERSION_PATCH 0

/// The same as one number: 1.2.3 is 10203.
#define VARNEL_FORMS_VERSION                                                                                           \
    (VARNEL_FORMS_VERSION_MAJOR * 10000 + VARNEL_FORMS_VERSION_MINOR * 100 + VARNEL_FORMS_VERSION_PATCH)

/// The same as a literal: "1.2.3".
#define VARNEL_FORMS_VERSION_TEXT                                                                                      \
    VARNEL_FORMS_DETAIL_VERSION_TEXT(VARNEL_FORMS_VERSION_MAJOR, VARNEL_FORMS_VERSION_MINOR, VARNEL_FORMS_VERSION_PATCH)
#define VARNEL_FORMS_DETAIL_VERSION_TEXT(major, minor, patch) VARNEL_FORMS_DETAIL_DOTTED(major, minor, patch)
#define VARNEL_FORMS_DETAIL_DOTTED(major, minor, patch) #major "." #minor "." #patch

namespace VarnelAPI::Forms {

/// VARNEL_FORMS_VERSION of the library that the program runs with, which need not be the one it was compiled with. Any
/// thread may call it.
VARNEL_FORMS_API int version() noexcept;

} // namespace VarnelAPI::Forms
