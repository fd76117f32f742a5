#include "platform/os/posix/ChangeCollector.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace kestrel::os {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using Time = ChangeCollector::Time;

constexpr Time kBegin{};

/// "+name", "-name" or "old>name".
std::vector<std::string> textsOf(const std::optional<FolderChanges>& batch) {
  std::vector<std::string> texts;
  if (!batch) return {"no batch"};
  for (const FolderChange& change : batch->changes) {
    const std::string name = change.name.native();
    texts.push_back(change.kind == FolderChange::Kind::kChanged ? "+" + name
                    : change.kind == FolderChange::Kind::kGone  ? "-" + name
                                                                : change.oldName.native() + ">" + name);
  }
  return texts;
}

class ChangeCollectorTest : public testing::Test {
 protected:
  std::vector<std::string> takenAt(Time time) { return textsOf(collector_.take(time)); }

  ChangeCollector collector_;
};

TEST_F(ChangeCollectorTest, HasNothingDueWithoutEvents) {
  EXPECT_FALSE(collector_.due().has_value());
  EXPECT_FALSE(collector_.take(kBegin).has_value());
}

TEST_F(ChangeCollectorTest, ReportsABatchAfter100MillisecondsOfQuiet) {
  collector_.completed("a", kBegin);
  collector_.gone("b", kBegin + 60ms);
  EXPECT_EQ(collector_.due(), kBegin + 160ms);
  EXPECT_FALSE(collector_.take(kBegin + 159ms).has_value());
  EXPECT_THAT(takenAt(kBegin + 160ms), ElementsAre("+a", "-b"));
  EXPECT_FALSE(collector_.due().has_value());
}

TEST_F(ChangeCollectorTest, ReportsAfterHalfASecondWhereThereIsNoQuiet) {
  for (int i = 0; i < 10; ++i) collector_.completed(std::to_string(i), kBegin + i * 50ms);
  EXPECT_EQ(collector_.due(), kBegin + 500ms);
  EXPECT_THAT(takenAt(kBegin + 500ms), testing::SizeIs(10));
}

TEST_F(ChangeCollectorTest, ReportsANewFileWhenItsWriterClosesIt) {
  collector_.created("a", true, kBegin);
  for (int i = 1; i <= 30; ++i) {
    collector_.written("a", kBegin + i * 1s);
    EXPECT_FALSE(collector_.take(kBegin + i * 1s + 900ms).has_value()) << i;
  }
  collector_.completed("a", kBegin + 31s);
  EXPECT_THAT(takenAt(kBegin + 31s + 100ms), ElementsAre("+a"));
}

TEST_F(ChangeCollectorTest, ReportsANewFileWithoutAWriterAfterHalfASecond) {
  collector_.created("a", true, kBegin);
  EXPECT_EQ(collector_.due(), kBegin + 500ms);
  EXPECT_FALSE(collector_.take(kBegin + 500ms).has_value());
  EXPECT_THAT(takenAt(kBegin + 600ms), ElementsAre("+a"));
}

TEST_F(ChangeCollectorTest, ReportsAFileWhoseWriterPausesFor5Seconds) {
  collector_.written("a", kBegin);
  EXPECT_EQ(collector_.due(), kBegin + 5s);
  EXPECT_FALSE(collector_.take(kBegin + 5s).has_value());
  EXPECT_THAT(takenAt(kBegin + 5100ms), ElementsAre("+a"));
}

TEST_F(ChangeCollectorTest, HoldsAFileBackWhoseAttributesChangeWhileItIsWritten) {
  collector_.created("new", true, kBegin);
  collector_.written("new", kBegin);
  collector_.written("known", kBegin);
  for (const char* name : {"new", "known"}) collector_.attributesChanged(name, kBegin + 10ms);
  EXPECT_EQ(collector_.due(), kBegin + 5s) << "when the writers pause";
  EXPECT_FALSE(collector_.take(kBegin + 1s).has_value());
  for (const char* name : {"new", "known"}) collector_.completed(name, kBegin + 2s);
  EXPECT_THAT(takenAt(kBegin + 2100ms), ElementsAre("+new", "+known"));
}

TEST_F(ChangeCollectorTest, ReportsOtherAttributesOfAFinishedFile) {
  collector_.attributesChanged("a", kBegin);
  EXPECT_THAT(takenAt(kBegin + 100ms), ElementsAre("+a"));
}

TEST_F(ChangeCollectorTest, ReportsFoldersAndLinksAtOnce) {
  collector_.created("folder", false, kBegin);
  EXPECT_THAT(takenAt(kBegin + 100ms), ElementsAre("+folder"));
}

TEST_F(ChangeCollectorTest, KeepsQuietAboutATemporaryFile) {
  collector_.created("a.tmp", true, kBegin);
  collector_.written("a.tmp", kBegin);
  collector_.gone("a.tmp", kBegin + 10ms);
  EXPECT_FALSE(collector_.due().has_value());
}

TEST_F(ChangeCollectorTest, ReportsTheFinalNameOfAFileThatWasRenamedWhenFinished) {
  collector_.created("a.part", true, kBegin);
  collector_.written("a.part", kBegin);
  collector_.renamed("a.part", "a.jpg", kBegin + 10ms);
  EXPECT_THAT(takenAt(kBegin + 110ms), ElementsAre("+a.jpg"));
}

TEST_F(ChangeCollectorTest, ReportsARenamingOfAKnownFile) {
  collector_.renamed("a", "b", kBegin);
  EXPECT_THAT(takenAt(kBegin + 100ms), ElementsAre("a>b"));
}

TEST_F(ChangeCollectorTest, HoldsAKnownFileBackThatIsWrittenWhileItIsRenamed) {
  collector_.written("a", kBegin);
  collector_.renamed("a", "b", kBegin + 10ms);
  EXPECT_THAT(takenAt(kBegin + 110ms), ElementsAre("a>b"));
  collector_.completed("b", kBegin + 1s);
  EXPECT_THAT(takenAt(kBegin + 1100ms), ElementsAre("+b"));
}

TEST_F(ChangeCollectorTest, ListsAFileThatChangedSeveralTimesOnce) {
  for (int i = 0; i < 5; ++i) collector_.completed("a", kBegin);
  EXPECT_THAT(takenAt(kBegin + 100ms), ElementsAre("+a"));
}

TEST_F(ChangeCollectorTest, KeepsTheOrderOfChangesOfOneName) {
  collector_.completed("a", kBegin);
  collector_.gone("a", kBegin);
  collector_.completed("a", kBegin);
  collector_.renamed("a", "b", kBegin);
  collector_.completed("a", kBegin);
  collector_.completed("b", kBegin);
  EXPECT_THAT(takenAt(kBegin + 100ms), ElementsAre("+a", "-a", "+a", "a>b", "+a", "+b"));
}

TEST_F(ChangeCollectorTest, ListsAChangeOfTheNextBatchAgain) {
  collector_.completed("a", kBegin);
  EXPECT_THAT(takenAt(kBegin + 100ms), ElementsAre("+a"));
  collector_.completed("a", kBegin + 100ms);
  EXPECT_THAT(takenAt(kBegin + 200ms), ElementsAre("+a"));
}

TEST_F(ChangeCollectorTest, OverflowsAfter10000Changes) {
  for (int i = 0; i < 10'000; ++i) collector_.completed(std::to_string(i), kBegin);
  const auto full = collector_.take(kBegin + 100ms);
  ASSERT_TRUE(full.has_value());
  EXPECT_FALSE(full->overflow);
  EXPECT_EQ(full->changes.size(), 10'000U);

  for (int i = 0; i < 10'001; ++i) collector_.completed(std::to_string(i), kBegin + 1s);
  collector_.completed("last", kBegin + 1s);
  const auto overflow = collector_.take(kBegin + 1100ms);
  ASSERT_TRUE(overflow.has_value());
  EXPECT_TRUE(overflow->overflow);
  EXPECT_THAT(overflow->changes, IsEmpty());

  collector_.completed("after", kBegin + 2s);
  EXPECT_THAT(takenAt(kBegin + 2100ms), ElementsAre("+after"));
}

TEST_F(ChangeCollectorTest, ReportsAVanishedFolderAtOnce) {
  collector_.gone("a", kBegin);
  collector_.folderGone(kBegin);
  const auto batch = collector_.take(kBegin);
  ASSERT_TRUE(batch.has_value());
  EXPECT_TRUE(batch->folderGone);
  EXPECT_THAT(textsOf(batch), ElementsAre("-a"));
}

}  // namespace
}  // namespace kestrel::os
