// The interface as data, in the structures of kestrel.h.

#include <deque>
#include <memory>
#include <span>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "Objects.h"
#include "Status.h"
#include "host/dispatch/Registry.h"

namespace kestrel::c {
namespace {

using dispatch::ClassDescription;
using dispatch::DefaultValue;
using dispatch::EnumerationDescription;
using dispatch::Kind;
using dispatch::Member;
using dispatch::Parameter;
using dispatch::Type;

static_assert(KESTREL_KIND_VOID == static_cast<int>(Kind::kVoid));
static_assert(KESTREL_KIND_STRING == static_cast<int>(Kind::kString));
static_assert(KESTREL_KIND_VARIANT == static_cast<int>(Kind::kVariant));

// The texts of the descriptions are literals, which end with a NUL.

const char* TypeName(const Type& type) {
  if (type.enumeration) return type.enumeration().name.data();
  if (type.objectClass) return type.objectClass().name.data();
  return nullptr;
}

kestrel_value DefaultOf(const DefaultValue& value) {
  kestrel_value made{};
  switch (value.kind) {
    case DefaultValue::Kind::kNone:
      break;
    case DefaultValue::Kind::kNothing:
      made.type = KESTREL_OBJECT;
      break;
    case DefaultValue::Kind::kBoolean:
      made.type = KESTREL_BOOLEAN;
      made.as.boolean = value.number != 0 ? 1 : 0;
      break;
    case DefaultValue::Kind::kInt32:
      made.type = KESTREL_INT32;
      made.as.int32 = static_cast<std::int32_t>(value.number);
      break;
    case DefaultValue::Kind::kDouble:
      made.type = KESTREL_DOUBLE;
      made.as.float64 = value.number;
      break;
    case DefaultValue::Kind::kString:
      made.type = KESTREL_STRING;
      made.as.string = {value.text.data(), value.text.size()};
      break;
  }
  return made;
}

/// Rows of the interface with the pointers to them.
template <typename Row>
struct Rows {
  std::deque<Row> rows;
  std::vector<const Row*> pointers;

  void Add(const Row& row) { pointers.push_back(&rows.emplace_back(row)); }
  const Row* const* Data() const { return pointers.data(); }
  std::int32_t Count() const { return static_cast<std::int32_t>(pointers.size()); }
};

/// All descriptions. The rows of rows are kept as long as these.
class Descriptions {
 public:
  static const Descriptions& All() {
    // Never destroyed: hosts may read it while the program ends.
    static const auto& all = *new Descriptions;
    return all;
  }

  const Rows<kestrel_class>& Classes() const { return classes_; }
  const Rows<kestrel_enumeration>& Enumerations() const { return enumerations_; }
  const kestrel_class* Of(const ClassDescription& description) const {
    return byDescription_.at(&description);
  }

 private:
  Descriptions() {
    for (const ClassDescription* const row : dispatch::Classes()) {
      classes_.Add(Convert(*row));
      byDescription_[row] = classes_.pointers.back();
    }
    for (const EnumerationDescription* const row : dispatch::Enumerations()) enumerations_.Add(Convert(*row));
  }

  const Rows<kestrel_parameter>& Convert(std::span<const Parameter> parameters) {
    auto& made = parameters_.emplace_back();
    for (const Parameter& row : parameters) {
      made.Add({row.name.data(), static_cast<std::int32_t>(row.type.kind), row.inOut, row.nullable,
                row.IsOptional(), TypeName(row.type), DefaultOf(row.defaultValue)});
    }
    return made;
  }

  kestrel_member Convert(const Member& row) {
    const Type& result = row.call ? row.result : row.value.type;
    const auto& parameters = Convert(row.parameters);
    return {
        row.name.data(),     row.help.data(),    row.number,         row.isMethod,
        row.call != nullptr, row.put != nullptr, parameters.Count(), static_cast<std::int32_t>(result.kind),
        TypeName(result),    parameters.Data()};
  }

  kestrel_class Convert(const ClassDescription& description) {
    auto& members = members_.emplace_back();
    for (const Member& row : description.members) members.Add(Convert(row));
    auto& events = events_.emplace_back();
    for (const auto& row : description.events) {
      const auto& parameters = Convert(row.parameters);
      events.Add({row.name.data(), row.help.data(), row.number, parameters.Count(), parameters.Data()});
    }
    return {description.name.data(),
            description.help.data(),
            description.create != nullptr,
            description.IsCollection(),
            members.Count(),
            events.Count(),
            members.Data(),
            events.Data()};
  }

  kestrel_enumeration Convert(const EnumerationDescription& description) {
    auto& constants = constants_.emplace_back();
    for (const auto& row : description.values) constants.Add({row.name.data(), row.value});
    return {description.name.data(), description.help.data(), constants.Count(), constants.Data()};
  }

  std::deque<Rows<kestrel_parameter>> parameters_;
  std::deque<Rows<kestrel_member>> members_;
  std::deque<Rows<kestrel_event>> events_;
  std::deque<Rows<kestrel_constant>> constants_;
  Rows<kestrel_class> classes_;
  Rows<kestrel_enumeration> enumerations_;
  std::unordered_map<const ClassDescription*, const kestrel_class*> byDescription_;
};

}  // namespace
}  // namespace kestrel::c

using namespace kestrel::c;

kestrel_status kestrel_classes(const kestrel_class* const** classes, std::int32_t* count) {
  return Guarded([&] {
    Require(classes, "There is no place for the classes.");
    Require(count, "There is no place for their number.");
    const auto& all = Descriptions::All().Classes();
    *classes = all.Data();
    *count = all.Count();
  });
}

kestrel_status kestrel_enumerations(const kestrel_enumeration* const** enumerations, std::int32_t* count) {
  return Guarded([&] {
    Require(enumerations, "There is no place for the enumerations.");
    Require(count, "There is no place for their number.");
    const auto& all = Descriptions::All().Enumerations();
    *enumerations = all.Data();
    *count = all.Count();
  });
}

kestrel_status kestrel_class_of(kestrel_object* object, const kestrel_class** description) {
  return Guarded([&] {
    Require(description, "There is no place for the class.");
    *description = Descriptions::All().Of(ClassOf(object));
  });
}
