#include "engine/pixels/Memory.h"

#include <gtest/gtest.h>

#include <cstring>
#include <utility>
#include <vector>

#include "base/RuntimeError.h"

namespace kestrel::engine {
namespace {

constexpr std::size_t kMB = std::size_t{1} << 20;

class MemoryTest : public testing::Test {
 protected:
  MemoryTest() { releaseKeptMemory(); }
};

TEST_F(MemoryTest, AFreedLargeBlockIsReusedForItsSize) {
  std::uint8_t* first = nullptr;
  {
    const Memory block(9 * kMB);
    first = block.data();
    std::memset(first, 1, block.size());
  }
  EXPECT_EQ(keptMemory(), 10 * kMB);
  const Memory next(9 * kMB + 5);
  EXPECT_EQ(next.data(), first);
  EXPECT_EQ(next.size(), 9 * kMB + 5);
  EXPECT_EQ(keptMemory(), 0U);
}

TEST_F(MemoryTest, AMuchLargerCachedBlockIsNotUsedForASmallRequest) {
  { const Memory block(64 * kMB); }
  const Memory small(8 * kMB);
  EXPECT_EQ(keptMemory(), 64 * kMB);
}

TEST_F(MemoryTest, TheCacheStaysWithinItsLimit) {
  std::vector<Memory> blocks;
  for (int i = 0; i < 12; ++i) blocks.emplace_back(keptMemoryBound() / 4);
  blocks.clear();
  EXPECT_GT(keptMemory(), 0U);
  EXPECT_LE(keptMemory(), keptMemoryBound());

  { const Memory larger(keptMemoryBound() + kMB); }
  EXPECT_LE(keptMemory(), keptMemoryBound());
}

TEST_F(MemoryTest, CachedMemoryIsReleasedWhenIdle) {
  { const Memory block(16 * kMB); }
  releaseKeptMemory(std::chrono::hours(1));
  EXPECT_EQ(keptMemory(), 16 * kMB);
  releaseKeptMemory();
  EXPECT_EQ(keptMemory(), 0U);
}

TEST_F(MemoryTest, BlocksAreAlignedAndMovable) {
  for (const std::size_t size : {std::size_t{1}, std::size_t{100}, kMB, 3 * kMB}) {
    Memory block(size);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block.data()) % 64, 0U);
    block.data()[size - 1] = 77;
    const Memory moved = std::move(block);
    EXPECT_EQ(moved.data()[size - 1], 77);
  }
}

TEST_F(MemoryTest, AnImpossibleRequestRaisesError7) {
  for (const std::size_t size : {SIZE_MAX, SIZE_MAX / 2}) {
    try {
      const Memory block(size);
      FAIL() << "got " << size << " bytes";
    } catch (const RuntimeError& error) {
      EXPECT_EQ(error.Number(), 7);
    }
  }
}

}  // namespace
}  // namespace kestrel::engine
