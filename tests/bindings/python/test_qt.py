"""Editor and browser as widgets of PyQt6."""

import gc
import sys
import unittest
import weakref
from typing import Any, List
from unittest import mock

from PyQt6.QtCore import QEvent, QTimer
from PyQt6.QtWidgets import (
    QApplication,
    QDialog,
    QHBoxLayout,
    QLabel,
    QMessageBox,
    QTabWidget,
    QVBoxLayout,
    QWidget,
)
from support import HostCase

import kestrel
from kestrel.qt import ImageBrowser, ImageEditor

application = QApplication(sys.argv)


class Widgets(HostCase):
    def window(self, *widgets: QWidget) -> QWidget:
        window = QWidget()
        layout = QHBoxLayout(window)
        for widget in widgets:
            layout.addWidget(widget)
        window.resize(900, 600)
        window.show()
        application.processEvents()
        return window

    def test_an_editor_fills_its_place_in_a_layout(self) -> None:
        editor = ImageEditor()
        editor.control.Initialize()
        window = self.window(QLabel("Left"), editor)
        self.assertTrue(editor.isVisible())
        inner = editor.layout().itemAt(0).widget()
        self.assertEqual(inner.size(), editor.size())
        self.assertGreater(editor.width(), 500)
        self.assertTrue(editor.control.OpenImage(self.picture_file()))
        self.assertEqual(editor.control.Image.Width, 40)
        picture = window.grab().toImage()
        points = [(x, y) for x in range(picture.width()) for y in range(picture.height())]
        self.assertGreaterEqual(sum(picture.pixel(x, y) & 0xFFFFFF == 0x996633 for x, y in points), 1200)

    def test_two_editors_are_apart(self) -> None:
        first, second = ImageEditor(), ImageEditor()
        for editor in (first, second):
            editor.control.Initialize()
        window = self.window(first, second)
        first.control.OpenImage(self.picture_file())
        self.assertIsNone(second.control.Image)
        self.assertNotEqual(first.control, second.control)
        del window

    def test_a_browser_shows_a_folder(self) -> None:
        self.picture_file()
        browser = ImageBrowser()
        window = self.window(browser)
        browser.control.Path = self.folder
        application.processEvents()
        self.assertTrue(browser.isVisible())
        del window

    def test_the_control_is_gone_with_the_widget(self) -> None:
        editor = ImageEditor()
        control = editor.control
        control.Initialize()
        window = self.window(editor)
        view = control.ImageControl
        del editor, window
        gc.collect()
        self.assert_error(91, None, lambda: control.Tool)
        self.assert_error(91, None, lambda: view.Zoom)

    def test_the_widget_can_be_deleted_by_a_handler(self) -> None:
        editor = ImageEditor()
        editor.control.Initialize()
        control = editor.control
        control.on("ImageOpen", lambda event: editor.deleteLater())
        control.OpenImage(self.picture_file())
        application.sendPostedEvents(None, QEvent.Type.DeferredDelete)
        self.assert_error(91, None, lambda: control.Tool)

    def test_the_host_need_not_keep_the_widget(self) -> None:
        window = QWidget()
        layout = QVBoxLayout(window)
        opened: List[str] = []

        def fill() -> None:
            editor = ImageEditor()
            editor.control.Initialize()
            editor.control.on("ImageOpen", lambda event: opened.append(event.Filename))
            layout.addWidget(editor)

        fill()
        gc.collect()
        editor = layout.itemAt(0).widget()
        self.assertIsInstance(editor, ImageEditor)
        editor.control.OpenImage(self.picture_file())
        self.assertEqual(len(opened), 1)

    def test_a_window_of_its_own_asks_about_changes(self) -> None:
        editor = ImageEditor()
        editor.control.Initialize()
        editor.control.OpenImage(self.picture_file())
        editor.show()
        editor.control.Rotate(90)
        asked: List[Any] = []

        def answer(button: QMessageBox.StandardButton) -> None:
            box = application.activeModalWidget()
            asked.append(button)
            box.button(button).click()

        QTimer.singleShot(0, lambda: answer(QMessageBox.StandardButton.Cancel))
        self.assertFalse(editor.close())
        self.assertTrue(editor.isVisible())
        QTimer.singleShot(0, lambda: answer(QMessageBox.StandardButton.No))
        self.assertTrue(editor.close())
        self.assertEqual(len(asked), 2)

    def test_moves_between_windows_and_tabs(self) -> None:
        editor = ImageEditor()
        editor.control.Initialize()
        editor.control.OpenImage(self.picture_file())
        first = self.window(editor)
        tabs = QTabWidget()
        tabs.addTab(editor, "Picture")
        tabs.show()
        del first
        gc.collect()
        application.processEvents()
        self.assertEqual(editor.control.Image.Width, 40)

    def test_500_widgets_leave_nothing(self) -> None:
        watched: List[Any] = []

        def round_trip() -> None:
            editor = ImageEditor()
            editor.control.Initialize()
            editor.control.on("ImageOpen", lambda event, editor=editor: None)
            watched[:] = [weakref.ref(editor.control)]
            editor.show()
            application.processEvents()
            editor.close()
            editor.deleteLater()
            del editor
            application.sendPostedEvents(None, QEvent.Type.DeferredDelete)

        self.assert_no_growth(round_trip)
        self.assertIsNone(watched[0]())


class Browsers(HostCase):
    """Events whose arguments are objects, and answers by an object."""

    def setUp(self) -> None:
        super().setUp()
        self.browser = ImageBrowser()
        self.browser.show()
        self.suite = self.browser.control.ObjectMoorage
        self.addCleanup(lambda: vars(self).pop("browser"))

    def test_an_object_is_answered_by_its_value(self) -> None:
        bar = self.suite.CommandBars("Standard")
        hidden: List[Any] = []

        def stay(event: kestrel.Event) -> None:
            hidden.append(event.CommandBar == bar)
            event.CancelDefault.Value = True

        with self.suite.on("CommandBarHiding", stay):
            bar.Visible = False
            self.assertTrue(bar.Visible)
        bar.Visible = False
        self.assertFalse(bar.Visible)
        self.assertEqual(hidden, [True])

    def test_an_object_of_an_event_can_be_gone_after_it(self) -> None:
        kept: List[kestrel.Event] = []
        self.suite.on("CommandBarHiding", lambda event: kept.append(event))
        self.suite.CommandBars("Standard").Visible = False
        self.browser.deleteLater()
        application.sendPostedEvents(None, QEvent.Type.DeferredDelete)
        self.assert_error(91, None, lambda: kept[0].CommandBar.Name)

    def test_a_failure_cancels(self) -> None:
        def fail(event: kestrel.Event) -> None:
            raise ValueError("no")

        self.suite.on("CommandBarHiding", fail)
        bar = self.suite.CommandBars("Standard")
        with self.assertRaisesRegex(ValueError, "no"):
            bar.Visible = False
        self.assertTrue(bar.Visible)
        tree = self.browser.control.ObjectFolderBrowse
        tree.on("AskForNewFolder", fail)
        with self.assertRaisesRegex(ValueError, "no"):
            tree.NewFolder()


class Loop(HostCase):
    def test_the_toolkits_loop_serves_our_windows(self) -> None:
        window = self.started()
        closed: List[int] = []
        window.on("WindowClosed", lambda event: closed.append(1))
        window.Show()
        QTimer.singleShot(20, lambda: [one.close() for one in application.topLevelWidgets() if one.isVisible()])
        QTimer.singleShot(80, application.quit)
        application.exec()
        self.assertEqual(closed, [1])
        window.Terminate()

    def test_run_joins_the_toolkits_loop(self) -> None:
        window = self.started()
        window.Show()
        called: List[int] = []
        QTimer.singleShot(10, lambda: called.append(1))
        QTimer.singleShot(30, window.Terminate)
        self.assertIs(kestrel.run(window), True)
        self.assertEqual(called, [1])

    def test_a_failure_within_the_toolkits_loop_is_reported(self) -> None:
        editor = ImageEditor()
        editor.control.Initialize()
        window = self.started()
        window.Show()
        failure = KeyError("closed")

        def fail(event: kestrel.Event) -> None:
            raise failure

        connection = window.on("WindowClosed", fail)
        QTimer.singleShot(20, lambda: [one.close() for one in application.topLevelWidgets() if one.isVisible()])
        QTimer.singleShot(80, application.quit)
        with mock.patch.object(sys, "excepthook") as hook:
            application.exec()
        self.assertEqual([call.args[1] for call in hook.call_args_list], [failure])
        connection.disconnect()
        window.Terminate()

    def test_a_handler_can_open_a_dialog_of_the_toolkit(self) -> None:
        editor = ImageEditor()
        editor.control.Initialize()
        results: List[int] = []

        def ask(event: kestrel.Event) -> None:
            dialog = QDialog()
            QTimer.singleShot(20, dialog.accept)
            results.append(dialog.exec())

        editor.control.on("ImageOpen", ask)
        self.assertTrue(editor.control.OpenImage(self.picture_file()))
        self.assertEqual(results, [1])

    def test_batch_work_needs_a_thread_of_its_own(self) -> None:
        self.started().Terminate()
        self.assert_error(5, None, kestrel.batch)


if __name__ == "__main__":
    unittest.main()
