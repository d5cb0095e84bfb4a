#pragma once

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>
#include <string_view>

/// The X server, asked beside Qt for what Qt does not tell. Where this process does not talk to
/// X11, `connection` is null and the rest must not be called.
namespace kelo::x11 {

struct Free {
    void operator()(void *reply) const { std::free(reply); } // NOLINT(*-no-malloc): xcb's own way
};

/// An answer of the X server, null when there was none.
template <typename T> using Reply = std::unique_ptr<T, Free>;

/// The connection of this process; null where it does not talk to X11.
[[nodiscard]] xcb_connection_t *connection();
/// The number behind a name.
[[nodiscard]] xcb_atom_t atom(xcb_connection_t *x, std::string_view name);
/// Some program holds the selection of that name.
[[nodiscard]] bool hasOwner(xcb_connection_t *x, xcb_atom_t selection);

} // namespace kelo::x11
