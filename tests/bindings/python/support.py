"""What the tests share."""

import gc
import os
import tempfile
import threading
import unittest
from contextlib import contextmanager
from pathlib import Path
from typing import Any, Callable, Iterator, List, Optional, Tuple

import kestrel

WRONG_THREAD = -2147417842

#: Of the pictures below, as 0x00BBGGRR: red 0x99, green 0x66, blue 0x33.
COLOR = 0x00336699


class HostCase(unittest.TestCase):
    """A host with a folder for its files."""

    def setUp(self) -> None:
        folder = tempfile.TemporaryDirectory(prefix="kestrel-python-")
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)

    def picture_file(self, name: str = "a.png", width: int = 40, height: int = 30) -> Path:
        """Writes a picture of one color."""
        file = self.folder / name
        new_picture(width, height).Writer.ToFile(file, 0)
        return file

    def started(self) -> Any:
        editor = kestrel.ImageProcessing()
        editor.Initialize()
        return editor

    def error_of(self, act: Callable[[], Any]) -> kestrel.Error:
        with self.assertRaises(kestrel.Error) as caught:
            act()
        return caught.exception

    def assert_error(self, number: int, position: Optional[int], act: Callable[[], Any]) -> None:
        error = self.error_of(act)
        self.assertEqual((error.number, error.position), (number, position), str(error))
        self.assertTrue(error.description.endswith("."), error.description)

    def assert_no_growth(self, round_trip: Callable[[], None]) -> None:
        """500 rounds leave neither objects of Python nor memory."""

        def measure(rounds: int) -> Tuple[int, int]:
            for _ in range(rounds):
                round_trip()
                gc.collect()  # a handler and its object refer to each other
            with open("/proc/self/statm", encoding="ascii") as file:
                return int(file.read().split()[1]) * os.sysconf("SC_PAGESIZE"), len(gc.get_objects())

        before_bytes, before_objects = measure(100)
        after_bytes, after_objects = measure(500)
        self.assertLess(after_objects - before_objects, 100)
        # An editor has half a megabyte.
        self.assertLess(after_bytes - before_bytes, 500 * 20_000)


class BatchCase(HostCase):
    """A host that works without a display."""

    def setUp(self) -> None:
        super().setUp()
        kestrel.batch()
        self.addCleanup(kestrel.stop)


def new_picture(width: int = 40, height: int = 30) -> Any:
    picture = kestrel.ImgX()
    picture.Document.NewImage(width, height, picture.Colors.Create(COLOR))
    return picture


def in_thread(act: Callable[[], Any]) -> Any:
    """The result of a call on another thread, or its exception."""
    results: List[Any] = []

    def run() -> None:
        try:
            results.append(act())
        except BaseException as error:
            results.append(error)

    thread = threading.Thread(target=run)
    thread.start()
    thread.join()
    return results[0]


@contextmanager
def standard_error() -> Iterator[List[str]]:
    """Catches what the process writes to standard error, the library included; it is in the list afterwards."""
    caught: List[str] = []
    with tempfile.TemporaryFile() as file:
        before = os.dup(2)
        os.dup2(file.fileno(), 2)
        try:
            yield caught
        finally:
            os.dup2(before, 2)
            os.close(before)
            file.seek(0)
            caught.append(file.read().decode())


def of_programs(printed: str) -> List[str]:
    """The lines that are not the toolkit's remarks on a display without a screen."""
    remarks = ("This plugin does not support", "QStandardPaths: XDG_RUNTIME_DIR not set")
    return [line for line in printed.splitlines() if not line.startswith(remarks)]
