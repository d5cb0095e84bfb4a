#include "app/x11.h"

#include <QGuiApplication>

#include <cstdint>

namespace kelo::x11 {

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

bool hasOwner(xcb_connection_t *x, xcb_atom_t selection)
{
    const Reply<xcb_get_selection_owner_reply_t> reply(
        xcb_get_selection_owner_reply(x, xcb_get_selection_owner(x, selection), nullptr));
    return reply && reply->owner != XCB_NONE;
}

} // namespace kelo::x11
