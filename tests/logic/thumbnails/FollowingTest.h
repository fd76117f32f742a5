#pragma once

#include "ViewTest.h"

namespace kestrel::thumbnails::test {

/// The folder changes on the disk while it is shown.
class FollowingTest : public ViewTest {
 protected:
  void SetUp() override {
    putFiles();
    open();
    view().selectOnly(1);  // d.jpg
    events_.clear();
  }

  std::uint8_t shadeOf(std::int32_t item) { return view().pictureOf(item).bitmap.at(0, 0).r; }
  bool runUntilCount(std::int32_t count) {
    return runUntil([this, count] { return view().itemCount() == count && view().settled(); });
  }
  std::string nameOf(std::int32_t item) { return view().factsOf(item).label; }
  void putFiles() {
    for (const char* name : {"b.jpg", "d.jpg", "f.jpg"}) access_->put(name, {.shade = 1});
  }
  /// The folder cannot be read.
  void close(os::FileProblem problem) {
    for (const char* name : {"b.jpg", "d.jpg", "f.jpg"}) access_->remove(name);
    access_->fail(os::FileFailure{problem});
  }
  void reopen() {
    putFiles();
    access_->fail(std::nullopt);
  }
  /// The folder is removed.
  void loseFolder() {
    close(os::FileProblem::kMissing);
    access_->reportFolderGone();
    ASSERT_TRUE(runUntilCount(0));
  }
};

}  // namespace kestrel::thumbnails::test
