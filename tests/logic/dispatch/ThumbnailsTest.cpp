// References to thumbnails, which vanish when the view reads its folder again.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "base/RuntimeError.h"
#include "host/dispatch/Convert.h"
#include "host/dispatch/Invoke.h"
#include "imaging/contract/ThumbnailView.h"

namespace kestrel::dispatch {
namespace {

class FakeThumbnail final : public Thumbnail {
 public:
  FakeThumbnail(std::string filename, std::int32_t index) : filename_(std::move(filename)), index_(index) {}
  std::string Filename() const override { return filename_; }
  std::int32_t Index() const override { return index_; }

 private:
  std::string filename_;
  std::int32_t index_;
};

class FakeThumbnails final : public Thumbnails {
 public:
  std::int32_t Count() const override { return static_cast<std::int32_t>(thumbnails_.size()); }
  Thumbnail& Item(std::int32_t index) override {
    ++items;
    return *thumbnails_.at(static_cast<std::size_t>(index - 1));
  }
  void Files(const std::vector<std::string>& names) {
    thumbnails_.clear();
    for (const std::string& name : names) {
      thumbnails_.push_back(std::make_unique<FakeThumbnail>(name, Count() + 1));
    }
  }

  int items = 0;

 private:
  std::vector<std::unique_ptr<FakeThumbnail>> thumbnails_;
};

/// Those of a view that are selected.
class FakeSelection final : public Thumbnails {
 public:
  explicit FakeSelection(FakeThumbnails& all) : all_(all) {}
  std::int32_t Count() const override { return static_cast<std::int32_t>(selected.size()); }
  Thumbnail& Item(std::int32_t index) override {
    return all_.Item(selected.at(static_cast<std::size_t>(index - 1)));
  }
  Thumbnails& All() override { return all_; }

  std::vector<std::int32_t> selected;

 private:
  FakeThumbnails& all_;
};

class LateBoundThumbnails : public testing::Test {
 protected:
  Variant Item(std::int32_t index) { return Call(*reference_, "Item", index); }
  static std::int32_t IndexOf(const Variant& thumbnail) {
    return Get(ReferenceIn(thumbnail), "Index").ToInt32();
  }

  std::shared_ptr<FakeThumbnails> thumbnails_ = std::make_shared<FakeThumbnails>();
  Reference::Pointer reference_ = Refer(std::shared_ptr<Thumbnails>(thumbnails_));
};

TEST_F(LateBoundThumbnails, AThumbnailIsThatOfItsFile) {
  thumbnails_->Files({"/a/1.png", "/a/2|.png", "/a/3.png"});
  const Variant second = Item(2);
  EXPECT_EQ(Get(ReferenceIn(second), "Filename").ToString(), "/a/2|.png");
  thumbnails_->Files({"/a/0.png", "/a/1.png", "/a/2|.png"});
  EXPECT_EQ(IndexOf(second), 3);
  EXPECT_TRUE(ReferenceIn(second).IsSame(ReferenceIn(Item(3))));
}

TEST_F(LateBoundThumbnails, AThumbnailOfAnotherFolderIsGone) {
  thumbnails_->Files({"/a/1.png"});
  const Variant first = Item(1);
  thumbnails_->Files({"/b/1.png"});
  try {
    IndexOf(first);
    FAIL() << "nothing was raised";
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.Number(), err::kObjectNotSet);
    EXPECT_EQ(error.Description(), "The object of class Thumbnail no longer exists.");
  }
}

TEST_F(LateBoundThumbnails, AThumbnailInItsPlaceIsFoundAtOnce) {
  thumbnails_->Files(std::vector<std::string>(500, "/a/other.png"));
  const Variant last = Item(500);
  thumbnails_->items = 0;
  IndexOf(last);
  EXPECT_EQ(thumbnails_->items, 1);
}

TEST_F(LateBoundThumbnails, ASelectedThumbnailIsValidWhileItsFileIsInTheView) {
  const auto selection = std::make_shared<FakeSelection>(*thumbnails_);
  const Reference::Pointer reference = Refer(std::shared_ptr<Thumbnails>(selection));
  thumbnails_->Files({"/a/1.png", "/a/2.png"});
  selection->selected = {2};
  const Variant second = Call(*reference, "Item", 1);
  EXPECT_EQ(IndexOf(second), 2);
  EXPECT_TRUE(ReferenceIn(second).IsSame(ReferenceIn(Item(2))));

  selection->selected.clear();
  EXPECT_EQ(Get(ReferenceIn(second), "Filename").ToString(), "/a/2.png");
  thumbnails_->Files({"/a/2.png"});
  EXPECT_EQ(IndexOf(second), 1);
  thumbnails_->Files({"/a/1.png"});
  EXPECT_THROW(IndexOf(second), RuntimeError);
}

}  // namespace
}  // namespace kestrel::dispatch
