#include "tools/interface/ConstantsHeader.h"

#include "Passages.h"
#include "host/dispatch/Registry.h"

namespace kestrel::tools {
namespace {

using namespace dispatch;

void expectConstant(const std::string& header, const std::string& name, std::int32_t value) {
  const std::string line = "\n  KESTREL_" + name + " = " + std::to_string(value);
  EXPECT_EQ(countOf(header, line + ",\n") + countOf(header, line + "\n"), 1U) << line;
}

TEST(ConstantsHeader, HasEachValueOfEachEnumeration) {
  const std::string header = constantsHeader();
  for (const EnumerationDescription* enumeration : Enumerations()) {
    const std::string values = passage(header, "enum KESTREL_" + std::string(enumeration->name) + " {", "};");
    for (const EnumerationValue& value : enumeration->values) {
      expectConstant(values, std::string(value.name), value.value);
    }
  }
}

TEST(ConstantsHeader, HasTheNumberOfEachMemberAndEvent) {
  const std::string header = constantsHeader();
  for (const ClassDescription* owner : Classes()) {
    const std::string prefix = std::string(owner->name) + "_";
    for (const Member& member : owner->members) {
      expectConstant(header, prefix + std::string(member.name), member.number);
    }
    for (const EventDescription& event : owner->events) {
      expectConstant(header, prefix + "on_" + std::string(event.name), event.number);
    }
  }
}

}  // namespace
}  // namespace kestrel::tools
