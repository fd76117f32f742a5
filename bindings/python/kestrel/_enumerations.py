"""The enumerations of the interface as classes of Python."""

import enum
from typing import Dict, Type

from ._interface import ENUMERATIONS, EnumerationInfo


def _make(info: EnumerationInfo) -> Type[enum.IntEnum]:
    made = enum.IntEnum(info.name, info.constants, module="kestrel")  # type: ignore[misc]
    made.__doc__ = info.help
    return made


#: By name.
ENUMS: Dict[str, Type[enum.IntEnum]] = {name: _make(info) for name, info in ENUMERATIONS.items()}

#: All values of all enumerations, by name.
CONSTANTS: Dict[str, enum.IntEnum] = {one.name: one for kind in ENUMS.values() for one in kind}


def value_of(type_name: str, number: int) -> int:
    """The number as a value of the enumeration, if it is one: a member may have numbers of its own."""
    kind = ENUMS.get(type_name)
    return number if kind is None else kind._value2member_map_.get(number, number)  # type: ignore[return-value]
