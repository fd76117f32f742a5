#include "Convert.h"

#include <cmath>
#include <limits>

#include "Invoke.h"

namespace kestrel::dispatch {
namespace {

/// Default properties that lead to each other without an end.
constexpr int kMostDefaults = 8;

}  // namespace

Variant ValueOf(const Variant& value) {
  Variant found = value;
  for (int i = 0; IsObject(found); ++i) {
    const Reference& reference = ReferenceIn(found);
    const Member* byDefault = reference.Class().FindMember(0);
    if (i == kMostDefaults || !byDefault || !byDefault->parameters.empty()) RaiseNoValue();
    found = Invoke(reference, *byDefault, Use::kGet);
  }
  return found;
}

bool ToBoolean(const Variant& value) {
  return IsObject(value) ? ValueOf(value).ToBoolean() : value.ToBoolean();
}

double ToDouble(const Variant& value) {
  return IsObject(value) ? ValueOf(value).ToDouble() : value.ToDouble();
}

std::int32_t ToInt32(const Variant& value) { return kestrel::ToInt32(ToDouble(value)); }

WindowHandle ToWindow(const Variant& value) {
  const double number = std::nearbyint(ToDouble(value));
  // The largest handle is not a double, the next double is too large.
  constexpr double kLimit = static_cast<double>(std::numeric_limits<WindowHandle>::max());
  if (!(number >= -kLimit && number < kLimit)) {
    throw RuntimeError(err::kOverflow, "The number is out of range.");
  }
  return static_cast<WindowHandle>(number);
}

std::string ToString(const Variant& value) {
  return IsObject(value) ? ValueOf(value).ToString() : value.ToString();
}

Variant FromWindow(WindowHandle window) {
  if (std::in_range<std::int32_t>(window)) return static_cast<std::int32_t>(window);
  return static_cast<double>(window);
}

}  // namespace kestrel::dispatch
