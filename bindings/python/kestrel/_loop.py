"""The event loop, and batch work without one."""

import atexit
import threading
import time
from ctypes import byref, c_int32
from typing import Optional

from . import _library as c
from ._calls import RUN, Call, raise_failure
from ._errors import check
from ._library import library
from ._objects import Object

#: How long the loop runs at a time, in milliseconds: Python notices Ctrl+C in between.
_SLICE = 250


def _milliseconds(seconds: float) -> int:
    return min(max(round(seconds * 1000), 0), 2**31 - 1)


def run(window: Optional[Object] = None, timeout: Optional[float] = None) -> bool:
    """Processes events until `quit`, or until a window is closed: that of `window`, else the last one of the program.

    timeout: the most seconds to run; the result is then False, else True.

    Raises what a handler of an event raises. Within PyQt6 it joins the application object, and is not needed: the
    toolkit's own loop processes the events, too.
    """
    end = None if timeout is None else time.monotonic() + timeout
    handle = None if window is None else window._handle
    # Only the main thread is interrupted by the keyboard.
    interruptible = threading.current_thread() is threading.main_thread()
    while True:
        left = -1 if end is None else _milliseconds(end - time.monotonic())
        part = min(left, _SLICE) if left >= 0 else _SLICE
        reason = c_int32()
        with Call(RUN):
            status = library.run(handle, part if interruptible else left, byref(reason))
        raise_failure(status)
        if reason.value != c.RUN_TIMED_OUT:
            return True
        if end is not None and time.monotonic() >= end:
            return False


def quit() -> None:
    """Ends the innermost `run`. Raises `Error` 5 if there is none."""
    check(library.quit())


def process_events(wait: float = 0) -> None:
    """Processes the events that are pending; if there are none, waits at most `wait` seconds for some."""
    with Call():
        status = library.process_events(_milliseconds(wait))
    raise_failure(status)


class Batch:
    """The platform of `batch`, which ends with the `with` statement."""

    def __enter__(self) -> "Batch":
        return self

    def __exit__(self, *exception: object) -> None:
        stop()


def batch() -> Batch:
    """Starts this thread without display and user: for batch work. To be called before anything else of the thread.

        with kestrel.batch():
            editor = kestrel.ImageProcessing()

    The result ends the work with its `with` statement. Each thread can do batch work of its own.
    """
    check(library.start(c.HEADLESS))
    return Batch()


def stop() -> None:
    """Ends all objects of this thread, with their windows. Their members raise `Error` 91 from then on."""
    with Call():
        status = library.stop()
    raise_failure(status)


@atexit.register
def _stop_at_exit() -> None:
    # Windows that are open end while Python can still run handlers. Nobody can take an error.
    library.stop()
