// Where the help books are found: next to the program, or installed with the library or the program.

#include <gtest/gtest.h>

#include <QTemporaryDir>
#include <filesystem>
#include <string>

#include "platform/qt/app/HelpFolder.h"

namespace kestrel::desktop {
namespace {

namespace fs = std::filesystem;

class HelpFolder : public testing::Test {
 protected:
  fs::path path(const char* relative) const { return fs::path(folder_.path().toStdString()) / relative; }
  std::string make(const char* relative) const {
    fs::create_directories(path(relative));
    return path(relative);
  }
  std::string found() const { return qt::helpFolder(path("host/bin/host"), library); }

  QTemporaryDir folder_;
  fs::path library = path("usr/lib/x86_64-linux-gnu/libkestrel_engine.so.2");
};

TEST_F(HelpFolder, IsSharedDataOfThePrefixOfTheLibrary) {
  const std::string shared = make("usr/share/kestrellib2/help");
  EXPECT_EQ(found(), shared);
  library = path("usr/lib/libkestrel_engine.so.2");
  EXPECT_EQ(found(), shared);
}

TEST_F(HelpFolder, OfTheHostItselfComesFirst) {
  make("usr/share/kestrellib2/help");
  const std::string own = make("host/bin/help");
  EXPECT_EQ(found(), own);
}

TEST_F(HelpFolder, OfTheProgramsNameComesBeforeTheSharedOne) {
  make("usr/share/kestrellib2/help");
  const std::string own = make("host/share/host/help");
  EXPECT_EQ(found(), own);
}

TEST_F(HelpFolder, IsSharedDataOfThePrefixOfTheProgramWhereTheLibrarysFileIsUnknown) {
  const std::string shared = make("host/share/kestrellib2/help");
  library.clear();
  EXPECT_EQ(found(), shared);
}

TEST_F(HelpFolder, IsThatOfTheBuildForAProgramThatIsNotInstalled) {
  const std::string built = make("build/kestrellib2/package/share/kestrellib2/help");
  const fs::path host = path("build/bin/host");
  EXPECT_EQ(qt::helpFolder(host, host, built), built);
  EXPECT_EQ(qt::helpFolder(host, host, path("missing")), path("build/bin/help"));
  const std::string installed = make("build/share/kestrellib2/help");
  EXPECT_EQ(qt::helpFolder(host, host, built), installed);
}

TEST_F(HelpFolder, OfAnotherPrefixIsNotFound) {
  make("other/share/kestrellib2/help");
  EXPECT_EQ(found(), path("host/bin/help"));
}

}  // namespace
}  // namespace kestrel::desktop
