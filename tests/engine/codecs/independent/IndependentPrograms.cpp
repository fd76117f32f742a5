#include "IndependentPrograms.h"

#include <stb/stb_image.h>

#include <cstring>
#include <fstream>
#include <iterator>
#include <memory>
#include <stdexcept>

namespace kestrel::engine::test {
namespace {

namespace fs = std::filesystem;

std::string textOf(const fs::path& path) {
  std::ifstream stream(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

/// The header of a Netpbm file.
struct NetpbmHeader {
  char kind = 0;  ///< '4' to '7'
  int width = 0, height = 0, depth = 1;
  int largest = 1;
};

NetpbmHeader readNetpbmHeader(std::istream& stream) {
  NetpbmHeader header;
  std::string word;
  stream >> word;
  if (word.size() != 2 || word[0] != 'P' || word[1] < '4' || word[1] > '7') {
    throw std::runtime_error("not a Netpbm file: it begins with \"" + word + "\"");
  }
  header.kind = word[1];
  if (header.kind == '7') {
    while (stream >> word && word != "ENDHDR") {
      if (word == "WIDTH") stream >> header.width;
      if (word == "HEIGHT") stream >> header.height;
      if (word == "DEPTH") stream >> header.depth;
      if (word == "MAXVAL") stream >> header.largest;
    }
  } else {
    stream >> header.width >> header.height;
    if (header.kind != '4') stream >> header.largest;
    if (header.kind == '6') header.depth = 3;
  }
  stream.get();
  return header;
}

/// Reads samples in order, scaled to 0 to 255.
class NetpbmSamples {
 public:
  NetpbmSamples(std::istream& stream, const NetpbmHeader& header) : stream_(stream), header_(header) {}

  std::uint8_t next() {
    int value = stream_.get();
    if (header_.largest > 255) value = value << 8 | stream_.get();
    if (!stream_) throw std::runtime_error("the Netpbm file is truncated");
    return static_cast<std::uint8_t>((value * 255 + header_.largest / 2) / header_.largest);
  }

 private:
  std::istream& stream_;
  NetpbmHeader header_;
};

void readBits(std::istream& stream, const Pixels& pixels) {
  for (int y = 0; y < pixels.height; ++y) {
    int byte = 0;
    for (int x = 0; x < pixels.width; ++x) {
      if (x % 8 == 0) byte = stream.get();
      const auto level = static_cast<std::uint8_t>((byte >> (7 - x % 8) & 1) != 0 ? 0 : 255);
      const Pixel pixel{level, level, level, 255};
      std::memcpy(pixels.row(y) + 4 * x, &pixel, 4);
    }
  }
}

}  // namespace

Workshop::Workshop()
    : folder_(fs::temp_directory_path() / ("kestrel_workshop_" + std::to_string(std::random_device{}()))) {
  fs::create_directories(folder_);
}

Workshop::~Workshop() { fs::remove_all(folder_); }

void Workshop::put(const std::string& name, Bytes bytes) const {
  std::ofstream(path(name), std::ios::binary)
      .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

std::vector<std::uint8_t> Workshop::bytes(const std::string& name) const {
  const std::string text = textOf(path(name));
  return {text.begin(), text.end()};
}

void Workshop::run(const std::vector<std::string>& lines) const {
  std::ofstream script(path("run.sh"));
  script << "cd '" << folder_.string() << "'\nPATH=/usr/bin:/bin\nexport OMP_NUM_THREADS=1\n";
  for (const std::string& line : lines) {
    script << "{ " << line << " ; } >log 2>&1 || cat - log <<'LINE'\n$ " << line << "\nLINE\n";
  }
  script.close();
  const std::string command =
      "sh '" + path("run.sh").string() + "' >'" + path("failures").string() + "' 2>&1";
  EXPECT_EQ(std::system(command.c_str()), 0);
  EXPECT_EQ(textOf(path("failures")), "");
}

void Workshop::runPython(const std::string& script, const std::vector<std::string>& arguments) const {
  std::ofstream(path("script.py")) << script;
  std::string line = "python3 script.py";
  for (const std::string& argument : arguments) line += " '" + argument + "'";
  run({line});
}

void Workshop::readWithPillow(const std::vector<std::string>& names) const {
  runPython(R"(
import sys
from PIL import Image
for name in sys.argv[1:]:
    with Image.open(name) as picture:
        rgba = picture.convert("RGBA")
    with open(name + ".pam", "wb") as file:
        file.write(b"P7\nWIDTH %d\nHEIGHT %d\nDEPTH 4\nMAXVAL 255\nTUPLTYPE RGB_ALPHA\nENDHDR\n" % rgba.size)
        file.write(rgba.tobytes())
)",
            names);
}

Bitmap Workshop::netpbmPicture(const std::string& name) const {
  std::ifstream stream(path(name), std::ios::binary);
  const NetpbmHeader header = readNetpbmHeader(stream);
  Bitmap bitmap = Bitmap::filled(header.width, header.height);
  const Pixels pixels = bitmap.writable();
  if (header.kind == '4') {
    readBits(stream, pixels);
    return bitmap;
  }
  NetpbmSamples samples(stream, header);
  for (int y = 0; y < header.height; ++y) {
    std::uint8_t* p = pixels.row(y);
    for (int x = 0; x < header.width; ++x, p += 4) {
      p[0] = samples.next();
      p[1] = header.depth >= 3 ? samples.next() : p[0];
      p[2] = header.depth >= 3 ? samples.next() : p[0];
      p[3] = header.depth % 2 == 0 ? samples.next() : std::uint8_t{255};
    }
  }
  return bitmap;
}

Bitmap readWithStb(Bytes file) {
  int width = 0, height = 0, channels = 0;
  const std::unique_ptr<stbi_uc, decltype(&stbi_image_free)> pixels(
      stbi_load_from_memory(file.data(), static_cast<int>(file.size()), &width, &height, &channels, 4),
      stbi_image_free);
  if (!pixels) throw std::runtime_error(stbi_failure_reason());
  Bitmap bitmap = Bitmap::uninitialized(width, height);
  const Pixels target = bitmap.writable();
  const auto rowBytes = static_cast<std::size_t>(width) * 4;
  for (int y = 0; y < height; ++y) {
    std::memcpy(target.row(y), pixels.get() + static_cast<std::size_t>(y) * rowBytes, rowBytes);
  }
  return bitmap;
}

Bitmap onWhite(const Bitmap& bitmap) {
  return pictureOf(bitmap.width(), bitmap.height(), [&](std::int32_t x, std::int32_t y) {
    const Pixel p = bitmap.at(x, y);
    const auto over = [&](int value) {
      return static_cast<std::uint8_t>((value * p.a + 255 * (255 - p.a) + 127) / 255);
    };
    return Pixel{over(p.r), over(p.g), over(p.b), 255};
  });
}

int largestDifference(const Bitmap& a, const Bitmap& b) {
  EXPECT_EQ(a.width(), b.width());
  EXPECT_EQ(a.height(), b.height());
  int largest = 0;
  for (int y = 0; y < std::min(a.height(), b.height()); ++y) {
    for (int x = 0; x < std::min(a.width(), b.width()); ++x) {
      const Pixel p = a.at(x, y), q = b.at(x, y);
      largest = std::max(
          {largest, std::abs(p.r - q.r), std::abs(p.g - q.g), std::abs(p.b - q.b), std::abs(p.a - q.a)});
    }
  }
  return largest;
}

}  // namespace kestrel::engine::test
