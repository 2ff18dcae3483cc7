#include <boost/algorithm/string.hpp>

#include "ContentLength.h"

#include <cpprest/asyncrt_utils.h>

#include <vector>

namespace VarnelAPI::Forms::transport::detail {

utility::string_t lengthOf(const utility::string_t& contentLength) {
    std::vector<utility::string_t> numbers;
    boost::split(numbers, contentLength, boost::is_any_of(_XPLATSTR(",")));
    for (auto& number : numbers) {
        boost::trim_if(number, boost::is_any_of(_XPLATSTR(" \t")));
        if (number.empty() || !boost::all(number, boost::is_any_of(_XPLATSTR("0123456789")))) {
            return {};
        }
        number.erase(0, std::min(number.find_first_not_of(_XPLATSTR('0')), number.size() - 1));
        if (number != numbers.front()) {
            return {};
        }
    }
    return numbers.front();
}

bool isLength(const utility::string_t& contentLength, std::size_t size) {
    // As texts, so that a number of any length can be compared.
    return lengthOf(contentLength) == utility::conversions::to_string_t(std::to_string(size));
}

} // namespace VarnelAPI::Forms::transport::detail
