"""Values of Python as values of the library and back."""

import os
from ctypes import byref, string_at
from operator import attrgetter
from typing import Any, Callable, Dict

from . import _library as c
from ._errors import Error
from ._library import Value, library


class _Omitted:
    """The type of `Omitted`."""

    __slots__ = ()

    def __repr__(self) -> str:
        return "kestrel.Omitted"

    def __reduce__(self) -> str:
        return "Omitted"


#: As an argument: omitted, as if it was not given.
Omitted = _Omitted()

#: The largest 32-bit number, and the largest that a double holds exactly with all that are smaller.
_INT32 = 2**31
_DOUBLE = 2**53


def _write_none(slot: Value, value: None) -> None:
    slot.type = c.OBJECT
    slot.object = None


def _write_bool(slot: Value, value: bool) -> None:
    slot.type = c.BOOLEAN
    slot.boolean = value


def _write_int(slot: Value, value: int) -> None:
    if -_INT32 <= value < _INT32:
        slot.type = c.INT32
        slot.int32 = value
    elif -_DOUBLE <= value <= _DOUBLE:
        slot.type = c.DOUBLE
        slot.float64 = value
    else:
        raise Error(c.OVERFLOW, f"The number {value} is out of range.", "kestrel")


def _write_float(slot: Value, value: float) -> None:
    slot.type = c.DOUBLE
    slot.float64 = value


def _write_str(slot: Value, value: str) -> None:
    # File names that are no UTF-8 contain surrogates, as those of os.fsdecode.
    encoded = value.encode("utf-8", "surrogateescape")
    slot.type = c.STRING
    slot.text = encoded
    slot.length = len(encoded)


def _write_omitted(slot: Value, value: _Omitted) -> None:
    slot.type = c.OMITTED


Writer = Callable[[Value, Any], None]

#: By exact type; others are added by subclass, index, float or path.
_WRITERS: Dict[type, Writer] = {
    type(None): _write_none,
    bool: _write_bool,
    int: _write_int,
    float: _write_float,
    str: _write_str,
    _Omitted: _write_omitted,
}


def add_writer(kind: type, writer: Writer) -> None:
    """Lets values of a type and its subclasses be arguments."""
    _WRITERS[kind] = writer


def _writer_of(value: Any, position: int) -> Writer:
    kind = type(value)
    for base in kind.__mro__:
        if base in _WRITERS:
            return _WRITERS[base]
    if hasattr(kind, "__fspath__"):
        return lambda slot, path: _write_str(slot, os.fsdecode(path))
    if kind.__name__ in ("bool_", "bool"):  # NumPy's, which is no number
        return lambda slot, truth: _write_bool(slot, bool(truth))
    if hasattr(kind, "__index__"):
        return lambda slot, number: _write_int(slot, number.__index__())
    if hasattr(kind, "__float__"):
        return lambda slot, number: _write_float(slot, float(number))
    raise Error(c.TYPE_MISMATCH, f"Argument {position} is a value of type {kind.__qualname__}, which no member takes.",
                "kestrel", position)


def write(slot: Value, value: Any, position: int) -> None:
    """Fills an argument, whose position counts from 1. The slot keeps what it refers to."""
    writer = _WRITERS.get(type(value))
    if writer is None:
        writer = _writer_of(value, position)
    try:
        writer(slot, value)
    except Error as error:
        if error.position is None:
            error.position = position
        raise


def clear(value: Value) -> None:
    if value.owned:
        library.value_clear(byref(value))


# -- From the library ---------------------------------------------------------------------------------------------


def _read_text(value: Value) -> str:
    text = value.text or b""
    if len(text) != value.length:  # a NUL inside, or no NUL after the text
        text = string_at(value.address, value.length)
    result = text.decode("utf-8", "surrogateescape")
    clear(value)
    return result


def _read_none(value: Value) -> None:
    return None


#: By `Value.type`. Those of a text or an object take over what the value owns.
READERS: Dict[int, Callable[[Value], Any]] = {
    c.EMPTY: _read_none,
    c.NULL: _read_none,
    c.INT16: attrgetter("int16"),
    c.INT32: attrgetter("int32"),
    c.FLOAT: attrgetter("float32"),
    c.DOUBLE: attrgetter("float64"),
    c.STRING: _read_text,
    c.BOOLEAN: lambda value: value.boolean != 0,
    c.BYTE: attrgetter("byte"),
    c.OMITTED: _read_none,
}


def name_bytes(name: str) -> bytes:
    """A name for the library. One with a NUL is a name that does not exist."""
    return name.encode("utf-8", "replace").replace(b"\0", b"?")
