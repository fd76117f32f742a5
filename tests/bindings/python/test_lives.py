"""Lives of objects: ends, threads, garbage collection, leaks and the end of the interpreter."""

import gc
import os
import subprocess
import sys
import threading
import unittest
import weakref
from typing import Any, List

import numpy
from support import WRONG_THREAD, BatchCase, HostCase, in_thread, new_picture, of_programs

import kestrel


class Ends(BatchCase):
    def test_parts_end_with_the_editor(self) -> None:
        editor = self.started()
        control, commands, command = editor.Control, editor.Commands, editor.Commands[1]
        editor.Terminate()
        self.assert_error(91, None, lambda: control.Tool)
        self.assert_error(91, None, lambda: commands.Count)
        self.assert_error(91, None, lambda: command.Name)
        self.assert_error(91, None, lambda: list(commands))

    def test_a_part_keeps_the_editor(self) -> None:
        commands = self.started().Commands
        gc.collect()
        self.assertGreater(len(commands), 50)

    def test_nothing_is_left_after_stop(self) -> None:
        editor, picture = self.started(), new_picture()
        connection = editor.on("ImageOpen", print)
        kestrel.stop()
        self.assert_error(91, None, lambda: editor.Title)
        self.assert_error(91, None, lambda: picture.Image)
        self.assert_error(91, None, lambda: editor.on("ImageOpen", print))
        connection.disconnect()
        kestrel.stop()
        kestrel.batch()
        self.assertEqual(self.started().Filename, "")
        self.assert_error(91, None, lambda: editor.Title)

    def test_stop_within_a_handler_is_error_5(self) -> None:
        sink = kestrel.IImageEvents()
        sink.on("ImageOpen", lambda event: kestrel.stop())
        self.assert_error(5, None, lambda: sink.ImageOpen("a.png"))
        self.assertIsNone(sink.ImageSave("a.png"))

    def test_the_statement_stops(self) -> None:
        with kestrel.batch():
            editor = self.started()
        self.assert_error(91, None, lambda: editor.Title)

    def test_there_is_no_loop_without_a_display(self) -> None:
        self.assert_error(5, None, kestrel.run)
        self.assert_error(5, None, kestrel.quit)
        kestrel.process_events()
        kestrel.process_events(0.001)

    def test_an_editor_ends_after_what_it_handed_out(self) -> None:
        for order in range(6):
            editor = self.started()
            parts = [editor, editor.Control, editor.Control.ImageControl]
            del editor
            while parts:
                parts.pop(order % len(parts))
                gc.collect()


class Threads(BatchCase):
    def test_calls_from_another_are_refused(self) -> None:
        editor = self.started()
        commands = editor.Commands
        for act in (
            lambda: editor.Title,
            lambda: editor.OpenImage("a.png"),
            lambda: setattr(editor, "Title", "a"),
            lambda: list(commands),
            lambda: editor.on("ImageOpen", print),
        ):
            error = in_thread(act)
            self.assertIsInstance(error, kestrel.Error)
            self.assertEqual(error.number, WRONG_THREAD)
            self.assertIn("thread", error.description)

    def test_another_can_release(self) -> None:
        editors = [self.started()]
        watched = weakref.ref(editors[0])
        editors[0].on("ImageOpen", print)
        in_thread(editors.clear)
        self.assertIsNone(watched())
        kestrel.process_events()
        self.assertEqual(self.started().Filename, "")

    def test_another_can_disconnect(self) -> None:
        sink = kestrel.IImageEvents()
        seen: List[Any] = []
        connection = sink.on("ImageOpen", seen.append)
        in_thread(connection.disconnect)
        sink.ImageOpen("a.png")
        self.assertEqual(seen, [])

    def test_another_can_collect(self) -> None:
        class Cycle:
            def __init__(self, editor: Any) -> None:
                self.itself = self
                self.editor = editor

        gc.disable()
        try:
            watched = weakref.ref(Cycle(self.started()))
            in_thread(gc.collect)
        finally:
            gc.enable()
        self.assertIsNone(watched())
        kestrel.process_events()

    def test_each_has_batch_work_of_its_own(self) -> None:
        widths: List[int] = []

        def work(width: int) -> None:
            with kestrel.batch():
                for _ in range(20):
                    picture = new_picture(width, 10)
                    picture.Effects.Resize(2 * width, 0, 0)
                    widths.append(picture.Image.Width)

        threads = [threading.Thread(target=work, args=(width,)) for width in (10, 20, 30)]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
        self.assertEqual(sorted(widths), [20] * 20 + [40] * 20 + [60] * 20)

    def test_arrays_are_used_on_any(self) -> None:
        array = numpy.asarray(new_picture().Writer.ToPicture())
        self.assertEqual(in_thread(lambda: int(array[0, 0, 0])), 0x99)
        holder = [array]
        del array
        in_thread(holder.clear)


class Leaks(BatchCase):
    def test_500_editors_leave_nothing(self) -> None:
        file = self.picture_file()

        def round_trip() -> None:
            editor = self.started()
            names: List[str] = []
            editor.on("ImageOpen", lambda event: names.append(editor.Filename))
            editor.OpenImage(file)
            array = numpy.asarray(editor.Control.Picture)
            editor.Control.Picture = kestrel.Picture(array[::-1])
            [command.Name for command in editor.Commands]
            try:
                editor.Resize("wide")
            except kestrel.Error:
                pass
            self.assertEqual(names, [str(file)])

        self.assert_no_growth(round_trip)


class Exits(HostCase):
    """The end of the interpreter in any state: no crash, and nothing on standard error."""

    def check(self, program: str, code: int = 0) -> None:
        text = "import sys, kestrel\n" + program
        done = subprocess.run([sys.executable, "-c", text], capture_output=True, text=True, timeout=120, check=False)
        self.assertEqual((done.returncode, of_programs(done.stderr)), (code, []))

    def test_with_objects(self) -> None:
        self.check("kestrel.batch()\neditor = kestrel.ImageProcessing()\neditor.Initialize()\nview = editor.Control")

    def test_with_a_cycle(self) -> None:
        self.check("kestrel.batch()\neditor = kestrel.ImageProcessing()\neditor.on('ImageOpen', lambda e: editor)")

    def test_with_an_open_window(self) -> None:
        self.check(
            "editor = kestrel.ImageProcessing()\neditor.Initialize()\n"
            "editor.on('WindowClosed', lambda event: None)\neditor.Show()\nkestrel.process_events()"
        )

    def test_with_an_open_window_of_another_toolkit(self) -> None:
        for first, second in [("PyQt6.QtWidgets", "kestrel.qt"), ("kestrel.qt", "PyQt6.QtWidgets")]:
            self.check(
                f"import {first}, {second}\n"
                "from PyQt6.QtWidgets import QApplication\n"
                "application = QApplication([])\n"
                "editor = kestrel.qt.ImageEditor()\neditor.control.Initialize()\neditor.show()\n"
                "window = kestrel.ImageProcessing()\nwindow.Initialize()\nwindow.Show()\napplication.processEvents()"
            )

    def test_by_a_handler(self) -> None:
        self.check(
            "kestrel.batch()\nsink = kestrel.IImageEvents()\n"
            "sink.on('ImageOpen', lambda event: sys.exit(7))\nsink.ImageOpen('a.png')",
            code=7,
        )

    def test_with_an_array(self) -> None:
        self.check(
            "import numpy\nkestrel.batch()\npicture = kestrel.ImgX()\npicture.Document.NewImage(4, 3, None)\n"
            "array = numpy.asarray(picture.Writer.ToPicture())"
        )

    def test_with_a_thread_that_works(self) -> None:
        self.check(
            "import threading, time\n"
            "def work():\n"
            "    with kestrel.batch():\n"
            "        ready.set()\n"
            "        while True:\n"
            "            kestrel.Options().JPEGQuality\n"
            "ready = threading.Event()\n"
            "threading.Thread(target=work, daemon=True).start()\nready.wait()"
        )

    def test_with_a_thread_that_did_not_stop(self) -> None:
        self.check(
            "import threading\nkept = []\n"
            "def work():\n    kestrel.batch()\n    kept.append(kestrel.ImgX())\n"
            "thread = threading.Thread(target=work)\nthread.start()\nthread.join()"
        )

    def test_without_the_library(self) -> None:
        environment = {**os.environ, "KESTREL_LIBRARY": str(self.folder / "none.so")}
        done = subprocess.run([sys.executable, "-c", "import kestrel"], capture_output=True, text=True, timeout=120,
                              env=environment, check=False)
        self.assertEqual(done.returncode, 1)
        self.assertIn("ImportError: The library of KestrelLib2 cannot be loaded", done.stderr)


if __name__ == "__main__":
    unittest.main()
