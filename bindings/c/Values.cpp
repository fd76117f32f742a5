#include "Values.h"

#include <cstdlib>
#include <cstring>
#include <new>

#include "Objects.h"
#include "Status.h"
#include "base/RuntimeError.h"
#include "host/dispatch/Invoke.h"

namespace kestrel::c {
namespace {

using Type = Variant::Type;

// The types of the interface are those of Variants.
static_assert(KESTREL_NULL == static_cast<int>(Type::kNull) &&
              KESTREL_INT16 == static_cast<int>(Type::kInt16));
static_assert(KESTREL_INT32 == static_cast<int>(Type::kInt32) &&
              KESTREL_FLOAT == static_cast<int>(Type::kFloat));
static_assert(KESTREL_DOUBLE == static_cast<int>(Type::kDouble) &&
              KESTREL_BYTE == static_cast<int>(Type::kByte));
static_assert(KESTREL_STRING == static_cast<int>(Type::kString));
static_assert(KESTREL_OBJECT == static_cast<int>(Type::kObject));
static_assert(KESTREL_BOOLEAN == static_cast<int>(Type::kBoolean));

[[noreturn]] void RaiseMismatch(const char* sentence) { throw RuntimeError(err::kTypeMismatch, sentence); }

kestrel_value OwnedText(const char* text, std::size_t length) {
  auto* const copy = static_cast<char*>(std::malloc(length + 1));
  if (!copy) throw std::bad_alloc();
  if (length > 0) std::memcpy(copy, text, length);
  copy[length] = '\0';
  kestrel_value made{};
  made.type = KESTREL_STRING;
  made.owned = 1;
  made.as.string = {copy, length};
  return made;
}

kestrel_value OwnedObject(const Variant& value) {
  kestrel_value made{};
  made.type = KESTREL_OBJECT;
  if (value.AsObject()) {
    made.as.object = NewHandle(dispatch::SharedReferenceIn(value));
    made.owned = 1;
  }
  return made;
}

}  // namespace

std::string TextOf(const kestrel_string& text) {
  if (!text.data) {
    if (text.length != 0 && text.length != KESTREL_TO_NUL)
      RaiseInvalidCall("A text has a length and no characters.");
    return {};
  }
  return text.length == KESTREL_TO_NUL ? std::string(text.data) : std::string(text.data, text.length);
}

Variant ToVariant(const kestrel_value& value) {
  switch (value.type) {
    case KESTREL_EMPTY:
      return {};
    case KESTREL_NULL:
      return Variant::Null();
    case KESTREL_INT16:
      return value.as.int16;
    case KESTREL_INT32:
      return value.as.int32;
    case KESTREL_FLOAT:
      return value.as.float32;
    case KESTREL_DOUBLE:
      return value.as.float64;
    case KESTREL_BYTE:
      return value.as.byte;
    case KESTREL_BOOLEAN:
      return value.as.boolean != 0;
    case KESTREL_STRING:
      return TextOf(value.as.string);
    case KESTREL_OBJECT:
      if (!value.as.object) return Variant::ObjectReference();
      return Variant::ObjectReference(ItemOf(value.as.object)->Reference());
    case KESTREL_OMITTED:
      return dispatch::Omitted();
    default:
      RaiseMismatch("There is no such type of values.");
  }
}

kestrel_value ToValue(const Variant& value) {
  kestrel_value made{};
  made.type = value.TypeCode();
  switch (made.type) {
    case KESTREL_EMPTY:
    case KESTREL_NULL:
      return made;
    case KESTREL_INT16:
      made.as.int16 = static_cast<std::int16_t>(value.ToInt32());
      return made;
    case KESTREL_INT32:
      made.as.int32 = value.ToInt32();
      return made;
    case KESTREL_FLOAT:
      made.as.float32 = static_cast<float>(value.ToDouble());
      return made;
    case KESTREL_DOUBLE:
      made.as.float64 = value.ToDouble();
      return made;
    case KESTREL_BYTE:
      made.as.byte = static_cast<std::uint8_t>(value.ToInt32());
      return made;
    case KESTREL_BOOLEAN:
      made.as.boolean = value.ToBoolean() ? 1 : 0;
      return made;
    case KESTREL_STRING: {
      const std::string text = value.ToString();
      return OwnedText(text.data(), text.size());
    }
    case KESTREL_OBJECT:
      return OwnedObject(value);
    default:
      RaiseMismatch("The value has a type that this interface does not have.");
  }
}

void Replace(kestrel_value& place, const Variant& value) {
  const kestrel_value made = ToValue(value);
  kestrel_value_clear(&place);
  place = made;
}

}  // namespace kestrel::c

using namespace kestrel::c;

void kestrel_value_clear(kestrel_value* value) {
  if (!value) return;
  // Emptied before the release, which can call a host.
  const kestrel_value old = *value;
  *value = {};
  if (!old.owned) return;
  if (old.type == KESTREL_STRING) std::free(const_cast<char*>(old.as.string.data));
  if (old.type == KESTREL_OBJECT)
    static_cast<void>(Guarded([&] { ReleaseHandle(HandleKind::kObject, old.as.object); }));
}

kestrel_status kestrel_value_set_string(kestrel_value* value, const char* text, std::size_t length) {
  return Guarded([&] {
    Require(value, "There is no value.");
    // Copied before the value is cleared: it can be the value's own.
    const std::string copy = TextOf({text, length});
    Replace(*value, copy);
  });
}
