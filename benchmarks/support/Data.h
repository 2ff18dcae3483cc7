#pragma once

#include <cstddef>
#include <string>

/// The data of the benchmarks: made with fixed seeds, the same in every run.
namespace bench {

constexpr std::size_t issueCount = 1000;
constexpr std::size_t fileSize = std::size_t{64} << 20U;

/// The JSON of one issue of 25 fixed properties, about 1 KB, in its envelope.
const std::string& issueText();

/// The JSON of `issueCount` issues of 25 fixed and 10 custom properties, about 1.5 MB, in their envelope.
const std::string& issueListText();

/// The JSON of `issues` issues that have nothing but `customProperties` custom ones each.
std::string customIssuesText(std::size_t issues, std::size_t customProperties);

std::string randomBytes(std::size_t size);

/// `fileSize` random bytes.
const std::string& fileBytes();

} // namespace bench
