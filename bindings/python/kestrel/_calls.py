"""Calls of the library, and what handlers of events raise meanwhile.

A handler is called by the library, which knows no exceptions of Python. So an exception of a handler is kept, and
raised when the call of the library returns in which the event occurred.
"""

import sys
import threading
from typing import List, Optional

from ._errors import last_error
from ._library import library

# What the innermost call of the library on a thread is.
NO_CALL = 0
ORDINARY_CALL = 1
RUN = 2


class _Thread(threading.local):
    def __init__(self) -> None:
        self.call = NO_CALL
        self.failures: List[BaseException] = []
        # An AttributeError out of a property, which Python replaces by a call of __getattr__.
        self.hidden: Optional[AttributeError] = None


thread = _Thread()


def keep_failure(failure: BaseException) -> None:
    """Keeps what a handler has raised for the call of the library that it is in.

    There is none while another toolkit's loop runs; the exception is then reported as one that nobody catches.
    Later failures within one call are reported, too, since it can raise only one.
    """
    if thread.call == NO_CALL or thread.failures:
        sys.excepthook(type(failure), failure, failure.__traceback__)
        return
    thread.failures.append(failure)
    if thread.call == RUN:
        library.quit()


def raise_failure(status: int) -> None:
    """Raises what a handler has raised during the call that has returned, else the call's own error."""
    if thread.failures:
        failure = thread.failures.pop()
        # Without the reference from this frame, which the exception's traceback refers to.
        try:
            raise failure
        finally:
            del failure
    if status:
        raise last_error()


class Call:
    """`with Call():` around a call of the library during which handlers may run."""

    __slots__ = ("_kind", "_outer")

    def __init__(self, kind: int = ORDINARY_CALL) -> None:
        self._kind = kind

    def __enter__(self) -> None:
        self._outer = thread.call
        thread.call = self._kind

    def __exit__(self, *exception: object) -> Optional[bool]:
        thread.call = self._outer
        return None
