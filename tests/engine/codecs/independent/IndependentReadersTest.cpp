#include <cmath>
#include <map>
#include <sstream>

#include "IndependentPrograms.h"

// Other programs decode the files that the codecs write to the saved pixels.

namespace kestrel::engine {
namespace {

using test::isPicture;
using test::onWhite;
using test::Workshop;

/// A picture of few colors.
Bitmap fewColors(int width, int height) {
  return test::pictureOf(width, height, [](int x, int y) {
    const int choice = (x * x + 3 * y) % 7;
    return Pixel{static_cast<std::uint8_t>(choice * 42), static_cast<std::uint8_t>(255 - choice * 30),
                 static_cast<std::uint8_t>(choice % 2 * 255), 255};
  });
}

/// Like a photograph: soft light over areas of different hues, clean edges, a little grain.
Bitmap photograph(int width, int height) {
  std::mt19937 random(11);
  return test::pictureOf(width, height, [&](int x, int y) {
    const double light = 0.55 + 0.45 * std::sin(x * 0.021 + y * 0.013);
    const int area = (x / 61 + 2 * (y / 47)) % 5;
    constexpr int kHues[5][3] = {
        {230, 180, 150}, {90, 140, 220}, {70, 160, 80}, {200, 60, 50}, {240, 220, 90}};
    const auto level = [&](int channel) {
      const double grain = static_cast<double>(random() % 9) - 4;
      return static_cast<std::uint8_t>(std::clamp(kHues[area][channel] * light + grain, 0.0, 255.0));
    };
    const std::uint8_t r = level(0), g = level(1), b = level(2);
    return Pixel{r, g, b, 255};
  });
}

/// One pixel, all widths around a multiple of 8, very wide and very high; opaque and not, of many colors and
/// of few.
std::map<std::string, Bitmap> pictures() {
  std::map<std::string, Bitmap> result;
  const auto add = [&](int width, int height) {
    const std::string size = std::to_string(width) + "x" + std::to_string(height);
    result["opaque" + size] = test::noise(width, height, true);
    result["mixed" + size] = test::noise(width, height, false);
    result["clear" + size] = Bitmap::filled(width, height, {10, 200, 30, 0});
    result["few" + size] = fewColors(width, height);
  };
  for (int width = 1; width <= 17; ++width) add(width, 1 + width * 7 % 11);
  add(1, 1);
  add(3000, 2);
  add(2, 300);
  return result;
}

/// Every picture in a format, written into the workshop under its name.
std::vector<std::string> writeAll(const Workshop& workshop, const std::map<std::string, Bitmap>& pictures,
                                  const std::string& extension, std::int32_t code) {
  std::vector<std::string> names;
  for (const auto& [name, bitmap] : pictures) {
    names.push_back(name + "." + extension);
    workshop.put(names.back(), encode(bitmap, {}, code, {90}));
  }
  return names;
}

TEST(IndependentReaders, PillowDecodesLosslessFormatsExactly) {
  const std::map<std::int32_t, std::string> formats{
      {format::kPng, "png"}, {format::kTif, "tif"}, {format::kTga, "tga"}, {format::kBmp, "bmp"}};
  const auto all = pictures();
  const Workshop workshop;
  std::vector<std::string> names;
  for (const auto& [code, extension] : formats) {
    const auto written = writeAll(workshop, all, extension, code);
    names.insert(names.end(), written.begin(), written.end());
  }
  workshop.readWithPillow(names);
  for (const auto& [code, extension] : formats) {
    for (const auto& [name, bitmap] : all) {
      EXPECT_TRUE(isPicture(workshop.netpbmPicture(name + "." + extension + ".pam"), bitmap))
          << name << "." << extension;
    }
  }
}

TEST(IndependentReaders, StbDecodesLosslessFormatsExactly) {
  for (const std::int32_t code : {format::kPng, format::kTga, format::kBmp}) {
    for (const auto& [name, bitmap] : pictures()) {
      EXPECT_TRUE(isPicture(test::readWithStb(encode(bitmap, {}, code)), bitmap))
          << name << " in format " << code;
    }
  }
}

/// Compares with a color tolerance of 255 / alpha: the more transparent a pixel, the less its color counts.
testing::AssertionResult looksLike(const Bitmap& got, const Bitmap& wanted) {
  for (int y = 0; y < wanted.height(); ++y) {
    for (int x = 0; x < wanted.width(); ++x) {
      const Pixel p = got.at(x, y), q = wanted.at(x, y);
      const int most = std::max({std::abs(p.r - q.r), std::abs(p.g - q.g), std::abs(p.b - q.b)});
      if (p.a != q.a || most * q.a > 255) {
        return testing::AssertionFailure()
               << "at " << x << ", " << y << ": " << test::text(p) << " instead of " << test::text(q);
      }
    }
  }
  return testing::AssertionSuccess();
}

TEST(IndependentReaders, APsdFileHoldsAMergedPictureAndALayerIfItHasAlpha) {
  const auto all = pictures();
  const Workshop workshop;
  const std::vector<std::string> names = writeAll(workshop, all, "psd", format::kPsd);
  workshop.readWithPillow(names);
  std::vector<std::string> lines;
  for (const auto& [name, bitmap] : all) {
    const bool opaque = name.starts_with("opaque") || name.starts_with("few");
    lines.push_back("convert '" + name + ".psd[" + (opaque ? "0" : "1") + "]' -depth 8 " + name + ".pam");
  }
  workshop.run(lines);
  for (const auto& item : all) {
    const auto& name = item.first;
    const Bitmap& bitmap = item.second;
    EXPECT_TRUE(isPicture(workshop.netpbmPicture(name + ".pam"), bitmap))
        << name << " as ImageMagick reads its layer";
    EXPECT_TRUE(looksLike(test::readWithStb(workshop.bytes(name + ".psd")), bitmap))
        << name << " as stb reads it";
    // Pillow returns the merged picture unchanged.
    const Bitmap flat = onWhite(bitmap);
    const Bitmap merged = test::pictureOf(bitmap.width(), bitmap.height(), [&](int x, int y) {
      const Pixel p = flat.at(x, y);
      return Pixel{p.r, p.g, p.b, bitmap.at(x, y).a};
    });
    EXPECT_TRUE(isPicture(workshop.netpbmPicture(name + ".psd.pam"), merged))
        << name << " as Pillow reads it";
  }
}

TEST(IndependentReaders, ImageMagickDecodesLosslessFormatsExactly) {
  const std::map<std::int32_t, std::string> formats{
      {format::kTga, "tga"}, {format::kBmp, "bmp"}, {format::kPcx, "pcx"}};
  const auto all = pictures();
  const Workshop workshop;
  std::vector<std::string> lines;
  for (const auto& [code, extension] : formats) {
    writeAll(workshop, all, extension, code);
    lines.push_back("mkdir " + extension + " && mogrify -path " + extension + " -depth 8 -format pam *." +
                    extension);
  }
  workshop.run(lines);
  for (const auto& [code, extension] : formats) {
    for (const auto& [name, bitmap] : all) {
      const Bitmap& wanted = code == format::kPcx ? onWhite(bitmap) : bitmap;
      EXPECT_TRUE(isPicture(workshop.netpbmPicture(extension + "/" + name + ".pam"), wanted))
          << name << "." << extension;
    }
  }
}

/// Clears the color of transparent pixels, in which decoders may differ.
Bitmap withoutHiddenColors(const Bitmap& bitmap) {
  return test::pictureOf(bitmap.width(), bitmap.height(), [&](int x, int y) {
    const Pixel p = bitmap.at(x, y);
    return p.a == 0 ? Pixel{} : p;
  });
}

TEST(IndependentReaders, GifFilesDecodeAsWithOurDecoder) {
  auto all = pictures();
  all["photograph"] = photograph(200, 150);
  const Workshop workshop;
  workshop.readWithPillow(writeAll(workshop, all, "gif", format::kGif));
  for (const auto& [name, bitmap] : all) {
    const auto file = workshop.bytes(name + ".gif");
    const Bitmap ours = withoutHiddenColors(decode(file).bitmap);
    EXPECT_TRUE(isPicture(withoutHiddenColors(workshop.netpbmPicture(name + ".gif.pam")), ours)) << name;
    EXPECT_TRUE(isPicture(withoutHiddenColors(test::readWithStb(file)), ours)) << name;
  }
}

TEST(IndependentReaders, WbmpFilesDecodeAsWithOurDecoder) {
  const auto all = pictures();
  const Workshop workshop;
  std::vector<std::string> lines{"mkdir im && mogrify -path im -depth 8 -format pam *.wbmp"};
  for (const std::string& name : writeAll(workshop, all, "wbmp", format::kWbmp)) {
    lines.push_back("wbmptopbm " + name + " >" + name + ".pbm");
  }
  workshop.run(lines);
  for (const auto& [name, bitmap] : all) {
    const Bitmap ours = decode(workshop.bytes(name + ".wbmp")).bitmap;
    EXPECT_TRUE(isPicture(workshop.netpbmPicture(name + ".wbmp.pbm"), ours)) << name;
    EXPECT_TRUE(isPicture(workshop.netpbmPicture("im/" + name + ".pam"), ours)) << name;
  }
}

TEST(IndependentReaders, JpegFilesDecodeAsWithOurDecoderAndNearTheSource) {
  std::map<std::string, Bitmap> all = pictures();
  for (int width = 1; width <= 17; ++width)
    all["gradient" + std::to_string(width)] = test::gradient(width, 40);
  all["photograph"] = photograph(333, 222);
  const Workshop workshop;
  workshop.readWithPillow(writeAll(workshop, all, "jpg", format::kJpg));
  for (const auto& [name, bitmap] : all) {
    const auto file = workshop.bytes(name + ".jpg");
    const Bitmap ours = decode(file).bitmap;
    const Bitmap pillows = workshop.netpbmPicture(name + ".jpg.pam"), stbs = test::readWithStb(file);
    // The inverse DCT of the libraries may round differently.
    EXPECT_TRUE(isPicture(pillows, ours, 1)) << name;
    EXPECT_TRUE(isPicture(stbs, ours, 3)) << name;
    if (name.starts_with("gradient")) {
      EXPECT_TRUE(isPicture(stbs, bitmap, 10)) << name;
    }
    if (name.starts_with("clear")) {
      EXPECT_TRUE(isPicture(stbs, onWhite(bitmap))) << name;
    }
  }
}

/// Extracts the picture that is embedded in an SVG file made from a metafile, at its position.
constexpr const char* kExtractFromSvg = R"python(
import base64, io, re, sys
from PIL import Image
for name in sys.argv[1:]:
    drawing = open(name + ".svg").read()
    images = re.findall(r"<image[^>]*>", drawing)
    assert len(images) == 1, name
    place = [float(re.search(r'\b%s="([^"]*)"' % key, images[0]).group(1)) for key in ("x", "y", "width", "height")]
    png = base64.b64decode(re.search(r'href="data:image/png;base64,([^"]*)"', images[0]).group(1))
    rgba = Image.open(io.BytesIO(png)).convert("RGBA")
    with open(name + ".place", "w") as file:
        file.write(" ".join(map(str, place)))
    with open(name + ".pam", "wb") as file:
        file.write(b"P7\nWIDTH %d\nHEIGHT %d\nDEPTH 4\nMAXVAL 255\nTUPLTYPE RGB_ALPHA\nENDHDR\n" % rgba.size)
        file.write(rgba.tobytes())
)python";

/// The WMF converter does not start without a font map.
constexpr const char* kFontMap = R"(<?xml version="1.0"?>
<fontmap><fonts><font format="ttf" name="Times" fullname="Times" familyname="Times" weight="Regular"
 metrics="/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf"
 glyphs="/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf"/></fonts></fontmap>)";

TEST(IndependentReaders, MetafilesHoldThePictureAtItsPosition) {
  const auto all = pictures();
  const Workshop workshop;
  const std::string fontMap = kFontMap;
  workshop.put("fonts.xml", {reinterpret_cast<const std::uint8_t*>(fontMap.data()), fontMap.size()});
  const auto emf = writeAll(workshop, all, "emf", format::kEmf);
  const auto wmf = writeAll(workshop, all, "wmf", format::kWmf);
  std::vector<std::string> lines, drawings = emf;
  drawings.insert(drawings.end(), wmf.begin(), wmf.end());
  for (const std::string& name : emf) lines.push_back("emf2svg-conv -i " + name + " -o " + name + ".svg");
  for (const std::string& name : wmf) {
    lines.push_back("wmf2svg --wmf-xtra-fonts --wmf-xtra-fontmap=fonts.xml --inline --maxwidth=3000 -o " +
                    name + ".svg " + name);
  }
  workshop.run(lines);
  workshop.runPython(kExtractFromSvg, drawings);
  for (const auto& [name, bitmap] : all) {
    for (const char* extension : {".emf", ".wmf"}) {
      const std::string file = name + extension;
      EXPECT_TRUE(isPicture(workshop.netpbmPicture(file + ".pam"), onWhite(bitmap))) << file;
      // The EMF converter finds no scale for a picture one pixel wide or high.
      if (file.ends_with(".emf") && std::min(bitmap.width(), bitmap.height()) == 1) continue;
      const auto place = workshop.bytes(file + ".place");
      std::istringstream words(std::string(place.begin(), place.end()));
      double x = -1, y = -1, width = -1, height = -1;
      words >> x >> y >> width >> height;
      EXPECT_EQ(x, 0) << file;
      EXPECT_EQ(y, 0) << file;
      EXPECT_EQ(width, bitmap.width()) << file;
      EXPECT_EQ(height, bitmap.height()) << file;
    }
  }
}

/// Differences between the mean colors of the 8 x 8 blocks of two pictures: the largest and the mean.
struct BlockError {
  double worst = 0, mean = 0;
};

BlockError blockError(const Bitmap& a, const Bitmap& b) {
  constexpr int kSide = 8;
  BlockError result;
  int count = 0;
  for (int top = 0; top + kSide <= a.height(); top += kSide) {
    for (int left = 0; left + kSide <= a.width(); left += kSide) {
      double sums[3] = {};
      for (int y = top; y < top + kSide; ++y) {
        for (int x = left; x < left + kSide; ++x) {
          const Pixel p = a.at(x, y), q = b.at(x, y);
          sums[0] += p.r - q.r;
          sums[1] += p.g - q.g;
          sums[2] += p.b - q.b;
        }
      }
      for (const double sum : sums) {
        const double error = std::abs(sum) / (kSide * kSide);
        result.worst = std::max(result.worst, error);
        result.mean += error;
        ++count;
      }
    }
  }
  result.mean /= count;
  return result;
}

TEST(IndependentReaders, PaletteAndDitheringKeepTheMeanColorOfEveryBlock) {
  struct Case {
    Bitmap bitmap;
    BlockError most;
  };
  const std::map<std::string, Case> all{{"gradient", {test::gradient(256, 256), {10, 0.7}}},
                                        {"photograph", {photograph(320, 240), {1.3, 0.3}}},
                                        {"noise", {test::noise(128, 128, true), {3, 0.7}}}};
  const Workshop workshop;
  std::vector<std::string> lines;
  for (const auto& [name, a] : all) {
    workshop.put(name + ".png", encode(a.bitmap, {}, format::kPng));
    workshop.put(name + ".gif", encode(a.bitmap, {}, format::kGif));
    lines.push_back("convert " + name + ".gif -depth 8 " + name + "-ours.pam");
    lines.push_back("convert " + name + ".png -dither FloydSteinberg -colors 256 -depth 8 " + name +
                    "-theirs.pam");
    lines.push_back("convert " + name + ".png +dither -colors 256 -depth 8 " + name + "-plain.pam");
  }
  workshop.run(lines);
  for (const auto& [name, a] : all) {
    const BlockError ours = blockError(workshop.netpbmPicture(name + "-ours.pam"), a.bitmap);
    const BlockError theirs = blockError(workshop.netpbmPicture(name + "-theirs.pam"), a.bitmap);
    const BlockError plain = blockError(workshop.netpbmPicture(name + "-plain.pam"), a.bitmap);
    EXPECT_LT(ours.worst, a.most.worst) << name;
    EXPECT_LT(ours.mean, a.most.mean) << name;
    EXPECT_LT(ours.mean, theirs.mean) << name;
    // Without dithering even a good palette exceeds the limit.
    EXPECT_GT(plain.mean, a.most.mean) << name;
  }
}

}  // namespace
}  // namespace kestrel::engine
