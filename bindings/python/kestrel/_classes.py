"""The classes of the interface as classes of Python, made when they are first used."""

import inspect
import keyword
import threading
from typing import Any, Callable, Dict, Iterator, List, Optional, Tuple, Type

from . import _library as c
from . import _objects
from ._enumerations import ENUMS, value_of
from ._errors import ElementError, Error
from ._interface import CLASS_AT, CLASSES, ClassInfo, MemberInfo, ParameterInfo
from ._objects import Object, assign, call, elements, read
from ._pictures import PictureBase

_TYPES = {
    c.KIND_VOID: None,
    c.KIND_BOOLEAN: bool,
    c.KIND_FLOAT: float,
    c.KIND_DOUBLE: float,
    c.KIND_STRING: str,
    c.KIND_VARIANT: Any,
}

#: Classes that have more in Python.
_BASES = {"Picture": PictureBase}


def _annotation(kind: int, type_name: str) -> Any:
    if kind == c.KIND_OBJECT:
        return type_name
    if kind == c.KIND_ENUMERATION:
        return ENUMS.get(type_name, int)
    return _TYPES.get(kind, int)


def _parameter(info: ParameterInfo) -> inspect.Parameter:
    name = info.name + "_" if keyword.iskeyword(info.name) else info.name
    default = info.default if info.optional else inspect.Parameter.empty
    annotation = _annotation(info.kind, info.type_name)
    return inspect.Parameter(name, inspect.Parameter.POSITIONAL_OR_KEYWORD, default=default, annotation=annotation)


def _signature(member: MemberInfo) -> inspect.Signature:
    itself = inspect.Parameter("self", inspect.Parameter.POSITIONAL_ONLY)
    return inspect.Signature(
        [itself, *map(_parameter, member.parameters)],
        return_annotation=_annotation(member.result_kind, member.result_type),
    )


def _method(member: MemberInfo) -> Callable[..., Any]:
    number = member.number
    in_out = {place: one.name.lower() for place, one in enumerate(member.parameters) if one.in_out}

    enumeration = member.result_type if member.result_kind == c.KIND_ENUMERATION else ""

    def method(self: Object, /, *arguments: Any, **named: Any) -> Any:
        result = call(self, number, arguments, named, c.GET, in_out)
        return value_of(enumeration, result) if enumeration else result

    method.__name__ = member.name
    method.__doc__ = member.help
    method.__signature__ = _signature(member)  # type: ignore[attr-defined]
    return method


class Indexed:
    """A property with arguments, of one object: `Item(1)`, `Item[1]`, `Item[1] = value`."""

    __slots__ = ("_target", "_member")

    def __init__(self, target: Object, member: MemberInfo) -> None:
        self._target = target
        self._member = member

    def __call__(self, *arguments: Any, **named: Any) -> Any:
        return call(self._target, self._member.number, arguments, named)

    def __getitem__(self, index: Any) -> Any:
        return self(*_as_arguments(index))

    def __setitem__(self, index: Any, value: Any) -> None:
        call(self._target, self._member.number, (*_as_arguments(index), value), {}, c.SET)

    def __repr__(self) -> str:
        return f"<{self._member.name} of {self._target!r}>"


def _as_arguments(index: Any) -> Tuple[Any, ...]:
    return index if isinstance(index, tuple) else (index,)


def _property(member: MemberInfo) -> property:
    number = member.number

    if member.needs_arguments:

        def get(self: Object) -> Any:
            return Indexed(self, member)

    elif member.result_kind == c.KIND_ENUMERATION:

        def get(self: Object) -> Any:
            return value_of(member.result_type, read(self, number))

    else:

        def get(self: Object) -> Any:
            return read(self, number)

    # Assignments go through Object.__setattr__; this one is for help and for `property.fset`.
    def put(self: Object, value: Any) -> None:
        assign(self, number, value)

    kind = _annotation(member.result_kind, member.result_type)
    get.__annotations__["return"] = kind
    words = [member.help]
    if not member.can_set:
        words.append("Read-only.")
    elif not member.can_get:
        words.append("Write-only.")
    return property(get, put if member.can_set else None, doc=" ".join(words))


# -- Collections --------------------------------------------------------------------------------------------------


def _default_call(member: MemberInfo) -> Dict[str, Any]:
    number = member.number

    def by_default(self: Object, /, *arguments: Any, **named: Any) -> Any:
        return call(self, number, arguments, named)

    def get_item(self: Object, index: Any) -> Any:
        try:
            return call(self, number, _as_arguments(index), {})
        except Error as error:
            if error.number not in (c.INVALID_CALL, c.SUBSCRIPT):
                raise
            raise ElementError(error.number, error.description, error.source, error.position) from None

    def set_item(self: Object, index: Any, value: Any) -> None:
        call(self, number, (*_as_arguments(index), value), {}, c.SET)

    by_default.__name__ = "__call__"
    by_default.__doc__ = member.help
    by_default.__signature__ = _signature(member)  # type: ignore[attr-defined]
    namespace: Dict[str, Any] = {"__call__": by_default, "__getitem__": get_item}
    if member.can_set:
        namespace["__setitem__"] = set_item
    return namespace


def _contains(self: Any, element: Any) -> bool:
    """An object is one of the elements; a number or a text is the position or the name of one."""
    if isinstance(element, Object):
        return any(element == found for found in elements(self))
    try:
        self[element]
    except ElementError:
        return False
    return True


def _reversed(self: Object) -> Iterator[Any]:
    return reversed(list(elements(self)))


def _collection(count: int) -> Dict[str, Any]:
    def length(self: Object) -> int:
        return int(read(self, count))

    return {"__len__": length, "__iter__": elements, "__reversed__": _reversed, "__contains__": _contains}


# -- Classes ------------------------------------------------------------------------------------------------------


def _text_of(info: ClassInfo) -> str:
    lines: List[str] = [info.help]
    if info.events:
        lines += ["", "Events:"]
        for event in info.events.values():
            arguments = ", ".join(one.name + (" (in-out)" if one.in_out else "") for one in event.parameters)
            lines.append(f"    {event.name}({arguments}): {event.help}")
    return "\n".join(lines)


def _make(info: ClassInfo) -> Type[Object]:
    members = info.members()
    namespace: Dict[str, Any] = {
        "__slots__": (),
        "__module__": "kestrel",
        "__doc__": _text_of(info),
        "_info": info,
        "_name": info.name,
        "_names": {member.name.lower(): member.name for member in members},
        "_numbers": {name: one.number for one in members for name in (one.name.lower(), one.name)},
        "_is_part": bool(info.events) and not info.can_create,
    }
    for member in members:
        made: Any = _method(member) if member.is_method else _property(member)
        if member.is_method:
            made.__qualname__ = f"{info.name}.{member.name}"
            made.__module__ = "kestrel"
        namespace[member.name] = made
        if member.number == 0 and member.parameters:
            namespace.update(_default_call(member))
    if info.is_collection:
        namespace.update(_collection(namespace["_numbers"]["count"]))
    return type(info.name, (_BASES.get(info.name, Object),), namespace)


_made: Dict[str, Type[Object]] = {}
_making = threading.Lock()


def class_named(name: str) -> Optional[Type[Object]]:
    """The class of that name, None if there is none."""
    found = _made.get(name)
    if found is None and name in CLASSES:
        with _making:
            found = _made.get(name) or _made.setdefault(name, _make(CLASSES[name]))
    return found


def _class_at(address: int) -> Type[Object]:
    found = class_named(CLASS_AT[address].name)
    assert found is not None
    return found


_objects.class_at = _class_at
