#include <optional>

#include "IndependentPrograms.h"

// Truncated files of other programs: the rows that they hold are shown, with a notice.

namespace kestrel::engine {
namespace {

using test::Workshop;

/// Number of rows from the top that equal the whole picture.
int equalRows(const Bitmap& whole, const Bitmap& part) {
  int rows = 0;
  const auto same = [&](int y) {
    for (int x = 0; x < whole.width(); ++x) {
      if (whole.at(x, y) != part.at(x, y)) return false;
    }
    return true;
  };
  while (rows < whole.height() && same(rows)) ++rows;
  return rows;
}

/// True if the row is transparent or of one gray.
bool isEmptyRow(const Bitmap& bitmap, int y) {
  const Pixel first = bitmap.at(0, y);
  if (first.a != 0 && (first.r != first.g || first.g != first.b)) return false;
  for (int x = 0; x < bitmap.width(); ++x) {
    if (bitmap.at(x, y) != first) return false;
  }
  return true;
}

/// Moves the only directory of a little-endian classic TIFF file before the pixels, as scanners and many
/// programs write it. libtiff writes it last, where truncation would remove it.
std::vector<std::uint8_t> withDirectoryFirst(const std::vector<std::uint8_t>& file) {
  const auto number = [&](std::size_t at, std::size_t size) {
    std::size_t value = 0;
    for (std::size_t i = size; i-- > 0;) value = value << 8 | file[at + i];
    return value;
  };
  const std::size_t directory = number(4, 4), count = number(directory, 2);
  constexpr std::size_t kSizes[] = {0, 1, 1, 2, 4, 8, 1, 1, 2, 4, 8, 4, 8, 4};
  test::Builder table, values;
  const std::size_t tableSize = 2 + count * 12 + 4;
  std::size_t valuesSize = 0;
  for (std::size_t i = 0; i < count; ++i) {
    const std::size_t entry = directory + 2 + 12 * i;
    const std::size_t size = kSizes[number(entry + 2, 2)] * number(entry + 4, 4);
    if (size > 4) valuesSize += (size + 1) / 2 * 2;
  }
  // The whole old file follows, so the strip offsets grow by the size of the header.
  const std::size_t moved = 8 + tableSize + valuesSize;
  constexpr std::size_t kStripOffsets = 273;
  for (std::size_t i = 0; i < count; ++i) {
    const std::size_t entry = directory + 2 + 12 * i, tag = number(entry, 2), type = number(entry + 2, 2),
                      items = number(entry + 4, 4), size = kSizes[type] * items;
    std::vector<std::uint8_t> content(size);
    for (std::size_t b = 0; b < size; ++b)
      content[b] = file[(size > 4 ? number(entry + 8, 4) : entry + 8) + b];
    if (tag == kStripOffsets) {
      test::Builder offsets;
      for (std::size_t s = 0; s < items; ++s) {
        const std::size_t at = size > 4 ? number(entry + 8, 4) : entry + 8;
        offsets.le32(static_cast<std::uint32_t>(number(at + s * kSizes[type], kSizes[type]) + moved));
      }
      EXPECT_EQ(offsets.bytes.size(), size) << "offsets of 16 bits";
      content = offsets.bytes;
    }
    table.le16(static_cast<std::uint32_t>(tag)).le16(static_cast<std::uint32_t>(type));
    table.le32(static_cast<std::uint32_t>(items));
    if (size > 4) {
      table.le32(static_cast<std::uint32_t>(8 + tableSize + values.bytes.size()));
      content.resize((size + 1) / 2 * 2);
      values.bytes.insert(values.bytes.end(), content.begin(), content.end());
    } else {
      content.resize(4);
      table.bytes.insert(table.bytes.end(), content.begin(), content.end());
    }
  }
  test::Builder result;
  result.text("II").le16(42).le32(8).le16(static_cast<std::uint32_t>(count));
  result.bytes.insert(result.bytes.end(), table.bytes.begin(), table.bytes.end());
  result.le32(0);
  result.bytes.insert(result.bytes.end(), values.bytes.begin(), values.bytes.end());
  result.bytes.insert(result.bytes.end(), file.begin(),
                      file.begin() + static_cast<std::ptrdiff_t>(directory));
  return result.bytes;
}

/// Row order: from the top down, or in interlaced or progressive passes.
enum class Order { down, passes };

/// Truncates a file at 99 lengths. Each time the picture has its full size, shows no fewer rows than at a
/// shorter length, has a notice, and its missing rows are transparent or gray. A file is refused only while
/// it holds no row; from the fraction `least` of its length on it must open.
void showsWhatItHolds(const std::string& name, const std::vector<std::uint8_t>& file, Order order,
                      double least) {
  const Decoded whole = decode(file);
  EXPECT_EQ(whole.notice, "") << name;
  std::optional<int> rowsBefore;
  constexpr int kCuts = 100;
  for (int cut = 1; cut < kCuts; ++cut) {
    const std::size_t size = file.size() * static_cast<std::size_t>(cut) / kCuts;
    SCOPED_TRACE(name + ", the first " + std::to_string(size) + " of " + std::to_string(file.size()) +
                 " bytes");
    Decoded part;
    const std::vector<std::uint8_t> bytes(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(size));
    const std::int32_t error = test::errorOf([&] { part = decode(bytes); });
    if (error != 0) {
      EXPECT_EQ(error, 481);
      EXPECT_FALSE(rowsBefore.has_value()) << "a shorter file was shown";
      EXPECT_LT(cut, least * kCuts);
      continue;
    }
    ASSERT_EQ(part.bitmap.width(), whole.bitmap.width());
    ASSERT_EQ(part.bitmap.height(), whole.bitmap.height());
    const int rows = equalRows(whole.bitmap, part.bitmap);
    if (rows < whole.bitmap.height()) {
      EXPECT_NE(part.notice, "");
    }
    if (order == Order::passes) {
      rowsBefore = 0;
      continue;
    }
    EXPECT_GE(rows, rowsBefore.value_or(0));
    rowsBefore = rows;
    // A few rows may be incomplete.
    int empty = whole.bitmap.height();
    while (empty > 0 && isEmptyRow(part.bitmap, empty - 1)) --empty;
    EXPECT_LE(empty - rows, 16) << "rows that are neither correct nor empty";
    EXPECT_GE(rows + 24, whole.bitmap.height() * (cut - 3) / kCuts) << "fewer rows than the file holds";
  }
  EXPECT_TRUE(rowsBefore.has_value()) << name;
}

/// Noisy, so that all rows compress to about the same size.
Bitmap grain(int width, int height) {
  std::mt19937 random(3);
  return test::pictureOf(width, height, [&](int x, int y) {
    const auto v = static_cast<std::uint8_t>(random() % 24);
    return Pixel{static_cast<std::uint8_t>(x % 200 + v), static_cast<std::uint8_t>(y % 200 + v),
                 static_cast<std::uint8_t>(100 + v), 255};
  });
}

TEST(IndependentTruncation, ATruncatedFileShowsTheRowsThatItHoldsWithANotice) {
  const Workshop workshop;
  workshop.put("a.png", encode(grain(120, 200), {}, format::kPng));
  workshop.run({"convert a.png -quality 90 base.jpg",
                "convert a.png -quality 90 -sampling-factor 4:2:0 sampled.jpg",
                "convert a.png -quality 90 -interlace JPEG progressive.jpg", "convert a.png rgb.png",
                "convert a.png -interlace PNG adam7.png", "convert a.png plain.gif",
                "convert a.png -interlace GIF interlaced.gif"});
  for (const char* name : {"base.jpg", "rgb.png", "plain.gif"}) {
    showsWhatItHolds(name, workshop.bytes(name), Order::down, 0.12);
  }
  for (const char* name : {"sampled.jpg", "progressive.jpg", "adam7.png", "interlaced.gif"}) {
    showsWhatItHolds(name, workshop.bytes(name), Order::passes, 0.25);
  }
}

TEST(IndependentTruncation, ATruncatedTiffFileShowsItsRowsWithAnyCompression) {
  const Workshop workshop;
  workshop.put("rgb.png", encode(grain(120, 200), {}, format::kPng));
  workshop.put("bilevel.png",
               encode(test::pictureOf(120, 200,
                                      [](int x, int y) {
                                        const bool black = (x * x + 7 * y) % 5 == 0;
                                        return black ? Pixel{0, 0, 0, 255} : Pixel{255, 255, 255, 255};
                                      }),
                      {}, format::kPng));
  std::vector<std::string> lines{"convert rgb.png -colorspace CMYK -compress None cmyk.tif"};
  std::vector<std::string> names{"cmyk"};
  for (const char* compression : {"None", "RLE", "LZW", "Zip", "JPEG"}) {
    for (const char* rows : {"1000", "16"}) {
      names.push_back(std::string(compression) + rows);
      lines.push_back("convert rgb.png -quality 90 -compress " + std::string(compression) +
                      " -define tiff:rows-per-strip=" + rows + " " + names.back() + ".tif");
    }
  }
  for (const char* compression : {"g3", "g4", "packbits"}) {
    names.push_back(compression);
    lines.push_back("convert bilevel.png -type bilevel -depth 1 bilevel.tif && tiffcp -r 1000 -c " +
                    std::string(compression) + " bilevel.tif " + names.back() + ".tif");
  }
  workshop.run(lines);
  for (const std::string& name : names) {
    showsWhatItHolds(name, withDirectoryFirst(workshop.bytes(name + ".tif")), Order::down, 0.2);
  }
}

}  // namespace
}  // namespace kestrel::engine
