#!/usr/bin/env python3
"""Walks the accessibility tree of every screen as a screen reader gets it: over AT-SPI, on a bus
of its own, with real key presses. Usage: access_walk.py PROGRAM PAYLOAD FOLDER"""

import os
import pathlib
import subprocess
import sys
import time

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi

ACTING = {Atspi.Role.PUSH_BUTTON, Atspi.Role.CHECK_BOX, Atspi.Role.RADIO_BUTTON}
FOCUSABLE_ROLES = ACTING | {Atspi.Role.LIST, Atspi.Role.ENTRY, Atspi.Role.TEXT}
PATIENCE = 20  # seconds; the sanitizers are slow


def until(wanted, what):
    end = time.monotonic() + PATIENCE
    while time.monotonic() < end:
        found = wanted()
        if found:
            return found
        time.sleep(0.05)
    raise AssertionError(f"never came: {what}")


def press(*keys):
    subprocess.run(["xdotool", "key", "--clearmodifiers", *keys], check=True)


def name(node):
    return node.get_name()


def has(node, state):
    return node.get_state_set().contains(state)


class Program:
    """Kelo in a window with the keyboard focus, over an engine that follows a script."""

    def __init__(self, arguments, script):
        program, payload, folder = arguments
        home = pathlib.Path(folder)
        home.mkdir(parents=True, exist_ok=True)
        for old in home.glob("script*"):
            old.unlink()
        (home / "script").write_text(script)
        environment = dict(
            os.environ, KELO_HOME=str(home / "data"), KELO_PAYLOAD=payload,
            KELO_SCRIPT=str(home / "script"), XDG_CONFIG_HOME=str(home / "config"),
            QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1")
        self.process = subprocess.Popen([program], env=environment)
        self.window = until(self.find_window, "the main window in the tree")
        subprocess.run(["xdotool", "search", "--sync", "--onlyvisible", "--name", "^Kelo$",
                        "windowfocus", "--sync"], check=True, stdout=subprocess.DEVNULL)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.process.terminate()
        assert self.process.wait(PATIENCE) == 0, "it did not end in order"

    def find_window(self):
        desktop = Atspi.get_desktop(0)
        for application in (desktop.get_child_at_index(i) for i in range(desktop.get_child_count())):
            if application is None or application.get_process_id() != self.process.pid:
                continue
            for i in range(application.get_child_count()):
                window = application.get_child_at_index(i)
                if window is not None and name(window) == "Kelo":
                    return window
        return None

    def nodes(self):
        """What shows, in reading order."""
        found = []

        def collect(parent):
            for i in range(parent.get_child_count()):
                child = parent.get_child_at_index(i)
                if child is not None and has(child, Atspi.StateType.VISIBLE):
                    found.append(child)
                    collect(child)

        collect(self.window)
        return found

    def focused(self):
        return next((n for n in self.nodes() if has(n, Atspi.StateType.FOCUSED)), None)

    def wait_for(self, text):
        until(lambda: any(name(n) == text for n in self.nodes()), text)
        time.sleep(0.4)  # screens fade


def check_tree(program, screen):
    nodes = program.nodes()
    assert len(nodes) > 4, f"{screen}: hardly anything is there"
    before = None
    for node in nodes:
        role, text = node.get_role(), name(node)
        where = f"{screen}: {node.get_role_name()} {text!r}"
        if role in (Atspi.Role.NOTIFICATION, Atspi.Role.FILLER):
            continue
        assert role not in (Atspi.Role.UNKNOWN, Atspi.Role.INVALID), where + " has no role"
        assert text or role == Atspi.Role.PANEL, where + " has no name"
        assert text != before or not text, where + " is named like the one before it"
        before = text
        if has(node, Atspi.StateType.FOCUSABLE):
            assert role in FOCUSABLE_ROLES, where + " has the wrong role to be focusable"
        if role in ACTING:
            actions = node.get_action_iface()
            assert actions and actions.get_n_actions() > 0, where + " cannot be pressed"
    return [name(n) for n in nodes if has(n, Atspi.StateType.FOCUSABLE)]


def check_tab(program, screen, expected):
    visited = []
    for _ in range(len(expected)):
        before = program.focused()
        press("Tab")
        until(lambda: (now := program.focused()) is not None
              and (len(expected) == 1 or before is None or now != before), f"{screen}: a new focus")
        visited.append(name(program.focused()))
    assert sorted(visited) == sorted(expected), \
        f"{screen}: Tab visits {visited}, the tree says {expected}"


def questions(arguments):
    titles = ["Hello. I’m Kelo.", "What should I call you?", "And what will you call me?",
              "Where in the world are you?", "When’s your birthday?", "How can I fit you best?",
              "One last thing: may I listen?"]
    fields = {1: "Your name", 2: "Your own name for the assistant, one word", 3: "Your town or city"}
    with Program(arguments, "line @mode idle\nline @welcome\nserve\n") as program:
        for step, title in enumerate(titles):
            program.wait_for(title)
            if step in fields:
                assert name(program.focused()) == fields[step], f"{title}: the field has no focus"
            if step == 4:
                press("Right")
            check_tab(program, title, check_tree(program, title))
            if step == 5:
                toggle = next(n for n in program.nodes() if name(n).startswith("I use a screen"))
                toggle.get_action_iface().do_action(0)
                until(lambda: has(toggle, Atspi.StateType.CHECKED), "the toggle to be on")
            if step < 6:
                go_on = next(n for n in program.nodes() if name(n) == "CONTINUE")
                go_on.get_action_iface().do_action(0)


def console(arguments):
    script = ("line @mode idle\nline @kbd Stage Piano 88\nline @say Good evening.\n"
              "line @heard play\nline @jazz Swing feel|Blues in F\nline @update 3.2|Notes.\nserve\n")
    with Program(arguments, script) as program:
        program.wait_for("Blues in F")
        check_tab(program, "console", check_tree(program, "console"))
        press("Escape", "f")
        program.wait_for("BACK  [ F ]")
        check_tab(program, "visualiser", check_tree(program, "visualiser"))


if __name__ == "__main__":
    questions(sys.argv[1:])
    console(sys.argv[1:])
    print("every screen can be read and reached")
