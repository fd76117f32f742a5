// What killed processes leave behind.

#include <gtest/gtest.h>

#include <chrono>
#include <iterator>

#include "Folder.h"
#include "platform/os/Entries.h"
#include "platform/os/posix/TemporaryFile.h"

namespace kestrel::os {
namespace {

namespace fs = std::filesystem;
using std::chrono::minutes;
using std::chrono::system_clock;

TEST(StaleFiles, AreTemporaryFilesThatNobodyHasLocked) {
  const Folder folder;
  folder.put(".kestrel-1.tmp", "half");
  folder.put("own.tmp", "kept");
  const TemporaryFile alive(folder.path(), true, 0600);
  removeStaleFiles(folder.path());
  EXPECT_FALSE(fs::exists(folder / ".kestrel-1.tmp"));
  EXPECT_TRUE(fs::exists(folder / "own.tmp"));
  EXPECT_EQ(std::distance(fs::directory_iterator(folder.path()), {}), 2) << "the one in use is left";
}

TEST(StaleFiles, AreTemporaryLinksOfMoreThanAMinute) {
  const Folder folder;
  fs::create_symlink("nowhere", folder / ".kestrel-1.tmp");
  fs::create_symlink("nowhere", folder / "own");
  const auto exists = [&](const char* name) { return fs::is_symlink(fs::symlink_status(folder / name)); };
  removeStaleFiles(folder.path(), system_clock::now());
  EXPECT_TRUE(exists(".kestrel-1.tmp")) << "its process may be about to give it its name";
  removeStaleFiles(folder.path(), system_clock::now() + minutes(2));
  EXPECT_FALSE(exists(".kestrel-1.tmp"));
  EXPECT_TRUE(exists("own"));
}

}  // namespace
}  // namespace kestrel::os
