#pragma once

#include <VarnelAPI/Forms/detail/HttpClientLibrary.h>

#include <istream>
#include <memory>

namespace VarnelAPI::Forms::transport::detail {

/// A stream of the standard library, from its start, as the body of a request, which keeps it.
concurrency::streams::istream bodyOf(std::shared_ptr<std::istream> stream);

} // namespace VarnelAPI::Forms::transport::detail
