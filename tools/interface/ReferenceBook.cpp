#include "ReferenceBook.h"

#include <cstdint>
#include <map>
#include <span>
#include <string_view>

#include "ErrorNumbers.h"
#include "Words.h"
#include "host/dispatch/Registry.h"

namespace kestrel::tools {
namespace {

using namespace dispatch;

constexpr std::string_view kIntroduction =
    R"(# Reference of the public interface

The classes of KestrelLib2 as hosts in C, Python and script languages use them. Hosts in C++ use the same names as
member functions. This document is made by the build from the tables in `host/dispatch`, as are the C header of
constants, the type library's definition and Python's type stubs.

| term | meaning |
|---|---|
| name | found in any case of its letters |
| number | identifies a member or an event within its class, and never changes; 0 is the default member |
| optional argument | has a default: `Height: Int32 = 0`; arguments are given by position or by name |
| `ref` | an in-out argument: the value that the callee leaves in it goes back to the caller |
| `Nothing` | no object |
| `Boolean` | `True` or `False` |
| `Byte`, `Int16`, `Int32` | whole numbers of 8 bits without a sign, and of 16 and 32 bits with one |
| `Float`, `Double` | floating-point numbers of 32 and 64 bits |
| `String` | a text |
| `Color` | a 32-bit number, 0x00BBGGRR; -1 is no color, or the default |
| `Window` | the number of a window |
| `Variant` | any of these |

)";

std::string anchor(std::string_view heading) {
  std::string text;
  for (const char c : heading) text += c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  return text;
}

std::string link(std::string_view heading) {
  return "[" + std::string(heading) + "](#" + anchor(heading) + ")";
}

/// A text in a cell of a table.
std::string escaped(std::string_view text) {
  constexpr std::string_view kSpecial = "|*_<[`\\";
  std::string result;
  for (const char c : text) {
    if (kSpecial.find(c) != std::string_view::npos) result += '\\';
    result += c;
  }
  return result;
}

std::string nameOf(const Type& type) {
  switch (type.kind) {
    case Kind::kVoid:
      return {};
    case Kind::kBoolean:
      return "Boolean";
    case Kind::kByte:
      return "Byte";
    case Kind::kInt16:
      return "Int16";
    case Kind::kInt32:
      return "Int32";
    case Kind::kFloat:
      return "Float";
    case Kind::kDouble:
      return "Double";
    case Kind::kString:
      return "String";
    case Kind::kColor:
      return "Color";
    case Kind::kWindow:
      return "Window";
    case Kind::kEnumeration:
      return std::string(type.enumeration().name);
    case Kind::kObject:
      return std::string(type.objectClass().name);
    case Kind::kVariant:
      return "Variant";
  }
  return {};
}

/// As a cell, with a link to what this document describes.
std::string linkOf(const Type& type) {
  const bool isDescribed = type.kind == Kind::kEnumeration || type.kind == Kind::kObject;
  return isDescribed ? link(nameOf(type)) : nameOf(type);
}

std::string textOf(const DefaultValue& value) {
  switch (value.kind) {
    case DefaultValue::Kind::kNone:
      return {};
    case DefaultValue::Kind::kNothing:
      return "Nothing";
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

std::string argumentsOf(std::span<const Parameter> parameters) {
  std::string arguments;
  for (const Parameter& parameter : parameters) {
    std::string text = parameter.inOut ? "ref " : "";
    text += std::string(parameter.name) + ": " + nameOf(parameter.type);
    if (parameter.IsOptional()) text += " = " + textOf(parameter.defaultValue);
    append(arguments, ", ", text);
  }
  return arguments;
}

/// As code: "`Resize(Width: Int32, Height: Int32 = 0)`", "`Undo()`", and a property without arguments
/// "`Zoom`".
std::string signature(const Member& member) {
  const std::string arguments = argumentsOf(member.parameters);
  const bool isCalled = member.isMethod || !arguments.empty();
  return "`" + std::string(member.name) + (isCalled ? "(" + arguments + ")" : "") + "`";
}
std::string signature(const EventDescription& event) {
  return "`" + std::string(event.name) + "(" + argumentsOf(event.parameters) + ")`";
}

/// Of each class the members and events from which a host gets its objects.
using Origins = std::map<std::string_view, std::string>;

Origins originsOfObjects() {
  Origins origins;
  const auto note = [&](const Type& type, const ClassDescription& owner, std::string_view name) {
    if (type.kind != Kind::kObject) return;
    append(origins[type.objectClass().name], ", ", link(owner.name) + "." + std::string(name));
  };
  for (const ClassDescription* owner : Classes()) {
    for (const Member& member : owner->members) note(member.result, *owner, member.name);
    for (const EventDescription& event : owner->events) {
      for (const Parameter& parameter : event.parameters) note(parameter.type, *owner, event.name);
    }
  }
  return origins;
}

std::string access(const Member& member) {
  if (!member.put) return "read";
  return member.call ? "read, write" : "write";
}

std::string propertiesText(const ClassDescription& description) {
  std::string rows;
  for (const Member& member : description.members) {
    if (member.isMethod) continue;
    rows += "| " + signature(member) + " | " + linkOf(member.call ? member.result : member.value.type) +
            " | " + access(member) + " | " + std::to_string(member.number) + " | " + escaped(member.help) +
            " |\n";
  }
  if (rows.empty()) return {};
  return "| property | type | access | number | |\n|---|---|---|---|---|\n" + rows + "\n";
}

std::string methodsText(const ClassDescription& description) {
  std::string rows;
  for (const Member& member : description.members) {
    if (!member.isMethod) continue;
    rows += "| " + signature(member) + " | " + linkOf(member.result) + " | " + std::to_string(member.number) +
            " | " + escaped(member.help) + " |\n";
  }
  if (rows.empty()) return {};
  return "| method | result | number | |\n|---|---|---|---|\n" + rows + "\n";
}

std::string eventsText(const ClassDescription& description) {
  std::string rows;
  for (const EventDescription& event : description.events) {
    rows +=
        "| " + signature(event) + " | " + std::to_string(event.number) + " | " + escaped(event.help) + " |\n";
  }
  if (rows.empty()) return {};
  return "| event | number | |\n|---|---|---|\n" + rows + "\n";
}

std::string classText(const ClassDescription& description, const Origins& origins) {
  std::string text = "## " + std::string(description.name) + "\n\n" + escaped(description.help);
  if (description.create) text += " A host can create it.";
  if (description.isControl) text += " A host can embed it.";
  if (description.IsCollection()) text += " Its elements can be enumerated.";
  text += "\n\n";
  if (const auto found = origins.find(description.name); found != origins.end()) {
    text += "Objects come from " + found->second + ".\n\n";
  }
  return text + propertiesText(description) + methodsText(description) + eventsText(description);
}

std::string enumerationText(const EnumerationDescription& description) {
  std::string text = "## " + std::string(description.name) + "\n\n" + escaped(description.help) +
                     "\n\n| name | value |\n|---|---|\n";
  for (const EnumerationValue& value : description.values) {
    text += "| `" + std::string(value.name) + "` | " + std::to_string(value.value) + " |\n";
  }
  return text + "\n";
}

template <typename Row>
std::string listText(std::string_view title, std::span<const Row* const> rows, bool (*contains)(const Row&)) {
  std::string text = "| " + std::string(title) + " | |\n|---|---|\n";
  for (const Row* row : rows) {
    if (contains(*row)) text += "| " + link(row->name) + " | " + escaped(row->help) + " |\n";
  }
  return text + "\n";
}

std::string contentsText() {
  return listText<ClassDescription>("class that a host creates", Classes(),
                                    [](const ClassDescription& row) { return row.create != nullptr; }) +
         listText<ClassDescription>("control that a host embeds", Classes(),
                                    [](const ClassDescription& row) { return row.isControl; }) +
         listText<ClassDescription>(
             "class of the objects that these hand out", Classes(),
             [](const ClassDescription& row) { return !row.create && !row.isControl; }) +
         listText<EnumerationDescription>("enumeration", Enumerations(),
                                          [](const EnumerationDescription&) { return true; });
}

std::string errorsText() {
  std::string text =
      "## Errors\n\nAn error has a number, a source (usually the name of the class) and a description for "
      "users. "
      "Members have further numbers where their description names them.\n\n| number | meaning |\n|---|---|\n";
  for (const ErrorNumber& error : errorNumbers()) {
    text += "| " + std::to_string(error.number) + " | " + std::string(error.meaning) + " |\n";
  }
  return text + "\n";
}

struct IgnoringCase {
  bool operator()(std::string_view left, std::string_view right) const {
    return CompareNames(left, right) < 0;
  }
};

std::string indexText() {
  std::map<std::string_view, std::string, IgnoringCase> rows;
  for (const ClassDescription* owner : Classes()) {
    for (const Member& member : owner->members) append(rows[member.name], ", ", link(owner->name));
    for (const EventDescription& event : owner->events) {
      append(rows[event.name], ", ", link(owner->name) + " (event)");
    }
  }
  std::string text = "## Index\n\n| name | member or event of |\n|---|---|\n";
  for (const auto& [name, owners] : rows) text += "| `" + std::string(name) + "` | " + owners + " |\n";
  return text;
}

}  // namespace

std::string referenceBook() {
  std::string text{kIntroduction};
  text += contentsText() + "[Errors](#errors) by number. [Index](#index) of all members and events.\n\n";
  const Origins origins = originsOfObjects();
  for (const ClassDescription* description : Classes()) text += classText(*description, origins);
  for (const EnumerationDescription* description : Enumerations()) text += enumerationText(*description);
  return text + errorsText() + indexText();
}

}  // namespace kestrel::tools
