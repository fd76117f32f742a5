// Members of objects: properties, methods, elements of collections.

#include <string>

#include "Arguments.h"
#include "Objects.h"
#include "Status.h"
#include "Text.h"
#include "Values.h"
#include "base/RuntimeError.h"
#include "host/dispatch/Errors.h"
#include "host/dispatch/Invoke.h"

using namespace kestrel::c;
using kestrel::Variant;
using kestrel::dispatch::Invoke;
using kestrel::dispatch::Member;
using kestrel::dispatch::Use;

namespace {

const Member& MemberNamed(const ObjectCall& call, const char* name) {
  const Member* const member = call.Class().FindMember(TextOrEmpty(name));
  if (!member) kestrel::dispatch::RaiseNoSuchMember(call.Class(), TextOrEmpty(name));
  return *member;
}

const Member& MemberNumbered(const ObjectCall& call, std::int32_t number) {
  const Member* const member = call.Class().FindMember(number);
  if (!member) kestrel::dispatch::RaiseNoSuchMember(call.Class(), number);
  return *member;
}

void Run(const ObjectCall& call, const Member& member, Use use, kestrel_value* values, std::int32_t count,
         const char* const* names, kestrel_value* result) {
  Arguments arguments(call.Class(), member, values, count, names);
  const Variant returned = Invoke(call.Target(), member, use, arguments.Positional(), arguments.Named());
  // Before anything is written back: it can fail.
  kestrel_value made{};
  if (result) made = ToValue(returned);
  arguments.WriteBack();
  if (result) *result = made;
}

}  // namespace

kestrel_status kestrel_find_member(kestrel_object* object, const char* name, std::int32_t* member) {
  return Guarded([&] {
    Require(member, "There is no place for the number.");
    const ObjectCall call(object);
    *member = MemberNamed(call, name).number;
  });
}

kestrel_status kestrel_get(kestrel_object* object, const char* name, kestrel_value* result) {
  return Guarded([&] {
    Require(result, "There is no place for the result.");
    const ObjectCall call(object);
    *result = ToValue(Invoke(call.Target(), MemberNamed(call, name), Use::kGet));
  });
}

kestrel_status kestrel_set(kestrel_object* object, const char* name, const kestrel_value* value) {
  return Guarded([&] {
    Require(value, "There is no value.");
    const ObjectCall call(object);
    kestrel_value copy = *value;
    Run(call, MemberNamed(call, name), Use::kPut, &copy, 1, nullptr, nullptr);
  });
}

kestrel_status kestrel_call(kestrel_object* object, const char* name, kestrel_value* arguments,
                            std::int32_t count, const char* const* names, kestrel_value* result) {
  return Guarded([&] {
    const ObjectCall call(object);
    Run(call, MemberNamed(call, name), Use::kGet, arguments, count, names, result);
  });
}

kestrel_status kestrel_invoke(kestrel_object* object, std::int32_t member, std::int32_t use,
                              kestrel_value* arguments, std::int32_t count, const char* const* names,
                              kestrel_value* result) {
  return Guarded([&] {
    if (use != KESTREL_GET && use != KESTREL_SET) RaiseInvalidCall("There is no such use of a member.");
    const ObjectCall call(object);
    Run(call, MemberNumbered(call, member), use == KESTREL_GET ? Use::kGet : Use::kPut, arguments, count,
        names, result);
  });
}

kestrel_status kestrel_next(kestrel_object* collection, std::int32_t* position, kestrel_value* element) {
  return Guarded([&] {
    Require(position, "There is no position.");
    Require(element, "There is no place for the element.");
    const ObjectCall call(collection);
    if (!call.Class().IsCollection()) kestrel::dispatch::RaiseNoSuchMember(call.Class(), "_NewEnum");
    const bool isEnd = *position < 0 || *position >= kestrel::dispatch::Get(call.Target(), "Count").ToInt32();
    if (isEnd) {
      *position = -1;
      *element = {};
      return;
    }
    Variant index = *position + 1;
    *element = ToValue(Invoke(call.Target(), 0, Use::kGet, {&index, 1}));
    ++*position;
  });
}
