#include <gmock/gmock.h>

#include <cstdio>
#include <cstdlib>
#include <initializer_list>
#include <sstream>

#include "CacheTest.h"

namespace kestrel::thumbnails {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

constexpr const char* kNames[] = {"normal", "large", "x-large", "xx-large"};

const std::vector<std::string> kFileNames{"photo.jpg",
                                          "my photo.JPG",
                                          "two\nlines.jpg",
                                          "caf\xC3\xA9.jpg",
                                          "caf\xE9\xFF.jpg",
                                          "50%41.jpg",
                                          "a;b?c#d&e='f'[g]{h}~!.jpg",
                                          std::string(255, 'n')};

class OtherImplementation : public CacheTest {
 protected:
  using Command = std::vector<std::string>;

  /// The answers of the other implementation, with the same cache.
  std::vector<std::string> ask(const std::vector<Command>& commands) const {
    std::string script;
    for (const Command& command : commands) {
      for (std::size_t i = 0; i < command.size(); ++i)
        script += (i > 0 ? "\t" : "") + (i > 0 ? quoted(command[i]) : command[i]);
      script += '\n';
    }
    write(folder_ / "script", script);
    const std::string line = "HOME='" + folder_.path().native() + "' XDG_CACHE_HOME='" +
                             root_.parent_path().native() + "' GSETTINGS_BACKEND=memory /usr/bin/python3 " +
                             KESTREL_PEER + " < '" + (folder_ / "script").native() + "' > '" +
                             (folder_ / "answers").native() + "'";
    EXPECT_EQ(std::system(line.c_str()), 0) << "python3-gi and gir1.2-gnomedesktop-3.0 are needed";
    std::vector<std::string> answers;
    std::istringstream lines(contentOf(folder_ / "answers"));
    for (std::string answer; std::getline(lines, answer);) answers.push_back(answer);
    EXPECT_EQ(answers.size(), commands.size());
    answers.resize(commands.size());
    return answers;
  }

  std::string askOne(const Command& command) const { return ask({command}).front(); }

 private:
  static std::string quoted(const std::string& bytes) {
    std::string text;
    for (const char c : bytes) {
      char hex[4];
      std::snprintf(hex, sizeof hex, "%%%02X", static_cast<unsigned>(static_cast<unsigned char>(c)));
      text += hex;
    }
    return text;
  }
};

TEST_F(OtherImplementation, HasTheSameUris) {
  std::vector<Command> commands;
  std::vector<std::string> expected;
  for (int byte = 1; byte < 256; ++byte) {
    const std::string path = std::string("/folder/a") + static_cast<char>(byte) + "b";
    commands.push_back({"uri", path});
    expected.push_back(uriOf(path));
  }
  for (const std::string path : {"/a/../b", "/a//b/./c.jpg", "/../a", "/a/b/../../c"}) {
    commands.push_back({"uri", path});
    expected.push_back(uriOf(path));
  }
  EXPECT_EQ(ask(commands), expected);
}

TEST_F(OtherImplementation, FindsOurThumbnails) {
  std::vector<Command> commands;
  std::vector<std::string> expected;
  for (const std::string& name : kFileNames) {
    const FileVersion photo = file(name);
    for (std::size_t i = 0; i < std::size(kNames); ++i) {
      const std::int32_t side = kStoredSides[i];
      cache_.put(photo, side, picture(side, side / 2), {4000, 2000});
      commands.push_back({"lookup", photo.path.native(), kNames[i]});
      expected.push_back(entryOf(photo, kNames[i]).native());
    }
  }
  EXPECT_EQ(ask(commands), expected);
}

TEST_F(OtherImplementation, ReadsOurAttributes) {
  const FileVersion photo = file("my photo.jpg", "12345");
  cache_.put(photo, 128, picture(128, 96), {4000, 3000});
  const std::string texts = askOne({"texts", entryOf(photo, "normal").native()});
  EXPECT_THAT(texts, StartsWith("128x96 rgba "));
  EXPECT_THAT(texts, HasSubstr("tEXt::Thumb::URI=" + uriOf(photo.path)));
  EXPECT_THAT(texts, HasSubstr("tEXt::Thumb::MTime=" + std::to_string(photo.modified / 1'000'000'000)));
  EXPECT_THAT(texts, HasSubstr("tEXt::Thumb::Size=5"));
  EXPECT_THAT(texts, HasSubstr("tEXt::Thumb::Image::Width=4000"));
  EXPECT_THAT(texts, HasSubstr("tEXt::Thumb::Image::Height=3000"));
}

TEST_F(OtherImplementation, AgreesThatAChangedFileHasNoThumbnail) {
  const FileVersion photo = file("photo.jpg");
  cache_.put(photo, 128, picture(128, 96), {4000, 3000});
  fs::last_write_time(photo.path, fs::last_write_time(photo.path) - std::chrono::seconds(5));
  EXPECT_EQ(askOne({"lookup", photo.path.native(), "normal"}), "none");
  EXPECT_EQ(stateOf(versionOf(photo.path)), State::kMissing);
}

TEST_F(OtherImplementation, DoesNotTakeOurFailuresForThumbnails) {
  const FileVersion broken = file("broken.jpg");
  cache_.putFailed(broken, "reason");
  EXPECT_THAT(ask({{"lookup", broken.path.native(), "normal"}, {"lookup", broken.path.native(), "large"}}),
              ElementsAre("none", "none"));
}

TEST_F(OtherImplementation, KeepsThumbnailsThatWeUse) {
  std::vector<Command> commands;
  for (const std::string& name : kFileNames) {
    const std::string path = file(name).path.native();
    commands.push_back({"save", path, "normal", "128", "96"});
    commands.push_back({"save", path, "large", "192", "256"});
  }
  EXPECT_THAT(ask(commands), testing::Each("saved"));
  for (const std::string& name : kFileNames) {
    const FileVersion photo = versionOf(folder_ / "pictures" / name);
    EXPECT_TRUE(samePixels(cache_.get(photo, 128, StoredDetail::kBitmap).bitmap, picture(128, 96))) << name;
    EXPECT_TRUE(samePixels(cache_.get(photo, 256, StoredDetail::kBitmap).bitmap, picture(192, 256))) << name;
    FileVersion changed = photo;
    changed.modified += 1'000'000'000;
    EXPECT_EQ(stateOf(changed), State::kMissing) << name;
  }
}

TEST_F(OtherImplementation, ReplacesOurOutdatedThumbnailAndWeItsOwn) {
  FileVersion photo = file("photo.jpg");
  cache_.put({photo.path, photo.modified - 7'000'000'000, photo.size}, 128, picture(128, 96, 9),
             {4000, 3000});
  EXPECT_EQ(askOne({"save", photo.path.native(), "normal", "128", "96"}), "saved");
  EXPECT_TRUE(samePixels(cache_.get(photo, 128, StoredDetail::kBitmap).bitmap, picture(128, 96)));

  fs::last_write_time(photo.path, fs::last_write_time(photo.path) - std::chrono::seconds(5));
  photo = versionOf(photo.path);
  cache_.put(photo, 128, picture(128, 64), {4000, 2000});
  EXPECT_EQ(askOne({"lookup", photo.path.native(), "normal"}), entryOf(photo, "normal").native());
}

}  // namespace
}  // namespace kestrel::thumbnails
