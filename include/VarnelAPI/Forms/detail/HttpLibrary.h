#pragma once

/// The one place that includes the HTTP library's headers for ours: its texts, dates, tasks and JSON, which models and
/// API classes need. Its client, which needs as much again, is in HttpClientLibrary.h, so that only those pay for it
/// who configure a client.
///
/// The library defines a macro `U`, under which headers of Boost that come later do not compile where text is wide.
/// Users may write `U("...")`, so it stays; but where we include a header of Boost, it is put aside meanwhile.
#include <cpprest/json.h>
