#include "PythonStubs.h"

#include <algorithm>
#include <span>
#include <string_view>

#include "Words.h"
#include "host/dispatch/Classes.h"
#include "host/dispatch/Registry.h"

namespace kestrel::tools {
namespace {

using namespace dispatch;

// Types of the interface are named by the package: a class has properties that are named like other classes.
constexpr std::string_view kHead =
    R"("""The types of the package, written by the build from the tables of host/dispatch."""

import os
from enum import IntEnum
from typing import (
    Any,
    Callable,
    Final,
    Generic,
    Iterator,
    Literal,
    NoReturn,
    Protocol,
    TypeVar,
    Union,
    overload,
    type_check_only,
)

import kestrel
from ._errors import ElementError as ElementError, Error as Error, MemberError as MemberError
from ._events import Connection as Connection, Event as Event
from ._loop import (
    Batch as Batch,
    batch as batch,
    process_events as process_events,
    quit as quit,
    run as run,
    stop as stop,
)
from ._objects import Object as Object
from ._pictures import PictureBase
from ._values import Omitted as Omitted

__version__: str

_T = TypeVar("_T")
_Result = TypeVar("_Result", covariant=True)
_Value = TypeVar("_Value", contravariant=True)

_Text = Union[str, os.PathLike[str]]
_Handler = Callable[[_T], Any]
_Decorator = Callable[[Callable[[_T], Any]], Callable[[_T], Any]]

@type_check_only
class _Indexed(Protocol[_Result]):
    """A property with arguments."""

    def __call__(self, *arguments: Any, **named: Any) -> _Result: ...
    def __getitem__(self, index: Any) -> _Result: ...

@type_check_only
class _WriteOnly(Generic[_Value]):
    """A property that cannot be read."""

    def __get__(self, instance: Any, owner: Any) -> NoReturn: ...
    def __set__(self, instance: Any, value: _Value) -> None: ...
)";

std::string docstring(std::string_view text, std::string_view indent) {
  std::string words;
  for (const char c : text) words += c == '\\' ? "\\\\" : std::string(1, c);
  if (words.ends_with('"')) words.insert(words.size() - 1, "\\");
  return std::string(indent) + "\"\"\"" + words + "\"\"\"\n";
}

std::string typeOf(const Type& type) {
  switch (type.kind) {
    case Kind::kVoid:
      return "None";
    case Kind::kBoolean:
      return "bool";
    case Kind::kByte:
    case Kind::kInt16:
    case Kind::kInt32:
    case Kind::kColor:
    case Kind::kWindow:
      return "int";
    case Kind::kFloat:
    case Kind::kDouble:
      return "float";
    case Kind::kString:
      return "str";
    case Kind::kEnumeration:
      return "kestrel." + std::string(type.enumeration().name);
    case Kind::kObject:
      return "kestrel." + std::string(type.objectClass().name);
    case Kind::kVariant:
      return "Any";
  }
  return {};
}

/// What a caller may pass.
std::string argumentTypeOf(const Parameter& parameter) {
  if (parameter.type.kind == Kind::kString) return "_Text";
  std::string type = typeOf(parameter.type);
  if (parameter.type.kind == Kind::kEnumeration) type += " | int";
  if (parameter.nullable) type += " | None";
  return type;
}

/// A result that can be Nothing is "| Any", so that a caller need not ask where it cannot be.
std::string resultTypeOf(const Member& member) {
  return typeOf(member.result) + (member.isResultNullable ? " | Any" : "");
}

std::string textOf(const DefaultValue& value) {
  switch (value.kind) {
    case DefaultValue::Kind::kNone:
      return {};
    case DefaultValue::Kind::kNothing:
      return "None";
    case DefaultValue::Kind::kBoolean:
      return value.number != 0 ? "True" : "False";
    case DefaultValue::Kind::kInt32:
    case DefaultValue::Kind::kDouble:
      return numberText(value.number);
    case DefaultValue::Kind::kString:
      return quoted(value.text);
  }
  return {};
}

std::string parametersText(std::span<const Parameter> parameters) {
  std::string text = "self";
  for (const Parameter& parameter : parameters) {
    text += ", " + std::string(parameter.name) + ": " + argumentTypeOf(parameter);
    if (parameter.IsOptional()) text += " = " + textOf(parameter.defaultValue);
  }
  return text;
}

/// The in-out arguments are returned behind the result.
std::string returnTypeOf(const Member& member) {
  const auto isInOut = [](const Parameter& parameter) { return parameter.inOut; };
  if (std::none_of(member.parameters.begin(), member.parameters.end(), isInOut)) return resultTypeOf(member);
  std::string types = member.result.kind == Kind::kVoid ? "" : resultTypeOf(member);
  for (const Parameter& parameter : member.parameters) {
    // Enumerations come back as numbers.
    if (parameter.inOut) {
      append(types, ", ", parameter.type.kind == Kind::kEnumeration ? "int" : typeOf(parameter.type));
    }
  }
  return "tuple[" + types + "]";
}

std::string methodText(const Member& member) {
  return "    def " + std::string(member.name) + "(" + parametersText(member.parameters) + ") -> " +
         returnTypeOf(member) + ":\n" + docstring(member.help, "        ");
}

std::string propertyText(const Member& member) {
  const std::string name(member.name);
  if (!member.call) {
    return "    " + name + ": _WriteOnly[" + argumentTypeOf(member.value) + "]\n" +
           docstring(member.help, "    ");
  }
  std::string type = resultTypeOf(member);
  if (!member.parameters.empty()) type = "_Indexed[" + type + "]";
  std::string text =
      "    @property\n    def " + name + "(self) -> " + type + ":\n" + docstring(member.help, "        ");
  if (member.put) {
    text += "    @" + name + ".setter\n    def " + name + "(self, value: " + type + ") -> None: ...\n";
  }
  return text;
}

/// What Python's operators do with the default member and with the elements.
std::string operatorsText(const ClassDescription& description) {
  const Member* item = description.FindMember(0);
  if (!item || item->parameters.empty()) return {};
  const std::string type = resultTypeOf(*item);
  std::string text = "    def __call__(" + parametersText(item->parameters) + ") -> " + type +
                     ": ...\n    def __getitem__(self, index: Any) -> " + type + ": ...\n";
  if (description.IsCollection()) {
    text += "    def __len__(self) -> int: ...\n    def __iter__(self) -> Iterator[" + type +
            "]: ...\n    def __reversed__(self) -> Iterator[" + type +
            "]: ...\n    def __contains__(self, element: object) -> bool: ...\n";
  }
  return text;
}

/// The class of the object that a handler of the event receives.
std::string nameOf(const ClassDescription& description, const EventDescription& event) {
  return "_" + std::string(description.name) + "_" + std::string(event.name);
}

std::string eventText(const ClassDescription& description, const EventDescription& event) {
  std::string text = "\n@type_check_only\nclass " + nameOf(description, event) + "(Event):\n" +
                     docstring(event.help, "    ");
  for (const Parameter& parameter : event.parameters) {
    const std::string name(parameter.name);
    const std::string type = typeOf(parameter.type);
    text += parameter.inOut ? "    " + name + ": " + type + "\n"
                            : "    @property\n    def " + name + "(self) -> " + type + ": ...\n";
  }
  return text;
}

std::string connectionsText(const ClassDescription& description) {
  std::string text;
  for (const EventDescription& event : description.events) {
    const std::string type = nameOf(description, event);
    const std::string start = "    def on(self, event: Literal[" + quoted(event.name) + "], handler: ";
    // The base class takes the name of any event.
    text += text.empty() ? "    @overload  # type: ignore[override]\n" : "    @overload\n";
    text += start + "_Handler[" + type + "]) -> Connection:\n" + docstring(event.help, "        ");
    text += "    @overload\n" + start + "None = None) -> _Decorator[" + type + "]: ...\n";
  }
  return text;
}

std::string classText(const ClassDescription& description) {
  std::string text;
  for (const EventDescription& event : description.events) text += eventText(description, event);
  const bool isPicture = &description == &Describe<Picture>();
  text += "\nclass " + std::string(description.name) + (isPicture ? "(PictureBase):\n" : "(Object):\n") +
          docstring(description.help, "    ") + "\n";
  for (const Member& member : description.members) {
    text += member.isMethod ? methodText(member) : propertyText(member);
  }
  return text + operatorsText(description) + connectionsText(description);
}

std::string enumerationText(const EnumerationDescription& description) {
  const std::string name(description.name);
  std::string text = "\nclass " + name + "(IntEnum):\n" + docstring(description.help, "    ") + "\n";
  for (const EnumerationValue& value : description.values) {
    text += "    " + std::string(value.name) + " = " + std::to_string(value.value) + "\n";
  }
  text += "\n";
  for (const EnumerationValue& value : description.values) {
    text += std::string(value.name) + ": Final = " + name + "." + std::string(value.name) + "\n";
  }
  return text;
}

}  // namespace

std::string pythonStubs() {
  std::string text{kHead};
  for (const EnumerationDescription* description : Enumerations()) text += enumerationText(*description);
  for (const ClassDescription* description : Classes()) text += classText(*description);
  return text;
}

}  // namespace kestrel::tools
