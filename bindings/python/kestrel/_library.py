"""The C interface, kestrel.h: its structures, its functions and the library itself, by ctypes."""

import os
from ctypes import (
    CDLL,
    CFUNCTYPE,
    POINTER,
    Structure,
    Union,
    c_char_p,
    c_double,
    c_float,
    c_int16,
    c_int32,
    c_size_t,
    c_uint8,
    c_uint32,
    c_uint64,
    c_void_p,
)
from typing import Any, List, Optional

# What is in a value.
EMPTY = 0
NULL = 1
INT16 = 2
INT32 = 3
FLOAT = 4
DOUBLE = 5
STRING = 8
OBJECT = 9
BOOLEAN = 11
BYTE = 17
OMITTED = -1

# What an argument or a result is.
KIND_VOID = 0
KIND_BOOLEAN = 1
KIND_BYTE = 2
KIND_INT16 = 3
KIND_INT32 = 4
KIND_FLOAT = 5
KIND_DOUBLE = 6
KIND_STRING = 7
KIND_COLOR = 8
KIND_WINDOW = 9
KIND_ENUMERATION = 10
KIND_OBJECT = 11
KIND_VARIANT = 12

DESKTOP = 1
HEADLESS = 2

RUN_QUIT = 0
RUN_CLOSED = 1
RUN_TIMED_OUT = 2

GET = 0
SET = 1

RGBA = 5

# Numbers of errors that the package raises or recognizes itself.
INVALID_CALL = 5
OVERFLOW = 6
SUBSCRIPT = 9
TYPE_MISMATCH = 13
OBJECT_GONE = 91
READ_ONLY = 383
NO_SUCH_MEMBER = 438
NO_SUCH_EVENT = 459
CANNOT_CREATE = 429


class _Text(Structure):
    _fields_ = [("text", c_char_p), ("length", c_size_t)]


class _Union(Union):
    _anonymous_ = ("string",)
    _fields_ = [
        ("byte", c_uint8),
        ("int16", c_int16),
        ("int32", c_int32),
        ("float32", c_float),
        ("float64", c_double),
        ("boolean", c_int32),
        ("string", _Text),
        ("object", c_void_p),
        # The text once more, for one with a NUL inside.
        ("address", c_void_p),
    ]


class Value(Structure):
    """A tagged value, `kestrel_value`."""

    _anonymous_ = ("content",)
    _fields_ = [("type", c_int32), ("owned", c_int32), ("content", _Union)]


class LastError(Structure):
    _fields_ = [("number", c_int32), ("position", c_int32), ("source", c_char_p), ("description", c_char_p)]


class Pixels(Structure):
    _fields_ = [
        ("data", c_void_p),
        ("stride", c_size_t),
        ("width", c_int32),
        ("height", c_int32),
        ("format", c_int32),
        ("reserved", c_int32),
    ]


class Parameter(Structure):
    _fields_ = [
        ("name", c_char_p),
        ("kind", c_int32),
        ("in_out", c_int32),
        ("nullable", c_int32),
        ("optional", c_int32),
        ("type_name", c_char_p),
        ("default_value", Value),
    ]


class Member(Structure):
    _fields_ = [
        ("name", c_char_p),
        ("help", c_char_p),
        ("number", c_int32),
        ("is_method", c_int32),
        ("can_get", c_int32),
        ("can_set", c_int32),
        ("parameter_count", c_int32),
        ("result_kind", c_int32),
        ("result_type_name", c_char_p),
        ("parameters", POINTER(POINTER(Parameter))),
    ]


class EventDescription(Structure):
    _fields_ = [
        ("name", c_char_p),
        ("help", c_char_p),
        ("number", c_int32),
        ("parameter_count", c_int32),
        ("parameters", POINTER(POINTER(Parameter))),
    ]


class Class(Structure):
    _fields_ = [
        ("name", c_char_p),
        ("help", c_char_p),
        ("can_create", c_int32),
        ("is_collection", c_int32),
        ("member_count", c_int32),
        ("event_count", c_int32),
        ("members", POINTER(POINTER(Member))),
        ("events", POINTER(POINTER(EventDescription))),
    ]


class Constant(Structure):
    _fields_ = [("name", c_char_p), ("value", c_int32)]


class Enumeration(Structure):
    _fields_ = [
        ("name", c_char_p),
        ("help", c_char_p),
        ("constant_count", c_int32),
        ("constants", POINTER(POINTER(Constant))),
    ]


Handler = CFUNCTYPE(c_int32, c_void_p, POINTER(Value), c_int32)

_VERSION = 2

# The result of each is a status, but for those in _OTHER_RESULTS. Handles and connections are void pointers,
# which ctypes presents as numbers.
_PARAMETERS = {
    "last_error": [],
    "version": [],
    "value_clear": [POINTER(Value)],
    "value_set_string": [POINTER(Value), c_char_p, c_size_t],
    "start": [c_int32],
    "stop": [],
    "process_events": [c_int32],
    "run": [c_void_p, c_int32, POINTER(c_int32)],
    "quit": [],
    "create": [c_char_p, POINTER(c_void_p)],
    "embed": [c_char_p, c_void_p, POINTER(c_void_p), POINTER(c_void_p), POINTER(c_uint64)],
    "retain": [c_void_p],
    "release": [c_void_p],
    "is_same": [c_void_p, c_void_p, POINTER(c_int32)],
    "invoke": [c_void_p, c_int32, c_int32, POINTER(Value), c_int32, POINTER(c_char_p), POINTER(Value)],
    "next": [c_void_p, POINTER(c_int32), POINTER(Value)],
    "connect": [c_void_p, c_char_p, Handler, c_void_p, c_void_p, POINTER(c_void_p)],
    "disconnect": [c_void_p],
    "lock_pixels": [c_void_p, POINTER(Pixels), POINTER(c_void_p)],
    "unlock_pixels": [c_void_p],
    "create_picture": [POINTER(Pixels), POINTER(c_void_p)],
    "classes": [POINTER(POINTER(POINTER(Class))), POINTER(c_int32)],
    "enumerations": [POINTER(POINTER(POINTER(Enumeration))), POINTER(c_int32)],
    "class_of": [c_void_p, POINTER(c_void_p)],
}
_OTHER_RESULTS = {"last_error": POINTER(LastError), "version": c_uint32, "value_clear": None}


def _load() -> CDLL:
    """The library that KESTREL_LIBRARY names, else the installed one."""
    name = os.environ.get("KESTREL_LIBRARY") or f"libkestrel.so.{_VERSION}"
    try:
        library = CDLL(name)
        for function, parameters in _PARAMETERS.items():
            entry = getattr(library, "kestrel_" + function)
            entry.argtypes = parameters
            entry.restype = _OTHER_RESULTS.get(function, c_int32)
            setattr(library, function, entry)
    except (OSError, AttributeError) as error:
        raise ImportError(f"The library of KestrelLib2 cannot be loaded: {error}") from error
    if library.version() >> 16 != _VERSION:
        raise ImportError(f"{name} is not version {_VERSION} of the library of KestrelLib2.")
    return library


library = _load()


def pointers(first: Any, count: int) -> List[Any]:
    """What the `count` pointers at `first` point to."""
    return [first[i].contents for i in range(count)]


def text(value: Optional[bytes]) -> str:
    return value.decode() if value else ""
