// The format of a layout block, byte by byte, with a parser independent of the production reader.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "Resources/Layouts.h"
#include "SmallLayout.h"
#include "platform/docking/LayoutReader.h"
#include "platform/docking/LayoutWriter.h"

namespace kestrel::docking {
namespace {

using testing::ElementsAre;

/// A raw item of the block: numbers, UTF-16 texts, image bytes.
struct RawItem {
  std::uint32_t kind = 0;
  std::uint32_t id = 0;
  std::uint32_t third = 0;
  std::uint16_t type = 0;
  std::int64_t number = 0;
  std::u16string text;
  std::vector<std::byte> bytes;
  std::vector<RawItem> items;

  const RawItem& of(std::uint32_t wanted, std::uint32_t index = 0) const {
    for (const RawItem& item : items) {
      if (item.id == wanted && item.third == index) return item;
    }
    throw std::out_of_range("no item " + std::to_string(wanted));
  }
};

class RawBlock {
 public:
  explicit RawBlock(std::span<const std::byte> block) : block_(block) {}

  template <typename T>
  T take() {
    T value;
    std::memcpy(&value, block_.data() + at_, sizeof value);
    at_ += sizeof value;
    return value;
  }

  std::u16string takeWide(std::size_t bytes) {
    std::u16string text(bytes / 2, u' ');
    std::memcpy(text.data(), block_.data() + at_, bytes);
    at_ += bytes;
    return text;
  }

  RawItem takeItem() {
    RawItem item{take<std::uint32_t>(), take<std::uint32_t>(), take<std::uint32_t>(), 0, 0, {}, {}, {}};
    if (item.kind == 1) takeProperty(item);
    if (item.kind == 2) {
      const auto count = take<std::uint32_t>();
      for (std::uint32_t i = 0; i < count; ++i) item.items.push_back(takeItem());
    }
    if (item.kind == 3) takeImage(item);
    return item;
  }

  void moveTo(std::size_t at) { at_ = at; }
  bool atEnd() const { return at_ == block_.size(); }

 private:
  void takeProperty(RawItem& item) {
    item.type = take<std::uint16_t>();
    switch (item.type) {
      case 2:
      case 11:
        item.number = take<std::int16_t>();
        break;
      case 3:
        item.number = take<std::int32_t>();
        break;
      case 8:
        item.text = takeWide(take<std::uint32_t>());
        break;
      case 9:
        takeFont(item);
        break;
      default:
        throw std::out_of_range("variant type " + std::to_string(item.type));
    }
  }

  /// Class id; version, character set, flags, weight, height; the length of the name and the name.
  void takeFont(RawItem& item) {
    const std::size_t start = at_;
    at_ += 16 + 1 + 2 + 1 + 2 + 4;
    at_ += take<std::uint8_t>();
    item.bytes.assign(block_.begin() + static_cast<std::ptrdiff_t>(start),
                      block_.begin() + static_cast<std::ptrdiff_t>(at_));
  }

  void takeImage(RawItem& item) {
    item.text = takeWide(take<std::uint32_t>());
    EXPECT_EQ(take<std::uint32_t>(), 16u);
    EXPECT_EQ(take<std::uint32_t>(), 16u);
    EXPECT_EQ(take<std::uint32_t>(), 24u);
    EXPECT_EQ(take<std::uint32_t>(), 40u) << "the bitmap header's own size";
    EXPECT_EQ(take<std::int32_t>(), 16);
    EXPECT_EQ(take<std::int32_t>(), 16);
    EXPECT_EQ(take<std::uint16_t>(), 1u) << "planes";
    EXPECT_EQ(take<std::uint16_t>(), 24u);
    EXPECT_EQ(take<std::uint32_t>(), 0u) << "not compressed";
    const auto size = take<std::uint32_t>();
    at_ += 16;
    item.bytes.assign(block_.begin() + static_cast<std::ptrdiff_t>(at_),
                      block_.begin() + static_cast<std::ptrdiff_t>(at_ + size));
    at_ += size;
    EXPECT_EQ(take<std::uint32_t>(), 0u) << "after the pixels";
  }

  std::span<const std::byte> block_;
  std::size_t at_ = 0;
};

/// The items at the top of a block, in order.
std::vector<RawItem> topOf(std::span<const std::byte> block) {
  RawBlock raw(block);
  raw.moveTo(32);
  raw.moveTo(raw.take<std::uint32_t>());
  std::vector<RawItem> items;
  while (!raw.atEnd()) items.push_back(raw.takeItem());
  return items;
}

std::u16string ended(const char16_t* text) { return std::u16string(text) + u'\0'; }

const RawItem& commandOf(const RawItem& commands, const char16_t* key) {
  for (const RawItem& item : commands.items) {
    if (item.kind == 2 && item.of(2).text == ended(key)) return item;
  }
  throw std::out_of_range("no such command");
}

TEST(LayoutBlock, BeginsWithMagicVersionAndHeaderFields) {
  RawBlock raw(resources::dialogLayout());
  EXPECT_EQ(raw.takeWide(16), ended(u"MRGEHDR"));
  EXPECT_EQ(raw.take<std::uint32_t>(), 4u) << "version";
  raw.take<std::uint32_t>();
  EXPECT_EQ(raw.take<std::uint32_t>(), 511u);
  EXPECT_EQ(raw.take<std::uint32_t>(), 27u);
  EXPECT_EQ(raw.take<std::uint32_t>(), 36u) << "start of the tag stream";
}

TEST(LayoutBlock, HoldsItsSevenPartsInOrder) {
  std::vector<std::uint32_t> ids;
  for (const RawItem& item : topOf(resources::dialogLayout())) ids.push_back(item.id);
  EXPECT_THAT(ids, ElementsAre(1, 2, 4, 5, 6, 7, 8, 9));
}

TEST(LayoutBlock, BeginsItsStreamWithAPersistedStandardFont) {
  const auto top = topOf(resources::dialogLayout());
  EXPECT_EQ(top[0].kind, 1u);
  EXPECT_EQ(top[0].type, 9u);
  const unsigned char kClassId[16] = {0x03, 0x52, 0xE3, 0x0B, 0x91, 0x8F, 0xCE, 0x11,
                                      0x9D, 0xE3, 0x00, 0xAA, 0x00, 0x4B, 0xB8, 0x51};
  EXPECT_EQ(std::memcmp(top[0].bytes.data(), kClassId, 16), 0);
}

TEST(LayoutBlock, CountsSeventySevenItemsAmongTheCommands) {
  const RawItem commands = topOf(resources::dialogLayout())[3];
  EXPECT_EQ(commands.kind, 2u);
  EXPECT_EQ(commands.items.size(), 77u);
  EXPECT_EQ(std::count_if(commands.items.begin(), commands.items.end(),
                          [](const RawItem& item) { return item.kind == 2; }),
            63);
}

TEST(LayoutBlock, WritesAButtonUnderItsPropertyIds) {
  const auto top = topOf(resources::dialogLayout());
  const RawItem& open = commandOf(top[3], u"btnFileOpen");
  EXPECT_EQ(open.of(100000).number, 0);
  EXPECT_EQ(open.of(1).text.size(), 39u) << "a GUID in braces";
  EXPECT_EQ(open.of(4).number, -1);
  EXPECT_EQ(open.of(6).text, ended(u"&Open..."));
  EXPECT_EQ(open.of(7).text, ended(u"Open"));
  EXPECT_EQ(open.of(8).text, top[2].items[0].of(1).text) << "the GUID of the category File";
  EXPECT_EQ(open.of(9).text, ended(u"Opens en existing image"));
  EXPECT_EQ(open.of(12).text, top[1].items[0].of(5, 0).of(2).text) << "the GUID of the image Open";
  EXPECT_EQ(open.of(11).kind, 2u);
  EXPECT_EQ(open.of(11).of(1).number, 2) << "Ctrl";
  EXPECT_EQ(open.of(11).of(2).number, 'O');
  EXPECT_EQ(open.of(1004).number, 0) << "not pressed";
  EXPECT_EQ(commandOf(top[3], u"btnDrawSelect").of(1004).number, -1) << "pressed";
  EXPECT_EQ(commandOf(top[3], u"btnZoomBestFit").of(4).number, 0) << "not visible";
}

TEST(LayoutBlock, EmbedsTheBarOfAMenuInObject1004) {
  const auto top = topOf(resources::dialogLayout());
  const RawItem& edit = commandOf(top[3], u"mnuEdit");
  EXPECT_EQ(edit.of(100000).number, 4);
  const RawItem& bar = edit.of(1004);
  EXPECT_EQ(bar.kind, 2u);
  EXPECT_EQ(bar.items.size(), 6u);
  const RawItem& cut = bar.of(10, 2);
  EXPECT_EQ(cut.of(8).text, commandOf(top[3], u"btnEditCut").of(1).text);
  EXPECT_EQ(cut.of(2).number, -1) << "begins a group";
  EXPECT_NE(cut.of(1).text, bar.of(10, 3).of(1).text) << "an entry's own GUID";
  EXPECT_EQ(bar.of(10, 3).of(2).number, 0);
}

TEST(LayoutBlock, HoldsFortyImagePairsAt16AndNamesAt24And32) {
  const RawItem groups = topOf(resources::dialogLayout())[1];
  ASSERT_EQ(groups.items.size(), 3u);
  for (std::uint32_t i = 0; i < 3; ++i) {
    int entries = 0;
    int pictures = 0;
    for (const RawItem& item : groups.items[i].items) {
      if (item.id != 5) continue;
      ++entries;
      EXPECT_EQ(item.of(7).number, 16711935);
      for (const RawItem& field : item.items) {
        if (field.kind != 3) continue;
        ++pictures;
        EXPECT_EQ(field.text, ended(u"BRWDIB24"));
        EXPECT_EQ(field.bytes.size(), 16u * 16 * 3);
      }
    }
    EXPECT_EQ(entries, 40);
    EXPECT_EQ(pictures, i == 0 ? 80 : 0);
  }
}

TEST(LayoutBlock, StoresImagesBottomUpInBgr) {
  const RawItem image = topOf(writeLayout(smallLayout()))[1].items[0].of(5).of(8);
  const StoredPicture picture = stripes(0);
  const std::size_t lastRow = 15 * 16 * 3;
  EXPECT_EQ(static_cast<std::uint8_t>(image.bytes[0]), picture.rgb[lastRow + 2]);
  EXPECT_EQ(static_cast<std::uint8_t>(image.bytes[2]), picture.rgb[lastRow]);
  EXPECT_EQ(static_cast<std::uint8_t>(image.bytes[lastRow + 2]), picture.rgb[0]);
}

TEST(LayoutBlock, RoundTrips) {
  EXPECT_EQ(readLayout(writeLayout(smallLayout())), smallLayout());
  const StoredLayout dialog = readLayout(resources::dialogLayout());
  EXPECT_EQ(readLayout(writeLayout(dialog)), dialog);
}

TEST(LayoutBlock, HasTheSameBytesEachTimeItIsWritten) {
  const auto dialog = resources::dialogLayout();
  const auto again = writeLayout(readLayout(dialog));
  EXPECT_TRUE(std::equal(dialog.begin(), dialog.end(), again.begin(), again.end()));
}

}  // namespace
}  // namespace kestrel::docking
