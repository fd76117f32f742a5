#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <chrono>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <map>
#include <set>
#include <string>

#include "OrdinaryUser.h"
#include "ViewTest.h"
#include "engine/codecs/Codecs.h"

namespace kestrel::thumbnails {
namespace {

namespace fs = std::filesystem;
using kestrel::test::OrdinaryUser;
using testing::HasSubstr;

/// A view on a real folder, with real pictures, the engine's decoders and the system's notifications.
class BadInput : public test::ViewTest {
 protected:
  BadInput() {
    std::string name = (fs::temp_directory_path() / "kestrel-view-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("No folder could be made.");
    folder_ = name;
    Services services;
    services.post = calls_.post();
    services.workers = workers_;
    connections_.clear();
    view_ = std::make_unique<test::TestView>(std::move(services));
    view_->layOut({600, 400}, metrics_);
    record();
  }
  ~BadInput() override {
    view_.reset();
    workers_.reset();
    fs::remove_all(folder_);
  }

  void picture(const std::string& name, std::uint8_t shade = 50, std::int32_t side = 200) {
    engine::encodeFile(engine::Bitmap::filled(side, side, {shade, shade, shade, 255}), {},
                       engine::format::kPng, {}, folder_ / "new.tmp");
    // Pictures written within one tick of the file system's clock must differ in their times, too.
    fs::last_write_time(folder_ / "new.tmp", fs::file_time_type::clock::now() - std::chrono::seconds(age_--));
    fs::rename(folder_ / "new.tmp", folder_ / name);
  }
  void file(const std::string& name, const std::string& content) const {
    std::ofstream(folder_ / name, std::ios::binary) << content;
  }
  void openFolder() { open(folder_.string()); }
  std::int32_t find(const std::string& name) {
    for (std::int32_t i = 0; i < view().itemCount(); ++i) {
      if (view().pathOf(i).filename() == name) return i;
    }
    return -1;
  }
  ItemFacts factsOf(const std::string& name) {
    const std::int32_t item = find(name);
    EXPECT_GE(item, 0) << name;
    return item < 0 ? ItemFacts{} : view().factsOf(item);
  }
  std::uint8_t shadeOf(const std::string& name) { return view().pictureOf(find(name)).bitmap.at(0, 0).r; }

  fs::path folder_;
  int age_ = 1000;
};

TEST_F(BadInput, PipesDevicesAndSocketsAreLeftOut) {
  picture("good.png");
  ASSERT_EQ(mkfifo((folder_ / "pipe.png").c_str(), 0600), 0);
  fs::create_symlink("/dev/zero", folder_ / "endless.png");
  const int socketHandle = socket(AF_UNIX, SOCK_STREAM, 0);
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  std::strncpy(address.sun_path, (folder_ / "socket.png").c_str(), sizeof(address.sun_path) - 1);
  ASSERT_EQ(bind(socketHandle, reinterpret_cast<const sockaddr*>(&address), sizeof(address)), 0);
  fs::create_directory(folder_ / "folder.png");
  openFolder();
  close(socketHandle);
  EXPECT_EQ(view().itemCount(), 1);
  EXPECT_EQ(factsOf("good.png").state, ItemState::kShown);
}

TEST_F(BadInput, LinksInALoopOrToNowhereAreLeftOut) {
  picture("good.png");
  fs::create_symlink("a.png", folder_ / "b.png");
  fs::create_symlink("b.png", folder_ / "a.png");
  fs::create_symlink("missing.png", folder_ / "c.png");
  fs::create_symlink("good.png", folder_ / "link.png");
  openFolder();
  EXPECT_EQ(view().itemCount(), 2);
  EXPECT_EQ(factsOf("link.png").state, ItemState::kShown);
}

TEST_F(BadInput, NamesMayHaveAnyBytes) {
  const std::set<std::string> names = {"line\nbreak.png", "no utf-8 \xFF\xFE.png",
                                       std::string(251, 'n') + ".png", " blank .png", "-rf.png"};
  for (const std::string& name : names) picture(name);
  openFolder();
  ASSERT_EQ(view().itemCount(), 5);
  for (const std::string& name : names) {
    EXPECT_EQ(factsOf(name).state, ItemState::kShown) << name;
    EXPECT_EQ(factsOf(name).filename, folder_.string() + "/" + name);
  }
  EXPECT_EQ(factsOf("line\nbreak.png").label, "line\uFFFDbreak.png");
}

std::string bytes(std::initializer_list<int> values) {
  std::string text;
  for (const int value : values) text += static_cast<char>(value);
  return text;
}

/// An entry of a TIFF directory: a 32-bit number.
std::string tiffEntry(int tag, std::uint32_t value) {
  std::string entry = bytes({tag & 255, tag >> 8, 4, 0, 1, 0, 0, 0});
  for (int i = 0; i < 4; ++i) entry += static_cast<char>(value >> 8 * i & 255);
  return entry;
}

/// Files of about 1 kB whose headers claim 65,536 by 65,536 pixels, or the most that the format can state.
std::map<std::string, std::string> liars() {
  const std::string rest(1000, '\x11');
  std::map<std::string, std::string> files;
  files["liar.bmp"] =
      "BM" + bytes({0, 0, 0, 0, 0, 0, 0, 0, 54, 0, 0, 0, 40, 0, 0, 0, 0, 0, 1, 0, 0, 0, 1, 0, 1, 0, 24, 0}) +
      std::string(24, '\0') + rest;
  files["liar.png"] = "\x89PNG\r\n\x1A\n" + bytes({0, 0, 0, 13}) + "IHDR" +
                      bytes({0, 1, 0, 0, 0, 1, 0, 0, 8, 2, 0, 0, 0, 0xE3, 0xE6, 0xA7, 0xB4, 0, 0, 3, 0xE8}) +
                      "IDAT" + rest;
  files["liar.gif"] =
      "GIF89a" + bytes({255, 255, 255, 255, 0, 0, 0, 0x2C, 0, 0, 0, 0, 255, 255, 255, 255, 0, 8}) + rest;
  files["liar.jpg"] = bytes({0xFF, 0xD8, 0xFF, 0xC0, 0, 11, 8, 255, 255, 255, 255, 1, 1,
                             0x11, 0,    0xFF, 0xDA, 0, 8,  1, 1,   0,   0,   63,  0}) +
                      rest;
  files["liar.tga"] = bytes({0, 0, 2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 255, 255, 255, 255, 24, 0}) + rest;
  files["liar.tif"] = "II" + bytes({42, 0, 8, 0, 0, 0, 5, 0}) + tiffEntry(256, 65536) +
                      tiffEntry(257, 65536) + tiffEntry(262, 1) + tiffEntry(273, 80) + tiffEntry(279, 900) +
                      bytes({0, 0, 0, 0}) + rest;
  files["liar.psd"] =
      "8BPS" + bytes({0, 1, 0, 0, 0, 0, 0, 0, 0, 3, 0, 1, 0, 0, 0, 1, 0, 0, 0, 8, 0, 3}) + rest;
  files["liar.pcx"] = bytes({10, 5, 1, 8, 0, 0, 0, 0, 255, 255, 255, 255}) + std::string(53, '\0') +
                      bytes({3, 255, 255}) + rest;
  return files;
}

TEST_F(BadInput, APictureThatLiesAboutItsSizeIsBroken) {
  picture("good.png");
  for (const auto& [name, content] : liars()) file(name, content);
  openFolder();
  for (const auto& [name, content] : liars()) {
    EXPECT_EQ(factsOf(name).state, ItemState::kBroken) << name;
    // The JPEG library has a limit of its own, 65,500.
    EXPECT_THAT(factsOf(name).notice, testing::ContainsRegex("655(00|35|36)")) << name;
  }
  EXPECT_EQ(factsOf("good.png").state, ItemState::kShown);
  EXPECT_EQ(events_.back(), "complete");
}

TEST_F(BadInput, ATruncatedPictureShowsItsPartWithANotice) {
  engine::Bitmap noise = engine::Bitmap::uninitialized(300, 300);
  const engine::Pixels pixels = noise.writable();
  std::uint32_t state = 1;
  for (std::int32_t y = 0; y < 300; ++y) {
    for (std::int32_t x = 0; x < 4 * 300; ++x) {
      state = state * 1664525 + 1013904223;
      pixels.row(y)[x] = x % 4 == 3 ? 255 : static_cast<std::uint8_t>(state >> 24);
    }
  }
  engine::encodeFile(noise, {}, engine::format::kJpg, {}, folder_ / "part.jpg");
  fs::resize_file(folder_ / "part.jpg", fs::file_size(folder_ / "part.jpg") / 2);
  openFolder();
  EXPECT_EQ(factsOf("part.jpg").state, ItemState::kShown);
  EXPECT_FALSE(factsOf("part.jpg").notice.empty());
  EXPECT_FALSE(view().pictureOf(0).bitmap.empty());
}

TEST_F(BadInput, FilesThatAreNoPicturesSayWhy) {
  file("empty.jpg", "");
  file("text.jpg", "This is no picture.");
  picture("good.png");
  openFolder();
  EXPECT_EQ(factsOf("empty.jpg").notice, "The file is empty.");
  EXPECT_THAT(factsOf("text.jpg").notice, HasSubstr("not a JPEG image"));
  EXPECT_EQ(factsOf("good.png").state, ItemState::kShown);
}

TEST_F(BadInput, APictureUnderTheExtensionOfAnotherFormatIsShown) {
  picture("really-png.jpg");
  openFolder();
  EXPECT_EQ(factsOf("really-png.jpg").state, ItemState::kShown);
  EXPECT_EQ(factsOf("really-png.jpg").pictureSize, (Size{200, 200}));
}

TEST_F(BadInput, AFileThatMayNotBeReadSaysSo) {
  picture("secret.png");
  fs::permissions(folder_ / "secret.png", fs::perms::none);
  {
    const OrdinaryUser user(folder_);
    openFolder();
  }
  EXPECT_THAT(factsOf("secret.png").notice, HasSubstr("permission is denied"));
  fs::permissions(folder_ / "secret.png", fs::perms::owner_all);
  EXPECT_TRUE(runUntil([this] { return factsOf("secret.png").state == ItemState::kShown; }));
}

TEST_F(BadInput, AFolderThatMayNotBeReadSaysSo) {
  const fs::path secret = folder_ / "secret";
  fs::create_directory(secret);
  fs::permissions(secret, fs::perms::none);
  {
    const OrdinaryUser user(folder_);
    open(secret.string());
  }
  fs::permissions(secret, fs::perms::owner_all);
  EXPECT_THAT(view().message(), HasSubstr("permission is denied"));
  EXPECT_EQ(events_.back(), "complete");
}

TEST_F(BadInput, AFolderThatIsNoneSaysSo) {
  open((folder_ / "missing").string());
  EXPECT_THAT(view().message(), HasSubstr("does not exist"));
  file("file.txt", "text");
  open((folder_ / "file.txt").string());
  EXPECT_FALSE(view().message().empty());
  EXPECT_EQ(events_.back(), "complete");
}

TEST_F(BadInput, AFolderThatVanishesIsEmpty) {
  const fs::path inner = folder_ / "inner";
  fs::create_directory(inner);
  picture("a.png");
  fs::rename(folder_ / "a.png", inner / "a.png");
  open(inner.string());
  ASSERT_EQ(view().itemCount(), 1);
  fs::remove_all(inner);
  EXPECT_TRUE(runUntil([this] { return view().itemCount() == 0; }));
  EXPECT_TRUE(runUntil([this] { return !view().message().empty(); }));
}

TEST_F(BadInput, TheViewFollowsTheDisk) {
  picture("a.png", 10);
  openFolder();
  picture("b.png", 20);
  ASSERT_TRUE(runUntil([this] { return view().itemCount() == 2 && view().settled(); }));
  picture("a.png", 30, 210);
  ASSERT_TRUE(runUntil([this] { return shadeOf("a.png") == 30; }));
  fs::rename(folder_ / "b.png", folder_ / "c.png");
  ASSERT_TRUE(runUntil([this] { return find("c.png") == 1 && view().settled(); }));
  EXPECT_EQ(shadeOf("c.png"), 20);
  fs::remove(folder_ / "a.png");
  ASSERT_TRUE(runUntil([this] { return view().itemCount() == 1; }));
}

TEST_F(BadInput, NoThumbnailIsAttributedToAnotherFile) {
  // Each file is replaced several times by pictures of other shades, while it is being read or not. All have
  // the same size and time.
  const fs::file_time_type time = fs::file_time_type::clock::now() - std::chrono::hours(1);
  const auto replace = [&](int file, int shade) {
    const auto gray = static_cast<std::uint8_t>(shade);
    engine::encodeFile(engine::Bitmap::filled(200, 200, {gray, gray, gray, 255}), {}, engine::format::kBmp,
                       {}, folder_ / "new.tmp");
    fs::last_write_time(folder_ / "new.tmp", time);
    fs::rename(folder_ / "new.tmp", folder_ / (std::to_string(file) + ".bmp"));
  };
  workers_ = std::make_shared<Workers>(4);
  Services services;
  services.post = calls_.post();
  services.workers = workers_;
  connections_.clear();
  view_ = std::make_unique<test::TestView>(std::move(services));
  view_->layOut({600, 400}, metrics_);
  for (int i = 0; i < 8; ++i) replace(i, 0);
  view().Folder(folder_.string());
  for (int round = 1; round <= 10; ++round) {
    for (int i = 0; i < 8; ++i) {
      replace(i, 10 * round + i);
      calls_.runPending();
    }
  }
  const auto showsTheLast = [this](int file) {
    const engine::Bitmap shown = view().pictureOf(file).bitmap;
    return !shown.empty() && shown.at(0, 0).r == 100 + file;
  };
  EXPECT_TRUE(runUntil([&] {
    if (view().itemCount() != 8 || !view().settled()) return false;
    for (int i = 0; i < 8; ++i) {
      if (!showsTheLast(i)) return false;
    }
    return true;
  }));
  for (int i = 0; i < view().itemCount(); ++i) EXPECT_TRUE(showsTheLast(i)) << i;
}

}  // namespace
}  // namespace kestrel::thumbnails
