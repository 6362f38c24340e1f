#pragma once

#include <wayland-client-core.h>

#include <cstdint>

/// Requests and listeners of protocols that have no generated header. libwayland takes the arguments of a request, and
/// the functions that handle events, untyped, as C does: what is passed here must match the protocol's description.
namespace ravlin::WaylandRequests {

// NOLINTBEGIN(cppcoreguidelines-pro-type-vararg)

template <class... Arguments>
void send(wl_proxy* proxy, std::uint32_t request, Arguments... arguments) {
    wl_proxy_marshal_flags(proxy, request, nullptr, wl_proxy_get_version(proxy), 0, arguments...);
}

/// Sends a request that creates an object, which is the request's first argument.
template <class... Arguments>
wl_proxy* create(wl_proxy* proxy, std::uint32_t request, const wl_interface& interface, Arguments... arguments) {
    return wl_proxy_marshal_flags(proxy, request, &interface, wl_proxy_get_version(proxy), 0, nullptr, arguments...);
}

/// Sends the request that destroys an object, and destroys it on this side as well.
inline void destroy(wl_proxy* proxy, std::uint32_t request) {
    wl_proxy_marshal_flags(proxy, request, nullptr, wl_proxy_get_version(proxy), WL_MARSHAL_FLAG_DESTROY);
}

// NOLINTEND(cppcoreguidelines-pro-type-vararg)

using Handler = void (*)();

template <class Function>
Handler handler(Function function) {
    return reinterpret_cast<Handler>(function);
}

/// `listener` is an array of handlers, one for each event, that must exist as long as `proxy`; `self` is their first
/// argument.
template <class Listener>
void listen(wl_proxy* proxy, Listener& listener, void* self) {
    // The table of functions is only read.
    wl_proxy_add_listener(proxy, const_cast<Handler*>(listener.data()), self);
}

}  // namespace ravlin::WaylandRequests
