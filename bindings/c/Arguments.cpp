#include "Arguments.h"

#include <string>

#include "Status.h"
#include "Values.h"
#include "base/RuntimeError.h"
#include "host/dispatch/Errors.h"

namespace kestrel::c {

Arguments::Arguments(const dispatch::ClassDescription& owner, const dispatch::Member& member,
                     kestrel_value* values, std::int32_t count, const char* const* names)
    : member_(member), host_(values), count_(static_cast<std::size_t>(count)) {
  if (count < 0) RaiseInvalidCall("The number of arguments is negative.");
  if (count > 0) Require(values, "There are no arguments.");
  if (count_ > kMost) dispatch::RaiseNumberOfArguments(owner, member, member.parameters, count_);
  positional_ = count_;
  for (std::size_t i = 0; i < count_; ++i) {
    if (names && names[i]) {
      if (positional_ == count_) positional_ = i;
      named_[i - positional_] = {names[i], &values_[i]};
    } else if (i > positional_) {
      RaiseInvalidCall("The positional arguments come before the named ones.");
    }
    try {
      values_[i] = ToVariant(values[i]);
    } catch (const RuntimeError& error) {
      throw dispatch::ArgumentError(error.Number(),
                                    "Argument " + std::to_string(i + 1) + " of " + std::string(member.name) +
                                        ": " + error.Description(),
                                    std::string(owner.name), static_cast<std::int32_t>(PositionOf(i)) + 1);
    }
  }
}

std::ptrdiff_t Arguments::PositionOf(std::size_t at) const {
  if (at < positional_) return static_cast<std::ptrdiff_t>(at);
  return dispatch::FindParameter(member_.parameters, named_[at - positional_].name);
}

void Arguments::WriteBack() {
  for (std::size_t i = 0; i < count_; ++i) {
    const std::ptrdiff_t at = PositionOf(i);
    if (at < 0 || static_cast<std::size_t>(at) >= member_.parameters.size()) continue;
    if (!member_.parameters[static_cast<std::size_t>(at)].inOut || dispatch::IsOmitted(values_[i])) continue;
    Replace(host_[i], values_[i]);
  }
}

}  // namespace kestrel::c
