#pragma once

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>
#include <string_view>

/// What the X11 files share.
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

} // namespace kelo::x11
