"""Kelo as a user meets it: real keys, the accessibility tree as a screen reader gets it, the tray
over D-Bus, and an engine that prints what the test says and notes what it is sent."""

import json
import os
import pathlib
import shutil
import subprocess
import time

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, Gio, GLib

PATIENCE = 40  # seconds; the sanitizers are slow and the machine may be busy


def until(wanted, what):
    end = time.monotonic() + PATIENCE
    while time.monotonic() < end:
        while GLib.MainContext.default().iteration(False):
            pass
        found = wanted()
        if found:
            return found
        time.sleep(0.03)
    raise AssertionError(f"never came: {what}")


def press(*keys):
    subprocess.run(["xdotool", "key", "--clearmodifiers", *keys], check=True)


def has(node, state):
    return node.get_state_set().contains(state)


def below(node):
    """Everything in a window, shown or not, in reading order."""
    for i in range(node.get_child_count()):
        child = node.get_child_at_index(i)
        if child is not None:
            yield child
            yield from below(child)


def shown_windows(of="--name", pattern="^Kelo$"):
    """The windows on the screen whose titles (or, with "--class", classes) match."""
    command = ["xdotool", "search", "--onlyvisible", of, pattern]
    return subprocess.run(command, capture_output=True, text=True).stdout.split()


class Program:
    """Kelo over an engine of the test's own, with a home that nobody has used."""

    def __init__(self, program, home, arguments=(), assistant="Kelo", settings="", **environment):
        self.home = pathlib.Path(home)
        shutil.rmtree(self.home, ignore_errors=True)
        for folder in ("data", "config/Kelo"):
            (self.home / folder).mkdir(parents=True)
        self.settings = self.home / "config/Kelo/Kelo.conf"
        self.settings.write_text("[General]\n" + settings)
        (self.home / "data/profile.json").write_text(json.dumps({"assistant": assistant}))
        support = pathlib.Path(__file__).resolve().parent.parent / "support"
        shutil.copy(support / "scripted_engine.py", self.home / "kelo-engine")
        (self.home / "script").write_text(f"line @mode idle\nfollow {self.home}/lines")
        os.mkfifo(self.home / "lines")
        self.lines = os.open(self.home / "lines", os.O_RDWR)
        self.process = subprocess.Popen([program, *arguments], env=dict(
            os.environ, KELO_HOME=str(self.home / "data"), KELO_PAYLOAD=str(self.home),
            KELO_SCRIPT=str(self.home / "script"), XDG_CONFIG_HOME=str(self.home / "config"), QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1",
            **environment))
        until(lambda: self.runs() == 1, "the engine's start")

    def __enter__(self):
        return self

    def __exit__(self, failure, *_):
        if self.process.poll() is None:
            self.process.terminate()
        status = self.process.wait(PATIENCE)
        os.close(self.lines)
        assert failure or status == 0, f"it ended with {status}"

    def say(self, *lines):
        os.write(self.lines, "".join(f"@{line}\n" for line in lines).encode())

    def crash_engine(self):
        os.write(self.lines, b"crash")

    def end_engine(self):
        os.write(self.lines, b"exit 0")

    def noted(self, what):
        file = self.home / f"script.{what}"
        return file.read_text() if file.exists() else ""

    def runs(self):
        return len(self.noted("runs"))

    def input(self):
        return self.noted("input")

    def expect(self, text):
        """The engine is sent `text`, and nothing before it since the last time."""
        until(lambda: len(self.input()) >= len(text), f"{text!r} sent to the engine")
        got = self.input()
        (self.home / "script.input").unlink()
        assert got == text, f"the engine was sent {got!r}, not {text!r}"

    # ---- the window ----

    def windows(self):
        """The program's windows in the accessibility tree, by name. Not only this process's, for
        it may have started itself anew."""
        desktop = Atspi.get_desktop(0)
        found = {}
        for i in range(desktop.get_child_count()):
            application = desktop.get_child_at_index(i)
            if application is None or application.get_toolkit_name() != "Qt":
                continue
            application.set_cache_mask(Atspi.Cache.NONE)  # the truth, each time
            for j in range(application.get_child_count()):
                window = application.get_child_at_index(j)
                if window is not None:
                    found[window.get_name()] = window
        return found

    @property
    def window(self):
        return until(lambda: self.windows().get("Kelo"), "the main window in the tree")

    def wait_for_window(self):
        """The main window with the keyboard focus."""
        shown = until(shown_windows, "the main window")
        subprocess.run(["xdotool", "windowfocus", "--sync", shown[0]], check=True)
        until(lambda: "Kelo" in self.windows() and has(self.window, Atspi.StateType.ACTIVE),
              "the window's activation")

    def nodes(self):
        return list(below(self.window))

    def find(self, text):
        """The first that shows and whose name begins so."""
        return until(lambda: next((n for n in self.nodes() if n.get_name().startswith(text)
                                   and has(n, Atspi.StateType.VISIBLE)), None), text)

    def settings_say(self, line):
        until(lambda: line in self.settings.read_text().splitlines(), f"{line!r} in the settings")


def own_name(bus, name):
    bus.call_sync("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                  "RequestName", GLib.Variant("(su)", (name, 0)), None, Gio.DBusCallFlags.NONE,
                  -1, None)


class Tray:
    """The desktop's place for tray icons, and its hand on the first icon that comes."""

    WATCHER = "org.kde.StatusNotifierWatcher"
    INTERFACE = f"""<node><interface name="{WATCHER}">
        <method name="RegisterStatusNotifierItem"><arg type="s" direction="in"/></method>
        <property name="IsStatusNotifierHostRegistered" type="b" access="read"/>
        <property name="ProtocolVersion" type="i" access="read"/></interface></node>"""

    def __init__(self):
        self.item = None
        self.bus = Gio.bus_get_sync(Gio.BusType.SESSION)
        self.bus.register_object(
            "/StatusNotifierWatcher", Gio.DBusNodeInfo.new_for_xml(self.INTERFACE).interfaces[0],
            self.called, lambda *asked: GLib.Variant("i", 0) if asked[4] == "ProtocolVersion"
            else GLib.Variant("b", True), None)
        own_name(self.bus, self.WATCHER)

    def called(self, _bus, sender, _path, _interface, _method, _arguments, call):
        self.item = sender
        call.return_value(None)

    def ask(self, name, path, interface, method, arguments):
        return self.bus.call_sync(name, path, interface, method, arguments, None,
                                  Gio.DBusCallFlags.NONE, PATIENCE * 1000, None).unpack()

    def property(self, name):
        until(lambda: self.item, "the icon")
        return self.ask(self.item, "/StatusNotifierItem", "org.freedesktop.DBus.Properties", "Get",
                        GLib.Variant("(ss)", ("org.kde.StatusNotifierItem", name)))[0]

    def menu(self):
        """The menu as it stands when it opens: title to (id, mark, entries below), in order."""
        path = self.property("Menu")
        self.call_menu("AboutToShow", GLib.Variant("(i)", (0,)))

        def entries(node):
            return {properties.get("label", f"-{number}").replace("_", ""):
                    (number, properties.get("toggle-state", None)
                     if properties.get("toggle-type") else None, entries((0, {}, children)))
                    for number, properties, children in node[2]}

        return entries(self.ask(self.item, path, "com.canonical.dbusmenu", "GetLayout",
                                GLib.Variant("(iias)", (0, -1, [])))[1])

    def call_menu(self, method, arguments):
        return self.ask(self.item, "/MenuBar", "com.canonical.dbusmenu", method, arguments)

    def choose(self, title, within=None):
        menu = self.menu()[within][2] if within else self.menu()
        self.call_menu("Event", GLib.Variant(
            "(isvu)", (menu[title][0], "clicked", GLib.Variant("i", 0), 0)))
