#include <stdlib.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>

#include "Diagnostics.h"
#include "platform/posix/SharedLibraryFactory.h"
#include "platform/store/MemoryStore.h"

namespace kestrel {
namespace {

constexpr char kIdentifier[] = "BrindleError.Error";

class SharedLibrary : public testing::Test {
 protected:
  SharedLibrary() {
    unsetenv("KESTREL_ERROR_REPORTER");
    setenv("TEST_REPORT_FILE", file_.c_str(), 1);
  }
  ~SharedLibrary() override {
    unsetenv("KESTREL_ERROR_REPORTER");
    unsetenv("TEST_REPORT_FILE");
    std::remove(file_.c_str());
  }

  void install(const std::string& path) {
    store_.WriteValue(HKEY_CURRENT_USER, "Software\\Classes\\BrindleError.Error", "Library", path,
                      kStoreString);
  }
  std::string refusal() {
    try {
      factory_.CreateErrorReporter(kIdentifier);
      return "created";
    } catch (const RuntimeError& error) {
      EXPECT_EQ(error.Number(), err::kCannotCreateObject);
      return error.Description();
    }
  }
  std::string reported() const {
    std::ifstream file(file_);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  }

  const std::string file_ = testing::TempDir() + "kestrel-report-" + std::to_string(getpid());
  store::MemoryStore store_;
  posix::SharedLibraryFactory factory_{store_};
};

TEST_F(SharedLibrary, NamedInTheKeyStoreTakesTheReport) {
  install(TEST_REPORTER);
  const auto reporter = factory_.CreateErrorReporter(kIdentifier);
  std::int32_t number = 61, line = 275;
  reporter->ErrorHandler(number, "KestrelLib2", "MRU", "AddFile", "The disk is full.", line, "<Variables>",
                         "2.0.0");
  EXPECT_EQ(reporter->Action(), "done");
  EXPECT_EQ(reported(), "61|KestrelLib2|MRU|AddFile|The disk is full.|275|<Variables>|2.0.0");
}

TEST_F(SharedLibrary, NamedInTheEnvironmentComesFirst) {
  install("/no/such/library.so");
  setenv("KESTREL_ERROR_REPORTER", TEST_REPORTER, 1);
  EXPECT_NE(factory_.CreateErrorReporter(kIdentifier), nullptr);
}

TEST_F(SharedLibrary, MayRaiseItsOwnError) {
  install(TEST_REPORTER);
  const auto reporter = factory_.CreateErrorReporter(kIdentifier);
  std::int32_t number = 999, line = 1;
  try {
    reporter->ErrorHandler(number, "", "", "", "", line, "", "");
    FAIL() << "the library refused the report";
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.Number(), 57);
  }
}

TEST_F(SharedLibrary, IsMissingUnlessNamed) {
  EXPECT_EQ(refusal(), "The reporting object could not be created: none is installed.");
  EXPECT_TRUE(store_.isEmpty()) << "looking creates nothing";
}

TEST_F(SharedLibrary, MustBeNamedByAnAbsolutePath) {
  install("libreporter.so");
  EXPECT_EQ(refusal(), "The reporting object could not be created: the path of its library is not absolute.");
}

TEST_F(SharedLibrary, ThatCannotBeLoadedCountsAsNone) {
  install("/no/such/library.so");
  EXPECT_NE(refusal().find("/no/such/library.so"), std::string::npos);
}

TEST_F(SharedLibrary, ThatLacksAFunctionCountsAsNone) {
  install(INCOMPLETE_REPORTER);
  EXPECT_EQ(refusal(),
            "The reporting object could not be created: its library has no function brindle_error_handler.");
}

TEST_F(SharedLibrary, ThatRefusesCountsAsNone) {
  install(TEST_REPORTER);
  unsetenv("TEST_REPORT_FILE");
  EXPECT_EQ(refusal(), "The reporting object could not be created: its library refused.");
}

TEST_F(SharedLibrary, NamedByANumberCountsAsNone) {
  store_.WriteValue(HKEY_CURRENT_USER, "Software\\Classes\\BrindleError.Error", "Library", 5, kStoreNumber);
  EXPECT_EQ(refusal(), "The reporting object could not be created: none is installed.");
}

}  // namespace
}  // namespace kestrel
