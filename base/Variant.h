#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "Object.h"

namespace kestrel {

class VariantArray;

/// A value of any of the types used in property bags, the key store and error reports.
///
/// Objects are shared (`shared_ptr`) or borrowed (`Borrow`); all else is held by value.
class Variant {
 public:
  /// The type codes. An array's code is kArray plus that of its elements.
  enum class Type : std::int32_t {
    kEmpty = 0,
    kNull = 1,
    kInt16 = 2,
    kInt32 = 3,
    kFloat = 4,
    kDouble = 5,
    kString = 8,
    kObject = 9,
    kError = 10,
    kBoolean = 11,
    kVariant = 12,  // as an element of arrays only
    kDataObject = 13,
    kByte = 17,
    kRecord = 36,
    kArray = 8192,
  };

  struct Null {};
  struct Error {
    std::int32_t number = 0;
  };
  /// A data object without a type name.
  struct DataObject {
    std::shared_ptr<const void> object;
  };
  struct Record {
    std::string typeName;
  };
  using ObjectReference = std::shared_ptr<const Object>;

  Variant() = default;
  Variant(Null value) : value_(value) {}
  Variant(bool value) : value_(value) {}
  Variant(std::uint8_t value) : value_(value) {}
  Variant(std::int16_t value) : value_(value) {}
  Variant(std::int32_t value) : value_(value) {}
  Variant(float value) : value_(value) {}
  Variant(double value) : value_(value) {}
  Variant(std::string value) : value_(std::move(value)) {}
  Variant(const char* value) : value_(std::string(value)) {}
  Variant(Error value) : value_(value) {}
  Variant(DataObject value) : value_(std::move(value)) {}
  Variant(Record value) : value_(std::move(value)) {}
  Variant(ObjectReference value) : value_(std::move(value)) {}
  Variant(VariantArray value);
  /// Keeps other pointers from converting to a boolean.
  template <typename T>
  Variant(const T*) = delete;

  /// A reference that does not keep the object alive. The object must outlive it.
  static Variant Borrow(const Object* object) { return ObjectReference(ObjectReference(), object); }

  /// The code of the type: a Type, or that of an array.
  std::int32_t TypeCode() const;
  bool IsArray() const { return TypeCode() > static_cast<std::int32_t>(Type::kArray); }

  /// The value converted to the type. Texts must be numbers as a whole (13 otherwise). Numbers are rounded to
  /// nearest, ties to even (6 outside the range). Any number but 0 is true, and so is "True". The text of a
  /// boolean is "True" or "False", its number -1 or 0. Empty is 0, "" or false. Null raises 94, all else 13.
  std::string ToString() const;
  double ToDouble() const;
  std::int32_t ToInt32() const;
  bool ToBoolean() const;

  /// The value of exactly that type; raise 13 for any other.
  const ObjectReference& AsObject() const;
  const DataObject& AsDataObject() const;
  const Record& AsRecord() const;
  const VariantArray& AsArray() const;

 private:
  using Value = std::variant<std::monostate, Null, bool, std::uint8_t, std::int16_t, std::int32_t, float,
                             double, std::string, Error, DataObject, Record, ObjectReference,
                             std::shared_ptr<const VariantArray>>;
  Value value_;
};

/// An array of one or more dimensions, each with its own lower and upper bound, or one that is not
/// dimensioned yet.
class VariantArray {
 public:
  struct Bounds {
    std::int32_t lower = 0;
    std::int32_t upper = -1;
  };

  /// An array that has not been dimensioned.
  explicit VariantArray(Variant::Type element) : element_(element) {}

  /// Elements in row-major order (the last index varies fastest). Raises 5 if their number does not fit the
  /// bounds.
  VariantArray(Variant::Type element, std::vector<Bounds> bounds, std::vector<Variant> elements);

  Variant::Type ElementType() const { return element_; }
  std::int32_t Dimensions() const { return static_cast<std::int32_t>(bounds_.size()); }

  /// Bounds of a dimension, counted from 1. Raise 9 where there is no such dimension.
  std::int32_t Lower(std::int32_t dimension) const { return BoundsOf(dimension).lower; }
  std::int32_t Upper(std::int32_t dimension) const { return BoundsOf(dimension).upper; }

  /// The element at one index per dimension. Raises 9 outside the bounds.
  const Variant& At(const std::vector<std::int32_t>& indices) const;

 private:
  const Bounds& BoundsOf(std::int32_t dimension) const;

  Variant::Type element_;
  std::vector<Bounds> bounds_;
  std::vector<Variant> elements_;
};

}  // namespace kestrel
