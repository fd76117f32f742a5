#include "SampleClass.h"

#include <tuple>

#include "base/RuntimeError.h"
#include "host/dispatch/Elements.h"
#include "host/dispatch/Fields.h"
#include "host/dispatch/Table.h"

namespace kestrel::dispatch {
namespace sample {

Element& Elements::Item(std::int32_t index) {
  if (index < 1 || index > Count()) throw RuntimeError(err::kSubscript, "There is no such element.");
  return *elements_[static_cast<std::size_t>(index - 1)];
}

Element& Elements::Item(const std::string& name) {
  if (Element* found = Find(name)) return *found;
  throw RuntimeError(err::kInvalidCall, "There is no element \"" + name + "\".");
}

Element* Elements::Find(const std::string& name) {
  for (const auto& element : elements_) {
    if (element->Name() == name) return element.get();
  }
  return nullptr;
}

std::string Sample::Join(std::int32_t first, std::int32_t second, const std::string& separator,
                         bool reverse) {
  if (reverse) std::swap(first, second);
  return std::to_string(first) + separator + std::to_string(second);
}

void Sample::Exchange(std::string& left, bool& right) {
  left += right ? " yes" : " no";
  right = !right;
}

void Sample::Fail() const { throw RuntimeError(1234, "It failed.", "Sample's source"); }

}  // namespace sample

namespace {

using sample::Answer;
using sample::Element;
using sample::Elements;
using sample::Moment;
using sample::Sample;
using sample::Shared;

constexpr std::tuple kSampleMembers{
    Property("Flag", 1, &Sample::Flag, &Sample::Flag, "A boolean."),
    Property("Small", 2, &Sample::Small, &Sample::Small, "A byte."),
    Property("Short", 3, &Sample::Short, &Sample::Short, "16 bits."),
    Property("Number", 4, &Sample::Number, &Sample::Number, "32 bits."),
    Property("Single", 5, &Sample::Single, &Sample::Single, "A float."),
    Property("Real", 6, &Sample::Real, &Sample::Real, "A double."),
    Property("Text", 7, &Sample::Text, &Sample::Text, "A text."),
    Color(Property("Tint", 8, &Sample::Tint, &Sample::Tint, "A color.")),
    Property("Direction", 9, &Sample::Direction, &Sample::Direction, "An enumeration."),
    Property("Window", 10, &Sample::Window, &Sample::Window, "A window."),
    Property("Any", 11, &Sample::Any, &Sample::Any, "Anything."),
    ReadOnly("Serial", 12, &Sample::Serial, "Cannot be written."),
    WriteOnly("Secret", 13, &Sample::Secret, "Cannot be read."),
    Method("Join", 14, &Sample::Join, {"First", {"Second", 5}, {"Separator", "-"}, {"Reverse", false}},
           "Optional arguments."),
    Method("Exchange", 15, &Sample::Exchange, {"Left", "Right"}, "Arguments by reference."),
    Method("NameOf", 16, &Sample::NameOf, {"Element"}, "An object."),
    Method("NameOrNone", 17, &Sample::NameOrNone, {{"Element", nullptr}}, "An object or Nothing."),
    Method("Fail", 18, &Sample::Fail, "Raises an error of its own."),
    ReadOnly("Elements", 19, &Sample::Elements, "A collection."),
    Property("Shared", 20, &Sample::Shared, &Sample::Shared, "A shared object."),
    ReadOnly("First", 21, &Sample::First, "An object or Nothing."),
    Method("MakeAnswer", 22, &Sample::MakeAnswer, "A value object."),
};

constexpr std::tuple kSampleEvents{
    EventOf("Nothing", 1, &Sample::Nothing, "No arguments."),
    EventOf("Said", 2, &Sample::Said, {"Text", "Number"}, "Values."),
    EventOf("Asked", 3, &Sample::Asked, {"Text", "Cancel", "Number"}, "By reference."),
    EventOf("Directed", 4, &Sample::Directed, {"Direction"}, "An enumeration by reference."),
    EventOf("Chosen", 5, &Sample::Chosen, {"Element"}, "An object."),
    EventOf("Vetoed", 6, &Sample::Vetoed, {"Answer"}, "A value object by reference."),
    EventOf("Passed", 7, &Sample::Passed, {"Moment"}, "An object of the raiser."),
};

constexpr std::tuple kElementsMembers{
    ItemOf<Elements>("An element."),
    ReadOnly("Count", 1, &Elements::Count, "The number of elements."),
    Method("Add", 2, &Elements::Add, {"Name"}, "Adds one."),
    Method("Clear", 3, &Elements::Clear, "Removes all."),
    ReadOnly("Same", 4, &Elements::Same, "The collection."),
};

constexpr std::tuple kElementMembers{
    Property("Value", 0, &Element::Value, &Element::Value, "The default property."),
    ReadOnly("Name", 1, &Element::Name, "Its name."),
};

constexpr std::tuple kSharedMembers{Property("Number", 1, &Shared::Number, &Shared::Number, "A number.")};
constexpr std::tuple kAnswerMembers{
    Property("Yes", 0, &FieldOf<&Answer::yes>, &SetField<&Answer::yes>, "The default property.")};
constexpr std::tuple kMomentMembers{ReadOnly("Number", 1, &FieldOf<&Moment::number>, "A number.")};

constexpr ClassDescription kSample =
    MakeClass<Sample, kSampleMembers, kSampleEvents>({.name = "Sample", .help = ""});
constexpr ClassDescription kElements =
    MakeClass<Elements, kElementsMembers>({.name = "Elements", .help = ""});
constexpr ClassDescription kElement = MakeClass<Element, kElementMembers>({.name = "Element", .help = ""});
constexpr ClassDescription kShared = MakeClass<Shared, kSharedMembers>({.name = "Shared", .help = ""});
constexpr ClassDescription kAnswer = MakeClass<Answer, kAnswerMembers>({.name = "Answer", .help = ""});
constexpr ClassDescription kMoment = MakeClass<Moment, kMomentMembers>({.name = "Moment", .help = ""});

}  // namespace

template <>
const ClassDescription& Describe<Sample>() {
  return kSample;
}
template <>
const ClassDescription& Describe<Elements>() {
  return kElements;
}
template <>
const ClassDescription& Describe<Element>() {
  return kElement;
}
template <>
const ClassDescription& Describe<Shared>() {
  return kShared;
}
template <>
const ClassDescription& Describe<Answer>() {
  return kAnswer;
}
template <>
const ClassDescription& Describe<Moment>() {
  return kMoment;
}

}  // namespace kestrel::dispatch
