// Writes what is made of the description of the public interface: kestrel-write-interface FOLDER IDENTIFIERS
// VERSION, where IDENTIFIERS is the file of the type library's GUIDs and VERSION is "major.minor".

#include <cstdio>
#include <string>

#include "ConstantsHeader.h"
#include "Identifiers.h"
#include "InterfaceDefinition.h"
#include "PythonStubs.h"
#include "ReferenceBook.h"
#include "base/RuntimeError.h"
#include "tools/files/FileBytes.h"

namespace {

using namespace kestrel;

void write(const std::string& folder, const std::string& identifiers, const std::string& version) {
  const tools::Identifiers guids(tools::readFile(identifiers));
  tools::writeFile(folder + "/reference.md", tools::referenceBook());
  tools::writeFile(folder + "/KestrelLib2.idl", tools::interfaceDefinition(guids, version));
  tools::writeFile(folder + "/kestrel_constants.h", tools::constantsHeader());
  tools::writeFile(folder + "/__init__.pyi", tools::pythonStubs());
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4) {
    std::fprintf(stderr, "Usage: kestrel-write-interface FOLDER IDENTIFIERS VERSION\n");
    return 2;
  }
  try {
    write(argv[1], argv[2], argv[3]);
    return 0;
  } catch (const RuntimeError& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
}
