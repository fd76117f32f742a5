#include "platform/filetransfer/Texts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kestrel::transfer {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

TEST(NamesOfABuffer, EndWithANulOrTheBuffer) {
  using namespace std::string_view_literals;
  EXPECT_THAT(namesOf("/a\0/b c\0"sv), ElementsAre("/a", "/b c"));
  EXPECT_THAT(namesOf("/a\0/b"sv), ElementsAre("/a", "/b"));
  EXPECT_THAT(namesOf("/a"sv), ElementsAre("/a"));
  EXPECT_THAT(namesOf("/a\0\0/b\0\0"sv), ElementsAre("/a", "/b"));
  EXPECT_THAT(namesOf("/a\0/a\0"sv), ElementsAre("/a")) << "listed once";
  EXPECT_TRUE(namesOf("").empty());
  EXPECT_TRUE(namesOf("\0"sv).empty());
}

TEST(Confirmation, NamesOneFileAndCountsSeveral) {
  Request request{Operation::kTrash, {"/f/a.png"}, {}, {}};
  EXPECT_EQ(confirmationOf(request), "Are you sure you want to move \"a.png\" to the trash?");
  request.sources = {"/f/album/"};
  EXPECT_EQ(confirmationOf(request), "Are you sure you want to move \"album\" to the trash?");
  request.sources = {"/f/a", "/f/b", "/f/c"};
  EXPECT_EQ(confirmationOf(request), "Are you sure you want to move these 3 files to the trash?");
  request.operation = Operation::kDelete;
  EXPECT_EQ(confirmationOf(request), "Are you sure you want to delete these 3 files for good?");
  request.sources = {"/f/line\nend"};
  EXPECT_EQ(confirmationOf(request), "Are you sure you want to delete \"line?end\" for good?");
}

TEST(ReportText, IsEmptyIfAllWasDoneOrSkipped) {
  const Request request{Operation::kCopy, {"/a", "/b"}, "/to", {}};
  Report report;
  report.done = 2;
  EXPECT_EQ(textOf(report, request), "");
  report.done = 1;
  report.skipped = {{"/b", "there is another file with that name"}};
  EXPECT_EQ(textOf(report, request), "");
}

TEST(ReportText, SaysWhatWasNotDoneAndWhyInOneText) {
  const Request request{Operation::kMove, {"/a", "/b", "/c"}, "/to", {}};
  Report report;
  report.done = 1;
  report.failed = {{"/b", "permission is denied"}};
  report.skipped = {{"/c", "there is another file with that name"}};
  EXPECT_EQ(textOf(report, request),
            "1 of 3 files was moved. Not moved:\r\r\"/b\": permission is denied.\r\"/c\": there is another "
            "file with that name.");
}

TEST(ReportText, NamesOneFileWithoutCounting) {
  Report report;
  report.failed = {{"/a", "permission is denied"}};
  EXPECT_EQ(textOf(report, {Operation::kMove, {"/a"}, "/to", {}}),
            "\"/a\" was not moved: permission is denied.");
  report.failed = {{"/f/a", "permission is denied"}, {"/f/b/c", "the disk is full"}};
  EXPECT_EQ(textOf(report, {Operation::kCopy, {"/f"}, "/to", {}}),
            "Not copied:\r\r\"/f/a\": permission is denied.\r\"/f/b/c\": the disk is full.")
      << "entries of one folder";
}

TEST(ReportText, CountsInWordsThatFitTheNumber) {
  Request request{Operation::kCopy, {"/a", "/b", "/c"}, "/to", {}};
  Report report;
  report.failed = {{"/c", "the disk is full"}};
  const auto beginning = [&] {
    const std::string text = textOf(report, request);
    return text.substr(0, text.find(". ") + 1);
  };
  EXPECT_EQ(beginning(), "None of the 3 files was copied.");
  report.done = 1;
  EXPECT_EQ(beginning(), "1 of 3 files was copied.");
  report.done = 2;
  EXPECT_EQ(beginning(), "2 of 3 files were copied.");
}

TEST(ReportText, ListsTheFilesOfAFolderOnceForEachReason) {
  const Request request{Operation::kCopy, {"/f/a", "/f/b", "/f/c", "/g/d", "/f/e"}, "/to", {}};
  Report report;
  report.failed = {{"/f/a", "permission is denied"},
                   {"/f/b", "the disk is full"},
                   {"/g/d", "permission is denied"},
                   {"/f/c", "permission is denied"}};
  report.skipped = {{"/f/e", "there is another file with that name"}};
  EXPECT_EQ(
      textOf(report, request),
      "None of the 5 files was copied. Not copied:\r\r2 files in \"/f\" (permission is denied):\r\"a\"\r\"c\""
      "\r\"/f/b\": the disk is full.\r\"/g/d\": permission is denied.\r\"/f/e\": there is another file with "
      "that name.");
}

TEST(ReportText, IsEmptyIfTheUserCanceledBeforeAnythingWasDone) {
  const Request request{Operation::kMove, {"/a", "/b"}, "/to", {}};
  Report report;
  report.canceled = true;
  report.left = {{"/a", ""}, {"/b", ""}};
  EXPECT_EQ(textOf(report, request), "");
  report.skipped = {{"/a", "there is another file with that name"}};
  report.left = {{"/b", ""}};
  EXPECT_EQ(textOf(report, request), "") << "skipped by the user";
  report.left = {{"/b", "only some of its files were processed"}};
  EXPECT_NE(textOf(report, request), "");
  report.left = {{"/b", ""}};
  report.failed = {{"/a", "permission is denied"}};
  EXPECT_NE(textOf(report, request), "");
}

TEST(ReportText, SaysHowFarACanceledWorkCame) {
  const Request request{Operation::kCopy, {"/a", "/b"}, "/to", {}};
  Report report;
  report.canceled = true;
  report.done = 1;
  report.left = {{"/b", ""}};
  EXPECT_EQ(textOf(report, request), "Copying was canceled. 1 of 2 files was copied. Not copied:\r\r\"/b\"");
  report.done = 2;
  report.left.clear();
  EXPECT_EQ(textOf(report, request), "Copying was canceled. All files were copied.");
}

TEST(TimeLeft, FollowsFromTheSpeedSoFar) {
  Progress progress{10, 1, 1000, 250, {}};
  EXPECT_EQ(timeLeft(progress, 10s), 30s) << "by bytes where bytes are copied";
  progress.bytes = 0;
  EXPECT_EQ(timeLeft(progress, 10s), 90s) << "else by files";
}

TEST(TimeLeft, IsUnknownAtTheBeginning) {
  EXPECT_FALSE(timeLeft({10, 1, 1000, 250, {}}, 1999ms));
  EXPECT_FALSE(timeLeft({10, 0, 1000, 9, {}}, 10s));
  EXPECT_FALSE(timeLeft({0, 0, 0, 0, {}}, 10s));
}

TEST(TimeLeft, IsRounded) {
  EXPECT_EQ(textOf(0s), "A few seconds left");
  EXPECT_EQ(textOf(4s), "A few seconds left");
  EXPECT_EQ(textOf(6s), "About 10 seconds left");
  EXPECT_EQ(textOf(55s), "About 55 seconds left");
  EXPECT_EQ(textOf(60s), "About 1 minute left");
  EXPECT_EQ(textOf(100s), "About 2 minutes left");
  EXPECT_EQ(textOf(3600s), "About 1 hour left");
  EXPECT_EQ(textOf(2h + 40min), "About 3 hours left");
}

}  // namespace
}  // namespace kestrel::transfer
