"""Errors of the library as exceptions."""

from typing import Optional

from ._library import NO_SUCH_MEMBER, SUBSCRIPT, library, text


class Error(Exception):
    """An error of the library or of one of its members.

    number: identifies the error, such as 91 for an object that no longer exists.
    description: a sentence that a user can read.
    source: usually the name of the class.
    position: that of the argument at fault, counted from 1; None if it is none.
    """

    def __init__(self, number: int, description: str, source: str = "", position: Optional[int] = None):
        super().__init__(number, description, source, position)
        self.number = number
        self.description = description
        self.source = source
        self.position = position

    def __str__(self) -> str:
        return f"{self.description} ({self.number})"


class MemberError(Error, AttributeError):
    """The class has no member of that name; or a value is assigned to a method."""


class ElementError(Error, LookupError):
    """The collection has no element of that position or name."""


_SPECIAL = {NO_SUCH_MEMBER: MemberError, SUBSCRIPT: ElementError}


def last_error() -> Error:
    """The latest error of this thread."""
    found = library.last_error().contents
    kind = _SPECIAL.get(found.number, Error)
    return kind(found.number, text(found.description), text(found.source), found.position or None)


def check(status: int) -> None:
    if status:
        raise last_error()
