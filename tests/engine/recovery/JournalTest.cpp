// The journals of editors in one folder.

#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>
#include <fstream>

#include "RecoveryBench.h"

namespace kestrel::engine {
namespace {

class RecoveryJournals : public RecoveryBench {};

TEST_F(RecoveryJournals, KeepTheLatestStateWithItsNameAndFormat) {
  RecoveryFolder folder = store();
  {
    const auto journal = folder.CreateJournal();
    PictureOfView first = viewOf(test::gradient(30, 20));
    PictureOfView second = viewOf(test::noise(30, 20, false));
    journal->Keep(first, "/a.jpg");
    journal->Finish();
    journal->Keep(second, "/b.jpg");
    journal->Finish();
    EXPECT_EQ(files(), 1U);
  }
  const auto kept = folder.Kept();
  ASSERT_EQ(kept.size(), 1U);
  EXPECT_EQ(kept[0].Filename, "/b.jpg");
  EXPECT_EQ(kept[0].Width, 30);
  EXPECT_EQ(kept[0].Height, 20);
  EXPECT_FALSE(kept[0].Damaged);
  const auto taken = folder.Take(kept[0]);
  EXPECT_TRUE(samePixels(*taken, test::noise(30, 20, false)));
  EXPECT_EQ(taken->Picture().Image()->Format(), 1);
}

TEST_F(RecoveryJournals, DoNotCopyThePictureAndLetItChangeAtOnce) {
  RecoveryFolder folder = store();
  {
    const auto journal = folder.CreateJournal();
    PictureOfView picture = viewOf(test::gradient(800, 600));
    journal->Keep(picture, "a");
    picture.loadedPicture().paint(std::vector<Rectangle>{{0, 0, 800, 600}}, kNoUndo, [](Pixels pixels) {
      for (std::int32_t y = 0; y < pixels.height; ++y) {
        std::fill_n(pixels.row(y), static_cast<std::size_t>(pixels.width) * 4, std::uint8_t{9});
      }
    });
    journal->Finish();
  }
  EXPECT_TRUE(samePixels(*folder.Take(folder.Kept().at(0)), test::gradient(800, 600)));
}

TEST_F(RecoveryJournals, HaveAFileEachThatIsNotOfferedWhileTheyLive) {
  RecoveryFolder folder = store();
  auto one = folder.CreateJournal();
  auto two = folder.CreateJournal();
  PictureOfView picture = viewOf(test::gradient(8, 8));
  for (auto* journal : {one.get(), two.get()}) {
    journal->Keep(picture, journal == one.get() ? "one" : "two");
    journal->Finish();
  }
  EXPECT_EQ(files(), 2U);
  EXPECT_TRUE(folder.Kept().empty());
  one.reset();
  ASSERT_EQ(folder.Kept().size(), 1U);
  EXPECT_EQ(folder.Kept()[0].Filename, "one");
}

TEST_F(RecoveryJournals, LeaveNothingAfterADiscard) {
  RecoveryFolder folder = store();
  const auto journal = folder.CreateJournal();
  PictureOfView picture = viewOf(test::gradient(2000, 2000));
  journal->Keep(picture, "a");
  journal->Discard();
  journal->Finish();
  EXPECT_EQ(files(), 0U);
  journal->Keep(picture, "a");
  journal->Finish();
  EXPECT_EQ(files(), 1U);
  journal->Discard();
  journal->Finish();
  EXPECT_EQ(files(), 0U);
  EXPECT_EQ(journal->Failure(), "");
}

TEST_F(RecoveryJournals, LeaveAPictureToBeRecoveredInTheSameProcess) {
  RecoveryFolder folder = store();
  const auto journal = folder.CreateJournal();
  PictureOfView picture = viewOf(test::gradient(8, 8));
  journal->Keep(picture, "left");
  journal->Leave();
  journal->Keep(picture, "next");
  journal->Finish();
  EXPECT_EQ(files(), 2U);
  ASSERT_EQ(folder.Kept().size(), 1U);
  EXPECT_EQ(folder.Kept()[0].Filename, "left");
}

TEST_F(RecoveryJournals, GoOnWithATakenFile) {
  leave(test::gradient(8, 8));
  RecoveryFolder folder = store();
  auto journal = folder.CreateJournal();
  journal->Adopt(folder.Take(folder.Kept().at(0)));
  journal->Finish();
  EXPECT_TRUE(folder.Kept().empty());
  EXPECT_EQ(files(), 1U);
  PictureOfView picture = viewOf(test::gradient(9, 9));
  journal->Keep(picture, "b");
  journal->Finish();
  EXPECT_EQ(files(), 1U);
  journal.reset();
  EXPECT_EQ(folder.Kept().at(0).Width, 9);
}

TEST_F(RecoveryJournals, APictureIsTakenOnceAndGivenBack) {
  leave(test::gradient(8, 8));
  RecoveryFolder folder = store();
  const KeptPicture kept = folder.Kept().at(0);
  {
    const auto taken = folder.Take(kept);
    EXPECT_TRUE(folder.Kept().empty());
    EXPECT_EQ(test::errorOf([&] { folder.Take(kept); }), 75) << "in use";
    EXPECT_EQ(test::errorOf([&] { folder.Delete(kept); }), 75);
  }
  ASSERT_EQ(folder.Kept().size(), 1U);
  folder.Delete(kept);
  EXPECT_EQ(files(), 0U);
  EXPECT_EQ(test::errorOf([&] { folder.Take(kept); }), 53) << "gone";
}

TEST_F(RecoveryJournals, AreListedLatestFirst) {
  for (const char* name : {"old", "middle", "new"}) leave(test::gradient(8, 8), name);
  RecoveryFolder folder = store();
  int age = 3;
  for (const char* name : {"old", "middle", "new"}) {
    for (const KeptPicture& kept : folder.Kept()) {
      if (kept.Filename != name) continue;
      std::filesystem::last_write_time(
          folder_ / kept.Id, std::filesystem::file_time_type::clock::now() - std::chrono::hours(age--));
    }
  }
  std::string order;
  for (const KeptPicture& kept : folder.Kept()) order += kept.Filename + " ";
  EXPECT_EQ(order, "new middle old ");
}

TEST_F(RecoveryJournals, ADamagedFileIsListedAsSuchAndRefusedAndCanBeDeleted) {
  leave(test::noise(40, 40, false));
  const auto whole = std::filesystem::file_size(onlyFile());
  RecoveryFolder folder = store();

  std::filesystem::resize_file(onlyFile(), whole - 1);
  ASSERT_EQ(folder.Kept().size(), 1U);
  EXPECT_FALSE(folder.Kept()[0].Damaged) << "its beginning is whole";
  std::string sentence;
  try {
    folder.Take(folder.Kept()[0]);
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.Number(), 481);
    sentence = error.Description();
  }
  EXPECT_EQ(sentence, "The file that keeps the picture for recovery is damaged.");

  std::filesystem::resize_file(onlyFile(), 5);
  ASSERT_EQ(folder.Kept().size(), 1U);
  EXPECT_TRUE(folder.Kept()[0].Damaged);
  EXPECT_EQ(test::errorOf([&] { folder.Take(folder.Kept()[0]); }), 481);
  std::filesystem::resize_file(onlyFile(), 0);
  EXPECT_TRUE(folder.Kept().at(0).Damaged);
  folder.Delete(folder.Kept()[0]);
  EXPECT_EQ(files(), 0U);
}

TEST_F(RecoveryJournals, OtherFilesInTheFolderAreLeftAlone) {
  leave(test::gradient(8, 8));
  std::ofstream(folder_ / "note.txt") << "mine";
  std::filesystem::create_directory(folder_ / "folder.journal");
  RecoveryFolder folder = store();
  EXPECT_EQ(folder.Kept().size(), 1U);
  leave(test::gradient(8, 8), "b", {.leftPictures = 1});
  EXPECT_TRUE(std::filesystem::exists(folder_ / "note.txt"));
  EXPECT_TRUE(std::filesystem::exists(folder_ / "folder.journal"));
}

TEST_F(RecoveryJournals, OnlyTheUserCanReadThem) {
  leave(test::gradient(8, 8));
  struct stat status {};
  ASSERT_EQ(stat(folder_.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0700U);
  ASSERT_EQ(stat(onlyFile().c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0600U);
}

TEST_F(RecoveryJournals, AreBoundedInNumberAndBytesAndKeepTheLatest) {
  for (int i = 0; i < 6; ++i) leave(test::noise(50, 50, false), std::to_string(i), {.leftPictures = 3});
  // The one just written has an owner when the others are counted.
  EXPECT_EQ(store().Kept().size(), 4U);
  EXPECT_EQ(store().Kept()[0].Filename, "5");
  leave(test::noise(50, 50, false), "6", {.leftBytes = 1});
  EXPECT_EQ(store().Kept().size(), 2U);
  EXPECT_EQ(store().Kept()[0].Filename, "6");
}

TEST_F(RecoveryJournals, APictureBeyondTheLimitIsNotKeptAndThatIsReported) {
  RecoveryFolder folder = store({.snapshotBytes = 1 << 10});
  const auto journal = folder.CreateJournal();
  PictureOfView picture = viewOf(test::noise(50, 50, false));
  journal->Keep(picture, "a");
  journal->Finish();
  EXPECT_EQ(journal->Failure(), "It needs more than 0 MB on the disk.");
  EXPECT_EQ(files(), 0U);
}

/// Limits the size of files while it lives: simulates a full disk.
class FullDisk {
 public:
  FullDisk() : handler_(std::signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit limit{4096, before_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  FullDisk(const FullDisk&) = delete;
  FullDisk& operator=(const FullDisk&) = delete;
  ~FullDisk() {
    setrlimit(RLIMIT_FSIZE, &before_);
    std::signal(SIGXFSZ, handler_);
  }

 private:
  rlimit before_{};
  void (*handler_)(int);
};

TEST_F(RecoveryJournals, AFullDiskLeavesThePreviousStateAndIsReported) {
  RecoveryFolder folder = store();
  auto journal = folder.CreateJournal();
  PictureOfView small = viewOf(test::gradient(8, 8));
  PictureOfView large = viewOf(test::noise(100, 100, false));
  journal->Keep(small, "a");
  journal->Finish();
  {
    const FullDisk full;
    journal->Keep(large, "b");
    journal->Finish();
    EXPECT_THAT(journal->Failure(), testing::EndsWith("cannot be written: it is too large for the disk."));
  }
  EXPECT_EQ(files(), 1U);
  journal->Keep(large, "c");
  journal->Finish();
  EXPECT_EQ(journal->Failure(), "");
  journal.reset();
  EXPECT_EQ(folder.Kept().at(0).Filename, "c");
}

TEST_F(RecoveryJournals, EndWithAWholeState) {
  RecoveryFolder folder = store();
  PictureOfView small = viewOf(test::gradient(8, 8));
  PictureOfView large = viewOf(test::noise(3000, 3000, false));
  {
    const auto journal = folder.CreateJournal();
    journal->Keep(small, "small");
    journal->Finish();
    journal->Keep(large, "large");
  }
  ASSERT_EQ(folder.Kept().size(), 1U) << "the previous state or the next one";
  EXPECT_NO_THROW(folder.Take(folder.Kept()[0]));
}

TEST_F(RecoveryJournals, WithoutAPictureNothingIsKept) {
  RecoveryFolder folder = store();
  const auto journal = folder.CreateJournal();
  PictureOfView none(PictureState{});
  EXPECT_EQ(test::errorOf([&] { journal->Keep(none, "a"); }), 91);
  journal->Discard();
  journal->Leave();
  journal->Finish();
  EXPECT_EQ(files(), 0U);
}

}  // namespace
}  // namespace kestrel::engine
