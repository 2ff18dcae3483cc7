#include "HeaderTimeout.h"

#if defined(_WIN32)

#include <windows.h>

#include <winhttp.h>

#include <algorithm>
#include <limits>
#include <system_error>

namespace VarnelAPI::Forms::transport::detail {

web::http::client::http_client_config limitingWaitForHeader(web::http::client::http_client_config settings) {
    using std::chrono::milliseconds;
    const auto wished =
        std::clamp<milliseconds::rep>(settings.timeout<milliseconds>().count(), 1, std::numeric_limits<int>::max());
    const auto limit = static_cast<DWORD>(wished);
    settings.set_nativehandle_options([users = settings, limit](web::http::client::native_handle request) {
        DWORD value = limit;
        if (WinHttpSetOption(request, WINHTTP_OPTION_RECEIVE_RESPONSE_TIMEOUT, &value, sizeof(value)) == FALSE) {
            throw std::system_error(static_cast<int>(GetLastError()), std::system_category(), "the time-out");
        }
        users.invoke_nativehandle_options(request);
    });
    return settings;
}

} // namespace VarnelAPI::Forms::transport::detail

#endif
