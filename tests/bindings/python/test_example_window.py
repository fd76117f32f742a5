"""The example with a window of PyQt6. It makes the application object, so it has a process of its own."""

import os
import runpy
import sys
import unittest
from pathlib import Path
from typing import Any, List
from unittest import mock

from PIL import Image
from PyQt6.QtCore import QTimer
from PyQt6.QtWidgets import QApplication, QMessageBox, QPushButton
from support import HostCase, of_programs, standard_error

EXAMPLE = Path(os.environ["KESTREL_EXAMPLES"]) / "window.py"


class WindowExample(HostCase):
    def test_shows_a_picture_and_asks_about_changes(self) -> None:
        picture = self.folder / "a.png"
        Image.new("RGB", (40, 30)).save(picture)
        seen: List[Any] = []

        def use() -> None:
            window = next(one for one in QApplication.topLevelWidgets() if one.isVisible())
            seen.append(window.windowTitle())
            next(one for one in window.findChildren(QPushButton) if one.text() == "Rotate").click()
            image = window.editor.control.Image
            seen.append((image.Width, image.Height))
            QTimer.singleShot(50, discard)
            window.close()

        def discard() -> None:
            """The answer to the question about unsaved changes."""
            box = QApplication.activeModalWidget()
            seen.append(isinstance(box, QMessageBox))
            if isinstance(box, QMessageBox):
                box.button(QMessageBox.StandardButton.No).click()
            else:
                QApplication.exit(1)

        application_exec = QApplication.exec

        def run() -> int:
            QTimer.singleShot(0, use)
            return application_exec()

        arguments = mock.patch.object(sys, "argv", [str(EXAMPLE), str(picture)])
        with arguments, mock.patch.object(QApplication, "exec", staticmethod(run)):
            with standard_error() as printed, self.assertRaises(SystemExit) as end:
                runpy.run_path(str(EXAMPLE), run_name="__main__")
        self.assertEqual((seen, end.exception.code), ([str(picture), (30, 40), True], 0))
        self.assertEqual(of_programs(printed[0]), [])


if __name__ == "__main__":
    unittest.main()
