#include "Errors.h"

#include <algorithm>

namespace kestrel::dispatch {
namespace {

std::string Text(std::string_view view) { return std::string(view); }

std::string Expected(const Type& type) {
  switch (type.kind) {
    case Kind::kBoolean:
      return "True or False";
    case Kind::kString:
      return "a text";
    case Kind::kColor:
      return "a color number";
    case Kind::kEnumeration:
      return "a number of " + Text(type.enumeration().name);
    case Kind::kObject:
      return "an object of class " + Text(type.objectClass().name);
    case Kind::kVoid:
    case Kind::kByte:
    case Kind::kInt16:
    case Kind::kInt32:
    case Kind::kFloat:
    case Kind::kDouble:
    case Kind::kWindow:
    case Kind::kVariant:
      break;
  }
  return "a number";
}

std::string Argument(std::string_view member, const Parameter& parameter, std::size_t position) {
  return "Argument " + std::to_string(position + 1) + " (" + Text(parameter.name) + ") of " + Text(member);
}

std::string NumberOf(std::size_t count) {
  return count == 0 ? "no arguments" : count == 1 ? "1 argument" : std::to_string(count) + " arguments";
}

}  // namespace

void RaiseNoSuchMember(const ClassDescription& owner, std::string_view name) {
  throw RuntimeError(err::kNoSuchMember, Text(owner.name) + " has no member \"" + Text(name) + "\".",
                     Text(owner.name));
}

void RaiseNoSuchMember(const ClassDescription& owner, std::int32_t number) {
  throw RuntimeError(err::kNoSuchMember,
                     number == 0 ? Text(owner.name) + " has no default member."
                                 : Text(owner.name) + " has no member " + std::to_string(number) + ".",
                     Text(owner.name));
}

void RaiseNoSuchEvent(const ClassDescription& owner, std::string_view name) {
  throw RuntimeError(err::kNoSuchEvent, Text(owner.name) + " has no event \"" + Text(name) + "\".",
                     Text(owner.name));
}

void RaiseReadOnly(const ClassDescription& owner, const Member& member) {
  throw RuntimeError(err::kReadOnlyProperty, "The property " + Text(member.name) + " is read-only.",
                     Text(owner.name));
}

void RaiseWriteOnly(const ClassDescription& owner, const Member& member) {
  throw RuntimeError(err::kWriteOnlyProperty, "The property " + Text(member.name) + " is write-only.",
                     Text(owner.name));
}

void RaiseNotAProperty(const ClassDescription& owner, const Member& member) {
  throw RuntimeError(err::kNoSuchMember, Text(member.name) + " is a method: nothing can be assigned to it.",
                     Text(owner.name));
}

void RaiseNumberOfArguments(const ClassDescription& owner, const Member& member,
                            std::span<const Parameter> parameters, std::size_t given) {
  const auto least = static_cast<std::size_t>(
      std::count_if(parameters.begin(), parameters.end(),
                    [](const Parameter& parameter) { return !parameter.IsOptional(); }));
  std::string takes = NumberOf(parameters.size());
  if (least < parameters.size()) takes = std::to_string(least) + " to " + takes;
  throw RuntimeError(err::kNumberOfArguments,
                     Text(member.name) + " takes " + takes + ", not " + std::to_string(given) + ".",
                     Text(owner.name));
}

void RaiseNoSuchArgument(const ClassDescription& owner, std::string_view member, std::string_view name) {
  throw RuntimeError(err::kNoSuchArgument, Text(member) + " has no argument \"" + Text(name) + "\".",
                     Text(owner.name));
}

void RaiseArgumentTwice(const ClassDescription& owner, std::string_view member, std::string_view name) {
  throw RuntimeError(err::kNoSuchArgument,
                     "The argument \"" + Text(name) + "\" of " + Text(member) + " is given twice.",
                     Text(owner.name));
}

void RaiseNotOptional(const ClassDescription& owner, std::string_view member, const Parameter& parameter,
                      std::size_t position) {
  throw ArgumentError(err::kArgumentNotOptional, Argument(member, parameter, position) + " is not optional.",
                      Text(owner.name), static_cast<std::int32_t>(position) + 1);
}

void RaiseBadArgument(const ClassDescription& owner, std::string_view member, const Parameter& parameter,
                      std::size_t position, const RuntimeError& error) {
  std::string sentence = Argument(member, parameter, position);
  switch (error.Number()) {
    case err::kTypeMismatch:
    case err::kObjectRequired:
      sentence += " must be " + Expected(parameter.type) + ".";
      break;
    case err::kOverflow:
      sentence += " is out of range.";
      break;
    case err::kInvalidUseOfNull:
      sentence += " is Null.";
      break;
    default:
      sentence += ": " + error.Description();
  }
  throw ArgumentError(error.Number(), std::move(sentence), Text(owner.name),
                      static_cast<std::int32_t>(position) + 1);
}

void RaiseObjectGone(const ClassDescription& owner) {
  throw RuntimeError(err::kObjectNotSet, "The object of class " + Text(owner.name) + " no longer exists.",
                     Text(owner.name));
}

void RaiseWrongThread(const ClassDescription& owner) {
  throw RuntimeError(
      err::kWrongThread,
      "An object of class " + Text(owner.name) + " can be used only on the thread that it was made on.",
      Text(owner.name));
}

void RaiseObjectRequired() { throw RuntimeError(err::kObjectRequired, "An object is required."); }
void RaiseNothing() { throw RuntimeError(err::kObjectNotSet, "The object is Nothing."); }
void RaiseNoValue() { throw RuntimeError(err::kTypeMismatch, "The object has no default property."); }
void RaiseWrongClass() { throw RuntimeError(err::kTypeMismatch, "The object has another class."); }

}  // namespace kestrel::dispatch
