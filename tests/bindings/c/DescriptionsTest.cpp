// The interface as data, against the tables that it is made of.

#include <cstring>

#include "Host.h"
#include "host/dispatch/Registry.h"

namespace kestrel::ctest {
namespace {

using testing::StartsWith;

std::span<const kestrel_class* const> allClasses() {
  const kestrel_class* const* classes = nullptr;
  std::int32_t count = 0;
  EXPECT_EQ(Outcome(kestrel_classes(&classes, &count)), "");
  return {classes, static_cast<std::size_t>(count)};
}

const kestrel_class* classNamed(const char* name) {
  for (const kestrel_class* const row : allClasses()) {
    if (std::strcmp(row->name, name) == 0) return row;
  }
  return nullptr;
}

void expectParameters(const std::string& where, const kestrel_parameter* const* found, std::int32_t count,
                      std::span<const dispatch::Parameter> expected) {
  ASSERT_EQ(static_cast<std::size_t>(count), expected.size()) << where;
  for (std::size_t i = 0; i < expected.size(); ++i) {
    EXPECT_EQ(found[i]->name, expected[i].name) << where;
    EXPECT_EQ(found[i]->kind, static_cast<std::int32_t>(expected[i].type.kind)) << where;
    EXPECT_EQ(found[i]->in_out != 0, expected[i].inOut) << where;
    EXPECT_EQ(found[i]->nullable != 0, expected[i].nullable) << where;
    EXPECT_EQ(found[i]->optional != 0, expected[i].IsOptional()) << where;
    const bool named = expected[i].type.enumeration || expected[i].type.objectClass;
    EXPECT_EQ(found[i]->type_name != nullptr, named) << where;
  }
}

TEST(CDescriptions, AreThoseOfAllClasses) {
  const auto found = allClasses();
  const auto expected = dispatch::Classes();
  ASSERT_EQ(found.size(), expected.size());
  for (std::size_t i = 0; i < found.size(); ++i) {
    const kestrel_class& row = *found[i];
    const dispatch::ClassDescription& description = *expected[i];
    EXPECT_EQ(row.name, description.name);
    EXPECT_EQ(row.help, description.help);
    EXPECT_EQ(row.can_create != 0, description.create != nullptr) << row.name;
    EXPECT_EQ(row.is_collection != 0, description.IsCollection()) << row.name;
    ASSERT_EQ(static_cast<std::size_t>(row.member_count), description.members.size()) << row.name;
    for (std::size_t at = 0; at < description.members.size(); ++at) {
      const kestrel_member& member = *row.members[at];
      const dispatch::Member& wanted = description.members[at];
      const std::string where = std::string(row.name) + "." + member.name;
      EXPECT_EQ(member.name, wanted.name);
      EXPECT_EQ(member.help, wanted.help) << where;
      EXPECT_EQ(member.number, wanted.number) << where;
      EXPECT_EQ(member.is_method != 0, wanted.isMethod) << where;
      EXPECT_EQ(member.can_get != 0, wanted.call != nullptr) << where;
      EXPECT_EQ(member.can_set != 0, wanted.put != nullptr) << where;
      expectParameters(where, member.parameters, member.parameter_count, wanted.parameters);
    }
    ASSERT_EQ(static_cast<std::size_t>(row.event_count), description.events.size()) << row.name;
    for (std::size_t at = 0; at < description.events.size(); ++at) {
      const kestrel_event& event = *row.events[at];
      EXPECT_EQ(event.name, description.events[at].name);
      EXPECT_EQ(event.number, description.events[at].number) << event.name;
      expectParameters(event.name, event.parameters, event.parameter_count,
                       description.events[at].parameters);
    }
  }
}

TEST(CDescriptions, DefaultsOfOptionalArguments) {
  const kestrel_class* const processing = classNamed("ImageProcessing");
  ASSERT_NE(processing, nullptr);
  for (std::int32_t i = 0; i < processing->member_count; ++i) {
    const kestrel_member& member = *processing->members[i];
    if (std::strcmp(member.name, "Rotate") != 0) continue;
    ASSERT_EQ(member.parameter_count, 3);
    EXPECT_FALSE(member.parameters[0]->optional);
    EXPECT_EQ(member.parameters[0]->default_value.type, KESTREL_EMPTY);
    EXPECT_EQ(member.parameters[1]->kind, KESTREL_KIND_COLOR);
    EXPECT_EQ(member.parameters[1]->default_value.type, KESTREL_INT32);
    EXPECT_EQ(member.parameters[2]->default_value.type, KESTREL_BOOLEAN);
    EXPECT_EQ(member.parameters[2]->default_value.as.boolean, 0);
    return;
  }
  ADD_FAILURE() << "there is no Rotate";
}

TEST(CDescriptions, Enumerations) {
  const kestrel_enumeration* const* found = nullptr;
  std::int32_t count = 0;
  ASSERT_EQ(Outcome(kestrel_enumerations(&found, &count)), "");
  const auto expected = dispatch::Enumerations();
  ASSERT_EQ(static_cast<std::size_t>(count), expected.size());
  for (std::size_t i = 0; i < expected.size(); ++i) {
    EXPECT_EQ(found[i]->name, expected[i]->name);
    ASSERT_EQ(static_cast<std::size_t>(found[i]->constant_count), expected[i]->values.size());
    for (std::size_t at = 0; at < expected[i]->values.size(); ++at) {
      EXPECT_EQ(found[i]->constants[at]->name, expected[i]->values[at].name);
      EXPECT_EQ(found[i]->constants[at]->value, expected[i]->values[at].value);
    }
  }
}

TEST(CDescriptions, NeedAPlace) {
  const kestrel_class* const* classes = nullptr;
  const kestrel_enumeration* const* enumerations = nullptr;
  std::int32_t count = 0;
  EXPECT_THAT(Outcome(kestrel_classes(nullptr, &count)), StartsWith("5 "));
  EXPECT_THAT(Outcome(kestrel_classes(&classes, nullptr)), StartsWith("5 "));
  EXPECT_THAT(Outcome(kestrel_enumerations(nullptr, &count)), StartsWith("5 "));
  EXPECT_THAT(Outcome(kestrel_enumerations(&enumerations, nullptr)), StartsWith("5 "));
}

}  // namespace
}  // namespace kestrel::ctest
