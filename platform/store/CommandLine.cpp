#include "CommandLine.h"

namespace kestrel::store {
namespace {

std::string quoted(const std::string& argument) {
  if (!argument.empty() && argument.find_first_of(" \t\"") == argument.npos) return argument;
  std::string result = "\"";
  std::size_t backslashes = 0;
  for (const char character : argument) {
    // A backslash is literal except before a quote.
    if (character == '"') result.append(backslashes + 1, '\\');
    backslashes = character == '\\' ? backslashes + 1 : 0;
    result += character;
  }
  return result.append(backslashes, '\\') + '"';
}

}  // namespace

std::string commandLineOf(const std::vector<std::string>& arguments) {
  std::string result;
  for (const std::string& argument : arguments) {
    if (!result.empty()) result += ' ';
    result += quoted(argument);
  }
  return result;
}

}  // namespace kestrel::store
