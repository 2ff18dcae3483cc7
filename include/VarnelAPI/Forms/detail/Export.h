#pragma once

/// Marks what the shared library exports. Define VARNEL_FORMS_STATIC when linking the static library;
/// the CMake target does so by itself.
#if defined(VARNEL_FORMS_STATIC)
#define VARNEL_FORMS_API
#elif defined(_WIN32)
#if defined(VARNEL_FORMS_BUILDING)
#define VARNEL_FORMS_API __declspec(dllexport)
#else
#define VARNEL_FORMS_API __declspec(dllimport)
#endif
#else
#define VARNEL_FORMS_API __attribute__((visibility("default")))
#endif

/// Of what an exported class holds inline, g++ puts only into the DLL what the library itself needs there. This marks a
/// constant whose address programs may need, too.
#if defined(_WIN32) && defined(__GNUC__) && defined(VARNEL_FORMS_BUILDING)
#define VARNEL_FORMS_DETAIL_KEPT [[gnu::used]]
#else
#define VARNEL_FORMS_DETAIL_KEPT
#endif
