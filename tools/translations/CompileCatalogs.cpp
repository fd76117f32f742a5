// Writes a source file with the tables of translations/Catalogs.h: kestrel-compile-catalogs OUT.cpp
// FILE.po...

#include <array>
#include <cstdio>
#include <string>
#include <string_view>

#include "PoFile.h"
#include "base/RuntimeError.h"
#include "tools/files/FileBytes.h"

namespace {

using namespace kestrel;

std::string quoted(std::string_view text) {
  std::string result = "\"";
  for (const char c : text) {
    if (c == '\n') {
      result += "\\n";
      continue;
    }
    if (c == '"' || c == '\\') result += '\\';
    result += c;
  }
  return result + '"';
}

bool isRightToLeft(std::string_view language) {
  constexpr std::array<std::string_view, 4> kLanguages{"ar", "fa", "he", "ur"};
  for (const std::string_view known : kLanguages) {
    if (language == known) return true;
  }
  return false;
}

/// The arrays and the function of one language.
std::string partsOf(const tools::PoFile& file) {
  const std::string& name = file.language;
  std::string forms, entries;
  for (std::size_t i = 0; i < file.entries.size(); ++i) {
    const tools::PoEntry& entry = file.entries[i];
    const std::string array = "k_" + name + std::to_string(i);
    forms += "constexpr std::string_view " + array + "[] = {";
    for (const std::string& form : entry.translations) forms += quoted(form) + ", ";
    forms += "};\n";
    entries += "    {" + quoted(entry.english) + ", " + quoted(entry.plural) + ", " + array + "},\n";
  }
  return forms + "constexpr CatalogEntry k_" + name + "[] = {\n" + entries + "};\n" + "std::size_t plural_" +
         name + "([[maybe_unused]] std::uint64_t n) { return static_cast<std::size_t>(" + file.pluralForm +
         "); }\n\n";
}

void compile(const std::string& target, char** files, int count) {
  std::string parts, tables;
  for (int i = 0; i < count; ++i) {
    try {
      const tools::PoFile file = tools::readPo(tools::readFile(files[i]));
      parts += partsOf(file);
      tables += "    {\"" + file.language + "\", " + (isRightToLeft(file.language) ? "true" : "false") +
                ", &plural_" + file.language + ", k_" + file.language + "},\n";
    } catch (const RuntimeError& error) {
      throw RuntimeError(error.Number(), std::string(files[i]) + ": " + error.Description());
    }
  }
  tools::writeFile(
      target, "#include \"translations/Catalogs.h\"\n\nnamespace kestrel::translations {\nnamespace {\n\n" +
                  parts + "constexpr CatalogTable kTables[] = {\n" + tables +
                  "};\n\n}  // namespace\n\n"
                  "std::span<const CatalogTable> catalogTables() { return kTables; }\n\n"
                  "}  // namespace kestrel::translations\n");
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 3) {
    std::fprintf(stderr, "Usage: kestrel-compile-catalogs OUT.cpp FILE.po...\n");
    return 2;
  }
  try {
    compile(argv[1], argv + 2, argc - 2);
    return 0;
  } catch (const RuntimeError& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
}
