#include "ConstantsHeader.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "Words.h"
#include "host/dispatch/Registry.h"

namespace kestrel::tools {
namespace {

using namespace dispatch;

constexpr std::size_t kWidth = 110;

std::string commentOf(std::string_view text) { return wrapped(text, "/// ", kWidth); }

std::string constant(const std::string& name, std::int32_t value) {
  return "  KESTREL_" + name + " = " + std::to_string(value);
}

std::string enumerationText(const EnumerationDescription& description) {
  std::string values;
  for (const EnumerationValue& value : description.values) {
    append(values, ",\n", constant(std::string(value.name), value.value));
  }
  const std::string name = "KESTREL_" + std::string(description.name);
  return "\n" + commentOf(description.help) + "enum " + name + " {\n" + values + "\n};\n";
}

std::string numbersText(const ClassDescription& description) {
  const std::string prefix = std::string(description.name) + "_";
  std::string numbers;
  for (const Member& member : description.members) {
    append(numbers, ",\n", constant(prefix + std::string(member.name), member.number));
  }
  for (const EventDescription& event : description.events) {
    append(numbers, ",\n", constant(prefix + "on_" + std::string(event.name), event.number));
  }
  return "\n" + commentOf(description.help) + "enum {\n" + numbers + "\n};\n";
}

}  // namespace

std::string constantsHeader() {
  std::string text =
      "#ifndef KESTREL_CONSTANTS_H\n"
      "#define KESTREL_CONSTANTS_H\n\n"
      "// Written by the build from the tables of host/dispatch.\n\n"
      "// -- Enumerations "
      "---------------------------------------------------------------------------------------\n";
  for (const EnumerationDescription* description : Enumerations()) text += enumerationText(*description);
  text +=
      "\n"
      "// -- Numbers of members and events "
      "------------------------------------------------------------------------\n\n" +
      commentOf(
          "KESTREL_CLASS_MEMBER is the number of a member of a class, KESTREL_CLASS_on_EVENT that of an "
          "event. "
          "A number never changes; 0 is the default member.");
  for (const ClassDescription* description : Classes()) text += numbersText(*description);
  return text + "\n#endif\n";
}

}  // namespace kestrel::tools
