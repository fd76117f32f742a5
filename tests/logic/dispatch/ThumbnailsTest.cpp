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
#include "tests/logic/fakes/FakeThumbnails.h"

namespace kestrel::dispatch {
namespace {

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
  thumbnails_->files({"/a/1.png", "/a/2|.png", "/a/3.png"});
  const Variant second = Item(2);
  EXPECT_EQ(Get(ReferenceIn(second), "Filename").ToString(), "/a/2|.png");
  thumbnails_->files({"/a/0.png", "/a/1.png", "/a/2|.png"});
  EXPECT_EQ(IndexOf(second), 3);
  EXPECT_TRUE(ReferenceIn(second).IsSame(ReferenceIn(Item(3))));
}

TEST_F(LateBoundThumbnails, AThumbnailOfAnotherFolderIsGone) {
  thumbnails_->files({"/a/1.png"});
  const Variant first = Item(1);
  thumbnails_->files({"/b/1.png"});
  try {
    IndexOf(first);
    FAIL() << "nothing was raised";
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.Number(), err::kObjectNotSet);
    EXPECT_EQ(error.Description(), "The object of class Thumbnail no longer exists.");
  }
}

TEST_F(LateBoundThumbnails, AThumbnailInItsPlaceIsFoundAtOnce) {
  thumbnails_->files(std::vector<std::string>(500, "/a/other.png"));
  const Variant last = Item(500);
  thumbnails_->items = 0;
  IndexOf(last);
  EXPECT_EQ(thumbnails_->items, 1);
}

TEST_F(LateBoundThumbnails, ASelectedThumbnailIsValidWhileItsFileIsInTheView) {
  const auto selection = std::make_shared<FakeSelection>(*thumbnails_);
  const Reference::Pointer reference = Refer(std::shared_ptr<Thumbnails>(selection));
  thumbnails_->files({"/a/1.png", "/a/2.png"});
  selection->selected = {2};
  const Variant second = Call(*reference, "Item", 1);
  EXPECT_EQ(IndexOf(second), 2);
  EXPECT_TRUE(ReferenceIn(second).IsSame(ReferenceIn(Item(2))));

  selection->selected.clear();
  EXPECT_EQ(Get(ReferenceIn(second), "Filename").ToString(), "/a/2.png");
  thumbnails_->files({"/a/2.png"});
  EXPECT_EQ(IndexOf(second), 1);
  thumbnails_->files({"/a/1.png"});
  EXPECT_THROW(IndexOf(second), RuntimeError);
}

}  // namespace
}  // namespace kestrel::dispatch
