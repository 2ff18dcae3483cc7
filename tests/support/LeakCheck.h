#pragma once

namespace forms_test {

/// For a process that ends while calls are in flight, which is no leak, or that meets one of the HTTP library's own:
/// AddressSanitizer then doesn't look for leaks when it ends. CTest gives each test a process.
void turnLeakCheckOff();

} // namespace forms_test
