#pragma once

#include <string>
#include <vector>

namespace VarnelAPI::Forms::repository {

/// A document of one page that shows the lines, long ones folded; what doesn't fit on the page is left out with "...".
/// @param lines UTF-8; characters beyond Latin-1 are shown as '?'
std::string makePdf(const std::vector<std::string>& lines);

} // namespace VarnelAPI::Forms::repository
