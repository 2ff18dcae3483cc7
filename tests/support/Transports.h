#pragma once

#include <VarnelAPI/Forms/transport/Transport.h>

#include <memory>

namespace forms_test {

/// The transport that the tests of this process go over: a new one of libcurl if the environment's
/// FORMS_TEST_TRANSPORT is "curl", and otherwise none, which means the default.
std::shared_ptr<VarnelAPI::Forms::transport::Transport> chosenTransport();

/// Whether that is the one of libcurl.
bool isOverCurl();

} // namespace forms_test
