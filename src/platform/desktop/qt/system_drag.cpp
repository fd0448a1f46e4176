#include "platform/desktop/qt/system_drag.h"

#include <xcb/xcb.h>

#include <QGuiApplication>
#include <QWindow>
#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <memory>
#include <string_view>

namespace {

constexpr std::uint32_t kSizeBottomRight = 4;
constexpr std::uint32_t kMove = 8;
constexpr std::uint32_t kFromProgram = 1;
constexpr std::uint32_t kMostAtoms = 1024;

template <typename Reply>
using Owned = std::unique_ptr<Reply, decltype(&std::free)>;

template <typename Reply>
Owned<Reply> Own(Reply* reply) {
  return {reply, &std::free};
}

// Null where the desktop is none of X.
xcb_connection_t* Connection() {
  const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
  return x11 != nullptr ? x11->connection() : nullptr;
}

xcb_window_t Root(xcb_connection_t* connection) {
  return xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
}

xcb_atom_t Atom(xcb_connection_t* connection, std::string_view name) {
  const auto cookie = xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data());
  const auto reply = Own(xcb_intern_atom_reply(connection, cookie, nullptr));
  return reply != nullptr ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

// Whether the window manager, if there is one, knows a message.
bool ManagerKnows(xcb_connection_t* connection, xcb_atom_t message) {
  const auto cookie = xcb_get_property(connection, 0, Root(connection), Atom(connection, "_NET_SUPPORTED"),
                                       XCB_ATOM_ATOM, 0, kMostAtoms);
  const auto reply = Own(xcb_get_property_reply(connection, cookie, nullptr));
  if (reply == nullptr || reply->format != 32) return false;
  const auto* const known = static_cast<const xcb_atom_t*>(xcb_get_property_value(reply.get()));
  return std::find(known, known + reply->value_len, message) != known + reply->value_len;
}

}  // namespace

SystemDrag::SystemDrag() {
  xcb_connection_t* connection = Connection();
  if (connection == nullptr) return;
  const auto cookie = xcb_query_pointer(connection, Root(connection));
  const auto reply = Own(xcb_query_pointer_reply(connection, cookie, nullptr));
  if (reply == nullptr) return;
  rootX = reply->root_x;
  rootY = reply->root_y;
}

bool SystemDrag::HandOver(QWindow& window, bool size) const {
  xcb_connection_t* connection = Connection();
  if (connection == nullptr) {
    return size ? window.startSystemResize(Qt::RightEdge | Qt::BottomEdge) : window.startSystemMove();
  }
  // Not by Qt: it would name the place where the mouse is now, and the window would trail behind the mouse by
  // what that has gone since the press.
  const xcb_atom_t message = Atom(connection, "_NET_WM_MOVERESIZE");
  if (!ManagerKnows(connection, message)) return false;
  xcb_client_message_event_t event = {};
  event.response_type = XCB_CLIENT_MESSAGE;
  event.format = 32;
  event.window = static_cast<xcb_window_t>(window.winId());
  event.type = message;
  const std::uint32_t data[] = {static_cast<std::uint32_t>(rootX), static_cast<std::uint32_t>(rootY),
                                size ? kSizeBottomRight : kMove, XCB_BUTTON_INDEX_1, kFromProgram};
  std::copy(std::begin(data), std::end(data), std::begin(event.data.data32));
  xcb_ungrab_pointer(connection, XCB_CURRENT_TIME);
  xcb_send_event(connection, 0, Root(connection),
                 XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                 reinterpret_cast<const char*>(&event));
  xcb_flush(connection);
  return true;
}
