#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "base/Event.h"
#include "base/Variant.h"
#include "host/dispatch/Classes.h"
#include "imaging/contract/Types.h"
#include "settings/OptionTypes.h"

/// A class with a member of each kind, and the objects that it hands out.
namespace kestrel::dispatch::sample {

class Element {
 public:
  explicit Element(std::string name) : name_(std::move(name)) {}
  const std::string& Name() const { return name_; }
  std::int32_t Value() const { return value_; }
  void Value(std::int32_t value) { value_ = value; }

 private:
  std::string name_;
  std::int32_t value_ = 7;
};

/// Elements that vanish while the collection lives.
class Elements {
 public:
  std::int32_t Count() const { return static_cast<std::int32_t>(elements_.size()); }
  Element& Item(std::int32_t index);
  Element& Item(const std::string& name);
  Element* Find(const std::string& name);
  void Add(const std::string& name) { elements_.push_back(std::make_unique<Element>(name)); }
  void Clear() { elements_.clear(); }
  Elements& Same() { return *this; }

 private:
  std::vector<std::unique_ptr<Element>> elements_;
};

/// An object with a life of its own, shared.
class Shared {
 public:
  std::int32_t Number() const { return number_; }
  void Number(std::int32_t value) { number_ = value; }

 private:
  std::int32_t number_ = 3;
};

/// A value that an event passes by reference.
struct Answer {
  bool yes = false;
};

/// An object of an event's raiser.
struct Moment {
  std::int32_t number = 1;
};

class Sample {
 public:
  bool Flag() const { return flag_; }
  void Flag(bool value) { flag_ = value; }
  std::uint8_t Small() const { return small_; }
  void Small(std::uint8_t value) { small_ = value; }
  std::int16_t Short() const { return short_; }
  void Short(std::int16_t value) { short_ = value; }
  std::int32_t Number() const { return number_; }
  void Number(std::int32_t value) { number_ = value; }
  float Single() const { return single_; }
  void Single(float value) { single_ = value; }
  double Real() const { return real_; }
  void Real(double value) { real_ = value; }
  std::string Text() const { return text_; }
  void Text(const std::string& value) { text_ = value; }
  OLE_COLOR Tint() const { return tint_; }
  void Tint(OLE_COLOR value) { tint_ = value; }
  ImageProcessingDirectionConstants Direction() const { return direction_; }
  void Direction(ImageProcessingDirectionConstants value) { direction_ = value; }
  WindowHandle Window() const { return window_; }
  void Window(WindowHandle value) { window_ = value; }
  Variant Any() const { return any_; }
  void Any(const Variant& value) { any_ = value; }

  std::int32_t Serial() const { return 42; }
  void Secret(const std::string& value) { text_ = "secret " + value; }

  std::string Join(std::int32_t first, std::int32_t second, const std::string& separator, bool reverse);
  void Exchange(std::string& left, bool& right);
  std::string NameOf(Element& element) { return element.Name(); }
  std::string NameOrNone(const Element* element) { return element ? element->Name() : "none"; }
  void Fail() const;

  kestrel::dispatch::sample::Elements& Elements() { return elements_; }
  std::shared_ptr<kestrel::dispatch::sample::Shared> Shared() { return shared_; }
  void Shared(const std::shared_ptr<kestrel::dispatch::sample::Shared>& value) { shared_ = value; }
  Element* First() { return elements_.Count() == 0 ? nullptr : &elements_.Item(1); }
  Answer MakeAnswer() const { return {true}; }

  Event<> Nothing;
  Event<const std::string&, std::int32_t> Said;
  Event<std::string&, bool&, std::int32_t> Asked;
  Event<ImageProcessingDirectionConstants&> Directed;
  Event<Element&> Chosen;
  Event<Answer&> Vetoed;
  Event<Moment&> Passed;

 private:
  bool flag_ = false;
  std::uint8_t small_ = 0;
  std::int16_t short_ = 0;
  std::int32_t number_ = 0;
  float single_ = 0;
  double real_ = 0;
  std::string text_;
  OLE_COLOR tint_ = 0;
  ImageProcessingDirectionConstants direction_ = ipDirectionLeft;
  WindowHandle window_ = 0;
  Variant any_;
  kestrel::dispatch::sample::Elements elements_;
  std::shared_ptr<kestrel::dispatch::sample::Shared> shared_;
};

}  // namespace kestrel::dispatch::sample

namespace kestrel::dispatch {

template <>
const ClassDescription& Describe<sample::Sample>();
template <>
const ClassDescription& Describe<sample::Elements>();
template <>
const ClassDescription& Describe<sample::Element>();
template <>
const ClassDescription& Describe<sample::Shared>();
template <>
const ClassDescription& Describe<sample::Answer>();
template <>
const ClassDescription& Describe<sample::Moment>();

template <>
inline constexpr Life kLife<sample::Element> = Life::kLocated;
template <>
struct Locate<sample::Element> {
  static std::string Key(const sample::Element& element) { return element.Name(); }
  static sample::Element* Find(sample::Elements& parent, const std::string& key) { return parent.Find(key); }
  static sample::Element* Find(sample::Sample& parent, const std::string& key) {
    return parent.Elements().Find(key);
  }
};
template <>
inline constexpr Life kLife<sample::Answer> = Life::kCopied;
template <>
inline constexpr Life kLife<sample::Moment> = Life::kDuringEvent;

}  // namespace kestrel::dispatch
