"""Walks through what the desktop is for Kelo, over a desktop of the test's own: its portal, and
the services that there are without one."""

from running_program import Atspi, Gio, GLib, has, own_name, press, shown_windows, until

PORTAL = "/org/freedesktop/portal/desktop"
HELD = PORTAL + "/request/held"


class Desktop:
    """Answers the calls of one bus name, and notes them as (method, arguments)."""

    def __init__(self, name, objects):
        self.calls, self.settings, self.answers = [], {}, {}
        self.bus = Gio.bus_get_sync(Gio.BusType.SESSION)
        for path, interfaces in objects.items():
            for interface, methods in interfaces.items():
                self.bus.register_object(
                    path, self.parsed(interface, methods), self.called, self.read, None)
        own_name(self.bus, name)

    @staticmethod
    def parsed(name, methods):
        lines = "".join(
            f'<method name="{method}">' + "".join(
                f'<arg type="{kind}" direction="in"/>' for kind in takes)
            + (f'<arg type="{gives}" direction="out"/>' if gives else "") + "</method>"
            for method, (takes, gives) in methods.items())
        return Gio.DBusNodeInfo.new_for_xml(
            f'<node><interface name="{name}">{lines}'
            '<property name="version" type="u" access="read"/></interface></node>').interfaces[0]

    def read(self, *_):
        return GLib.Variant("u", 1)

    def called(self, bus, sender, _path, interface, method, arguments, call):
        given = arguments.unpack()
        self.calls.append((method, *given))
        if method == "Read":
            if given not in self.settings:
                return call.return_dbus_error("org.freedesktop.portal.Error.NotFound", "none such")
            return call.return_value(GLib.Variant("(v)", (self.settings[given],)))
        if given and isinstance(given[-1], dict) and "Notification" not in interface:  # answered later
            token = given[-1].get("handle_token")
            handle = f"{PORTAL}/request/{sender[1:].replace('.', '_')}/{token}" if token else HELD
            call.return_value(GLib.Variant("(o)", (handle,)))
            if method in self.answers:
                bus.emit_signal(None, handle, "org.freedesktop.portal.Request", "Response",
                                GLib.Variant("(ua{sv})", self.answers[method]))
            return None
        return call.return_value(self.answers.get(method))

    def signal(self, path, interface, name, value):
        self.bus.emit_signal(None, path, interface, name, value)

    def wait_for(self, *call):
        """The arguments after those given, of the oldest such call."""
        def found():
            return next((each for each in self.calls if each[:len(call)] == call), None)

        got = until(lambda: found(), f"the call {call}")
        self.calls.remove(got)
        return got[len(call):]


def portal():
    prefix = "org.freedesktop.portal."
    return Desktop(prefix + "Desktop", {HELD: {prefix + "Request": {"Close": ((), "")}}, PORTAL: {
        prefix + "Settings": {"Read": (("s", "s"), "v")},
        prefix + "Inhibit": {"Inhibit": (("s", "u", "a{sv}"), "o")},
        prefix + "Background": {"RequestBackground": (("s", "a{sv}"), "o")},
        prefix + "Notification": {"AddNotification": (("s", "a{sv}"), ""),
                                  "RemoveNotification": (("s",), "")},
        prefix + "GlobalShortcuts": {"CreateSession": (("a{sv}",), "o"),
                                     "BindShortcuts": (("o", "a(sa{sv})", "s", "a{sv}"), "o")}}})


def changed(desktop, group, key, value):
    desktop.signal(PORTAL, "org.freedesktop.portal.Settings", "SettingChanged",
                   GLib.Variant("(ssv)", (group, key, value)))


def wishes(start):
    """The display follows what the user told the desktop, until the user has told Kelo."""
    desktop = portal()
    contrast = ("org.freedesktop.appearance", "contrast")
    text = ("org.gnome.desktop.interface", "text-scaling-factor")
    for users, on in (("", True), ("contrast=false\nscale=1\n", False)):
        desktop.settings = {contrast: GLib.Variant("v", GLib.Variant("u", 1)),
                            text: GLib.Variant("v", GLib.Variant("d", 1.5))}
        with start(settings=users) as program:
            program.wait_for_window()
            switch = until(lambda: [n for n in program.nodes() if n.get_name() ==
                                    "High contrast, on or off"], "the switch")[0]
            desktop.wait_for("Read", *contrast)
            desktop.wait_for("Read", *text)
            until(lambda: not on or has(switch, Atspi.StateType.CHECKED), "high contrast")
            assert has(switch, Atspi.StateType.CHECKED) == on, users
            program.say("say Good evening.", "done")
            if on:
                until(lambda: "I draw everything at 150 percent" in program.input(), "the news")
            changed(desktop, *contrast, GLib.Variant("u", 0))
            until(lambda: not has(switch, Atspi.StateType.CHECKED), "usual contrast")
            assert ("contrast" in program.settings.read_text()) == bool(users)
            program.say("say Good night.", "done")
            program.find("Kelo is ONLINE")
            assert program.input().count("I draw everything") == (1 if on else 0)
            press("ctrl+0", "ctrl+minus")  # what suits the desktop's texts, and less
            program.settings_say("scale=1.25")
            press("ctrl+w")  # where nobody else shows messages, the portal does
            desktop.wait_for("AddNotification")


def desktop(start):
    """Without a portal: a lesson keeps the screen lit, a closed window is told of, once."""
    name = "org.freedesktop.ScreenSaver"
    saver = Desktop(name, {"/" + name.replace(".", "/"): {
        name: {"Inhibit": (("s", "s"), "u"), "UnInhibit": (("u",), "")}}})
    saver.answers["Inhibit"] = GLib.Variant("(u)", (9,))
    name = "org.freedesktop.Notifications"
    path = "/" + name.replace(".", "/")
    notes = Desktop(name, {path: {name: {
        "Notify": (("s", "u", "s", "s", "s", "as", "a{sv}", "i"), "u"),
        "CloseNotification": (("u",), "")}}})
    notes.answers["Notify"] = GLib.Variant("(u)", (7,))
    with start() as program:
        program.wait_for_window()
        program.say("mode teach")
        saver.wait_for("Inhibit", "Kelo")
        program.say("paused 1", "mode idle")
        saver.wait_for("UnInhibit", 9)
        for again in (False, True):
            press("ctrl+w")
            until(lambda: not shown_windows(), "the window's end")
            if again:
                program.say("window show 1")
            else:
                title, _, actions, *_ = notes.wait_for("Notify", "Kelo", 0, "app.kelo.assistant")
                assert title == "Kelo goes on in the background", title
                assert actions == ["default", "Open Kelo", "open", "Open Kelo"], actions
                for number in (8, 7):  # another program's, ours
                    assert not shown_windows()
                    notes.signal(path, name, "ActionInvoked", GLib.Variant("(us)", (number, "open")))
            program.wait_for_window()
        notes.wait_for("CloseNotification", 7)
        assert not saver.calls and not notes.calls, (saver.calls, notes.calls)


def sandbox(start):
    """All of that, the start at login and keys that reach Kelo from everywhere, by the portal."""
    host = portal()
    session = PORTAL + "/session/1"
    shortcuts = [(key, {"description": GLib.Variant("s", key.title()),
                        "trigger_description": GLib.Variant("s", "Control K")})
                 for key in ("listen", "show")]
    host.answers["CreateSession"] = (0, {"session_handle": GLib.Variant("s", session)})
    host.answers["BindShortcuts"] = (0, {"shortcuts": GLib.Variant("a(sa{sv})", shortcuts)})
    with start(container="flatpak") as program:
        program.wait_for_window()
        program.say("mode teach")
        _, flags, _ = host.wait_for("Inhibit")
        assert flags == 12, flags  # neither sleep nor a dark screen
        program.say("mode idle")
        host.wait_for("Close")

        for allowed in (True, False):
            host.answers["RequestBackground"] = (0 if allowed else 1, {
                "autostart": GLib.Variant("b", allowed)})
            program.say("window login 1")
            _, options = host.wait_for("RequestBackground")
            assert options["autostart"] and options["commandline"] == ["kelo", "--hidden"], options
            until(lambda: ("~login failed" in program.input()) != allowed, "the answer")
            program.settings_say(f"login={str(allowed).lower()}")
        assert not (program.home / "config/autostart").exists()

        press("F10")
        until(lambda: len(shown_windows("--class", "kelo")) == 2, "the window's menu")
        press("Up", "Up", "Up", "Return")
        (asked,) = host.wait_for("CreateSession")
        assert asked["session_handle_token"] == "kelo", asked  # the same at every start
        keys, *_ = host.wait_for("BindShortcuts", session)
        assert asked["shortcuts"] == keys, asked
        assert [key for key, about in keys if about["preferred_trigger"]] == ["listen", "show"], keys
        until(lambda: "everywhere. Listen: Control K. Show: Control K." in program.input(), "the keys")

        press("ctrl+w")
        until(lambda: not shown_windows(), "the window's end")
        _, options = host.wait_for("RequestBackground")
        assert not options["autostart"], "it was refused"
        identity, message = host.wait_for("AddNotification")
        assert message["buttons"] == [{"label": "Open Kelo", "action": "open"}], message
        host.signal(PORTAL, "org.freedesktop.portal.Notification", "ActionInvoked",
                    GLib.Variant("(ssav)", (identity, message["default-action"], [])))
        program.wait_for_window()
        host.wait_for("RemoveNotification", identity)

        def pressed(key):
            host.signal(PORTAL, "org.freedesktop.portal.GlobalShortcuts", "Activated",
                        GLib.Variant("(osta{sv})", (session, key, 1, {})))

        press("ctrl+w")
        until(lambda: not shown_windows(), "the window's end")
        pressed("show")
        program.wait_for_window()
        pressed("listen")
        until(lambda: program.input().endswith("~ear 1 Kelo\n"), "its name")
        program.settings_say("globalKeys=true")
        press("ctrl+q")
        assert program.process.wait(60) == 0
