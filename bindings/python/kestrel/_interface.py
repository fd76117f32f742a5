"""The classes and enumerations of the interface as the library describes them."""

from ctypes import POINTER, addressof, byref, c_int32
from typing import Any, Dict, List, NamedTuple, Optional, Tuple

from . import _library as c
from ._errors import check
from ._library import library, pointers, text
from ._values import READERS


class ParameterInfo(NamedTuple):
    name: str
    kind: int
    type_name: str
    in_out: bool
    optional: bool
    nullable: bool
    default: Any


class MemberInfo(NamedTuple):
    name: str
    help: str
    number: int
    is_method: bool
    can_get: bool
    can_set: bool
    parameters: Tuple[ParameterInfo, ...]
    result_kind: int
    result_type: str

    @property
    def needs_arguments(self) -> bool:
        return any(not parameter.optional for parameter in self.parameters)


class EventInfo(NamedTuple):
    name: str
    help: str
    parameters: Tuple[ParameterInfo, ...]


class ClassInfo:
    """A class. Its members and events are read when they are first used."""

    def __init__(self, description: c.Class) -> None:
        self._description = description
        self.address = addressof(description)
        self.name = text(description.name)
        self.help = text(description.help)
        self.can_create = bool(description.can_create)
        self.is_collection = bool(description.is_collection)
        self._events: Optional[Dict[str, EventInfo]] = None

    def members(self) -> List[MemberInfo]:
        return [_member(row) for row in pointers(self._description.members, self._description.member_count)]

    @property
    def events(self) -> Dict[str, EventInfo]:
        """By their names in lower case."""
        if self._events is None:
            rows = pointers(self._description.events, self._description.event_count)
            self._events = {
                text(row.name).lower(): EventInfo(text(row.name), text(row.help), _parameters(row)) for row in rows
            }
        return self._events


class EnumerationInfo(NamedTuple):
    name: str
    help: str
    constants: List[Tuple[str, int]]


def _default(parameter: c.Parameter) -> Any:
    value = parameter.default_value
    if not parameter.optional or value.type == c.OBJECT:
        return None
    return READERS[value.type](value)


def _parameters(row: Any) -> Tuple[ParameterInfo, ...]:
    return tuple(
        ParameterInfo(
            name=text(found.name),
            kind=found.kind,
            type_name=text(found.type_name),
            in_out=bool(found.in_out),
            optional=bool(found.optional),
            nullable=bool(found.nullable),
            default=_default(found),
        )
        for found in pointers(row.parameters, row.parameter_count)
    )


def _member(row: c.Member) -> MemberInfo:
    return MemberInfo(
        name=text(row.name),
        help=text(row.help),
        number=row.number,
        is_method=bool(row.is_method),
        can_get=bool(row.can_get),
        can_set=bool(row.can_set),
        parameters=_parameters(row),
        result_kind=row.result_kind,
        result_type=text(row.result_type_name),
    )


def _classes() -> Dict[str, ClassInfo]:
    first = POINTER(POINTER(c.Class))()
    count = c_int32()
    check(library.classes(byref(first), byref(count)))
    found = [ClassInfo(row) for row in pointers(first, count.value)]
    return {info.name: info for info in found}


def _enumerations() -> Dict[str, EnumerationInfo]:
    first = POINTER(POINTER(c.Enumeration))()
    count = c_int32()
    check(library.enumerations(byref(first), byref(count)))
    found = {}
    for row in pointers(first, count.value):
        constants = [(text(one.name), one.value) for one in pointers(row.constants, row.constant_count)]
        found[text(row.name)] = EnumerationInfo(text(row.name), text(row.help), constants)
    return found


CLASSES = _classes()
CLASS_AT = {info.address: info for info in CLASSES.values()}
ENUMERATIONS = _enumerations()
