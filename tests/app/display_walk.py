#!/usr/bin/env python3
"""Uses the whole program as somebody does who hears the screen: display_walk.py WALK PROGRAM HOME.
It needs a bus and a screen of its own."""

import functools
import os
import pathlib
import resource
import signal
import socket
import subprocess
import sys
import time

import desktop_walks
from running_program import (
    Atspi, GLib, Program, Tray, has, press, shown_windows, until)


def updates(program):
    """The banner's buttons, and the engine's end with the button that brings it back."""
    program.wait_for_window()
    for answer, button in (("no", "Update later"), ("yes", "Update now")):
        program.say("update 3.2|Notes.")
        program.find(button).do_action(0)
        program.expect(f"~update {answer}\n")
    for run in range(2, 5):  # three crashes are forgiven
        program.crash_engine()
        until(lambda: program.runs() == run, "the engine once more")
    program.crash_engine()
    program.find("RESTART ENGINE").do_action(0)
    until(lambda: program.runs() == 5, "the engine that was asked for")
    program.find("Kelo is ONLINE")


def window(program):
    """The window by its keys and its menu: zoom, full screen, minimise, close, its place."""
    program.wait_for_window()

    def extents():
        box = program.window.get_extents(Atspi.CoordType.SCREEN)
        return box.x, box.y, box.width, box.height

    until(lambda: extents()[2:] == (1240, 840), "the first size")
    for key, kept in (("ctrl+plus", 1.25), ("ctrl+equal", 1.5), ("ctrl+minus", 1.25)):
        press(key)
        program.settings_say(f"scale={kept}")

    def systems_from_top():
        return program.find("SYSTEMS").get_extents(Atspi.CoordType.WINDOW).y

    large = systems_from_top()
    press("ctrl+0")
    program.settings_say("scale=1")
    until(lambda: systems_from_top() < large, "the old size")

    for key in ("F10", "Menu"):
        press(key)
        until(lambda: len(shown_windows("--class", "kelo")) == 2, "the window's menu")
        press("Down", "Return")
        program.settings_say("scale=1.25")
        press("ctrl+0")
        program.settings_say("scale=1")

    program.say("window full 1")
    until(lambda: extents() == (0, 0, 1600, 1000), "the full screen")
    program.say("window full 0")
    until(lambda: extents()[2:] == (1240, 840), "its size again")
    subprocess.run(["xdotool", "getactivewindow", "windowsize", "--sync", "1000", "700",
                    "windowmove", "--sync", "40", "60"], check=True)
    place = until(lambda: extents()[2:] == (1000, 700) and extents(), "the new size")
    program.settings_say("KeloMain=@Rect({} {} {} {})".format(*place))

    press("ctrl+m")
    until(lambda: not shown_windows(), "the window's end")
    program.say("window show 1")
    program.wait_for_window()
    press("n", "ctrl+w")
    until(lambda: not shown_windows(), "the window's end")
    back = "I’m still here, without a window. Start me again to bring it back."
    program.expect(f"n~bg\n~speak {back}\n")
    program.say("window show 1")
    program.wait_for_window()
    until(lambda: extents() == place, "its place again")
    press("ctrl+q")
    until(lambda: program.process.poll() == 0, "its end")
    program.expect("q")


def tray(program):
    """The tray's title, marks and entries, and what becomes of a renamed assistant."""
    host = Tray()
    assert host.property("Title") == "Luna" and host.property("ToolTip")[2] == "Luna"
    titles = ["Open the window", "Change my name, city or wake word…", "Install the natural voice…",
              "Listen for “Luna”", "Show the panel when Luna speaks", "Start when I log in",
              "Microphone", "Window", "Quit Kelo"]

    def marks():
        return {title: mark for title, (_, mark, _) in host.menu().items() if mark is not None}

    assert [title for title in host.menu() if title[0] != "-"] == titles, host.menu()
    assert marks() == {titles[3]: 0, titles[4]: 1, titles[5]: 0}, marks()
    host.choose("Show the panel when Luna speaks")
    program.settings_say("overlay=false")
    host.choose("Start when I log in")
    entry = program.home / "config/autostart/app.kelo.assistant.desktop"
    until(entry.exists, "the login entry")
    host.choose("Listen for “Luna”")
    program.settings_say("voice=true")
    program.say("name Nova")
    until(lambda: "Listen for “Nova”" in host.menu(), "the new name in the menu")
    assert marks()["Show the panel when Nova speaks"] == 0 and marks()[titles[5]] == 1, marks()
    assert host.property("Title") == "Luna"
    host.choose("Start when I log in")
    until(lambda: not entry.exists(), "the login entry's end")
    suggested = "As the system suggests"
    assert host.menu()["Microphone"][2][suggested][1] == 0, "another one is wanted"
    host.choose(suggested, within="Microphone")
    program.settings_say("microphone=")
    assert host.menu()["Microphone"][2][suggested][1] == 1
    host.choose("Listen for “Nova”")
    program.settings_say("voice=false")
    host.choose("Install the natural voice…")
    until(lambda: program.input().endswith("~say install the natural voice\n"), "the request")
    assert not shown_windows()
    host.choose("Open the window")
    program.wait_for_window()
    host.choose("Larger", within="Window")
    program.settings_say("scale=1.25")
    host.choose("Close", within="Window")
    until(lambda: not shown_windows(), "the window's end")
    host.choose("Change my name, city or wake word…")
    program.wait_for_window()
    program.find("Hello. I’m ")
    assert "~bg\n~speak Hello" in program.input(), "with a tray nobody is told how to come back"
    host.choose("Quit Kelo")
    until(lambda: program.process.poll() == 0, "its end")


def relaunch(program):
    """A start by the session shows no window; what it starts anew shows what it showed."""
    tray = Tray()
    until(lambda: tray.item, "the icon")
    assert not shown_windows(), "the session started it"
    tray.choose("Open the window")
    program.wait_for_window()
    for run, shows in ((2, True), (3, False)):
        tray.item = None
        if not shows:
            program.say("window show 0")
            until(lambda: not shown_windows(), "the window's end")
        program.say("relaunch")
        until(lambda: program.runs() == run, "the new one's engine")
        assert "DESKTOP_AUTOSTART_ID" not in program.noted("environment"), "the mark is passed on"
        until(lambda: tray.item, "the new one's icon")
        if shows:
            program.wait_for_window()
    time.sleep(1)
    assert not shown_windows(), "nobody looked at the window of the one before"
    tray.choose("Quit Kelo")
    program.expect("qqq")  # each was asked to end


class Listener:
    """Hears what a screen reader is told, by the events of newer or of older ones."""

    def __init__(self, event):
        self.heard = []
        self.listener = Atspi.EventListener.new(self.told)
        self.listener.register(event)
        self.event = event

    def told(self, event):
        try:
            if event.source.get_role() != Atspi.Role.NOTIFICATION:
                return
        except GLib.GError:
            return  # gone meanwhile
        if "announcement" in self.event:
            self.heard.append(event.any_data)
        elif event.detail1:
            self.heard.append(event.source.get_name())

    def expect(self, *texts):
        """These sentences and no others, in one piece or several, in any order."""
        def heard():
            return ". ".join(piece.removesuffix(".") for piece in self.heard)

        until(lambda: len(heard()) >= len(". ".join(texts)), f"{texts}")
        assert sorted(heard().split(". ")) == sorted(texts), self.heard
        self.heard.clear()


def announcements(program):
    """What a screen reader is told, each thing once and nothing that the engine speaks."""
    program.wait_for_window()
    for event in ("object:announcement", "object:state-changed:showing"):
        listener = Listener(event)
        program.say("kbd Piano")
        listener.expect("Piano connected: Piano")
        press("ctrl+plus")
        time.sleep(0.05)
        program.say("update 3.2|Faster.")
        time.sleep(0.05)
        press("f")
        listener.expect("Size 125 percent", "New update: version 3.2", "Faster", "Visualiser open")
        program.say("mode teach", "say A lesson.", "done")
        program.say("kbd")
        listener.expect("No piano connected")
        press("f", "ctrl+0")
        program.say("update ")
        listener.expect("Visualiser closed", "Size 100 percent")
        program.say("mode idle")
        listener.expect("Mode: standby")
        listener.listener.deregister(event)


def answers(program):
    """The questions by keys alone, down to what the engine is told."""
    program.wait_for_window()
    program.say("welcome")

    program.find("Hello. I’m Kelo.")
    press("f", "o", "Return")  # no field here: no visualiser, no file chooser
    field = program.find("Your name")
    until(lambda: has(field, Atspi.StateType.FOCUSED), "the field's focus")
    press("a", "bar", "n", "space", "Return")
    field = program.find("Your own name for the assistant, one word")
    until(lambda: has(field, Atspi.StateType.FOCUSED), "the field's focus")
    press("ctrl+w")
    until(lambda: not shown_windows(), "the window's end")
    program.say("window show 1", "welcome")  # each of which asks again, but once
    program.wait_for_window()
    until(lambda: has(program.find(field.get_name()), Atspi.StateType.FOCUSED), "the field's focus")
    press("Right", "Right", "Return")  # Harmony
    until(lambda: has(program.find("Your town or city"), Atspi.StateType.FOCUSED), "the focus")
    press("p", "Down")  # in Fahrenheit
    listener = Listener("object:announcement")
    press("Return")
    program.find("When’s your birthday?")
    until(lambda: any("up and down the day" in each for each in listener.heard), "its keys")
    press("Right", "Right", "Right", *["Up"] * 6, "Return")  # the 7th of March
    program.find("I use a screen reader. ")
    press("Escape")
    program.find("When’s your birthday?")
    press("Return")
    toggle = program.find("I use a screen reader. ")
    toggle.grab_focus()
    press("space")
    until(lambda: has(toggle, Atspi.StateType.CHECKED), "the toggle to be on")
    press("ctrl+w")
    until(lambda: not shown_windows(), "the window's end")
    program.say("window show 1")  # asked again where it was closed
    program.wait_for_window()
    press("Return")
    program.find("One last thing")
    press("Down", "Return")
    until(lambda: "~setup " in program.input(), "the answers")
    setup = program.input().split("~setup ")[1]
    assert setup == "a n|Harmony|p|F|uses a screen reader, so never rely on anything visual|false|" \
        "03-07|true\n", setup
    spoken = [line for line in program.input().split("\n") if line.startswith("~speak ")]
    assert sum("And what will you call me?" in line for line in spoken) == 2, spoken


def beginnings(start):
    """Starts that are none, and starts without anything."""
    def run(*arguments, **environment):
        return subprocess.run([start.program, *arguments], env=dict(os.environ, **environment),
                              capture_output=True, text=True, timeout=60)

    help_ = run("--help", DISPLAY="", WAYLAND_DISPLAY="")
    assert help_.returncode == 0 and "--snapshot <FOLDER>" in help_.stdout, help_
    version = run("--version", DISPLAY="")
    assert version.returncode == 0 and version.stdout.startswith("kelo 0."), version
    blind = {name: value for name, value in os.environ.items()
             if name not in ("DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM")}
    for nobody in ({}, {"DISPLAY": ":4711"}, {"WAYLAND_DISPLAY": "wayland-4711"}):
        ended = subprocess.run([start.program], env=blind | nobody, timeout=60,
                               capture_output=True, text=True)
        assert ended.returncode == 1 and all(name in ended.stderr for name in nobody), ended
    usual = resource.getrlimit(resource.RLIMIT_FSIZE)
    resource.setrlimit(resource.RLIMIT_FSIZE, (8192, usual[1]))  # no room for shaders
    program = start(arguments=["--hidden"], QML_DISABLE_DISK_CACHE="1")  # reads back what it lost
    resource.setrlimit(resource.RLIMIT_FSIZE, usual)
    with program:
        assert not shown_windows()
        assert run(KELO_HOME=str(program.home / "data")).returncode == 0
        program.wait_for_window()  # the second start raised the first one's
        assert program.runs() == 1
        program.say("window login 1")
        program.expect("~login on\n")
        program.say("window show 0")
        until(lambda: not shown_windows(), "the window's end")
        program.say("window visual 1")
        program.wait_for_window()
        program.find("BACK  [ F ]")
        limits = resource.prlimit(program.process.pid, resource.RLIMIT_FSIZE, (0, usual[1]))
        press("f", "ctrl+plus")
        program.find("SETTINGS: NOT KEPT")
        resource.prlimit(program.process.pid, resource.RLIMIT_FSIZE, limits)
        program.settings_say("scale=1.25")
        until(lambda: "The settings of the display are kept again." in program.input(), "the news")
        assert program.input().count("I can’t keep the settings") == 1
        assert not [n for n in program.nodes() if n.get_name().startswith("SETTINGS")]
    nowhere = subprocess.Popen([start.program], env=dict(
        os.environ, KELO_PAYLOAD="/nowhere", KELO_HOME="/dev/null/nowhere", HOME="/dev/null",
        XDG_CONFIG_HOME="/dev/null", DBUS_SESSION_BUS_ADDRESS="unix:path=/dev/null"),
        stderr=subprocess.PIPE, text=True)
    until(shown_windows, "a window without anything")
    time.sleep(1)
    nowhere.terminate()
    told = nowhere.communicate(timeout=60)[1]
    assert nowhere.returncode == 0 and "no setting can be kept" in told, told


def asked_to_end(program, **environment):
    """A start that is asked to end as soon as it can take it."""
    started = subprocess.Popen([program], env=dict(os.environ, **environment))
    caught = pathlib.Path(f"/proc/{started.pid}/status")
    until(lambda: int(caught.read_text().split("SigCgt:")[1].split()[0], 16)
          & 1 << signal.SIGTERM - 1, "its care for requests to end")
    started.terminate()
    return started.wait(60)


def ends(start):
    """Each signal ends it in order, and so does a hidden one's engine."""
    assert asked_to_end(start.program, KELO_PAYLOAD="/nowhere") == 0
    with socket.socket(socket.AF_UNIX) as silent:  # a display that never answers
        path = os.path.join(os.environ["HOME"], "silent")
        pathlib.Path(path).unlink(missing_ok=True)
        silent.bind(path)
        silent.listen()
        os.environ.pop("QT_QPA_PLATFORM")
        # Refused at once, or else ended for not following.
        assert asked_to_end(start.program, DISPLAY=path) in (1, -signal.SIGALRM)
    for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
        with start() as program:
            program.process.send_signal(number)
            assert program.process.wait(60) == 0
            program.expect("q")
    with start(arguments=["--hidden"]) as program:
        program.end_engine()
        assert program.process.wait(60) == 0


WALKS = {walk.__name__: walk for walk in (
    announcements, answers, beginnings, desktop_walks.desktop, desktop_walks.sandbox,
    desktop_walks.wishes, ends, relaunch, tray, updates, window)}
STARTS = {"tray": {"arguments": ["--hidden"], "assistant": "Luna",
                   "settings": "microphone=usb\n"},
          "relaunch": {"DESKTOP_AUTOSTART_ID": "10a8"}}

if __name__ == "__main__":
    name, path, home = sys.argv[1:]
    start = functools.partial(Program, path, home)
    start.program = path
    with subprocess.Popen(["openbox", "--sm-disable"]) as window_manager:
        try:
            if name in ("beginnings", "desktop", "ends", "sandbox", "wishes"):
                WALKS[name](start)
            else:
                with start(**STARTS.get(name, {})) as program:
                    WALKS[name](program)
        finally:
            window_manager.terminate()
