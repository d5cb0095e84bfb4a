#!/usr/bin/env python3
"""Walks the accessibility tree of every screen as a screen reader gets it: over AT-SPI, with real
key presses. It needs a bus, a screen and a home of its own: access_walk.py PROGRAM HOME"""

import os
import pathlib
import subprocess
import sys
import time

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi

ACTING = {Atspi.Role.PUSH_BUTTON, Atspi.Role.CHECK_BOX, Atspi.Role.RADIO_BUTTON}
FOCUSABLE = ACTING | {Atspi.Role.LIST, Atspi.Role.ENTRY, Atspi.Role.TEXT}
TO_READ = {Atspi.Role.HEADING, Atspi.Role.PARAGRAPH, Atspi.Role.PANEL, Atspi.Role.GROUPING,
           Atspi.Role.LIST_ITEM, Atspi.Role.PROGRESS_BAR, Atspi.Role.NOTIFICATION}
PATIENCE = 40  # seconds; the sanitizers are slow and the machine may be busy


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


def has(node, state):
    return node.get_state_set().contains(state)


class Program:
    """Kelo in a window with the keyboard focus, over an engine that prints `lines` and then
    listens."""

    def __init__(self, program, home, lines):
        home = pathlib.Path(home)
        home.mkdir(parents=True, exist_ok=True)
        engine = home / "kelo-engine"
        engine.write_text("#!/bin/sh\ncat <<'END'\n" + "".join(f"@{line}\n" for line in lines)
                          + f"END\nexec cat > '{home}/input'\n")
        engine.chmod(0o755)
        self.input = home / "input"
        environment = dict(
            os.environ, KELO_HOME=str(home / "data"), KELO_PAYLOAD=str(home),
            XDG_CONFIG_HOME=str(home / "config"), QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1")
        self.process = subprocess.Popen([program], env=environment)
        self.window = until(self.find_window, "the main window in the tree")
        subprocess.run(["xdotool", "search", "--sync", "--onlyvisible", "--name", "^Kelo$",
                        "windowfocus", "--sync"], check=True, stdout=subprocess.DEVNULL)
        until(lambda: has(self.window, Atspi.StateType.ACTIVE), "the window's activation")

    def __enter__(self):
        return self

    def __exit__(self, failure, *_):
        self.process.terminate()
        status = self.process.wait(PATIENCE)
        assert failure or status == 0, f"it ended with {status}"

    def find_window(self):
        assert self.process.poll() is None, "it ended by itself"
        desktop = Atspi.get_desktop(0)
        for application in (desktop.get_child_at_index(i) for i in range(desktop.get_child_count())):
            if application is None or application.get_process_id() != self.process.pid:
                continue
            application.set_cache_mask(Atspi.Cache.NONE)  # the truth, each time
            for i in range(application.get_child_count()):
                window = application.get_child_at_index(i)
                if window is not None and window.get_name() == "Kelo":
                    return window
        return None

    def nodes(self):
        """Everything in the window, shown or not, in reading order."""
        found = []

        def collect(parent):
            for i in range(parent.get_child_count()):
                child = parent.get_child_at_index(i)
                if child is not None:
                    found.append(child)
                    collect(child)

        collect(self.window)
        return found

    def shown(self):
        return [n for n in self.nodes() if has(n, Atspi.StateType.VISIBLE)]

    def find(self, text):
        """The first that shows and whose name begins so."""
        return until(lambda: next((n for n in self.shown() if n.get_name().startswith(text)), None),
                     text)

    def wait_for(self, text):
        self.find(text)
        time.sleep(1)  # one screen fades out while the next comes in


def check_names(nodes, screen):
    before = None
    for node in nodes:
        role, name = node.get_role(), node.get_name()
        where = f"{screen}: {node.get_role_name()} {name!r}"
        if role in (Atspi.Role.NOTIFICATION, Atspi.Role.FILLER):
            continue
        assert role in FOCUSABLE | TO_READ, where + " has a role that nobody expects"
        assert name, where + " has no name"
        assert name != before, where + " is named like the one before it"
        before = None if role == Atspi.Role.PANEL else name  # it may be named by its heading
        if has(node, Atspi.StateType.FOCUSABLE):
            assert role in FOCUSABLE, where + " has the wrong role to be focusable"
        if role in ACTING:
            names = [Atspi.Action.get_action_name(node, i) for i in range(node.get_n_actions())]
            assert {"Press", "Toggle"} & set(names), where + f" offers {names}, not a press"


def check_tab(nodes, screen):
    """Tab visits what can have the focus and shows, or comes to show meanwhile, in its order."""
    stops = [n for n in nodes if has(n, Atspi.StateType.FOCUSABLE)]
    names = [n.get_name() for n in stops]
    seen = set()

    def focus():
        states = [n.get_state_set() for n in stops]
        seen.update(i for i, s in enumerate(states) if s.contains(Atspi.StateType.VISIBLE))
        return next((i for i, s in enumerate(states) if s.contains(Atspi.StateType.FOCUSED)), None)

    visited = []
    now = focus()
    while now not in visited[:1]:
        if now is not None:
            visited.append(now)
        before = now
        press("Tab")
        now = until(lambda: (i := focus()) is not None and i != before and [i],
                    f"{screen}: a focus after {before is not None and names[before]}")[0]
    first = visited.index(min(visited))
    in_order = visited[first:] + visited[:first]
    assert in_order == sorted(seen), f"{screen}: Tab visits " \
        f"{[names[i] for i in in_order]}, what shows is {[names[i] for i in sorted(seen)]}"


def check(program, screen):
    shown = program.shown()
    assert len(shown) > 4, f"{screen}: hardly anything is there"
    check_names(shown, screen)
    check_tab(program.nodes(), screen)


def questions(arguments):
    titles = ["Hello. I’m Kelo.", "What should I call you?", "And what will you call me?",
              "Where in the world are you?", "When’s your birthday?", "How can I fit you best?",
              "One last thing: may I listen?"]
    fields = {1: "Your name", 2: "Your own name for the assistant, one word", 3: "Your town or city"}
    controls = {
        2: [(Atspi.Role.RADIO_BUTTON, "Harmony")], 3: [(Atspi.Role.RADIO_BUTTON, "Celsius")],
        5: [(Atspi.Role.CHECK_BOX, "I use a screen reader. ")],
        6: [(Atspi.Role.RADIO_BUTTON, "Not now"), (Atspi.Role.CHECK_BOX, "Give me my natural")]}
    with Program(*arguments, ["mode idle", "welcome"]) as program:
        for step, title in enumerate(titles):
            program.wait_for(title)
            if step in fields:
                assert has(program.find(fields[step]), Atspi.StateType.FOCUSED), \
                    f"{title}: the field has no focus"
            if step == 4:
                press("Right")  # the days of January
                program.find("January 1")
            check(program, title)
            for role, begins in controls.get(step, []):
                assert program.find(begins).get_role() == role, f"{begins} is no {role.value_nick}"
            if step == 2:
                luna = program.find("Luna")
                luna.do_action(0)
                until(lambda: has(luna, Atspi.StateType.CHECKED), "the name to be chosen")
            if step == 5:
                toggle = program.find("I play piano or make music. ")
                toggle.do_action(0)
                until(lambda: has(toggle, Atspi.StateType.CHECKED), "the toggle to be on")
            if step < 6:
                program.find("CONTINUE").do_action(0)
        # The choices above were the screen reader's to say.
        assert program.input.read_text().count("~speak ") == len(titles)


def console(arguments):
    lines = ["mode idle", "kbd Stage Piano 88", "say Good evening.", "heard play",
             "jazz Swing feel|Blues in F", "update 3.2|Notes."]
    with Program(*arguments, lines) as program:
        program.wait_for("Update now to version 3.2")
        check(program, "console")
        press("Escape", "f")
        program.wait_for("BACK  [ F ]")
        check(program, "visualiser")


if __name__ == "__main__":
    questions(sys.argv[1:])
    console(sys.argv[1:])
    print("every screen can be read and reached")
