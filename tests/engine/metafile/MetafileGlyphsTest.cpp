#include <algorithm>
#include <string>
#include <utility>

#include "MetafileBuilders.h"

// Text in metafiles: size, width and direction of glyphs, and which glyph is drawn.

namespace kestrel::engine {
namespace {

using namespace test;

/// Parts of a font record.
struct FontRecord {
  std::string face;
  int height = -16;
  int width = 0;
  int escapement = 0;  ///< tenths of a degree
  int charset = 0;
};

Emf& font(Emf& emf, const FontRecord& font) {
  Builder b = Builder().le32(9).le32(number(font.height)).le32(number(font.width));
  b.le32(number(font.escapement)).le32(0).le32(400).u8({0, 0, 0, font.charset, 0, 0, 0, 0});
  for (const char c : font.face) b.le16(static_cast<std::uint8_t>(c));
  b.fill(64 - 2 * font.face.size()).fill(228);
  return emf.record(18, {1}).record(82, b).record(37, {9});
}

/// A text record of codes at 2, 2 with the given options.
Emf& write(Emf& emf, std::initializer_list<std::uint32_t> codes, std::uint32_t options = 0) {
  const auto count = static_cast<std::uint32_t>(codes.size());
  Builder b =
      Builder().fill(16).le32(1).le32(bits(1)).le32(bits(1)).le32(2).le32(2).le32(count).le32(76).le32(
          options);
  b.fill(16).le32(0);
  for (const std::uint32_t code : codes) b.le16(code);
  return emf.record(84, b);
}

/// One character alone.
Bitmap letter(const FontRecord& record, std::uint32_t code) {
  Emf emf;
  return write(font(emf, record), {code}).play();
}

TEST(MetafileGlyphs, AreAsHighAndWideAsTheirFontSays) {
  const auto written = [](int height, int width) {
    Emf emf;
    return write(font(emf, {"Arial", height, width}), {'H'}, 0).play();
  };
  EXPECT_EQ(inkIn(written(-8, 0), 0, 14, 40, 30), 0);
  EXPECT_GT(inkIn(written(-24, 0), 0, 14, 40, 30), 10);
  EXPECT_EQ(inkIn(written(-24, 5), 12, 0, 40, 30), 0);
  EXPECT_GT(inkIn(written(-24, 25), 20, 0, 40, 30), 10);
}

TEST(MetafileGlyphs, AreFoundByGlyphIndexInKnownFonts) {
  const auto written = [](const std::string& face, std::uint32_t code, std::uint32_t options) {
    Emf emf;
    return write(font(emf, {face, -16}), {code}, options).play();
  };
  constexpr std::uint32_t kGlyphs = 0x10;
  EXPECT_TRUE(isPicture(written("Arial", 'H' - 29, kGlyphs), written("Arial", 'H', 0)));
  // Of unknown fonts only the position is known: a box is drawn, and nothing for a space.
  const Bitmap box = written("Nothing", 'H' - 29, kGlyphs);
  EXPECT_GT(inkIn(box, 0, 0, 20, 25), 10);
  EXPECT_FALSE(isPicture(box, written("Nothing", 'H', 0)));
  EXPECT_EQ(inkIn(written("Nothing", 3, kGlyphs), 0, 0, 40, 30), 0);
}

TEST(MetafileGlyphs, SmallTextRecordsHoldBytesOrUtf16) {
  Emf longer, small, wide;
  const Bitmap wanted = write(longer.record(18, {1}), {'H', 'i'}, 0).play();
  const auto shortRecord = [](std::uint32_t options) {
    return Builder().le32(2).le32(2).le32(2).le32(options).le32(1).le32(bits(1)).le32(bits(1));
  };
  EXPECT_TRUE(isPicture(small.record(18, {1}).record(108, shortRecord(0x300).text("Hi")).play(), wanted));
  EXPECT_TRUE(
      isPicture(wide.record(18, {1}).record(108, shortRecord(0x100).le16('H').le16('i')).play(), wanted));
}

TEST(MetafileGlyphs, AreClippedToTheirBoxOnRequest) {
  const auto written = [](std::uint32_t options) {
    Emf emf;
    Builder b =
        Builder().fill(16).le32(1).le32(bits(1)).le32(bits(1)).le32(2).le32(2).le32(2).le32(76).le32(options);
    b.le32(0).le32(0).le32(8).le32(30).le32(0).le16('H').le16('H');
    return font(emf, {"Arial", -12}).record(84, b).play();
  };
  EXPECT_GT(inkIn(written(0), 9, 0, 40, 30), 5);
  EXPECT_EQ(inkIn(written(4), 9, 0, 40, 30), 0);
  EXPECT_GT(inkIn(written(4), 0, 0, 8, 30), 5);
}

TEST(MetafileGlyphs, OfTheFontsOwnAverageWidthAreUnscaled) {
  // DejaVu Sans has an average character width of 1038 units at 2048 units per em: a record with that width
  // asks for unscaled glyphs. The window of 5120 x 3840 units has 128 units per pixel.
  const auto written = [](int width) {
    Emf emf;
    emf.record(17, {8}).record(9, {5120, 3840}).record(11, {40, 30});
    font(emf, {"DejaVu Sans", -2048, width}).record(22, {0});
    const Builder text =
        Builder().fill(16).le32(1).le32(0).le32(0).le32(256).le32(256).le32(2).le32(76).le32(0);
    return emf.record(84, Builder(text).fill(16).le32(0).le16('H').le16('n')).play();
  };
  EXPECT_TRUE(isPicture(written(1038), written(0), 64));
  EXPECT_FALSE(isPicture(written(1265), written(0), 64)) << "a fifth wider";
}

/// Letters in a font of units of which 128 are a pixel and 2048 an em of 16 pixels, at 2, 2.
Bitmap fine(const std::string& face, int height, int width, std::initializer_list<std::uint32_t> codes,
            int charset = 0) {
  Emf emf;
  emf.record(17, {8}).record(9, {5120, 3840}).record(11, {40, 30});
  font(emf, {face, height, width, 0, charset}).record(22, {0});
  Builder text = Builder().fill(16).le32(1).le32(0).le32(0).le32(256).le32(256);
  text.le32(static_cast<std::uint32_t>(codes.size())).le32(76).le32(0).fill(16).le32(0);
  for (const std::uint32_t code : codes) text.le16(code);
  return emf.record(84, text).play();
}

/// The lowest row with ink.
int bottomOf(const Bitmap& bitmap) {
  int y = bitmap.height() - 1;
  while (y > 0 && inkIn(bitmap, 0, y, bitmap.width(), y + 1) == 0) --y;
  return y;
}

TEST(MetafileGlyphs, HangFromTheTopOfTheCellOfTheFaceThatWasAskedFor) {
  // The cell of Arial reaches 0.905 em above the baseline, that of Times 0.891, that of Courier 0.833,
  // whether these are installed or others are drawn; that of DejaVu Sans 0.928. An em is 24 pixels here.
  for (const auto& [face, ascent] : {std::pair{"Arial", 0.905},
                                     {"Times New Roman", 0.891},
                                     {"Courier New", 0.833},
                                     {"DejaVu Sans", 0.928}})
    EXPECT_NEAR(bottomOf(fine(face, -3072, 0, {'H'})), 2 + 24 * ascent - 1, 1) << face;
}

TEST(MetafileGlyphs, OfAPositiveHeightFillTheirCell) {
  // 1.117 em of Arial, 1.107 of Times, 1.133 of Courier, 1.164 of DejaVu Sans.
  for (const auto& [face, height] :
       {std::pair{"Arial", 2288}, {"Times New Roman", 2267}, {"Courier New", 2320}, {"DejaVu Sans", 2384}})
    EXPECT_TRUE(isPicture(fine(face, height, 0, {'H', 'n'}), fine(face, -2048, 0, {'H', 'n'}), 32)) << face;
}

TEST(MetafileGlyphs, OfSignFacesAreAsWideAsTheirFontSays) {
  // The mean of the widths of Symbol is 0.586 em, 1200 units.
  constexpr int kSymbolCharset = 2;
  const auto symbol = [](int width) { return fine("Symbol", -2048, width, {'D'}, kSymbolCharset); };
  EXPECT_TRUE(isPicture(symbol(1200), symbol(0), 32));
  EXPECT_FALSE(isPicture(symbol(1500), symbol(0), 32));
  // A disc is about as wide as the other signs of Wingdings.
  const auto disc = [](int width) { return fine("Wingdings", -2048, width, {'l'}, kSymbolCharset); };
  EXPECT_EQ(inkIn(disc(900), 13, 0, 40, 30), 0);
  EXPECT_GT(inkIn(disc(2700), 13, 0, 40, 30), 10);
}

TEST(MetafileGlyphs, TurnTheOtherWayOnAPageMirroredInOneAxis) {
  // Text from the center: 900 is a quarter turn counterclockwise.
  const auto written = [](bool mirrorX, bool mirrorY, int escapement) {
    Emf emf;
    emf.record(17, {8}).record(9, {40, 30});
    emf.record(11, {number(mirrorX ? -40 : 40), number(mirrorY ? -30 : 30)});
    emf.record(12, {mirrorX ? 40U : 0U, mirrorY ? 30U : 0U});
    font(emf, {"DejaVu Sans", -6, 0, escapement});
    const Builder text = Builder().fill(16).le32(1).le32(0).le32(0).le32(20).le32(15).le32(3).le32(76);
    return emf.record(84, Builder(text).le32(0).fill(16).le32(0).le16('H').le16('H').le16('H').fill(2))
        .play();
  };
  for (const auto& [mirrorX, mirrorY] :
       {std::pair{false, false}, {true, false}, {false, true}, {true, true}}) {
    const bool one = mirrorX != mirrorY;
    const Bitmap up = written(mirrorX, mirrorY, one ? 2700 : 900);
    EXPECT_GT(inkIn(up, 0, 0, 40, 14), 10) << mirrorX << mirrorY;
    EXPECT_EQ(inkIn(up, 0, 16, 40, 30), 0) << mirrorX << mirrorY;
    const Bitmap down = written(mirrorX, mirrorY, one ? 900 : 2700);
    EXPECT_GT(inkIn(down, 0, 16, 40, 30), 10) << mirrorX << mirrorY;
    EXPECT_EQ(inkIn(down, 0, 0, 40, 14), 0) << mirrorX << mirrorY;
  }
}

TEST(MetafileGlyphs, IgnoreTheLastAdvance) {
  const auto written = [](int advance, int last) {
    Emf emf;
    const Builder text = Builder().fill(16).le32(1).le32(0).le32(0).le32(2).le32(2).le32(2).le32(76).le32(0);
    return font(emf, {"DejaVu Sans", -16})
        .record(84,
                Builder(text).fill(16).le32(80).le16('H').le16('H').le32(number(advance)).le32(number(last)))
        .play();
  };
  EXPECT_TRUE(isPicture(written(16, 1), written(16, 16)));
  EXPECT_FALSE(isPicture(written(8, 16), written(16, 16))) << "the first one's advance counts";
}

TEST(MetafileGlyphs, OfSymbolFontsAreTheirUnicodeCharacters) {
  constexpr int kSymbolCharset = 2;
  const auto sign = [](const std::string& face, std::uint32_t code) {
    return letter({face, -16, 0, 0, kSymbolCharset}, code);
  };
  const auto text = [](const std::string& face, std::uint32_t code) { return letter({face}, code); };
  EXPECT_TRUE(isPicture(sign("Symbol", 'D'), text("Times New Roman", 0x394))) << "Delta";
  EXPECT_TRUE(isPicture(sign("SYMBOL", '-'), text("Times New Roman", 0x2212))) << "minus";
  EXPECT_TRUE(isPicture(sign("Symbol", 0xF061), text("Times New Roman", 0x3B1))) << "alpha, from F000 on";
  EXPECT_TRUE(isPicture(sign("WingDings", 0xFC), text("sans-serif", 0x2713))) << "check mark";
  EXPECT_TRUE(isPicture(sign("Wingdings 2", 'P'), text("sans-serif", 0x2713)));
  EXPECT_TRUE(isPicture(sign("Wingdings 3", 'p'), text("sans-serif", 0x25B2))) << "triangle";
  EXPECT_TRUE(isPicture(sign("Webdings", 'n'), text("sans-serif", 0x25CF))) << "disc";
}

TEST(MetafileGlyphs, OfUnknownSymbolFontsAreBoxes) {
  constexpr int kSymbolCharset = 2;
  for (const std::string face : {"Wingdings 2", "Webdings", "Nobodys Signs"}) {
    const Bitmap box = letter({face, -16, 0, 0, kSymbolCharset}, 'A');
    EXPECT_GT(inkIn(box, 0, 0, 20, 25), 10) << face;
    EXPECT_FALSE(isPicture(box, letter({"sans-serif"}, 'A'))) << face;
    EXPECT_TRUE(isPicture(letter({face, -16, 0, 0, kSymbolCharset}, 'B'), box)) << face;
    EXPECT_EQ(inkIn(letter({face, -16, 0, 0, kSymbolCharset}, ' '), 0, 0, 40, 30), 0) << face;
  }
}

TEST(MetafileGlyphs, MissingInTheFontComeFromAnother) {
  // A large disc and an empty hexagon, which DejaVu Serif lacks and DejaVu Sans has. The usual glyph
  // for a missing character is an outline for both.
  constexpr std::uint32_t kDisc = 0x2B24, kHexagon = 0x2B21;
  const auto centre = [](std::uint32_t code) {
    const Bitmap drawn = letter({"DejaVu Serif", -24}, code);
    EXPECT_GT(inkIn(drawn, 0, 0, 40, 30), 20);
    int left = 40, right = 0, top = 30, bottom = 0;
    for (int y = 0; y < 30; ++y) {
      for (int x = 0; x < 40; ++x) {
        if (drawn.at(x, y).a < 100) continue;
        left = std::min(left, x), right = std::max(right, x), top = std::min(top, y),
        bottom = std::max(bottom, y);
      }
    }
    return static_cast<int>(drawn.at((left + right) / 2, (top + bottom) / 2).a);
  };
  EXPECT_EQ(centre(kDisc), 255);
  EXPECT_LT(centre(kHexagon), 100);
}

TEST(MetafileGlyphs, ThatNoFaceHasAreBoxes) {
  // A code of the planes for private use, and a glyph whose letter is not known.
  constexpr std::uint32_t kGlyphs = 0x10;
  const auto written = [](std::initializer_list<std::uint32_t> codes, std::uint32_t options) {
    Emf emf;
    return write(font(emf, {"Arial", -16}), codes, options).play();
  };
  const Bitmap box = written({500}, kGlyphs);
  EXPECT_GT(inkIn(box, 0, 0, 20, 25), 10);
  EXPECT_TRUE(isPicture(written({0xDBA1, 0xDE34}, 0), box));
}

/// A plain Windows metafile of 40 x 30 pixels.
Wmf page() { return Wmf().record(0x020B, {0, 0}).record(0x020C, {30, 40}); }

Bitmap played(const Wmf& wmf) { return decode(wmf.file(false)).bitmap; }

TEST(MetafileGlyphs, AreReadInTheCodePageOfTheFont) {
  const auto written = [](int charset, int code) {
    const Builder font = Builder()
                             .le16(static_cast<std::uint32_t>(-16 & 0xFFFF))
                             .fill(8)
                             .le16(0)
                             .u8({0, charset, 0, 0, 0, 0})
                             .text("Arial")
                             .u8({0});
    return played(page()
                      .record(0x0102, {1})
                      .record(0x02FB, font)
                      .record(0x012D, {0})
                      .record(0x0521, Builder().le16(1).u8({code, 0}).le16(2).le16(2)));
  };
  // 0xC6 is U+0416 in the Cyrillic code page and U+0396, which looks like a Z, in the Greek one.
  EXPECT_FALSE(isPicture(written(204, 0xC6), written(0, 0xC6)));
  EXPECT_FALSE(isPicture(written(204, 0xC6), written(161, 0xC6)));
  EXPECT_TRUE(isPicture(written(161, 0xC6), written(0, 'Z'), 160)) << "much alike";
}

TEST(MetafileGlyphs, OfSymbolFontsInWindowsMetafilesAreUnicodeToo) {
  const auto written = [](const std::string& face, int charset, int code) {
    const Builder font = Builder()
                             .le16(static_cast<std::uint32_t>(-16 & 0xFFFF))
                             .fill(8)
                             .le16(0)
                             .u8({0, charset, 0, 0, 0, 0})
                             .text(face)
                             .fill(2 - face.size() % 2);
    return played(page()
                      .record(0x0102, {1})
                      .record(0x02FB, font)
                      .record(0x012D, {0})
                      .record(0x0521, Builder().le16(1).u8({code, 0}).le16(2).le16(2)));
  };
  EXPECT_TRUE(isPicture(written("Symbol", 2, 'S'), written("Times New Roman", 161, 0xD3))) << "Sigma";
}

}  // namespace
}  // namespace kestrel::engine
