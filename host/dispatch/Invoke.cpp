#include "Invoke.h"

#include <array>
#include <utility>

#include "Errors.h"

namespace kestrel::dispatch {
namespace {

class OmittedArgument final : public Object {
 public:
  std::string TypeName() const override { return "Omitted"; }
};
const OmittedArgument kOmitted;

/// One pointer per parameter, null where the argument is omitted.
class Arguments {
 public:
  Arguments(const ClassDescription& owner, const Member& member) : owner_(owner), member_(member) {}

  void Place(std::span<Variant> positional, std::span<const NamedArgument> named) {
    const auto parameters = member_.parameters;
    if (positional.size() + named.size() > parameters.size()) {
      RaiseNumberOfArguments(owner_, member_, parameters, positional.size() + named.size());
    }
    for (std::size_t i = 0; i < positional.size(); ++i) {
      if (!IsOmitted(positional[i])) places_[i] = &positional[i];
    }
    for (const NamedArgument& argument : named) {
      const std::ptrdiff_t at = FindParameter(parameters, argument.name);
      if (at < 0) RaiseNoSuchArgument(owner_, member_.name, argument.name);
      Variant*& place = places_[static_cast<std::size_t>(at)];
      if (place) RaiseArgumentTwice(owner_, member_.name, argument.name);
      if (!IsOmitted(*argument.value)) place = argument.value;
    }
    for (std::size_t i = 0; i < parameters.size(); ++i) {
      if (!places_[i] && !parameters[i].IsOptional()) {
        RaiseNotOptional(owner_, member_.name, parameters[i], i);
      }
    }
  }

  /// The assigned value comes after the property's own arguments.
  void PlaceValue(Variant& value) {
    if (IsOmitted(value)) RaiseNotOptional(owner_, member_.name, member_.value, member_.parameters.size());
    places_[member_.parameters.size()] = &value;
  }

  Variant* const* Places() const { return places_.data(); }

 private:
  const ClassDescription& owner_;
  const Member& member_;
  std::array<Variant*, kMostParameters + 1> places_{};
};

Variant Read(const Reference& target, const Member& member, std::span<Variant> positional,
             std::span<const NamedArgument> named) {
  const ClassDescription& owner = target.Class();
  if (!member.call) RaiseWriteOnly(owner, member);
  void* const object = target.Target();
  Variant result;
  const bool passesOn = !member.isMethod && member.parameters.empty() &&
                        member.result.kind == Kind::kObject && positional.size() + named.size() > 0;
  if (passesOn) {
    member.call(target, object, nullptr, result);
    return Invoke(ReferenceIn(result), 0, Use::kGet, positional, named);
  }
  Arguments arguments(owner, member);
  arguments.Place(positional, named);
  member.call(target, object, arguments.Places(), result);
  return result;
}

void Write(const Reference& target, const Member& member, std::span<Variant> positional,
           std::span<const NamedArgument> named) {
  const ClassDescription& owner = target.Class();
  if (member.isMethod) RaiseNotAProperty(owner, member);
  if (!member.put) RaiseReadOnly(owner, member);
  void* const object = target.Target();
  if (positional.empty()) RaiseNotOptional(owner, member.name, member.value, member.parameters.size());
  Arguments arguments(owner, member);
  arguments.Place(positional.first(positional.size() - 1), named);
  arguments.PlaceValue(positional.back());
  Variant none;
  member.put(target, object, arguments.Places(), none);
}

template <typename NameOrNumber>
const Member& MemberOf(const Reference& target, NameOrNumber which) {
  const Member* member = target.Class().FindMember(which);
  if (!member) RaiseNoSuchMember(target.Class(), which);
  return *member;
}

}  // namespace

Variant Omitted() { return Variant::Borrow(&kOmitted); }

bool IsOmitted(const Variant& value) { return IsObject(value) && value.AsObject().get() == &kOmitted; }

Variant Invoke(const Reference& target, const Member& member, Use use, std::span<Variant> positional,
               std::span<const NamedArgument> named) {
  // A handler may release the host's last reference.
  const Reference::Pointer kept = target.shared_from_this();
  if (use == Use::kGet) return Read(target, member, positional, named);
  Write(target, member, positional, named);
  return {};
}

Variant Invoke(const Reference& target, std::int32_t number, Use use, std::span<Variant> positional,
               std::span<const NamedArgument> named) {
  return Invoke(target, MemberOf(target, number), use, positional, named);
}

Variant Invoke(const Reference& target, std::string_view name, Use use, std::span<Variant> positional,
               std::span<const NamedArgument> named) {
  return Invoke(target, MemberOf(target, name), use, positional, named);
}

Variant Get(const Reference& target, std::string_view name) { return Invoke(target, name, Use::kGet); }

void Put(const Reference& target, std::string_view name, Variant value) {
  Invoke(target, name, Use::kPut, {&value, 1});
}

namespace {

Connection ConnectTo(const Reference& source, const EventDescription& event, Handler handler) {
  return event.connect(source, source.Target(), std::move(handler));
}

}  // namespace

Connection Connect(const Reference& source, std::int32_t number, Handler handler) {
  const EventDescription* event = source.Class().FindEvent(number);
  if (!event) RaiseNoSuchEvent(source.Class(), std::to_string(number));
  return ConnectTo(source, *event, std::move(handler));
}

Connection Connect(const Reference& source, std::string_view name, Handler handler) {
  const EventDescription* event = source.Class().FindEvent(name);
  if (!event) RaiseNoSuchEvent(source.Class(), name);
  return ConnectTo(source, *event, std::move(handler));
}

}  // namespace kestrel::dispatch
