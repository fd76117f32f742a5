#include "Identifiers.h"

#include <cstddef>
#include <set>
#include <sstream>

#include "base/RuntimeError.h"

namespace kestrel::tools {
namespace {

/// Lower case, as tools make them, so that one GUID has one spelling.
bool isGuid(std::string_view text) {
  constexpr std::string_view kForm = "xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx";
  if (text.size() != kForm.size()) return false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool isDigit = (text[i] >= '0' && text[i] <= '9') || (text[i] >= 'a' && text[i] <= 'f');
    if (kForm[i] == 'x' ? !isDigit : text[i] != kForm[i]) return false;
  }
  return true;
}

[[noreturn]] void refuse(const std::string& line) {
  throw RuntimeError(err::kInvalidCall, "Not a new name with a new GUID: \"" + line + "\".");
}

}  // namespace

Identifiers::Identifiers(std::string_view text) {
  std::set<std::string> seen;
  std::istringstream lines{std::string(text)};
  for (std::string line; std::getline(lines, line);) {
    if (line.empty() || line.front() == '#') continue;
    std::istringstream words(line);
    std::string name;
    std::string guid;
    std::string rest;
    if (!(words >> name >> guid) || (words >> rest) || !isGuid(guid)) refuse(line);
    if (!seen.insert(guid).second || !guids_.emplace(name, guid).second) refuse(line);
  }
}

const std::string& Identifiers::Of(std::string_view name) const {
  const auto found = guids_.find(name);
  if (found == guids_.end()) {
    throw RuntimeError(err::kInvalidCall, "There is no GUID for " + std::string(name) +
                                              ". A new name needs a line with a GUID of uuidgen.");
  }
  return found->second;
}

}  // namespace kestrel::tools
