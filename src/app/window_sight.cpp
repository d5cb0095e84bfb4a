#include "app/window_sight.h"

#include "app/x11.h"

#include <QRegion>
#include <QWindow>

#include <algorithm>
#include <array>
#include <span>
#include <vector>

namespace kelo {

using namespace x11;

namespace {

constexpr quint32 everyDesktop = 0xffffffff;
constexpr quint32 fullOpacity = 0xffffffff;
constexpr quint32 longestList = 4096; // of 32-bit values; more windows than anybody has

xcb_window_t rootOf(xcb_connection_t *x)
{
    return xcb_setup_roots_iterator(xcb_get_setup(x)).data->root;
}

/// The window manager's vocabulary.
struct Atoms {
    explicit Atoms(xcb_connection_t *x)
        : stacking(atom(x, "_NET_CLIENT_LIST_STACKING"))
        , currentDesktop(atom(x, "_NET_CURRENT_DESKTOP"))
        , desktop(atom(x, "_NET_WM_DESKTOP"))
        , state(atom(x, "_NET_WM_STATE"))
        , hidden(atom(x, "_NET_WM_STATE_HIDDEN"))
        , opacity(atom(x, "_NET_WM_WINDOW_OPACITY"))
        , opaqueRegion(atom(x, "_NET_WM_OPAQUE_REGION"))
    {
    }

    xcb_atom_t stacking;
    xcb_atom_t currentDesktop;
    xcb_atom_t desktop;
    xcb_atom_t state;
    xcb_atom_t hidden;
    xcb_atom_t opacity;
    xcb_atom_t opaqueRegion;
};

xcb_get_property_cookie_t ask(xcb_connection_t *x, xcb_window_t window, xcb_atom_t property)
{
    return xcb_get_property(x, 0, window, property, XCB_ATOM_ANY, 0, longestList);
}

/// The 32-bit values of a property; none when it is not set.
std::vector<quint32> values(xcb_connection_t *x, xcb_get_property_cookie_t cookie)
{
    const Reply<xcb_get_property_reply_t> reply(xcb_get_property_reply(x, cookie, nullptr));
    if (!reply || reply->format != 32)
        return {};
    const auto *first = static_cast<const quint32 *>(xcb_get_property_value(reply.get()));
    return {first, first + reply->value_len};
}

quint32 first(const std::vector<quint32> &list, quint32 otherwise)
{
    return list.empty() ? otherwise : list.front();
}

/// What is asked of one window, all questions on their way before the first answer is read.
class Inquiry {
public:
    Inquiry(xcb_connection_t *x, xcb_window_t window, const Atoms &atoms)
        : x_(x)
        , hiddenAtom_(atoms.hidden)
        , attributes_(xcb_get_window_attributes(x, window))
        , geometry_(xcb_get_geometry(x, window))
        , place_(xcb_translate_coordinates(x, window, rootOf(x), 0, 0))
        , state_(ask(x, window, atoms.state))
        , opacity_(ask(x, window, atoms.opacity))
        , region_(ask(x, window, atoms.opaqueRegion))
    {
    }

    /// Reads the answers.
    void read()
    {
        const Reply<xcb_get_window_attributes_reply_t> attributes(
            xcb_get_window_attributes_reply(x_, attributes_, nullptr));
        const Reply<xcb_get_geometry_reply_t> geometry(
            xcb_get_geometry_reply(x_, geometry_, nullptr));
        const Reply<xcb_translate_coordinates_reply_t> place(
            xcb_translate_coordinates_reply(x_, place_, nullptr));
        const auto state = values(x_, state_);
        const auto opacity = values(x_, opacity_);
        const auto region = values(x_, region_);
        if (!attributes || !geometry || !place)
            return; // gone meanwhile
        area = QRect(place->dst_x, place->dst_y, geometry->width, geometry->height);
        const bool shows = attributes->map_state == XCB_MAP_STATE_VIEWABLE
            && std::ranges::find(state, hiddenAtom_) == state.end();
        if (!shows || first(opacity, fullOpacity) != fullOpacity)
            return;
        constexpr int withAlpha = 32; // bits; such a window says itself which part hides others
        if (geometry->depth < withAlpha) {
            hides = area;
            return;
        }
        for (std::size_t i = 0; i + 3 < region.size(); i += 4) {
            const QRect part(static_cast<int>(region[i]), static_cast<int>(region[i + 1]),
                static_cast<int>(region[i + 2]), static_cast<int>(region[i + 3]));
            hides += part.translated(area.topLeft()) & area;
        }
    }

    QRect area; ///< on the root window, without the frame
    QRegion hides; ///< the part that nothing shines through

private:
    xcb_connection_t *x_;
    xcb_atom_t hiddenAtom_;
    xcb_get_window_attributes_cookie_t attributes_;
    xcb_get_geometry_cookie_t geometry_;
    xcb_translate_coordinates_cookie_t place_;
    xcb_get_property_cookie_t state_;
    xcb_get_property_cookie_t opacity_;
    xcb_get_property_cookie_t region_;
};

/// `window` is on another desktop, or other windows hide all of it. False where X11 is not there
/// to tell.
bool outOfSight(const QWindow &window)
{
    xcb_connection_t *x = connection();
    if (!x)
        return false;
    static const Atoms atoms(x);
    const auto id = static_cast<xcb_window_t>(window.winId());
    const auto current = ask(x, rootOf(x), atoms.currentDesktop);
    const auto own = ask(x, id, atoms.desktop);
    const auto stacking = ask(x, rootOf(x), atoms.stacking);
    const quint32 shownDesktop = first(values(x, current), everyDesktop);
    const quint32 ownDesktop = first(values(x, own), everyDesktop);
    const std::vector<quint32> windows = values(x, stacking); // the topmost last
    if (shownDesktop != everyDesktop && ownDesktop != everyDesktop && ownDesktop != shownDesktop)
        return true;

    const auto at = std::ranges::find(windows, id);
    if (at == windows.end())
        return false;
    Inquiry screen(x, rootOf(x), atoms);
    std::vector<Inquiry> inquiries; // ours first, then those above it
    for (const xcb_window_t each : std::span(at, windows.end()))
        inquiries.emplace_back(x, each, atoms);
    screen.read();
    for (Inquiry &each : inquiries)
        each.read();
    QRegion left = inquiries.front().area & screen.area;
    for (const Inquiry &above : std::span(inquiries).subspan(1))
        left -= above.hides;
    return left.isEmpty();
}

} // namespace

WindowSight sightOf(const QWindow *window)
{
    if (!window)
        return WindowSight::Missing;
    const bool shown = window->isVisible() && window->isExposed()
        && !window->windowStates().testFlag(Qt::WindowMinimized);
    return shown && !outOfSight(*window) ? WindowSight::Seen : WindowSight::Unseen;
}

} // namespace kelo
