#include "engine/codecs/png/Deflate.h"

#include <zlib.h>

#include <numeric>

#include "../TestPictures.h"
#include "engine/codecs/png/PrefixCode.h"

namespace kestrel::engine {
namespace {

using Data = std::vector<std::uint8_t>;

/// Inflates raw deflate blocks with zlib; empty if the stream is incomplete or followed by other bytes.
Data unpacked(Data packed, std::size_t size) {
  Data result(size + 1);
  z_stream stream{};
  inflateInit2(&stream, -15);
  stream.next_in = packed.data();
  stream.avail_in = static_cast<unsigned>(packed.size());
  stream.next_out = result.data();
  stream.avail_out = static_cast<unsigned>(result.size());
  const bool whole = inflate(&stream, Z_FINISH) == Z_STREAM_END && stream.avail_in == 0;
  result.resize(whole ? stream.total_out : 0);
  inflateEnd(&stream);
  return result;
}

Data dataOf(std::size_t size, const std::function<unsigned(std::size_t)>& byte) {
  Data data(size);
  for (std::size_t i = 0; i < size; ++i) data[i] = static_cast<std::uint8_t>(byte(i));
  return data;
}

std::vector<Data> samples() {
  std::mt19937 random(3);
  std::vector<Data> all;
  for (const std::size_t size :
       {1U, 2U, 7U, 8U, 9U, 16U, 100U, 258U, 259U, 260U, 261U, 65'535U, 65'536U, 300'000U}) {
    all.push_back(dataOf(size, [](std::size_t) { return 0U; }));
    all.push_back(dataOf(size, [&](std::size_t) { return static_cast<unsigned>(random()); }));
    all.push_back(
        dataOf(size, [&](std::size_t) { return static_cast<unsigned>(random() % 3 * (random() % 5)); }));
    all.push_back(dataOf(size, [](std::size_t i) { return static_cast<unsigned>(i % 19 * (i / 1000)); }));
  }
  return all;
}

TEST(Deflate, ZlibInflatesTheStream) {
  Deflate deflate;
  for (const Data& data : samples())
    ASSERT_EQ(unpacked(deflate.pack(data, 0, true), data.size()), data) << data.size();
}

TEST(Deflate, PartsConcatenateAndMatchIntoEarlierParts) {
  for (const Data& data : samples()) {
    for (const std::size_t parts : {2U, 3U, 7U}) {
      Data packed;
      for (std::size_t i = 0; i < parts; ++i) {
        const std::size_t from = data.size() * i / parts, end = data.size() * (i + 1) / parts;
        const std::size_t history = std::min<std::size_t>(from, 40'000);
        const Data part = Deflate().pack(Bytes(data).subspan(from - history, end - from + history), history,
                                         i + 1 == parts);
        packed.insert(packed.end(), part.begin(), part.end());
      }
      ASSERT_EQ(unpacked(packed, data.size()), data) << data.size() << " in " << parts;
    }
  }
}

TEST(Deflate, FindsMatchesUpToTheLargestDistance) {
  std::mt19937 random(4);
  const Data noise = dataOf(32'768, [&](std::size_t) { return static_cast<unsigned>(random()); });
  Data twice = noise;
  twice.insert(twice.end(), noise.begin(), noise.end());
  const Data packed = Deflate().pack(twice, 0, true);
  EXPECT_LT(packed.size(), noise.size() + 1000);
  EXPECT_EQ(unpacked(packed, twice.size()), twice);
}

TEST(Deflate, StoresIncompressibleData) {
  std::mt19937 random(5);
  const Data noise = dataOf(200'000, [&](std::size_t) { return static_cast<unsigned>(random()); });
  EXPECT_LE(Deflate().pack(noise, 0, true).size(), noise.size() + 5 * (200'000 / 65'535 + 1 + 3));
}

/// Code space that codes of these lengths use (Kraft sum), in units of 2^-15.
std::uint32_t codeSpace(std::span<const std::uint8_t> lengths) {
  return std::accumulate(lengths.begin(), lengths.end(), 0U, [](std::uint32_t sum, std::uint8_t length) {
    return sum + (length > 0 ? 1U << (15 - length) : 0U);
  });
}

TEST(PrefixCode, FrequentSymbolsGetShortCodes) {
  const std::vector<std::uint32_t> counts{45, 13, 12, 16, 9, 5, 0};
  std::vector<std::uint8_t> lengths(counts.size());
  makeCodeLengths(counts, 15, lengths);
  EXPECT_EQ(lengths, (std::vector<std::uint8_t>{1, 3, 3, 3, 4, 4, 0}));
}

TEST(PrefixCode, CodesStayWithinTheLongestLengthAndUseAllCodeSpace) {
  std::vector<std::uint32_t> growing{1, 1};
  while (growing.size() < 40) growing.push_back(growing.back() + growing[growing.size() - 2]);
  std::vector<std::uint32_t> many(286);
  std::iota(many.begin(), many.end(), 1U);
  many[256] = 100'000'000;
  for (const auto& counts : {growing, many}) {
    for (const int longest : {9, 14, 15}) {
      std::vector<std::uint8_t> lengths(counts.size());
      makeCodeLengths(counts, longest, lengths);
      EXPECT_LE(*std::ranges::max_element(lengths), longest);
      EXPECT_EQ(codeSpace(lengths), 1U << 15);
    }
  }
}

TEST(PrefixCode, AtLeastTwoSymbolsGetACode) {
  for (const std::vector<std::uint32_t>& counts :
       {std::vector<std::uint32_t>(30), {0, 0, 7}, {7, 0, 0}, {0, 7, 0}}) {
    std::vector<std::uint8_t> lengths(counts.size());
    makeCodeLengths(counts, 15, lengths);
    EXPECT_EQ(std::ranges::count(lengths, 1), 2);
    EXPECT_EQ(codeSpace(lengths), 1U << 15);
  }
}

TEST(PrefixCode, CodesAreCanonicalWithTheirFirstBitLowest) {
  // The example of RFC 1951, 3.2.2.
  const std::vector<std::uint8_t> lengths{3, 3, 3, 3, 3, 2, 4, 4};
  std::vector<std::uint16_t> codes(lengths.size());
  makeCodes(lengths, codes);
  EXPECT_EQ(codes, (std::vector<std::uint16_t>{0b010, 0b110, 0b001, 0b101, 0b011, 0b00, 0b0111, 0b1111}));
}

}  // namespace
}  // namespace kestrel::engine
