#pragma once

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>
#include <string_view>

class QWindow;

/// Qt's own connection to the X server. Needs an application object.
namespace ravlin::QtX11 {

/// Frees what libxcb returns, which it allocates with malloc.
template <typename Reply>
using ReplyPointer = std::unique_ptr<Reply, decltype(&std::free)>;

/// Null if Qt's windows are not on X11.
xcb_connection_t* connection();

/// XCB_ATOM_NONE if the server does not answer.
xcb_atom_t atom(xcb_connection_t* connection, std::string_view name);

/// Keeps `window`, which is about to be shown, out of task bars, pagers and the overviews of window managers (EWMH,
/// _NET_WM_STATE). Call this before each time: a window manager forgets the states of a hidden window. Does nothing on
/// other window systems.
void keepOutOfTaskBars(const QWindow& window);

}  // namespace ravlin::QtX11
