#pragma once

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

#include "host/dispatch/Registry.h"

/// The tables as text, to be held against lists that are written by hand.
namespace kestrel::dispatch {

inline std::string TextOf(const Type& type) {
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
  return "?";
}

inline std::string TextOf(const DefaultValue& value) {
  std::ostringstream text;
  switch (value.kind) {
    case DefaultValue::Kind::kNone:
      break;
    case DefaultValue::Kind::kNothing:
      text << "Nothing";
      break;
    case DefaultValue::Kind::kBoolean:
      text << (value.number != 0 ? "True" : "False");
      break;
    case DefaultValue::Kind::kInt32:
      text << static_cast<std::int32_t>(value.number);
      break;
    case DefaultValue::Kind::kDouble:
      text << value.number;
      break;
    case DefaultValue::Kind::kString:
      text << '"' << value.text << '"';
      break;
  }
  return text.str();
}

/// "(Width Int32, Height Int32 = 0, ref Cancel Boolean)"; empty without parameters.
inline std::string TextOf(std::span<const Parameter> parameters) {
  std::string text;
  for (const Parameter& parameter : parameters) {
    text += text.empty() ? "(" : ", ";
    if (parameter.inOut) text += "ref ";
    text += std::string(parameter.name) + " " + TextOf(parameter.type);
    if (parameter.IsOptional()) text += " = " + TextOf(parameter.defaultValue);
  }
  return text.empty() ? text : text + ")";
}

/// "method Resize(Width Int32)", "property Zoom Double", "read Count Int32", "write Secret String", with
/// "default" before it for the default member.
inline std::string TextOf(const Member& member) {
  std::string text = member.number == 0 ? "default " : "";
  if (member.isMethod) {
    text += "method ";
  } else {
    text += !member.put ? "read " : !member.call ? "write " : "property ";
  }
  text += std::string(member.name) + TextOf(member.parameters);
  const std::string type = TextOf(member.call ? member.result : member.value.type);
  return type.empty() ? text : text + " " + type;
}

inline std::string TextOf(const EventDescription& event) {
  return "event " + std::string(event.name) + TextOf(event.parameters);
}

/// The members and events of a class, in the order of their texts.
inline std::vector<std::string> LinesOf(const ClassDescription& description) {
  std::vector<std::string> lines;
  for (const Member& member : description.members) lines.push_back(TextOf(member));
  for (const EventDescription& event : description.events) lines.push_back(TextOf(event));
  std::sort(lines.begin(), lines.end());
  return lines;
}

/// The lines of a list, without blanks at their beginnings, sorted; empty lines are left out.
inline std::vector<std::string> LinesOf(const std::string& list) {
  std::vector<std::string> lines;
  std::istringstream stream(list);
  for (std::string line; std::getline(stream, line);) {
    line.erase(0, std::min(line.find_first_not_of(' '), line.size()));
    if (!line.empty()) lines.push_back(line);
  }
  std::sort(lines.begin(), lines.end());
  return lines;
}

}  // namespace kestrel::dispatch
