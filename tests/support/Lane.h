#pragma once

#include "model/ModelJson.h"

namespace forms_test {

/// Whether the library was built with its fast lane; without it everything goes the tree's way.
#if defined(FORMS_TEST_LANE)
constexpr bool hasLane = true;
#else
constexpr bool hasLane = false;
#endif

} // namespace forms_test
