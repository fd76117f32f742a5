"""KestrelLib2: an image editor and an image browser for programs in Python.

    import kestrel

    editor = kestrel.ImageProcessing()
    editor.Initialize()
    editor.Show()
    kestrel.run()

Classes, members, events and enumerations have the names of the interface; the case of members does not matter. A
collection is indexed from 1 or by name: `editor.Commands["btnFileOpen"]`. Nothing is None, and `kestrel.Omitted` is an
argument that is left out. Errors are exceptions, `kestrel.Error`.

`kestrel.batch()` starts batch work without a display; `kestrel.qt` has the editor and the browser as widgets of PyQt6.
Objects are used on the thread that has made them.
"""

from typing import Any, List

from ._classes import class_named
from ._enumerations import CONSTANTS, ENUMS
from ._errors import ElementError, Error, MemberError
from ._events import Connection, Event
from ._interface import CLASSES
from ._library import library
from ._loop import Batch, batch, process_events, quit, run, stop
from ._objects import Object
from ._values import Omitted

_OWN = [
    "Batch",
    "Connection",
    "ElementError",
    "Error",
    "Event",
    "MemberError",
    "Object",
    "Omitted",
    "batch",
    "process_events",
    "quit",
    "run",
    "stop",
]

__version__ = ".".join(str(library.version() >> shift & 0xFF) for shift in (16, 8, 0))
__all__ = _OWN + sorted(CLASSES) + sorted(ENUMS) + list(CONSTANTS)


def __getattr__(name: str) -> Any:
    """Classes are made when they are first used."""
    found: Any = ENUMS.get(name)
    if found is None:
        found = CONSTANTS.get(name)
    if found is None:
        found = class_named(name)
    if found is None:
        raise AttributeError(f"module 'kestrel' has no attribute '{name}'")
    globals()[name] = found
    return found


def __dir__() -> List[str]:
    return __all__ + ["__version__"]
