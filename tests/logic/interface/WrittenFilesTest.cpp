#include <gtest/gtest.h>

#include <string>

#include "tools/files/FileBytes.h"
#include "tools/interface/ConstantsHeader.h"
#include "tools/interface/InterfaceDefinition.h"
#include "tools/interface/PythonStubs.h"
#include "tools/interface/ReferenceBook.h"

namespace kestrel::tools {
namespace {

std::string written(const std::string& name) { return readFile(KESTREL_INTERFACE_FILES "/" + name); }

// Another process gives the same texts, so that two builds give the same packages.
TEST(WrittenFiles, AreTheSameEachTime) {
  EXPECT_EQ(written("reference.md"), referenceBook());
  EXPECT_EQ(written("KestrelLib2.idl"),
            interfaceDefinition(Identifiers(readFile(KESTREL_IDENTIFIERS)), KESTREL_INTERFACE_VERSION));
  EXPECT_EQ(written("kestrel_constants.h"), constantsHeader());
  EXPECT_EQ(written("__init__.pyi"), pythonStubs());
}

}  // namespace
}  // namespace kestrel::tools
