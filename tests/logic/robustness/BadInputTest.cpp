// Unreadable files and failed saves: an error text, and nothing is lost.

#include <sys/stat.h>

#include <algorithm>
#include <cstdint>
#include <fstream>

#include "../editor/EditorTest.h"
#include "FailingAllocator.h"

namespace kestrel {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::SizeIs;
using testing::StartsWith;

/// A file of less than 1 kB that claims 65,536 x 65,536 pixels.
std::string absurdBitmap() {
  std::string bytes = {'B', 'M'};
  const auto put = [&bytes](std::uint32_t value, int count) {
    for (int i = 0; i < count; ++i) bytes.push_back(static_cast<char>(value >> (8 * i)));
  };
  put(1000, 4);
  put(0, 4);
  put(54, 4);
  put(40, 4);
  put(65536, 4);
  put(65536, 4);
  put(1, 2);
  put(32, 2);
  for (int i = 0; i < 6; ++i) put(0, 4);
  bytes.resize(1000);
  return bytes;
}

class BadInput : public EditorTest {
 protected:
  /// An editor with an open, changed picture, a selection, and undo steps.
  void startWithWork() {
    file_ = startWithPicture();
    change();
    editor().SetSelection(3, 4, 10, 12);
    before_ = state();
  }

  /// The state that must not change.
  std::vector<std::string> state() {
    std::vector<std::string> facts = {editor().Filename(), std::to_string(editor().Format()),
                                      view().UndoName(), view().RedoName(),
                                      view().Modified() ? "modified" : "saved"};
    for (const std::int32_t number :
         {view().SelectionLeft(), view().SelectionTop(), view().SelectionWidth(), view().SelectionHeight()}) {
      facts.push_back(std::to_string(number));
    }
    CommandItems& recent = command("mnuFileMRU").Items();
    for (std::int32_t i = 1; i <= recent.Count(); ++i) facts.push_back(recent.Item(i).Text);
    const PixelRows rows = editor().Image()->Pixels();
    std::string pixels;
    for (std::int32_t y = 0; y < rows.Height; ++y) {
      const auto* row = reinterpret_cast<const char*>(rows.Data + static_cast<std::size_t>(y) * rows.Stride);
      pixels.append(row, static_cast<std::size_t>(rows.Width) * 4);
    }
    facts.push_back(pixels);
    return facts;
  }

  void expectRefusal(const std::string& file) {
    user().answers(kAnswerOK);
    EXPECT_FALSE(editor().OpenImage(file));
    ASSERT_THAT(user().boxes(), SizeIs(1));
    const headless::User::Box& box = user().boxes()[0];
    EXPECT_THAT(box.text, StartsWith("Unable to open image \"" + file + "\" due to error \""));
    EXPECT_THAT(box.text, EndsWith(".\"."));
    EXPECT_EQ(box.style, kBoxExclamation);
    EXPECT_EQ(box.title, "Open Image");
    EXPECT_EQ(state(), before_);
    EXPECT_EQ(panel("pnlStatus"), "");
  }

  std::string file_;
  std::vector<std::string> before_;
};

TEST_P(BadInput, AMissingFileShowsABoxAndLosesNothing) {
  startWithWork();
  expectRefusal(path("nowhere.png"));
  EXPECT_THAT(user().boxes()[0].text, HasSubstr("does not exist"));
}

TEST_P(BadInput, AnEmptyFileShowsABoxAndLosesNothing) {
  startWithWork();
  write(path("empty.jpg"), "");
  expectRefusal(path("empty.jpg"));
}

TEST_P(BadInput, AFileThatIsNoPictureShowsABoxAndLosesNothing) {
  startWithWork();
  write(path("letter.png"), "Dear friend, this is no picture at all.\n");
  expectRefusal(path("letter.png"));
}

TEST_P(BadInput, AFileTruncatedInItsHeaderShowsABoxAndLosesNothing) {
  startWithWork();
  for (const char* name : {"cut.png", "cut.jpg", "cut.bmp", "cut.gif", "cut.tif"}) {
    const std::int32_t format = std::string(name) == "cut.png"   ? 2
                                : std::string(name) == "cut.jpg" ? 1
                                : std::string(name) == "cut.bmp" ? 6
                                : std::string(name) == "cut.gif" ? 11
                                                                 : 3;
    const std::string whole = contents(makePicture(name, format));
    write(path(name), whole.substr(0, 12));
    expectRefusal(path(name));
    user().forget();
  }
}

TEST_P(BadInput, AnAbsurdSizeIsRefusedWithoutAllocatingIt) {
  startWithWork();
  write(path("huge.bmp"), absurdBitmap());
  expectRefusal(path("huge.bmp"));
}

TEST_P(BadInput, AFolderShowsABoxAndLosesNothing) {
  startWithWork();
  std::filesystem::create_directory(platform().files().host(path("folder.png")));
  expectRefusal(path("folder.png"));
}

TEST_P(BadInput, APipeIsRefusedWithoutWaiting) {
  startWithWork();
  ASSERT_EQ(mkfifo(platform().files().host(path("pipe.png")).c_str(), 0600), 0);
  expectRefusal(path("pipe.png"));
}

TEST_P(BadInput, ADanglingLinkShowsABoxAndLosesNothing) {
  startWithWork();
  std::filesystem::create_symlink("gone.png", platform().files().host(path("link.png")));
  expectRefusal(path("link.png"));
}

TEST_P(BadInput, AWronglyNamedPictureOpensByItsContent) {
  startWithWork();
  const std::string disguised = path("really-a-png.jpg");
  write(disguised, contents(makePicture("real.png", 2)));
  EXPECT_TRUE(editor().OpenImage(disguised));
  EXPECT_EQ(editor().Image()->Format(), 2);
  EXPECT_EQ(editor().Format(), 1);
}

TEST_P(BadInput, ATooLongNameShowsABoxAndTheOldFileStays) {
  startWithWork();
  const std::string old = contents(file_);
  const std::string name = path(std::string(300, 'n') + ".png");
  user().answers(kAnswerOK);
  EXPECT_FALSE(editor().SaveImageAs(name));
  ASSERT_THAT(user().boxes(), SizeIs(1));
  EXPECT_THAT(user().boxes()[0].text, StartsWith("Unable to save image \"" + name + "\" due to error \""));
  EXPECT_EQ(user().boxes()[0].title, "Save Image");
  EXPECT_EQ(state(), before_);
  EXPECT_EQ(contents(file_), old);
}

TEST_P(BadInput, ASaveIntoAnInvalidPlaceShowsABoxAndLeavesNoFile) {
  startWithWork();
  std::filesystem::create_directory(platform().files().host(path("taken.png")));
  const auto entries = [this] {
    const std::filesystem::path folder = platform().files().host(platform().files().scratch());
    return std::distance(std::filesystem::directory_iterator(folder), std::filesystem::directory_iterator());
  };
  const auto count = entries();
  const std::string separator(1, platform().files().separator());
  for (const std::string& name : {path("no-folder" + separator + "a.png"), path("taken.png")}) {
    user().answers(kAnswerOK);
    EXPECT_FALSE(editor().SaveImageAs(name)) << name;
    EXPECT_EQ(state(), before_);
  }
  EXPECT_THAT(user().boxes(), SizeIs(2));
  EXPECT_EQ(entries(), count) << "no half-written file may stay";
}

TEST_P(BadInput, AFailingHandlerOfTheHostResetsTheBusyPointer) {
  start();
  const std::string file = makePicture("a.png", 2);
  connections_.push_back(editor().ImageOpen.Connect(
      [](const std::string&) { throw RuntimeError(err::kInvalidCall, "The host has failed."); }));
  user().answers(kAnswerOK);  // the report
  EXPECT_TRUE(editor().OpenImage(file));
  EXPECT_EQ(platform().FormUtility().pointers().back(), kBusyDefault);
  EXPECT_EQ(panel("pnlStatus"), "");
}

TEST_P(BadInput, FiveHundredOpenedPicturesTakeNoMoreMemoryThanFifty) {
  start();
  const std::string first = makePicture("first.png", 2, 400, 300, 0x00112233);
  const std::string second = makePicture("second.jpg", 1, 300, 400, 0x00445566);
  std::size_t after50 = 0;
  for (int i = 1; i <= 500; ++i) {
    ASSERT_TRUE(editor().OpenImage(i % 2 == 0 ? first : second));
    change();
    user().forget();
    platform().FormUtility().forgetPointers();
    if (i == 50) after50 = test::heldMemory();
  }
  EXPECT_LT(test::heldMemory(), after50 + 450) << "not even a byte per picture";
}

KESTREL_WITH_BOTH_PATHS(BadInput);

}  // namespace
}  // namespace kestrel
