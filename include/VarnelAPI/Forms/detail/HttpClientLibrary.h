#pragma once

// What the HTTP library's client includes of Boost, without the macro `U`: see HttpLibrary.h.
#if !defined(_WIN32) || defined(CPPREST_FORCE_HTTP_CLIENT_ASIO)
#pragma push_macro("U")
#undef U
#include <boost/asio/ssl.hpp>
#pragma pop_macro("U")
#endif

#include <VarnelAPI/Forms/detail/HttpLibrary.h>

/// The HTTP library's client, its messages, streams and settings, for those of our headers that need them.
#include <cpprest/http_client.h>
#include <cpprest/producerconsumerstream.h>
