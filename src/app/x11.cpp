#include "app/x11.h"

#include "app/x11_reply.h"

#include <QGuiApplication>

namespace kelo::x11 {

namespace {

bool hasOwner(xcb_connection_t *x, xcb_atom_t selection)
{
    const Reply<xcb_get_selection_owner_reply_t> reply(
        xcb_get_selection_owner_reply(x, xcb_get_selection_owner(x, selection), nullptr));
    return reply && reply->owner != XCB_NONE;
}

xcb_atom_t traySelection(xcb_connection_t *x)
{
    static const xcb_atom_t selection = atom(x, "_NET_SYSTEM_TRAY_S0");
    return selection;
}

} // namespace

xcb_connection_t *connection()
{
    const auto *native = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return native ? native->connection() : nullptr;
}

xcb_atom_t atom(xcb_connection_t *x, std::string_view name)
{
    const auto length = static_cast<std::uint16_t>(name.size());
    const Reply<xcb_intern_atom_reply_t> reply(
        xcb_intern_atom_reply(x, xcb_intern_atom(x, 0, length, name.data()), nullptr));
    return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

bool available()
{
    return connection() != nullptr;
}

bool composited()
{
    xcb_connection_t *x = connection();
    return !x || hasOwner(x, atom(x, "_NET_WM_CM_S0"));
}

bool hasTray()
{
    xcb_connection_t *x = connection();
    return x && hasOwner(x, traySelection(x));
}

bool announcesTray(const void *event)
{
    xcb_connection_t *x = connection();
    const auto *message = static_cast<const xcb_client_message_event_t *>(event);
    constexpr std::uint8_t type = 0x7f; // the rest says whether it was sent by another program
    if (!x || (message->response_type & type) != XCB_CLIENT_MESSAGE)
        return false;
    static const xcb_atom_t manager = atom(x, "MANAGER");
    return message->type == manager && message->data.data32[1] == traySelection(x);
}

} // namespace kelo::x11
