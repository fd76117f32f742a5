"""Handlers of events."""

import itertools
import os
import weakref
from ctypes import byref, c_void_p
from typing import Any, Callable, Dict, List, Optional

from . import _library as c
from ._calls import keep_failure
from ._enumerations import value_of
from ._errors import Error, MemberError, check
from ._interface import EventInfo, ParameterInfo
from ._library import Value, library
from ._objects import Object, connections_of, root, wrap
from ._values import READERS, clear, name_bytes, write


class Event:
    """The arguments of an event as attributes. The case of their names does not matter.

    A handler answers by assigning to those that are in-out; it can read its answer until it returns.
    """

    __slots__ = ("_info", "_values", "_answers")

    def __init__(self, info: EventInfo, values: List[Any]) -> None:
        object.__setattr__(self, "_info", info)
        object.__setattr__(self, "_values", values)
        object.__setattr__(self, "_answers", {})

    def __getattr__(self, name: str) -> Any:
        position = self._position(name)
        answers = self._answers or {}
        return answers.get(position, self._values[position])

    def __setattr__(self, name: str, value: Any) -> None:
        position = self._position(name)
        parameter = self._info.parameters[position]
        if not parameter.in_out:
            raise MemberError(c.READ_ONLY, f"The argument {parameter.name} is read-only.", self._info.name)
        if self._answers is None:
            raise Error(c.INVALID_CALL, f"The event {self._info.name} has ended.", self._info.name)
        self._answers[position] = _converted(parameter, value, position)

    def __dir__(self) -> List[str]:
        return [parameter.name for parameter in self._info.parameters]

    def __repr__(self) -> str:
        shown = ", ".join(f"{parameter.name}={getattr(self, parameter.name)!r}" for parameter in self._info.parameters)
        return f"<{self._info.name}({shown})>"

    def _position(self, name: str) -> int:
        if name.startswith("_"):  # asked for by modules such as copy, also before __init__
            raise AttributeError(name)
        wanted = name.lower()
        for position, parameter in enumerate(self._info.parameters):
            if parameter.name.lower() == wanted:
                return position
        raise MemberError(c.NO_SUCH_MEMBER, f'The event {self._info.name} has no argument "{name}".', self._info.name)

    def _take_result(self, result: Any) -> None:
        """What a handler has returned, as answers."""
        names = [parameter.name for parameter in self._info.parameters if parameter.in_out]
        if result is None or not names:
            return
        if isinstance(result, dict):
            answers = list(result.items())
        elif isinstance(result, tuple):
            if len(result) != len(names):
                raise Error(c.INVALID_CALL, f"A tuple that answers {self._info.name} has {len(names)} values, not "
                            f"{len(result)}.", self._info.name)
            answers = list(zip(names, result))
        else:
            answers = [(names[0], result)]
        for name, value in answers:
            setattr(self, name, value)

    def _end(self) -> Dict[int, Any]:
        answers: Dict[int, Any] = self._answers
        object.__setattr__(self, "_values", [answers.get(at, value) for at, value in enumerate(self._values)])
        object.__setattr__(self, "_answers", None)
        return answers


def _converted(parameter: ParameterInfo, value: Any, position: int) -> Any:
    """The answer as the argument's type, so that a wrong one is an error of the handler."""
    if parameter.kind == c.KIND_STRING and isinstance(value, (str, os.PathLike)):
        return os.fsdecode(value)
    if parameter.kind == c.KIND_BOOLEAN and (isinstance(value, int) or type(value).__name__ in ("bool", "bool_")):
        return bool(value)
    if parameter.kind in (c.KIND_FLOAT, c.KIND_DOUBLE) and hasattr(value, "__float__"):
        return float(value)
    if parameter.kind == c.KIND_VARIANT:
        return value
    if parameter.kind not in (c.KIND_STRING, c.KIND_BOOLEAN) and hasattr(value, "__index__"):
        return value.__index__()
    raise Error(c.TYPE_MISMATCH, f"The argument {parameter.name} cannot be a value of type {type(value).__qualname__}.",
                "kestrel", position + 1)


class Connection:
    """A handler that is connected to an event."""

    __slots__ = ("_handle", "_number", "_info", "_handler", "_sources", "__weakref__")

    def __init__(self, source: Object, info: EventInfo, handler: Callable[[Event], Any]) -> None:
        self._handle: Optional[int] = None
        self._number = next(_numbers)
        self._info = info
        self._handler = handler
        # The library keeps the number only: a handler that refers to the object would else keep it forever.
        _connected[self._number] = self
        handle = c_void_p()
        check(library.connect(source._handle, name_bytes(info.name), _raise_event, self._number, None, byref(handle)))
        self._handle = handle.value
        self._sources = [weakref.ref(one) for one in {id(one): one for one in (source, root(source))}.values()]
        for one in (source, root(source)):
            connections_of(one)[self._number] = self

    @property
    def connected(self) -> bool:
        """False after `disconnect`."""
        return self._handle is not None

    def disconnect(self) -> None:
        """The handler is not called again. Does nothing the second time."""
        handle, self._handle = self._handle, None
        if handle is None:
            return
        _connected.pop(self._number, None)
        for one in self._sources:
            source = one()
            if source is not None:
                connections_of(source).pop(self._number, None)
        library.disconnect(handle)

    def __enter__(self) -> "Connection":
        return self

    def __exit__(self, *exception: object) -> None:
        self.disconnect()

    def __del__(self, disconnect: Callable[[int], int] = library.disconnect) -> None:
        if self._handle is not None:
            disconnect(self._handle)

    def _call(self, arguments: Any) -> None:
        parameters = self._info.parameters
        event = Event(self._info, [_read(one, arguments[at]) for at, one in enumerate(parameters)])
        try:
            event._take_result(self._handler(event))
            for position, answer in event._end().items():
                _write_back(arguments[position], answer, position)
        except BaseException as failure:
            _cancel(event, arguments)
            keep_failure(failure)


def connect(source: Object, event: str, handler: Callable[[Event], Any]) -> Connection:
    info = source._info.events.get(event.lower())
    if info is None:
        raise Error(c.NO_SUCH_EVENT, f'{source._name} has no event "{event}".', source._name)
    if not callable(handler):
        raise TypeError(f"A handler of {info.name} must be callable, not {handler!r}.")
    return Connection(source, info, handler)


def _read(parameter: ParameterInfo, value: Value) -> Any:
    """An argument, which remains the library's."""
    if value.type == c.OBJECT:
        if value.object:
            check(library.retain(value.object))
        return wrap(value.object)
    if value.type == c.STRING:
        copy = Value(type=c.STRING)
        copy.address, copy.length = value.address, value.length
        return READERS[c.STRING](copy)
    found = READERS[value.type](value)
    return value_of(parameter.type_name, found) if parameter.kind == c.KIND_ENUMERATION else found


def _write_back(slot: Value, answer: Any, position: int) -> None:
    if isinstance(answer, str):
        encoded = answer.encode("utf-8", "surrogateescape")
        check(library.value_set_string(byref(slot), encoded, len(encoded)))
        return
    clear(slot)
    write(slot, answer, position + 1)


def _cancel(event: Event, arguments: Any) -> None:
    """After a failure of the handler: without this the editor would ask the user instead."""
    for at, parameter in enumerate(event._info.parameters):
        if parameter.name.lower() not in ("cancel", "canceldefault"):
            continue
        if parameter.in_out:
            write(arguments[at], True, at + 1)
        elif parameter.type_name == "CancelValue":
            event._values[at].Value = True


_numbers = itertools.count(1)
_connected: "weakref.WeakValueDictionary[int, Connection]" = weakref.WeakValueDictionary()


@c.Handler  # type: ignore[misc]
def _raise_event(number: int, arguments: Any, count: int) -> int:
    try:
        connection = _connected.get(number)
        if connection is not None:
            connection._call(arguments)
    except BaseException as failure:
        keep_failure(failure)
    return 0
