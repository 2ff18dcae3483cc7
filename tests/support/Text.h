#pragma once

#include <cpprest/asyncrt_utils.h>
#include <gtest/gtest.h>

#include <string>

/// The tests write and compare texts in UTF-8; the library's are utility::string_t, which is wide on Windows.
namespace forms_test {

inline utility::string_t text(const std::string& utf8) {
    return utility::conversions::to_string_t(utf8);
}

inline utility::string_t operator""_t(const char* utf8, std::size_t size) {
    return text(std::string(utf8, size));
}

inline std::string utf8(const utility::string_t& text) {
    return utility::conversions::to_utf8string(text);
}

#ifdef _WIN32
inline std::string utf8(const std::string& text) {
    return text;
}

/// What EXPECT_EQ compares: a wide text as UTF-8, all else as it is.
template <class Value>
const Value& comparable(const Value& value) {
    return value;
}
inline std::string comparable(const utility::string_t& text) {
    return utf8(text);
}
template <class A, class B>
testing::AssertionResult areEqual(const char* aText, const char* bText, const A& a, const B& b) {
    return testing::internal::EqHelper::Compare(aText, bText, comparable(a), comparable(b));
}
#undef EXPECT_EQ
#define EXPECT_EQ(a, b) EXPECT_PRED_FORMAT2(::forms_test::areEqual, a, b)
#endif

} // namespace forms_test
