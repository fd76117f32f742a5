#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "../../browser/Photographs.h"
#include "../jpeg/Process.h"
#include "Comparison.h"

namespace kestrel::bench {
namespace {

namespace fs = std::filesystem;

constexpr int kFiles = 500;
constexpr std::int32_t kWidth = 2048, kHeight = 1536;
constexpr const char* kSide = "256";
constexpr double kMostMegabytes = 250;

/// The photographs, and a folder for what the contenders write.
class Album {
 public:
  Album() {
    fs::create_directory(photographs());
    const auto paths = writePhotographs(photographs(), kWidth, kHeight, kFiles);
    std::ofstream names(list("names")), pairs(list("pairs"));
    for (const fs::path& path : paths) {
      names << path.native() << '\n';
      pairs << path.native() << '\n' << (output() / path.stem()).native() << ".png\n";
    }
  }

  fs::path photographs() const { return folder_.path() / "photographs"; }
  fs::path cacheHome() const { return folder_.path() / "cache"; }
  fs::path cache() const { return cacheHome() / "thumbnails"; }
  fs::path output() const { return folder_.path() / "output"; }
  fs::path list(const char* name) const { return folder_.path() / name; }

  /// Removes what was made before.
  void clear() const {
    fs::remove_all(cacheHome());
    fs::remove_all(output());
    fs::create_directory(output());
  }

 private:
  BenchFolder folder_;
};

/// One for all rows.
std::shared_ptr<const Album> theAlbum() {
  static const auto album = std::make_shared<const Album>();
  return album;
}

double ours(const Album& album) {
  return std::stod(
      runProcess({BROWSER_PROCESS, album.photographs().native(), album.cache().native(), kSide}));
}

/// Two processes at a time, which take `count` arguments each from the list.
void inTwoProcesses(const fs::path& list, const std::string& count, const std::string& program) {
  runProcess({"/bin/sh", "-c",
              "xargs -d '\\n' -P 2 -n " + count + " " + program + " < '" + list.native() + "' > /dev/null"});
}

void vips(const Album& album) {
  inTwoProcesses(album.list("names"), "250",
                 "vipsthumbnail --size 256 --output '" + album.output().native() + "/%s.png'");
}

void gdkPixbuf(const Album& album) {
  inTwoProcesses(album.list("pairs"), "2", "gdk-pixbuf-thumbnailer --size 256");
}

void desktop(const Album& album) {
  runProcess({"/usr/bin/env", "XDG_CACHE_HOME=" + album.cacheHome().native(), "GSETTINGS_BACKEND=memory",
              "/usr/bin/python3", DESKTOP_SCRIPT, album.photographs().native()});
}

std::vector<Contender> cold() {
  const auto album = theAlbum();
  const auto fromNothing = [album](void (*make)(const Album&)) {
    return [=] {
      album->clear();
      make(*album);
    };
  };
  return {{"KestrelLib2", "lists, decodes, and keeps each thumbnail in the shared cache",
           fromNothing([](const Album& photographs) { ours(photographs); })},
          {"vipsthumbnail", "PNG files without a cache's attributes; two processes for 250 files each",
           fromNothing(vips)},
          {"gdk-pixbuf-thumbnailer",
           "PNG files; a process for each file, two at a time, as the desktop starts it",
           fromNothing(gdkPixbuf)}};
}

std::vector<Contender> warm() {
  const auto album = theAlbum();
  album->clear();
  ours(*album);
  return {
      {"KestrelLib2", "lists, checks and decodes each thumbnail of the shared cache", [=] { ours(*album); }},
      {"GNOME desktop library",
       "checks and decodes each thumbnail of the same cache; from Python, in two processes",
       [=] { desktop(*album); }},
      {"vipsthumbnail", "has no cache and makes them again", [=] { vips(*album); }}};
}

std::vector<Contender> memory(bool isCold) {
  const auto album = theAlbum();
  album->clear();
  if (!isCold) ours(*album);
  return {{"KestrelLib2",
           "peak resident memory",
           {},
           [=] {
             if (isCold) album->clear();
             return ours(*album);
           }},
          {"the bound", "limit of the process", {}, [] { return kMostMegabytes; }}};
}

}  // namespace

std::vector<Comparison> comparisons() {
  const std::string operation = "500 JPEG files of 3 megapixels to 256-pixel thumbnails, ";
  std::vector<Comparison> rows{{operation + "cold cache", 1, cold},
                               {operation + "warm cache", 1, warm},
                               {operation + "cold cache, memory", 1, [] { return memory(true); }, "MB"},
                               {operation + "warm cache, memory", 1, [] { return memory(false); }, "MB"}};
  for (Comparison& row : rows) row.cores = 2;
  return rows;
}

}  // namespace kestrel::bench
