#include "LeakCheck.h"

namespace {

bool isOff = false;

} // namespace

extern "C" int __lsan_is_turned_off() { // NOLINT(bugprone-reserved-identifier): the sanitizer's hook
    return isOff ? 1 : 0;
}

void forms_test::turnLeakCheckOff() {
    isOff = true;
}
