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

/// The same list, over and over, to about 50 MB.
const std::string& largeListText();

/// The JSON of `issueCount` attachments in their envelope.
const std::string& attachmentListText();

/// The JSON of one issue with 500 related forms, about 340 KB, in its envelope.
const std::string& relatedIssueText();

/// The JSON of 286 issues that have nothing but 35 custom properties each, in their envelope.
const std::string& customListText();

/// The JSON of `issues` issues that have nothing but `customProperties` custom ones each.
std::string customIssuesText(std::size_t issues, std::size_t customProperties);

std::string randomBytes(std::size_t size);

/// `fileSize` random bytes.
const std::string& fileBytes();

} // namespace bench
