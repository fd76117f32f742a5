"""The editor and the browser as widgets of PyQt6, for any window or layout.

    from kestrel.qt import ImageEditor

    editor = ImageEditor()
    layout.addWidget(editor)
    editor.control.Initialize()
    editor.control.OpenImage("photo.jpg")
"""

from ctypes import byref, c_void_p
from typing import Any, Optional

from PyQt6 import sip
from PyQt6.QtGui import QCloseEvent
from PyQt6.QtWidgets import QVBoxLayout, QWidget

from ._calls import Call, raise_failure
from ._library import library
from ._objects import wrap


class _Embedded(QWidget):
    """A widget with a control inside: `control`, whose members raise `Error` 91 once the widget is gone."""

    _CLASS: bytes

    def __init__(self, parent: Optional[QWidget] = None) -> None:
        super().__init__(parent)
        handle = c_void_p()
        pointer = c_void_p()
        address: Any = sip.unwrapinstance(self)  # type: ignore[func-returns-value]
        with Call():
            status = library.embed(self._CLASS, address, byref(handle), byref(pointer), None)
        raise_failure(status)
        self.control: Any = wrap(handle.value)
        inner: Any = sip.wrapinstance(pointer.value or 0, QWidget)  # type: ignore[arg-type]
        layout = QVBoxLayout(self)
        layout.setContentsMargins(0, 0, 0, 0)
        layout.addWidget(inner)
        self.setFocusProxy(inner)


class ImageEditor(_Embedded):
    """The image editor. The host calls `control.Initialize()` once before it uses the control.

    An editor that is a window of its own asks about unsaved changes when it is closed, and stays open if the user
    cancels. A host with the editor inside its window asks by `control.SaveChanges()` before it closes that.
    """

    _CLASS = b"ImageProcessingCtl"

    def closeEvent(self, event: QCloseEvent) -> None:
        event.setAccepted(bool(self.control.SaveChanges()))


class ImageBrowser(_Embedded):
    """The image browser."""

    _CLASS = b"ImageBrowserCtl"
