#include "Dump.h"

#include "modTollgarthSupport.h"

namespace kestrel::qdk {
namespace {

constexpr std::int32_t kDumpDepth = 99;

std::string_view Trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == text.npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

}  // namespace

std::string DumpOrFallback(std::string_view name, const std::optional<Variant>& value,
                           std::string_view fallback) {
  const std::string tag(name);
  if (value) return modTollgarthSupport::qdkFormatVariable(tag, *value, kDumpDepth, 0);
  return "<" + tag + ">" + std::string(fallback) + "</" + tag + ">";
}

std::string_view TakeName(std::string_view& names) {
  const std::size_t comma = names.find(',');
  const std::string_view name = Trimmed(names.substr(0, comma));
  names.remove_prefix(comma == names.npos ? names.size() : comma + 1);
  return name;
}

}  // namespace kestrel::qdk
