#pragma once

/// The comfortable layer above the operations. `VarnelAPI/Forms.h` does not include it, so that a program which uses
/// none of it doesn't compile it. For C++20 programs there is `VarnelAPI/Forms/kit/Coroutines.h` besides.

#include <VarnelAPI/Forms/kit/CustomProperties.h>
#include <VarnelAPI/Forms/kit/Delivery.h>
#include <VarnelAPI/Forms/kit/Errors.h>
#include <VarnelAPI/Forms/kit/Files.h>
#include <VarnelAPI/Forms/kit/Filters.h>
#include <VarnelAPI/Forms/kit/Instances.h>
#include <VarnelAPI/Forms/kit/Pages.h>
#include <VarnelAPI/Forms/kit/Tasks.h>
#include <VarnelAPI/Forms/kit/Time.h>
