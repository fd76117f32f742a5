#include <png.h>
#include <zlib.h>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <memory>
#include <opencv2/imgcodecs.hpp>
#include <stdexcept>
#include <string>

#include "Comparison.h"
#include "DeflatePeers.h"
#include "Peers.h"
#include "TestPicture.h"
#include "engine/codecs/Codecs.h"

// Reading and writing PNG files of 24 megapixels. What is read was written by libpng as it does by itself, as
// other programs write. What is written stands beside the settings of others that make no smaller files:
// those whose file is smaller than ours by more than a twentieth are named, with their size, and not
// compared.

namespace kestrel::bench {
namespace {

constexpr int kWidth = 6000, kHeight = 4000;
constexpr double kBar = 0.6;

using Picture = engine::Bitmap (*)(std::int32_t width, std::int32_t height, bool alpha);

void require(bool equal, const char* what) {
  if (!equal) throw std::runtime_error(std::string(what) + " gave another picture.");
}

/// The same picture as the peers want it, and the file that is read.
struct Subject {
  Subject(Picture make, bool withAlpha) : alpha(withAlpha), bitmap(make(kWidth, kHeight, withAlpha)) {
    rgba = pixelsOf(bitmap, 4);
    packed = alpha ? rgba : pixelsOf(bitmap, 3);
    mat = cv::Mat(kHeight, kWidth, alpha ? CV_8UC4 : CV_8UC3);
    std::memcpy(mat.data, packed.data(), packed.size());
    const std::size_t samples = alpha ? 4 : 3;
    for (std::size_t i = 0; i < packed.size(); i += samples) std::swap(mat.data[i], mat.data[i + 2]);
  }

  bool alpha;
  engine::Bitmap bitmap;
  Bytes rgba, packed;
  cv::Mat mat;
};

std::vector<Contender> readers(Picture make, bool alpha) {
  cv::setNumThreads(1);
  const auto subject = std::make_shared<Subject>(make, alpha);
  const auto file = std::make_shared<Bytes>(writeWithLibpng(subject->rgba, kWidth, kHeight, alpha, {}));
  const auto buffer = std::make_shared<Bytes>();
  const auto mat = std::make_shared<cv::Mat>();

  require(pixelsOf(engine::decode(*file).bitmap, 4) == subject->rgba, "Our own reader");
  readWithLibpng(*file, *buffer);
  require(*buffer == subject->rgba, "libpng");
  readWithSpng(*file, true, *buffer);
  require(*buffer == subject->rgba, "libspng");
  cv::imdecode(*file, cv::IMREAD_UNCHANGED, mat.get());
  require(std::memcmp(mat->data, subject->mat.data, subject->packed.size()) == 0, "OpenCV");

  const std::string size = megabytes(file->size()) + " file of libpng's";
  return {{"KestrelLib2", "to RGBA; checks CRC and Adler; a bitmap of its own; " + size,
           [file] { engine::decode(*file); }},
          {"libpng", "to RGBA; checks CRC and Adler; kept buffer",
           [file, buffer] { readWithLibpng(*file, *buffer); }},
          {"libspng", "to RGBA; checks CRC and Adler; kept buffer",
           [file, buffer] { readWithSpng(*file, true, *buffer); }},
          {"libspng, unchecked", "to RGBA; no checksum is looked at; kept buffer",
           [file, buffer] { readWithSpng(*file, false, *buffer); }},
          {"OpenCV",
           alpha ? "to BGRA; checks CRC and Adler; kept buffer"
                 : "to BGR, a quarter less to write; checks CRC and Adler; kept buffer",
           [file, mat] { cv::imdecode(*file, cv::IMREAD_UNCHANGED, mat.get()); }}};
}

struct Writer {
  std::string name;
  std::function<Bytes()> write;
};

std::vector<Writer> otherWriters(const std::shared_ptr<Subject>& subject) {
  const auto libpng = [subject](const LibpngSettings& settings) {
    return [subject, settings] {
      return writeWithLibpng(subject->rgba, kWidth, kHeight, subject->alpha, settings);
    };
  };
  const auto spng = [subject](int level) {
    return
        [subject, level] { return writeWithSpng(subject->packed, kWidth, kHeight, subject->alpha, level); };
  };
  const auto openCv = [subject](const std::vector<int>& parameters) {
    return [subject, parameters] {
      Bytes file;
      cv::imencode(".png", subject->mat, file, parameters);
      return file;
    };
  };
  return {{"libpng level 1", libpng({1, -1, -1})},
          {"libpng level 1, no filter", libpng({1, PNG_FILTER_NONE, -1})},
          {"libpng level 1, filter up", libpng({1, PNG_FILTER_UP, -1})},
          {"libpng level 1, filter up, Huffman only", libpng({1, PNG_FILTER_UP, Z_HUFFMAN_ONLY})},
          {"libpng level 3", libpng({3, -1, -1})},
          {"libpng level 3, filter up", libpng({3, PNG_FILTER_UP, -1})},
          {"libspng level 1", spng(1)},
          {"libspng level 3", spng(3)},
          {"OpenCV level 1, runs only", openCv({})},
          {"OpenCV level 3", openCv({cv::IMWRITE_PNG_COMPRESSION, 3})}};
}

Bytes ourFile(const engine::Bitmap& bitmap) { return engine::encode(bitmap, {}, engine::format::kPng); }

/// Slow as it is it takes part in no race; its size tells how small files can get.
std::string libpngByItself(const Subject& subject) {
  const auto start = std::chrono::steady_clock::now();
  const std::size_t size = writeWithLibpng(subject.rgba, kWidth, kHeight, subject.alpha, {6, -1, -1}).size();
  const auto time = std::chrono::steady_clock::now() - start;
  return "libpng level 6 makes " + megabytes(size) + " in " + milliseconds(time);
}

std::vector<Contender> writers(Picture make, bool alpha) {
  cv::setNumThreads(1);
  const auto subject = std::make_shared<Subject>(make, alpha);
  const Bytes file = ourFile(subject->bitmap);
  Bytes pixels;
  readWithLibpng(file, pixels);
  require(pixels == subject->rgba, "Our own writer");

  std::vector<Contender> others;
  std::string smaller;
  for (const Writer& writer : otherWriters(subject)) {
    const Bytes theirs = writer.write();
    readWithSpng(theirs, true, pixels);
    require(pixels == subject->rgba, writer.name.c_str());
    if (static_cast<double>(file.size()) > 1.05 * static_cast<double>(theirs.size())) {
      smaller += "; not compared, for smaller files: " + writer.name + ", " + megabytes(theirs.size());
    } else {
      others.push_back({writer.name, megabytes(theirs.size()), [write = writer.write] { write(); }});
    }
  }
  std::vector<Contender> contenders{{"KestrelLib2",
                                     megabytes(file.size()) + "; the best of all filters for each row; " +
                                         libpngByItself(*subject) + smaller,
                                     [subject] { ourFile(subject->bitmap); }}};
  std::ranges::move(others, std::back_inserter(contenders));
  return contenders;
}

}  // namespace

std::vector<Comparison> comparisons() {
  struct Kind {
    const char* name;
    Picture make;
    bool alpha;
  };
  constexpr Kind kKinds[] = {{"photograph, RGB", photograph, false},
                             {"photograph, RGBA", photograph, true},
                             {"graphics, RGB", graphics, false},
                             {"graphics, RGBA", graphics, true}};
  std::vector<Comparison> rows;
  for (const auto& [name, make, alpha] : kKinds)
    rows.push_back({std::string("PNG decode, ") + name, kBar, [=] { return readers(make, alpha); }});
  for (const auto& [name, make, alpha] : kKinds)
    rows.push_back({std::string("PNG encode, ") + name, kBar, [=] { return writers(make, alpha); }});
  for (const auto& [name, make, alpha] : kKinds)
    rows.push_back({std::string("deflate of filtered rows, ") + name, 1,
                    [=] { return packers(ourFile(make(kWidth, kHeight, alpha))); }});
  return rows;
}

}  // namespace kestrel::bench
