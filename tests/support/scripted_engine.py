#!/usr/bin/env -S python3 -I
"""The program behind ScriptedEngine. "KELO_SCRIPT" names its script, and what it notes goes into
files beside that."""

import os
import select
import signal
import sys
import time

LONGEST_LIFE = 60  # seconds; nothing survives a test that died
SCRIPT = os.environ["KELO_SCRIPT"]
received = b""
stubborn = False


def note(kind, contents, mode="wb"):
    with open(f"{SCRIPT}.{kind}", mode) as file:
        file.write(contents)


def write(contents, to=sys.stdout):
    to.buffer.write(contents)
    to.flush()


def read():
    """False at the end of the input."""
    global received
    got = os.read(0, 4096)
    received += got
    note("input", got, "ab")
    return bool(got)


def wait(text):
    global received
    while text not in received:
        if not read():
            os._exit(0)
    received = b""


def burst(count, text):
    write(b"".join(text.replace(b"#", b"%d" % i, 1) + b"\n" for i in range(count)))


def resist():
    global stubborn
    stubborn = True
    signal.signal(signal.SIGTERM, signal.SIG_IGN)


def serve():
    while read():
        if received.endswith(b"q") and not stubborn:
            os._exit(0)
    while stubborn:
        signal.pause()
    os._exit(0)


def save_slowly(seconds):
    def save(*_):
        time.sleep(seconds)
        note("saved", b"yes")
        os._exit(0)

    global stubborn
    stubborn = True
    signal.signal(signal.SIGTERM, save)


def flood():
    if os.fork() == 0:
        note("flooder", b"%d" % os.getpid())
        while True:
            write(b"x" * 4096)


def follow(path):
    signal.alarm(0)
    steps = os.open(path, os.O_RDWR)
    while True:
        ready = select.select([0, steps], [], [])[0]
        if steps in ready:
            got = os.read(steps, 4096)
            do(got) if got in (b"crash", b"exit 0") else write(got)
        if 0 in ready and (not read() or received.endswith(b"q")):
            os._exit(0)


STEPS = {
    "line": lambda rest: write(rest + b"\n"),
    "raw": lambda rest: write(rest.decode("unicode_escape").encode("latin-1")),
    "burst": lambda rest: burst(int(rest.split(b" ")[0]), rest.split(b" ", 1)[1]),
    "bytes": lambda rest: write(b"x" * int(rest)),
    "stderr": lambda rest: write(b"x" * int(rest), sys.stderr),
    "sleep": lambda rest: time.sleep(int(rest) / 1000),
    "wait": wait,
    "stubborn": lambda rest: resist(),
    "saves": lambda rest: save_slowly(int(rest) / 1000),
    "flood": lambda rest: flood(),
    "deaf": lambda rest: os.close(0),
    "crash": lambda rest: os.kill(os.getpid(), signal.SIGKILL),
    "exit": lambda rest: os._exit(int(rest)),
    "serve": lambda rest: serve(),
    "follow": follow,
}


def do(step):
    verb, _, rest = step.partition(b" ")
    if verb:
        STEPS[verb.decode()](rest)


signal.alarm(LONGEST_LIFE)
signal.signal(signal.SIGPIPE, signal.SIG_DFL)
note("cwd", os.getcwdb())
note("pid", b"%d" % os.getpid())
note("files", b" ".join(sorted(os.listdir(b"/proc/self/fd"))))
note("environment", b"".join(b"%s=%s\n" % entry for entry in os.environb.items()))
note("runs", b".", "ab")
with open(SCRIPT, "rb") as script:
    for step in script.read().split(b"\n"):
        do(step)
serve()
