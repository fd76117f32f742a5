"""Windows and the event loop, in a program that has no loop of its own."""

import os
import signal
import sys
import threading
import time
import unittest
from typing import Any, Callable, List
from unittest import mock

from support import WRONG_THREAD, HostCase, in_thread

import kestrel


class DesktopCase(HostCase):
    def setUp(self) -> None:
        super().setUp()
        self.editor = self.started()
        # The loop's timers, now that the library has made an application object.
        from PyQt6.QtCore import QTimer
        from PyQt6.QtWidgets import QApplication

        self.application = QApplication
        self.timer = QTimer
        self.addCleanup(self.end)

    def end(self) -> None:
        self.editor.Terminate()
        del self.editor

    def later(self, act: Callable[[], Any], milliseconds: int = 0) -> None:
        """Calls from the loop."""
        self.timer.singleShot(milliseconds, act)

    def windows(self) -> List[Any]:
        return [widget for widget in self.application.topLevelWidgets() if widget.isVisible()]


class Loop(DesktopCase):
    def test_shows_the_window(self) -> None:
        self.assertFalse(self.editor.Visible)
        self.editor.Show()
        self.assertTrue(self.editor.Visible)
        kestrel.process_events()
        self.assertEqual(len(self.windows()), 1)

    def test_runs_until_the_window_is_closed(self) -> None:
        self.editor.Show()
        self.later(lambda: self.windows()[0].close())
        self.assertIs(kestrel.run(self.editor), True)
        self.assertFalse(self.editor.Visible)

    def test_runs_until_the_last_window_is_closed(self) -> None:
        second = self.started()
        self.editor.Show()
        second.Show()
        closed: List[int] = []

        def close(number: int, editor: Any) -> None:
            closed.append(number)
            editor.Terminate()

        self.later(lambda: close(1, self.editor))
        self.later(lambda: close(2, second), 30)
        self.assertIs(kestrel.run(), True)
        self.assertEqual(closed, [1, 2])

    def test_returns_if_no_window_is_open(self) -> None:
        self.assertIs(kestrel.run(), True)
        self.assertIs(kestrel.run(self.editor), True)

    def test_runs_for_a_time(self) -> None:
        self.editor.Show()
        begin = time.monotonic()
        self.assertIs(kestrel.run(self.editor, timeout=0.6), False)
        self.assertGreaterEqual(time.monotonic() - begin, 0.59)
        self.assertIs(kestrel.run(timeout=0), False)
        self.assertIs(kestrel.run(timeout=-1), False)

    def test_quits(self) -> None:
        self.editor.Show()
        self.later(kestrel.quit)
        self.assertIs(kestrel.run(self.editor), True)
        self.assertTrue(self.editor.Visible)
        self.assert_error(5, None, kestrel.quit)

    def test_is_interrupted_by_the_keyboard(self) -> None:
        self.editor.Show()

        def interrupt() -> None:
            while sys._current_frames()[threading.main_thread().ident].f_code is not kestrel.run.__code__:
                time.sleep(0.01)
            os.kill(os.getpid(), signal.SIGINT)

        thread = threading.Thread(target=interrupt)
        thread.start()
        with self.assertRaises(KeyboardInterrupt):
            kestrel.run(self.editor)
        thread.join()
        self.assertEqual(self.editor.Filename, "")

    def test_waits_for_events(self) -> None:
        called: List[int] = []
        self.later(lambda: called.append(1), 50)
        for _ in range(200):
            kestrel.process_events(wait=1)
            if called:
                break
        self.assertEqual(called, [1])

    def test_of_a_modal_window(self) -> None:
        self.later(lambda: self.windows()[0].close(), 20)
        self.editor.Show(Modal=True)
        self.assertFalse(self.editor.Visible)

    def test_of_a_wrong_window(self) -> None:
        with self.assertRaises(kestrel.Error):
            kestrel.run(self.editor.Options)
        with self.assertRaises(AttributeError):
            kestrel.run("window")  # type: ignore[arg-type]


class Failures(DesktopCase):
    """Exceptions of handlers of events that the user has caused."""

    def setUp(self) -> None:
        super().setUp()
        self.failure = KeyError("closed")
        self.editor.Show()
        kestrel.process_events()

        def fail(event: kestrel.Event) -> None:
            raise self.failure

        connection = self.editor.on("WindowClosed", fail)
        self.addCleanup(connection.disconnect)

    def test_end_the_run(self) -> None:
        self.started().Show()
        self.later(lambda: self.windows()[0].close())
        with self.assertRaises(KeyError) as caught:
            kestrel.run()
        self.assertIs(caught.exception, self.failure)
        self.assertIs(kestrel.run(timeout=0), not self.windows())

    def test_are_raised_by_the_processing(self) -> None:
        self.later(lambda: self.windows()[0].close())
        with self.assertRaises(KeyError):
            for _ in range(200):
                kestrel.process_events(wait=0.1)

    def test_are_reported_if_nothing_of_ours_runs(self) -> None:
        with mock.patch.object(sys, "excepthook") as hook:
            self.windows()[0].close()
        self.assertEqual([call.args[1] for call in hook.call_args_list], [self.failure])

    def test_are_raised_after_a_modal_window(self) -> None:
        second = self.started()
        connection = second.on("WindowClosed", lambda event: event.NoArgument)
        self.addCleanup(connection.disconnect)
        self.later(lambda: [window for window in self.windows() if window.isModal()][0].close(), 20)
        with self.assertRaises(kestrel.MemberError):
            second.Show(Modal=True)


class Lives(DesktopCase):
    def test_the_desktop_is_one_threads(self) -> None:
        error = in_thread(kestrel.ImageProcessing)
        self.assertIsInstance(error, kestrel.Error)
        self.assertEqual(error.number, WRONG_THREAD)
        self.assert_error(5, None, kestrel.batch)

    def test_windows_end_with_stop(self) -> None:
        self.editor.Show()
        editor, control = self.editor, self.editor.Control
        kestrel.stop()
        self.assert_error(91, None, lambda: editor.Title)
        self.assert_error(91, None, lambda: control.Tool)
        del editor, control, self.editor
        self.editor = self.started()
        self.editor.Show()
        self.assertIs(kestrel.run(self.editor, timeout=0), False)

    def test_a_window_ends_with_its_last_reference(self) -> None:
        editor = self.started()
        editor.Show()
        self.assertEqual(len(self.windows()), 1)
        del editor
        kestrel.process_events()
        self.assertEqual(self.windows(), [])


class Browser(DesktopCase):
    def test_shows_a_folder(self) -> None:
        self.picture_file()
        browser = kestrel.ImageBrowser()
        browser.Path = self.folder
        browser.Show()
        kestrel.process_events()
        self.assertTrue(browser.Visible)
        self.assertEqual(os.path.normpath(browser.Path), str(self.folder))
        browser.Terminate()
        self.assert_error(91, None, lambda: browser.Visible)
        self.assertEqual(self.windows(), [])


class Leaks(DesktopCase):
    def test_500_windows_leave_nothing(self) -> None:
        def round_trip() -> None:
            editor = self.started()
            editor.on("WindowClosed", lambda event: editor.Filename)
            editor.Show()
            kestrel.process_events()
            editor.Terminate()
            del editor

        self.assert_no_growth(round_trip)
        self.assertEqual(self.windows(), [])


if __name__ == "__main__":
    unittest.main()
