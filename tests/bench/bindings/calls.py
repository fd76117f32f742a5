"""What a call from Python costs: calls.py [ROUNDS]

Prints microseconds per call, the fastest of several runs; the first rows are calls of the C interface by ctypes alone.
KESTREL_LIBRARY names a library that is not installed, PYTHONPATH the folder of the package. Run it on an idle machine.
"""

import sys
import time
from ctypes import byref
from typing import Any, Callable

import kestrel
from kestrel import _library as c

RUNS = 7


def microseconds(act: Callable[[], Any], rounds: int) -> float:
    best = float("inf")
    for _ in range(RUNS):
        begin = time.perf_counter()
        for _ in range(rounds):
            act()
        best = min(best, time.perf_counter() - begin)
    return best / rounds * 1e6


def main(rounds: int = 20_000) -> None:
    with kestrel.batch():
        options = kestrel.Options()
        point = kestrel.Point()
        editor = kestrel.ImageProcessing()
        editor.Initialize()
        sink = kestrel.IImageEvents()
        commands = editor.Commands

        number = type(point)._numbers["x"]
        value = c.Value()

        def c_read() -> None:
            c.library.invoke(point._handle, number, c.GET, None, 0, None, byref(value))

        commands_number = type(editor)._numbers["commands"]

        def c_read_object() -> None:
            c.library.invoke(editor._handle, commands_number, c.GET, None, 0, None, byref(value))
            c.library.release(value.object)

        def assign() -> None:
            point.X = 5

        rows = [
            ("C interface: a number", c_read),
            ("C interface: an object", c_read_object),
            ("a property, a number", lambda: point.X),
            ("a property of another case", lambda: point.x),
            ("an assignment, a number", assign),
            ("a property, a setting", lambda: options.JPEGQuality),
            ("a property, a text", lambda: editor.Title),
            ("a property, an object", lambda: editor.Commands),
            ("a method, no argument", lambda: editor.ZoomActualSize()),
            ("a method, one text", lambda: sink.ImageOpen("a.png")),
            ("a default member, an object", lambda: commands["btnFileOpen"]),
        ]
        for name, act in rows:
            print(f"{name:32}{microseconds(act, rounds):8.2f} us")
        with sink.on("ImageOpen", lambda event: None):
            print(f"{'a method with an event':32}{microseconds(lambda: sink.ImageOpen('a.png'), rounds):8.2f} us")


if __name__ == "__main__":
    main(*map(int, sys.argv[1:2]))
