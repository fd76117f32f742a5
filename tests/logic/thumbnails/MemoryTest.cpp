#include <filesystem>
#include <string>

#include "ViewTest.h"
#include "platform/thumbnailview/PictureMemory.h"

namespace kestrel::thumbnails {
namespace {

/// 128 by 96 pixels of 4 bytes.
constexpr std::size_t kPicture = std::size_t{128} * 96 * 4;

class Memory : public test::ViewTest {
 protected:
  void SetUp() override {
    memory_ = 40 * kPicture;
    make();
    fill(300);
    open();
  }

  std::size_t kept() {
    std::size_t bytes = 0;
    for (std::int32_t i = 0; i < view().itemCount(); ++i) bytes += view().pictureOf(i).bitmap.byteSize();
    return bytes;
  }
};

TEST_F(Memory, IsBoundedForTheWholeFolder) {
  EXPECT_EQ(events_.back(), "complete");
  EXPECT_LE(kept(), memory_);
  EXPECT_GT(kept(), 0u);
}

TEST_F(Memory, HoldsTheNearestPictures) {
  for (std::int32_t i = 0; i < 24; ++i) EXPECT_FALSE(view().pictureOf(i).bitmap.empty()) << i;
  EXPECT_TRUE(view().pictureOf(299).bitmap.empty());
  EXPECT_EQ(view().factsOf(299).state, ItemState::kShown) << "it was loaded";
}

TEST_F(Memory, FetchesWhatComesIntoView) {
  const std::size_t decoded = access_->begun().size();
  view().key(Key::kEnd, 0);
  settle();
  const ItemRange visible = view().visibleItems();
  for (std::int32_t i = visible.first; i < visible.last; ++i) {
    EXPECT_FALSE(view().pictureOf(i).bitmap.empty()) << i;
  }
  EXPECT_LE(kept(), memory_);
  EXPECT_EQ(access_->begun().size(), decoded) << "from the store";
  EXPECT_TRUE(view().pictureOf(0).bitmap.empty());
}

TEST_F(Memory, IsExceededForVisiblePicturesAlone) {
  view().layOut({6000, 4000}, metrics_);  // 40 columns, more than 300 items
  settle();
  for (std::int32_t i = 0; i < 300; ++i) EXPECT_FALSE(view().pictureOf(i).bitmap.empty()) << i;
}

TEST_F(Memory, RepeatsNothingWhereTheViewStays) {
  const int read = store_->bitmapsRead();
  view().scrollTo(1);
  settle();
  view().scrollTo(0);
  settle();
  EXPECT_LE(store_->bitmapsRead() - read, 8) << "at most a row at each end";
}

TEST(PictureMemory, DropsTheFarthestFirst) {
  ItemList list;
  list.reset("/");
  std::vector<FoundFile> files;
  for (int i = 0; i < 10; ++i) files.push_back({std::to_string(i) + ".jpg", 1, 1, 0, {}});
  list.replace(std::move(files));
  const engine::Bitmap bitmap = engine::Bitmap::filled(16, 1);
  PictureMemory memory(4 * bitmap.byteSize());
  for (const auto& item : list.items()) memory.put(*item, bitmap);
  memory.trim(list, {6, 8});
  std::string kept;
  for (const auto& item : list.items()) kept += item->bitmap.empty() ? '-' : 'x';
  EXPECT_EQ(kept, "-----xxxx-");
  EXPECT_EQ(memory.bytes(), 4 * bitmap.byteSize());
}

}  // namespace
}  // namespace kestrel::thumbnails
