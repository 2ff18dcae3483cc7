#pragma once

#include <VarnelAPI/Forms/detail/Export.h>
#include <VarnelAPI/Forms/detail/HttpLibrary.h>

#include <chrono>
#include <optional>

namespace VarnelAPI::Forms::kit {

/// A date of a model as a point of the system's clock, exact to its 100 ns; nothing for a date never set.
/// @throws std::out_of_range for a date that the clock can't hold: it counts nanoseconds on Linux, from 1677 to 2262.
VARNEL_FORMS_API std::optional<std::chrono::system_clock::time_point> toTimePoint(const utility::datetime& date);

/// The date of a model; a date never set for nothing. What is finer than 100 ns is dropped, towards the past.
/// @throws std::out_of_range for a time that a date can't hold: before 1601, or 1601-01-01T00:00:00Z itself, which
///     would read as never set.
VARNEL_FORMS_API utility::datetime toDatetime(const std::optional<std::chrono::system_clock::time_point>& time);

} // namespace VarnelAPI::Forms::kit
