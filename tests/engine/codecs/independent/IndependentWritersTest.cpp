#include <map>

#include "IndependentPrograms.h"

// The codecs decode the files of other programs as those programs do.

namespace kestrel::engine {
namespace {

using test::isPicture;
using test::Workshop;

/// The decoder whose result is expected; `source` is the file from which it was converted without loss.
enum class Reference { magick, pillow, both, stb, source };

/// A file that another program writes.
struct File {
  std::string name;
  std::string command;  ///< writes the file
  Reference reference = Reference::both;
  int tolerance = 0;
  std::string source = {};  ///< converted from this file
};

File madeOf(const std::string& source, const std::string& name, const std::string& command) {
  return {name, command, Reference::source, 0, source};
}

class IndependentWriters : public testing::Test {
 protected:
  /// The sources of all files, PNG: RGB, RGBA, 13 colors, gray, bilevel and a smooth gradient.
  IndependentWriters() {
    constexpr int kWidth = 61, kHeight = 43;
    std::mt19937 random(17);
    const auto put = [&](const std::string& name, const std::function<Pixel(int x, int y)>& pixel) {
      workshop_.put(name, encode(test::pictureOf(kWidth, kHeight, pixel), {}, format::kPng));
    };
    const auto wave = [&](int x, int y, int step) {
      return static_cast<std::uint8_t>((x * step + y * (11 - step) + static_cast<int>(random() % 20)) % 256);
    };
    put("rgb.png", [&](int x, int y) { return Pixel{wave(x, y, 3), wave(x, y, 5), wave(x, y, 2), 255}; });
    put("alpha.png", [&](int x, int y) {
      return Pixel{wave(x, y, 3), wave(x, y, 5), wave(x, y, 2), static_cast<std::uint8_t>(55 + x * 200 / 60)};
    });
    put("few.png", [&](int x, int y) {
      const int i = (x / 3 + y / 2) % 13;
      return Pixel{static_cast<std::uint8_t>(i * 19), static_cast<std::uint8_t>(250 - i * 17),
                   static_cast<std::uint8_t>(i * i), 255};
    });
    put("gray.png", [&](int x, int y) {
      const std::uint8_t v = wave(x, y, 4);
      return Pixel{v, v, v, 255};
    });
    put("bilevel.png", [&](int, int) {
      const std::uint8_t v = random() % 3 == 0 ? 0 : 255;
      return Pixel{v, v, v, 255};
    });
    put("smooth.png", [&](int x, int y) {
      return Pixel{static_cast<std::uint8_t>(x * 4), static_cast<std::uint8_t>(y * 5),
                   static_cast<std::uint8_t>(255 - x * 2 - y), 255};
    });
  }

  /// Has all files written and decoded by the other programs, and compares with our decoder.
  void check(const std::vector<File>& files) {
    std::vector<std::string> writing, reading, forPillow;
    for (const File& file : files) {
      writing.push_back(file.command);
      if (file.reference == Reference::magick || file.reference == Reference::both) {
        // 16 bits, because the program truncates where we round to 8.
        reading.push_back("convert '" + file.name + "[0]' -auto-orient -colorspace sRGB -depth 16 im-" +
                          file.name + ".pam");
      }
      if (file.reference == Reference::pillow || file.reference == Reference::both)
        forPillow.push_back(file.name);
    }
    workshop_.run(writing);
    workshop_.run(reading);
    workshop_.readWithPillow(forPillow);
    for (const File& file : files) compare(file);
  }

  Bitmap read(const std::string& name) const { return decode(workshop_.bytes(name)).bitmap; }

  Workshop workshop_;

 private:
  void compare(const File& file) const {
    SCOPED_TRACE(file.command);
    Decoded decoded;
    std::string reason;
    EXPECT_EQ(test::errorOf([&] { decoded = decode(workshop_.bytes(file.name)); }, &reason), 0) << reason;
    if (decoded.bitmap.empty()) return;
    EXPECT_EQ(decoded.notice, "");
    const auto expect = [&](const Bitmap& wanted, const char* reader) {
      EXPECT_TRUE(isPicture(decoded.bitmap, wanted, file.tolerance)) << reader;
    };
    if (file.reference == Reference::source) expect(read(file.source), "as the source");
    if (file.reference == Reference::stb)
      expect(test::readWithStb(workshop_.bytes(file.name)), "as stb reads it");
    if (file.reference == Reference::magick || file.reference == Reference::both) {
      expect(workshop_.netpbmPicture("im-" + file.name + ".pam"), "as ImageMagick reads it");
    }
    if (file.reference == Reference::pillow || file.reference == Reference::both) {
      expect(workshop_.netpbmPicture(file.name + ".pam"), "as Pillow reads it");
    }
  }
};

TEST_F(IndependentWriters, Bmp) {
  workshop_.run({"for n in rgb few bilevel; do pngtopnm $n.png >$n.ppm; done"});
  check({
      {"b1.bmp", "convert bilevel.png -type bilevel BMP3:b1.bmp"},
      {"b4.bmp", "ppmtobmp -windows -bpp=4 few.ppm >b4.bmp"},
      {"b8.bmp", "convert few.png -type palette BMP3:b8.bmp"},
      {"b8gray.bmp", "convert gray.png BMP3:b8gray.bmp"},
      {"b24.bmp", "convert rgb.png BMP3:b24.bmp"},
      {"b32.bmp", "convert alpha.png BMP:b32.bmp"},
      {"rle8.bmp", "convert few.png -type palette -compress RLE BMP3:rle8.bmp"},
      {"rgb565.bmp", "convert rgb.png -define bmp:subtype=RGB565 BMP:rgb565.bmp", Reference::magick, 1},
      {"rgb555.bmp", "convert rgb.png -define bmp:subtype=RGB555 BMP:rgb555.bmp", Reference::magick, 1},
      {"argb1555.bmp", "convert alpha.png -define bmp:subtype=ARGB1555 BMP:argb1555.bmp", Reference::stb, 1},
      {"argb4444.bmp", "convert alpha.png -define bmp:subtype=ARGB4444 BMP:argb4444.bmp", Reference::stb, 1},
      {"os2-1.bmp", "ppmtobmp -os2 -bpp=1 bilevel.ppm >os2-1.bmp"},
      {"os2-4.bmp", "ppmtobmp -os2 -bpp=4 few.ppm >os2-4.bmp"},
      {"os2-8.bmp", "ppmtobmp -os2 -bpp=8 few.ppm >os2-8.bmp"},
      {"os2-24.bmp", "ppmtobmp -os2 -bpp=24 rgb.ppm >os2-24.bmp"},
      {"magick-os2.bmp", "convert rgb.png BMP2:magick-os2.bmp"},
      {"pillow.bmp",
       "python3 -c 'from PIL import Image; Image.open(\"rgb.png\").convert(\"RGB\").save(\"pillow.bmp\")'"},
  });
}

/// Variants that none of the programs writes: top-down rows, and RLE4.
constexpr const char* kRareBmp = R"python(
import struct
from PIL import Image

def save(name, width, height, bits, compression, palette, data):
    offset = 54 + 4 * len(palette)
    with open(name, "wb") as file:
        file.write(b"BM" + struct.pack("<IHHI", offset + len(data), 0, 0, offset))
        file.write(struct.pack("<IiiHHIIiiII", 40, width, height, 1, bits, compression, len(data), 2835, 2835,
                               len(palette), 0))
        for r, g, b in palette:
            file.write(bytes((b, g, r, 0)))
        file.write(data)

image = Image.open("rgb.png").convert("RGB")
width, height = image.size
rows = []
for y in range(height):
    row = b"".join(bytes(reversed(image.getpixel((x, y)))) for x in range(width))
    rows.append(row + bytes(-len(row) % 4))
save("topdown.bmp", width, -height, 24, 0, [], b"".join(rows))

few = Image.open("few.png").convert("RGB")
palette = sorted(set(few.getdata()))
data = b""
for y in reversed(range(height)):
    indices = [palette.index(few.getpixel((x, y))) for x in range(width)]
    x = 0
    while x < width:
        if x % 2 == 0 and width - x >= 9:
            # Nine literals: five bytes and one of padding.
            nine = indices[x:x + 9] + [0]
            data += bytes((0, 9)) + bytes(nine[i] << 4 | nine[i + 1] for i in range(0, 10, 2)) + b"\0"
            x += 9
        else:
            # A run alternates between two.
            two = indices[x:x + 2] + [0]
            data += bytes((min(2, width - x), two[0] << 4 | two[1]))
            x += 2
    data += bytes((0, 0))
save("rle4.bmp", width, height, 4, 2, palette, data + bytes((0, 1)))
)python";

TEST_F(IndependentWriters, TopDownBmpAndRle4) {
  workshop_.runPython(kRareBmp);
  check({{"topdown.bmp", "test -s topdown.bmp"}, {"rle4.bmp", "test -s rle4.bmp", Reference::magick}});
  check({madeOf("rgb.png", "topdown.bmp", "test -s topdown.bmp"),
         madeOf("few.png", "rle4.bmp", "test -s rle4.bmp")});
}

TEST_F(IndependentWriters, Gif) {
  check({
      {"plain.gif", "convert few.png plain.gif"},
      {"many.gif", "convert rgb.png many.gif"},
      {"two.gif", "convert bilevel.png two.gif"},
      {"interlaced.gif", "convert rgb.png -interlace GIF interlaced.gif"},
      {"clear.gif", "convert alpha.png -channel A -threshold 50% +channel clear.gif", Reference::pillow},
      {"moving.gif", "convert -delay 5 few.png rgb.png gray.png -loop 0 moving.gif"},
      {"placed.gif", "convert few.png -repage 90x70+7+9 placed.gif", Reference::stb},
      {"pillow.gif",
       "python3 -c 'from PIL import Image; a = Image.open(\"few.png\").convert(\"P\"); "
       "a.save(\"pillow.gif\", save_all=True, append_images=[a.rotate(90)], transparency=3, interlace=1)'",
       Reference::pillow},
      {"netpbm.gif", "pngtopnm few.png | pamtogif -interlace >netpbm.gif"},
  });
}

TEST_F(IndependentWriters, Png) {
  check({
      {"png8.png", "convert few.png PNG8:png8.png"},
      {"png24.png", "convert rgb.png PNG24:png24.png"},
      {"png32.png", "convert alpha.png PNG32:png32.png"},
      {"png48.png", "convert smooth.png -blur 0x3 -depth 16 PNG48:png48.png", Reference::magick},
      {"png64.png", "convert alpha.png -depth 16 PNG64:png64.png", Reference::magick},
      {"gray1.png", "convert bilevel.png -type bilevel -depth 1 gray1.png"},
      {"gray2.png", "convert gray.png -colorspace gray -posterize 4 -depth 2 gray2.png"},
      {"gray4.png", "convert gray.png -colorspace gray -posterize 16 -depth 4 gray4.png"},
      {"gray8.png", "convert gray.png -colorspace gray gray8.png"},
      {"gray16.png", "convert gray.png -colorspace gray -blur 0x2 -depth 16 gray16.png", Reference::magick},
      {"grayalpha.png", "convert alpha.png -colorspace gray grayalpha.png"},
      {"adam7.png", "convert alpha.png -interlace PNG adam7.png"},
      {"adam7gray.png", "convert bilevel.png -type bilevel -depth 1 -interlace PNG adam7gray.png"},
      {"netpbm.png", "pngtopnm rgb.png | pnmtopng -interlace -transparent=\"#000000\" >netpbm.png"},
      {"netpbm4.png", "pngtopnm few.png | pnmtopng >netpbm4.png"},
      {"pillow.png",
       "python3 -c 'from PIL import Image; Image.open(\"few.png\").convert(\"P\")"
       ".save(\"pillow.png\", transparency=bytes(range(0, 250, 10)))'"},
  });
}

TEST_F(IndependentWriters, Jpeg) {
  const auto magick = [](const std::string& name, const std::string& options) {
    return File{name, "convert smooth.png -quality 90 " + options + " " + name, Reference::pillow, 1};
  };
  check({
      magick("plain.jpg", ""),
      magick("gray.jpg", "-colorspace gray"),
      magick("cmyk.jpg", "-colorspace CMYK"),
      magick("progressive.jpg", "-interlace JPEG"),
      magick("s420.jpg", "-sampling-factor 4:2:0"),
      magick("s422.jpg", "-sampling-factor 4:2:2"),
      magick("s444.jpg", "-sampling-factor 4:4:4"),
      magick("s411.jpg", "-sampling-factor 4:1:1"),
      magick("s440.jpg", "-sampling-factor 4:4:0"),
      magick("arithmetic.jpg", "-define jpeg:arithmetic-coding=true"),
  });
}

/// A picture in Lab, and its RGB colors by a color library.
constexpr const char* kLabTiff = R"python(
from PIL import Image, ImageCms
srgb, lab = ImageCms.createProfile("sRGB"), ImageCms.createProfile("LAB")
picture = ImageCms.profileToProfile(Image.open("smooth.png").convert("RGB"), srgb, lab, outputMode="LAB")
picture.save("lab50.tif")
ImageCms.profileToProfile(picture, lab, srgb, outputMode="RGB").save("lab50.png")
)python";

TEST_F(IndependentWriters, Tiff) {
  const std::string script = kLabTiff;
  workshop_.put("lab.py", {reinterpret_cast<const std::uint8_t*>(script.data()), script.size()});
  std::vector<File> files{
      {"rgb.tif", "convert rgb.png -compress None rgb.tif"},
      {"rgb16.tif", "convert smooth.png -blur 0x2 -depth 16 rgb16.tif", Reference::magick},
      {"alpha.tif", "convert alpha.png -define tiff:alpha=unassociated alpha.tif"},
      {"associated.tif", "convert alpha.png -define tiff:alpha=associated associated.tif", Reference::magick,
       3},
      {"gray.tif", "convert gray.png -colorspace gray gray.tif"},
      {"gray16.tif", "convert gray.png -colorspace gray -blur 0x2 -depth 16 gray16.tif", Reference::magick},
      {"grayalpha.tif", "convert alpha.png -colorspace gray grayalpha.tif", Reference::magick},
      {"palette.tif", "convert rgb.png -colors 200 -type palette palette.tif", Reference::both, 1},
      {"bilevel.tif", "convert bilevel.png -type bilevel -depth 1 -compress None bilevel.tif"},
      {"cmyk.tif", "convert rgb.png -colorspace CMYK -compress LZW cmyk.tif", Reference::both, 1},
      {"cmyk16.tif", "convert smooth.png -colorspace CMYK -depth 16 cmyk16.tif", Reference::magick, 1},
      {"cmykalpha.tif", "convert alpha.png -colorspace CMYK cmykalpha.tif", Reference::magick, 1},
      {"gray2.tif", "convert gray.png -colorspace gray -posterize 4 -depth 2 gray2.tif"},
      {"gray4.tif", "convert gray.png -colorspace gray -posterize 16 -depth 4 gray4.tif"},
      {"half.tif", "convert smooth.png -define quantum:format=floating-point -depth 16 half.tif",
       Reference::magick},
      {"double.tif", "convert smooth.png -define quantum:format=floating-point -depth 64 double.tif",
       Reference::magick},
      {"sampled.tif", "convert smooth.png -compress JPEG -sampling-factor 4:2:0 sampled.tif",
       Reference::magick, 1},
      // White point D65, in colors well inside both gamuts.
      {"lab.tif", "convert smooth.png +level 40%,90% -colorspace Lab lab.tif", Reference::magick, 8},
      // White point D50.
      {"lab50.tif", "python3 lab.py", Reference::source, 2, "lab50.png"},
      {"float.tif", "convert smooth.png -define quantum:format=floating-point -depth 32 float.tif",
       Reference::magick},
      {"white.tif", "convert gray.png -colorspace gray -define quantum:polarity=min-is-white white.tif"},
      {"palette4.tif", "convert few.png -type palette palette4.tif"},
      {"planes16.tif", "convert smooth.png -blur 0x2 -depth 16 -interlace plane planes16.tif",
       Reference::magick},
      {"ycbcr.tif", "convert smooth.png -colorspace YCbCr -compress None ycbcr.tif", Reference::magick, 2},
      {"pillow.tif",
       "python3 -c 'from PIL import Image; Image.open(\"rgb.png\").convert(\"RGB\").save(\"pillow.tif\", "
       "compression=\"tiff_lzw\")'"},
      {"bare.tif", "python3 -c 'from PIL import Image; Image.open(\"alpha.png\").save(\"bare.tif\")'"},
  };
  const std::map<std::string, std::string> forms{{"packbits", "-c packbits"},
                                                 {"lzw", "-c lzw"},
                                                 {"lzw2", "-c lzw:2 -r 7"},
                                                 {"zip", "-c zip"},
                                                 {"zip2", "-c zip:2"},
                                                 {"lzma", "-c lzma"},
                                                 {"zstd", "-c zstd:2"},
                                                 {"tiles", "-t -w 32 -l 16 -c lzw:2"},
                                                 {"planes", "-p separate"},
                                                 {"planarzip", "-p separate -c zip:2 -r 5"},
                                                 {"planartiles", "-p separate -t -w 16 -l 32 -c packbits"},
                                                 {"big", "-B"},
                                                 {"little", "-L"},
                                                 {"bigtiff", "-8 -B -c lzw"},
                                                 {"littlebigtiff", "-8 -L -t -w 16 -l 16"},
                                                 {"strip", "-r 1000 -c zip"}};
  for (const auto& [name, options] : forms) {
    for (const std::string source : {"rgb", "rgb16", "palette", "cmyk"}) {
      // The program separates planes of 8 bits only, and not those of a palette.
      const bool parts = options.starts_with("-p");
      if (parts && source == "rgb16") continue;
      const std::string file = source + "-" + name + ".tif";
      files.push_back(madeOf(source + ".tif", file, "tiffcp " + options + " " + source + ".tif " + file));
    }
  }
  for (const std::string compression : {"g3", "g3:2d", "g3:fill", "g4", "packbits", "lzw", "zip"}) {
    for (const std::string order : {"", "-f lsb2msb", "-f msb2lsb"}) {
      const std::string file = "bilevel" + std::to_string(files.size()) + ".tif";
      files.push_back(madeOf("bilevel.tif", file,
                             "tiffcp -c " + compression + " " + order + " -r 9 bilevel.tif " + file));
    }
  }
  for (const std::string options : {"-c jpeg:90", "-c jpeg:90:r", "-c jpeg:90 -t -w 32 -l 32"}) {
    const std::string file = "jpeg" + std::to_string(files.size()) + ".tif";
    files.push_back({file, "tiffcp " + options + " rgb.tif " + file, Reference::magick, 1});
  }
  for (int turn = 2; turn <= 8; ++turn) {
    const std::string n = std::to_string(turn), file = "turn" + n + ".tif";
    files.push_back({file, "cp rgb.tif " + file + " && tiffset -s 274 " + n + " " + file, Reference::magick});
  }
  check(files);
}

TEST_F(IndependentWriters, Pcx) {
  check({
      {"b1.pcx", "convert bilevel.png -type bilevel -depth 1 b1.pcx"},
      {"b8.pcx", "convert few.png -type palette b8.pcx"},
      {"gray.pcx", "convert gray.png gray.pcx"},
      {"b24.pcx", "convert rgb.png b24.pcx"},
      {"plain.pcx", "convert rgb.png -compress None plain.pcx", Reference::magick},
      madeOf("bilevel.png", "bits.pcx", "pngtopnm bilevel.png | ppmtopcx >bits.pcx"),
      madeOf("few.png", "planes.pcx", "pngtopnm few.png | ppmtopcx >planes.pcx"),
      madeOf("few.png", "packed.pcx", "pngtopnm few.png | ppmtopcx -packed >packed.pcx"),
      {"netpbm8.pcx", "pngtopnm few.png | ppmtopcx -8bit >netpbm8.pcx"},
      {"netpbm24.pcx", "pngtopnm rgb.png | ppmtopcx -24bit >netpbm24.pcx"},
      {"pillow.pcx",
       "python3 -c 'from PIL import Image; Image.open(\"rgb.png\").convert(\"RGB\").save(\"pillow.pcx\")'"},
  });
}

TEST_F(IndependentWriters, Tga) {
  const auto pillow = [](const std::string& name, const std::string& source, const std::string& mode,
                         const std::string& options) {
    return File{name,
                "python3 -c 'from PIL import Image; Image.open(\"" + source + "\").convert(\"" + mode +
                    "\").save(\"" + name + "\"" + options + ")'",
                Reference::pillow};
  };
  check({
      {"rgb.tga", "convert rgb.png -compress None rgb.tga"},
      {"rle.tga", "convert rgb.png -compress RLE rle.tga"},
      {"alpha.tga", "convert alpha.png -compress None alpha.tga"},
      {"alpharle.tga", "convert alpha.png -compress RLE alpharle.tga"},
      {"palette.tga", "convert few.png -type palette palette.tga"},
      {"gray.tga", "convert gray.png -colorspace gray gray.tga"},
      {"netpbm.tga", "pngtopnm rgb.png | ppmtotga -rgb >netpbm.tga"},
      {"netpbmmap.tga", "pngtopnm few.png | ppmtotga -cmap -norle >netpbmmap.tga"},
      {"netpbmmono.tga", "pngtopnm gray.png | ppmtotga -mono >netpbmmono.tga"},
      pillow("p-rgb.tga", "rgb.png", "RGB", ""),
      pillow("p-top.tga", "rgb.png", "RGB", ", orientation=1"),
      pillow("p-bottom.tga", "rgb.png", "RGB", ", orientation=-1"),
      pillow("p-rgba.tga", "alpha.png", "RGBA", ", compression=\"tga_rle\""),
      pillow("p-la.tga", "alpha.png", "LA", ", compression=\"tga_rle\""),
      pillow("p-l.tga", "gray.png", "L", ", compression=\"tga_rle\", orientation=1"),
      pillow("p-p.tga", "few.png", "P", ", compression=\"tga_rle\""),
      pillow("p-id.tga", "few.png", "P", ", id_section=b\"hello\""),
  });
}

TEST_F(IndependentWriters, Psd) {
  std::vector<File> files;
  for (const std::string compression : {"None", "RLE"}) {
    const std::string end = "-" + compression + ".psd";
    const auto add = [&](const std::string& name, const std::string& command, Reference reference,
                         int tolerance) {
      files.push_back({name + end, "convert " + command + " -compress " + compression + " " + name + end,
                       reference, tolerance});
    };
    add("rgb", "rgb.png", Reference::both, 0);
    add("rgb16", "smooth.png -blur 0x2 -depth 16", Reference::magick, 0);
    add("gray", "gray.png -colorspace gray", Reference::both, 0);
    add("gray16", "gray.png -colorspace gray -blur 0x2 -depth 16", Reference::magick, 0);
    add("cmyk", "rgb.png -colorspace CMYK", Reference::magick, 1);
    add("cmyk16", "smooth.png -colorspace CMYK -depth 16", Reference::magick, 1);
    add("indexed", "few.png -type palette", Reference::pillow, 0);
    add("bilevel", "bilevel.png -type bilevel -depth 1", Reference::magick, 0);
    files.push_back(
        madeOf("alpha.png", "alpha" + end, "convert alpha.png -compress " + compression + " alpha" + end));
  }
  check(files);
}

TEST_F(IndependentWriters, Wbmp) {
  check({
      {"magick.wbmp", "convert bilevel.png -monochrome magick.wbmp", Reference::magick},
      madeOf("bilevel.png", "netpbm.wbmp",
             "pngtopnm bilevel.png | ppmtopgm | pamditherbw -threshold | pamtopnm | pbmtowbmp >netpbm.wbmp"),
  });
}

TEST_F(IndependentWriters, TheFirstTiffPageIsReadAndPreviewsAreNotCounted) {
  workshop_.run({"convert rgb.png a.tif", "convert few.png b.tif", "convert gray.png -resize 50% c.tif",
                 "tiffcp a.tif b.tif c.tif three.tif", "tiffcp -8 -B a.tif b.tif three-big.tif",
                 "tiffcp a.tif c.tif preview.tif", "tiffset -d 1 -s 254 1 preview.tif"});
  const auto pagesOf = [&](const std::string& name) { return decode(workshop_.bytes(name)).stored.pages; };
  EXPECT_EQ(pagesOf("a.tif"), 1);
  EXPECT_EQ(pagesOf("three.tif"), 3);
  EXPECT_EQ(pagesOf("three-big.tif"), 2);
  EXPECT_EQ(pagesOf("preview.tif"), 1);
  const Bitmap first = decode(workshop_.bytes("rgb.png")).bitmap;
  for (const char* name : {"three.tif", "three-big.tif", "preview.tif"}) {
    EXPECT_TRUE(isPicture(decode(workshop_.bytes(name)).bitmap, first)) << name;
  }
}

}  // namespace
}  // namespace kestrel::engine
