// Writes a source file that embeds the given files as data: kestrel-embed-files OUT.cpp FILE... Each is
// identified by its name without its folder.

#include <cstdio>
#include <string>

#include "FileBytes.h"
#include "base/RuntimeError.h"

namespace {

using namespace kestrel;

std::string nameOf(const std::string& path) { return path.substr(path.rfind('/') + 1); }

std::string arrayOf(const std::string& bytes) {
  std::string text;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    text += std::to_string(static_cast<unsigned char>(bytes[i]));
    text += i % 32 == 31 ? ",\n" : ",";
  }
  return text;
}

void embed(const std::string& target, char** files, int count) {
  std::string arrays;
  std::string table;
  for (int i = 0; i < count; ++i) {
    const std::string array = "kFile" + std::to_string(i);
    arrays += "constexpr unsigned char " + array + "[] = {" + arrayOf(tools::readFile(files[i])) + "};\n";
    table += "    {\"" + nameOf(files[i]) + "\", " + array + "},\n";
  }
  tools::writeFile(target,
                   "#include \"Resources/EmbeddedFiles.h\"\n\n"
                   "namespace kestrel::resources {\n\nnamespace {\n\n" +
                       arrays + "\nconstexpr EmbeddedFile kFiles[] = {\n" + table +
                       "};\n\n}  // namespace\n\n"
                       "std::span<const EmbeddedFile> embeddedFiles() { return kFiles; }\n\n"
                       "}  // namespace kestrel::resources\n");
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 3) {
    std::fprintf(stderr, "Usage: kestrel-embed-files OUT.cpp FILE...\n");
    return 2;
  }
  try {
    embed(argv[1], argv + 2, argc - 2);
    return 0;
  } catch (const RuntimeError& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
}
