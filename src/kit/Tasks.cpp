#include <VarnelAPI/Forms/kit/Tasks.h>

#if !defined(_WIN32) && !defined(__APPLE__)
#include <pplx/threadpool.h>
#endif

namespace VarnelAPI::Forms::kit {

bool isPoolThread() {
#if !defined(_WIN32) && !defined(__APPLE__)
    return crossplat::threadpool::shared_instance().service().get_executor().running_in_this_thread();
#else
    return false;
#endif
}

WouldBlockPool::WouldBlockPool()
    : logic_error("a range of pages waits for them, and must not do so inside a continuation; use forEachPage") {}
WouldBlockPool::WouldBlockPool(const WouldBlockPool&) = default;
WouldBlockPool& WouldBlockPool::operator=(const WouldBlockPool&) = default;
WouldBlockPool::~WouldBlockPool() = default;

} // namespace VarnelAPI::Forms::kit
