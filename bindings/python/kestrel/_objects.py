"""Objects of the library: their handles and the calls of their members."""

import weakref
from ctypes import byref, c_char_p, c_int32, c_void_p
from typing import Any, Callable, Dict, Iterator, Optional, Sequence, Type

from . import _library as c
from ._calls import ORDINARY_CALL, Call, raise_failure, thread
from ._errors import MemberError, check
from ._interface import ClassInfo
from ._library import Value, library
from ._values import READERS, add_writer, clear, name_bytes, write

_invoke = library.invoke
_release = library.release


class Object:
    """An object of the library. The case of names of members does not matter.

    An object with a window, such as an ImageProcessing, ends with its last reference. Objects that another one has
    handed out are gone when that is; their members then raise `Error` 91. An object is used on the thread that has
    made it.
    """

    # _owner: the object that has handed this one out, weak or not; see `wrap`.
    # _connections: of handlers to events, by their number; see `_events`.
    __slots__ = ("_handle", "_owner", "_connections", "__weakref__")

    _handle: Optional[int]
    _owner: Any
    _connections: Optional[Dict[int, Any]]

    _info: ClassInfo
    _name = "Object"
    _is_part = False  # raises events, and is made by another object
    _names: Dict[str, str] = {}  # of the members, by their names in lower case
    _numbers: Dict[str, int] = {}  # by their names, also in lower case

    def __init__(self) -> None:
        set_fields(self, None)
        handle = c_void_p()
        with Call():
            status = library.create(name_bytes(self._name), byref(handle))
        set_handle(self, handle.value)
        raise_failure(status)

    def __del__(self, release: Callable[[int], int] = _release) -> None:
        try:
            handle = object.__getattribute__(self, "_handle")
        except AttributeError:  # of a class that has not called __init__ of this one
            return
        if handle:
            release(handle)

    def on(self, event: str, handler: Optional[Callable[[Any], Any]] = None) -> Any:
        """Connects a handler to an event and returns the `Connection`; without a handler, a decorator.

        The handler is called with an `Event`, whose attributes are the arguments. It answers by assigning to those that
        are in-out, or by what it returns: a value for the first of them, a tuple for all, or a dictionary by name.

            editor.on("RequestSaveFilename", lambda event: "/tmp/picture.png")

        It is connected until `Connection.disconnect` or the end of the object. An exception of the handler is raised by
        the call in which the event occurred, such as `kestrel.run`; an event with Cancel or CancelDefault is canceled.
        """
        from ._events import connect

        if handler is not None:
            return connect(self, event, handler)

        def decorate(function: Callable[[Any], Any]) -> Callable[[Any], Any]:
            connect(self, event, function)
            return function

        return decorate

    def __getattr__(self, name: str) -> Any:
        """For names that are spelled in another case."""
        exact = self._names.get(name.lower())
        hidden, thread.hidden = thread.hidden, None
        if exact == name and hidden is not None:
            raise hidden
        if exact is None or exact == name:
            raise MemberError(c.NO_SUCH_MEMBER, f'{self._name} has no member "{name}".', self._name)
        return getattr(self, exact)

    def __setattr__(self, name: str, value: Any) -> None:
        number = self._numbers.get(name)
        if number is None:
            number = self._numbers.get(name.lower())
        if number is not None:
            assign(self, number, value)
            return
        try:
            object.__setattr__(self, name, value)
        except AttributeError:
            raise MemberError(c.NO_SUCH_MEMBER, f'{self._name} has no member "{name}".', self._name) from None

    def __eq__(self, other: object) -> bool:
        if self is other:
            return True
        if not isinstance(other, Object):
            return NotImplemented
        same = c_int32()
        status = library.is_same(self._handle, other._handle, byref(same))
        if status == c.OBJECT_GONE:
            return False
        check(status)
        return same.value != 0

    def __hash__(self) -> int:
        # Equal objects can have different handles.
        return hash(self._name)

    def __repr__(self) -> str:
        return f"<kestrel.{self._name} object>"

    def __reduce_ex__(self, protocol: Any) -> Any:
        raise TypeError(f"An object of class {self._name} cannot be copied or pickled.")


set_handle = Object.__dict__["_handle"].__set__
_set_owner = Object.__dict__["_owner"].__set__
_set_connections = Object.__dict__["_connections"].__set__


def set_fields(of: Object, handle: Optional[int]) -> None:
    set_handle(of, handle)
    _set_owner(of, None)
    _set_connections(of, None)


def _write_object(slot: Value, value: Object) -> None:
    slot.type = c.OBJECT
    slot.object = value._handle


add_writer(Object, _write_object)


# -- Objects that the library hands out ---------------------------------------------------------------------------

#: The class of an object by the address of its description; set by `_classes`.
class_at: Callable[[int], Type[Object]]


def wrap(handle: Optional[int], owner: Optional[Object] = None) -> Optional[Object]:
    """The object of a handle, which it takes over. `owner` has handed it out.

    What raises events keeps its owner: it exists as long as that, and the owner keeps the connections.
    """
    if not handle:
        return None
    address = c_void_p()
    status = library.class_of(handle, byref(address))
    if status:
        _release(handle)
        check(status)
    kind = class_at(address.value or 0)
    self: Object = object.__new__(kind)
    set_handle(self, handle)
    _set_connections(self, None)
    if owner is None:
        _set_owner(self, None)
    else:
        keeper = root(owner)
        _set_owner(self, keeper if kind._is_part else weakref.ref(keeper))
    return self


def root(of: Object) -> Object:
    """The object that has handed out `of`, directly or indirectly, or `of` itself."""
    owner: Optional[Object] = of._owner() if isinstance(of._owner, weakref.ref) else of._owner
    return of if owner is None else owner


def connections_of(owner: Object) -> Dict[int, Any]:
    connections = owner._connections
    if connections is None:
        connections = {}
        _set_connections(owner, connections)
    return connections


# -- Calls --------------------------------------------------------------------------------------------------------


#: Of values, by their length.
_ARRAYS = [Value * count for count in range(14)]


def read(target: Object, number: int) -> Any:
    """A property without arguments."""
    value = Value()
    outer = thread.call
    thread.call = ORDINARY_CALL
    try:
        status = _invoke(target._handle, number, c.GET, None, 0, None, byref(value))
    except BaseException:  # an interruption by the keyboard
        clear(value)
        raise
    finally:
        thread.call = outer
    if status or thread.failures:
        clear(value)
        try:
            raise_failure(status)
        except AttributeError as error:
            thread.hidden = error
            raise
    if value.type == c.OBJECT:
        return wrap(value.object, target)
    return READERS[value.type](value)


def assign(target: Object, number: int, value: Any) -> None:
    """An assignment to a property without arguments."""
    slot = Value()
    write(slot, value, 1)
    outer = thread.call
    thread.call = ORDINARY_CALL
    try:
        status = _invoke(target._handle, number, c.SET, byref(slot), 1, None, None)
    finally:
        thread.call = outer
    if status or thread.failures:
        raise_failure(status)


def call(target: Object, number: int, arguments: Sequence[Any], named: Dict[str, Any], use: int = c.GET,
         in_out: Optional[Dict[int, str]] = None) -> Any:
    """A method, a property with arguments, or an assignment to one, whose value is the last of `arguments`.

    `in_out` has the in-out parameters: their lower-case names by their positions. The values of those that are given
    are returned in a tuple, behind the result if there is one.
    """
    count = len(arguments) + len(named)
    slots = _ARRAYS[count]() if count < len(_ARRAYS) else (Value * count)()
    for position, argument in enumerate(arguments):
        write(slots[position], argument, position + 1)
    names = _write_named(slots, len(arguments), named) if named else None

    result = Value()
    outer = thread.call
    thread.call = ORDINARY_CALL
    try:
        status = _invoke(target._handle, number, use, slots, count, names, byref(result))
    except BaseException:
        clear(result)
        raise
    finally:
        thread.call = outer
    if status or thread.failures:
        for slot in (result, *slots):
            clear(slot)
        raise_failure(status)
    returned = take(result, target)
    if not in_out:
        return returned
    written = [slots[position] for position in range(len(arguments)) if position in in_out]
    written += [slots[len(arguments) + at] for at, name in enumerate(named) if name.lower() in in_out.values()]
    values = tuple(take(slot, target) for slot in written)
    return values if returned is None else (returned, *values)


def _write_named(slots: Any, first: int, named: Dict[str, Any]) -> Any:
    """Fills the slots from `first` on, and returns the names of all; those of positional arguments are null."""
    names = (c_char_p * len(slots))()
    for position, (name, argument) in enumerate(named.items(), first):
        names[position] = name_bytes(name)
        write(slots[position], argument, position + 1)
    return names


def take(value: Value, owner: Object) -> Any:
    """The value for Python, which takes over what it owns."""
    if value.type == c.OBJECT:
        return wrap(value.object, owner)
    return READERS[value.type](value)


def elements(collection: Object) -> Iterator[Any]:
    position = c_int32(0)
    while True:
        value = Value()
        with Call():
            status = library.next(collection._handle, byref(position), byref(value))
        if status or thread.failures:
            clear(value)
            raise_failure(status)
        if position.value < 0:
            return
        yield take(value, collection)
