"""The editor as a widget in a window of PyQt6: window.py [PICTURE]"""

import sys

from PyQt6.QtGui import QCloseEvent
from PyQt6.QtWidgets import QApplication, QHBoxLayout, QPushButton, QVBoxLayout, QWidget

from kestrel.qt import ImageEditor


class Window(QWidget):
    def __init__(self) -> None:
        super().__init__()
        self.editor = ImageEditor()
        control = self.editor.control
        control.Initialize()
        control.on("ImageOpen", lambda event: self.setWindowTitle(event.Filename))

        buttons = QHBoxLayout()
        for text, act in [("Rotate", lambda: control.Rotate(90)), ("Undo", control.Undo), ("Save", control.SaveImage)]:
            button = QPushButton(text)
            button.clicked.connect(lambda checked, act=act: act())
            buttons.addWidget(button)
        layout = QVBoxLayout(self)
        layout.addWidget(self.editor)
        layout.addLayout(buttons)
        self.resize(900, 600)

    def closeEvent(self, event: QCloseEvent) -> None:
        # Asks about unsaved changes.
        event.setAccepted(self.editor.control.SaveChanges())


def main() -> int:
    application = QApplication(sys.argv)
    window = Window()
    window.show()
    if len(sys.argv) > 1:
        window.editor.control.OpenImage(sys.argv[1])
    return application.exec()


if __name__ == "__main__":
    sys.exit(main())
