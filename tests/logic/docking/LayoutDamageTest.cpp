// Damaged blocks are refused and harmless.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "Resources/Layouts.h"
#include "SmallLayout.h"
#include "base/RuntimeError.h"
#include "platform/docking/LayoutCheck.h"
#include "platform/docking/LayoutFormat.h"
#include "platform/docking/LayoutReader.h"
#include "platform/docking/LayoutWriter.h"
#include "platform/docking/StableGuid.h"
#include "platform/docking/TagStream.h"
#include "platform/docking/WideText.h"

namespace kestrel::docking {
namespace {

using testing::HasSubstr;
using testing::StartsWith;
using Block = std::vector<std::byte>;

/// Updates the checksum, so that the checks after it are tested, too.
void repairChecksum(std::span<std::byte> block) {
  const std::uint32_t sum = layoutChecksum(block);
  for (std::size_t i = 0; i < 4; ++i) {
    block[layout_format::kChecksumOffset + i] = static_cast<std::byte>(sum >> (8 * i) & 0xFF);
  }
}

/// The error text if the block is refused, nothing if it is read.
std::optional<std::string> refusal(std::span<const std::byte> block) {
  try {
    readLayout(block);
    return std::nullopt;
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.Number(), 321);
    EXPECT_THAT(error.Description(), StartsWith("The stored layout is damaged: "));
    EXPECT_EQ(error.Description().back(), '.');
    return error.Description();
  }
}

/// Reads a block, which must be refused or give a consistent layout.
void expectRefusedOrSound(std::span<const std::byte> block) {
  try {
    EXPECT_EQ(inconsistencyIn(readLayout(block)), "");
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.Number(), 321);
  }
}

TEST(DamagedLayout, IsRefusedWhenTruncatedAtAnyLength) {
  const Block block = writeLayout(smallLayout());
  for (std::size_t length = 0; length < block.size(); ++length) {
    EXPECT_TRUE(refusal(std::span(block).first(length))) << length;
  }
}

TEST(DamagedLayout, IsRefusedWhenTruncatedWithACorrectChecksum) {
  const Block block = writeLayout(smallLayout());
  for (std::size_t length = layout_format::kHeaderSize; length < block.size(); ++length) {
    Block cut(block.begin(), block.begin() + static_cast<std::ptrdiff_t>(length));
    repairChecksum(cut);
    EXPECT_TRUE(refusal(cut)) << length;
  }
}

TEST(DamagedLayout, IsRefusedWithAnyByteOrBitFlipped) {
  Block block = writeLayout(smallLayout());
  for (std::size_t i = 0; i < block.size(); ++i) {
    for (const int mask : {0xFF, 1 << (i % 8)}) {
      block[i] ^= static_cast<std::byte>(mask);
      EXPECT_TRUE(refusal(block)) << "byte " << i << ", mask " << mask;
      block[i] ^= static_cast<std::byte>(mask);
    }
  }
}

TEST(DamagedLayout, IsHarmlessWithAnyByteChangedAndACorrectChecksum) {
  const Block block = writeLayout(smallLayout());
  for (std::size_t i = layout_format::kHeaderSize - 12; i < block.size(); ++i) {
    for (const int value : {0x00, 0x01, 0x7F, 0x80, 0xFF}) {
      Block changed = block;
      changed[i] = static_cast<std::byte>(value);
      repairChecksum(changed);
      expectRefusedOrSound(changed);
    }
  }
}

TEST(DamagedLayout, OfTheEditorIsRefusedWhenTruncatedOrChanged) {
  const auto dialog = resources::dialogLayout();
  for (std::size_t length = 0; length < dialog.size(); length += 499) {
    EXPECT_TRUE(refusal(dialog.first(length))) << length;
  }
  Block changed(dialog.begin(), dialog.end());
  for (std::size_t i = 0; i < changed.size(); i += 499) {
    changed[i] ^= std::byte{0x10};
    EXPECT_TRUE(refusal(changed)) << i;
    changed[i] ^= std::byte{0x10};
  }
}

TEST(DamagedLayout, IsRefusedWithBytesAfterItsEnd) {
  Block block = writeLayout(smallLayout());
  block.push_back(std::byte{0});
  repairChecksum(block);
  EXPECT_TRUE(refusal(block));
}

TEST(DamagedLayout, ReportsTheErrorInTheHeader) {
  const auto with = [](std::size_t offset, unsigned char value) {
    Block block = writeLayout(smallLayout());
    block[offset] = static_cast<std::byte>(value);
    if (offset >= layout_format::kChecksumOffset + 4) repairChecksum(block);
    return refusal(block).value_or("read");
  };
  EXPECT_EQ(refusal({}), "The stored layout is damaged: it is truncated.");
  EXPECT_THAT(with(0, 'X'), HasSubstr("it has no layout header"));
  EXPECT_THAT(with(16, 5), HasSubstr("its version is unknown"));
  EXPECT_THAT(with(20, 5), HasSubstr("its checksum is wrong"));
  EXPECT_THAT(with(24, 0), HasSubstr("its header is unknown"));
  EXPECT_THAT(with(28, 0), HasSubstr("its header is unknown"));
  EXPECT_THAT(with(32, 35), HasSubstr("its stream offset is invalid"));
  EXPECT_THAT(with(35, 0xFF), HasSubstr("its stream offset is invalid"));
}

TEST(DamagedLayout, IsRefusedWhenItIsLargerThanAnyLayout) {
  Block block = writeLayout(smallLayout());
  block.resize(layout_format::kLargestBlock + 1);
  EXPECT_THAT(refusal(block).value_or("read"), HasSubstr("it is larger than any layout"));
}

/// The error text for a stream of one item, built from these numbers.
std::optional<std::string> streamRefusal(std::initializer_list<std::uint32_t> words) {
  Block stream;
  for (const std::uint32_t word : words) {
    for (int i = 0; i < 4; ++i) stream.push_back(static_cast<std::byte>(word >> (8 * i) & 0xFF));
  }
  try {
    parseTags(stream);
    return std::nullopt;
  } catch (const RuntimeError& error) {
    return error.Description();
  }
}

TEST(DamagedStream, ThatClaimsFourBillionItemsIsRefusedBeforeAllocating) {
  EXPECT_THAT(streamRefusal({2, 5, 0, 0xFFFFFFFF}).value_or("read"),
              HasSubstr("an object claims more items than there are"));
}

/// Objects nested to this depth, each the only item of its parent.
Block nested(int depth) {
  Block stream;
  for (int level = 1; level <= depth; ++level) {
    for (const std::uint32_t word : {2u, 1u, 0u, level < depth ? 1u : 0u}) {
      for (int i = 0; i < 4; ++i) stream.push_back(static_cast<std::byte>(word >> (8 * i) & 0xFF));
    }
  }
  return stream;
}

TEST(DamagedStream, ThatNestsTooDeepIsRefused) {
  EXPECT_EQ(parseTags(nested(16)).size(), 1u);
  try {
    parseTags(nested(100000));
    FAIL() << "It was read.";
  } catch (const RuntimeError& error) {
    EXPECT_THAT(error.Description(), HasSubstr("its objects nest too deep"));
  }
}

TEST(DamagedStream, WithAnUnknownKindIsRefused) {
  EXPECT_THAT(streamRefusal({4, 1, 0, 0}).value_or("read"), HasSubstr("an item has an unknown kind"));
}

TEST(DamagedStream, WithAnUnknownVariantTypeIsRefused) {
  EXPECT_THAT(streamRefusal({1, 1, 0, 77}).value_or("read"), HasSubstr("a property has an unknown type"));
}

TEST(DamagedStream, WithATextOfOddLengthIsRefused) {
  EXPECT_THAT(streamRefusal({1, 1, 0, 3 << 16 | 8, 0, 0}).value_or("read"),
              HasSubstr("a text has an invalid length"));
}

/// The error text for the small layout after a change of its tag stream.
std::string refusalAfter(const std::function<void(TagItem::Items&)>& change) {
  Block block = writeLayout(smallLayout());
  const auto stream = block.begin() + layout_format::kHeaderSize;
  TagItem::Items items = parseTags(std::span(stream, block.end()));
  change(items);
  block.erase(stream, block.end());
  appendTags(block, items);
  repairChecksum(block);
  return refusal(block).value_or("read");
}

TagItem::Items& itemsOf(TagItem& item) { return std::get<TagItem::Items>(item.value); }

TEST(DamagedStream, WithPartsInAnotherOrderIsRefused) {
  EXPECT_EQ(refusalAfter([](TagItem::Items&) {}), "read");
  EXPECT_THAT(refusalAfter([](TagItem::Items& top) { std::swap(top[2], top[3]); }),
              HasSubstr("its parts are not in order"));
  EXPECT_THAT(refusalAfter([](TagItem::Items& top) { top.pop_back(); }),
              HasSubstr("its parts are not in order"));
}

TEST(DamagedStream, WithObjectsOutOfOrderIsRefused) {
  EXPECT_THAT(refusalAfter([](TagItem::Items& top) { std::swap(itemsOf(top[2])[0], itemsOf(top[2])[1]); }),
              HasSubstr("the objects of a collection are not in order"));
}

TEST(DamagedStream, WithWrongCommandCountsOrPositionsIsRefused) {
  EXPECT_THAT(refusalAfter([](TagItem::Items& top) { itemsOf(top[3])[0].value = std::int32_t{7}; }),
              HasSubstr("its command count is wrong"));
  EXPECT_THAT(refusalAfter([](TagItem::Items& top) { itemsOf(top[3])[2].value = std::int32_t{6}; }),
              HasSubstr("the position of a menu is wrong"));
}

TEST(DamagedStream, WithAFieldMissingOrOfAnotherTypeIsRefused) {
  EXPECT_THAT(refusalAfter([](TagItem::Items& top) { itemsOf(itemsOf(top[2])[0]).pop_back(); }),
              HasSubstr("a field is missing or of a wrong type"));
  EXPECT_THAT(refusalAfter([](TagItem::Items& top) { itemsOf(itemsOf(top[2])[0])[1].value = true; }),
              HasSubstr("a field is missing or of a wrong type"));
}

TEST(DamagedStream, WithAnUnknownEdgeIsRefused) {
  EXPECT_THAT(
      refusalAfter([](TagItem::Items& top) { itemsOf(itemsOf(top[6])[0])[2].value = std::int32_t{4}; }),
      HasSubstr("a field has an unknown value"));
}

TEST(DamagedStream, WithAnUnknownReferenceIsRefused) {
  EXPECT_THAT(refusalAfter([](TagItem::Items& top) { itemsOf(top[6]).clear(); }),
              HasSubstr("it refers to an unknown identifier"));
}

TEST(DamagedStream, WithADuplicateIdentifierIsRefused) {
  EXPECT_THAT(refusalAfter([](TagItem::Items& top) {
                itemsOf(itemsOf(top[2])[1])[0].value = itemsOf(itemsOf(top[2])[0])[0].value;
              }),
              HasSubstr("an identifier is defined twice"));
}

/// The inconsistency of the small layout after one change.
std::string inconsistencyAfter(const std::function<void(StoredLayout&)>& change) {
  StoredLayout layout = smallLayout();
  change(layout);
  const std::string found = inconsistencyIn(layout);
  EXPECT_THROW(writeLayout(layout), RuntimeError);
  return found;
}

TEST(InconsistentLayout, IsNotWritten) {
  EXPECT_EQ(inconsistencyIn(smallLayout()), "");
  EXPECT_EQ(inconsistencyAfter([](auto& layout) { layout.commands[1].key = "BTNOPEN"; }),
            "the command \"BTNOPEN\" is defined twice");
  EXPECT_EQ(inconsistencyAfter([](auto& layout) { layout.commands[0].key = ""; }), "a command has no name");
  EXPECT_EQ(inconsistencyAfter([](auto& layout) { layout.commands[0].category = "Nowhere"; }),
            "the category \"Nowhere\" of \"btnOpen\" does not exist");
  EXPECT_EQ(inconsistencyAfter([](auto& layout) { layout.commands[0].image = "Nothing"; }),
            "the image \"Nothing\" of \"btnOpen\" does not exist");
  EXPECT_EQ(inconsistencyAfter([](auto& layout) { layout.bars[1].entries[0].command = "btnNone"; }),
            "the entry \"btnNone\" of \"Standard\" does not exist");
  EXPECT_EQ(inconsistencyAfter([](auto& layout) { layout.commands[5].menu[0].command = "btnNone"; }),
            "the entry \"btnNone\" of \"mnuFile\" does not exist");
  EXPECT_EQ(inconsistencyAfter([](auto& layout) { layout.commands[0].type = 3; }),
            "the command \"btnOpen\" has an unknown type");
  EXPECT_EQ(inconsistencyAfter([](auto& layout) {
              layout.commands[0].menu = {{"btnClose", false}};
            }),
            "the command \"btnOpen\" has entries but is not a menu");
  EXPECT_EQ(inconsistencyAfter([](auto& layout) { layout.dockWindows[0].pane = "Left"; }),
            "the pane \"Left\" of \"dkwZoom\" does not exist");
  EXPECT_EQ(inconsistencyAfter([](auto& layout) { layout.images[0].normal.width = 8; }),
            "the image \"Open\" is not 16 by 16 pixels");
}

TEST(InconsistentLayout, IsOneWithAMenuThatContainsItself) {
  EXPECT_EQ(inconsistencyAfter([](auto& layout) {
              layout.commands[5].menu.push_back({"mnuFile", false});
            }),
            "the menu \"mnuFile\" contains itself");
  EXPECT_EQ(inconsistencyAfter([](auto& layout) {
              StoredCommand inner;
              inner.type = kCommandMenu;
              inner.key = "mnuInner";
              inner.menu = {{"mnuFile", false}};
              layout.commands.push_back(inner);
              layout.commands[5].menu.push_back({"mnuInner", false});
            }),
            "the menu \"mnuFile\" contains itself");
}

TEST(InconsistentLayout, IsNotRead) {
  Block block = writeLayout(smallLayout());
  const Block open = wideFromUtf8(stableGuid("command", "btnOpen"));
  const Block file = wideFromUtf8(stableGuid("command", "mnuFile"));
  // After its definition the command is first referred to by its menu entry.
  const auto definition = std::search(block.begin(), block.end(), open.begin(), open.end());
  const auto entry = std::search(definition + 1, block.end(), open.begin(), open.end());
  ASSERT_NE(entry, block.end());
  std::copy(file.begin(), file.end(), entry);
  repairChecksum(block);
  EXPECT_EQ(refusal(block), "The stored layout is damaged: the menu \"mnuFile\" contains itself.");
}

}  // namespace
}  // namespace kestrel::docking
