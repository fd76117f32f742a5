#include "TransferBench.h"

namespace kestrel::transfer {
namespace {

class Clashes : public TransferTest {
 protected:
  Clashes() {
    write(from / "a.png", "new a");
    write(from / "b.png", "new b");
    write(to / "a.png", "old a");
    write(to / "b.png", "old b");
  }

  Report both(Operation operation) { return run(operation, {from / "a.png", from / "b.png"}); }
};

TEST_F(Clashes, AskWithTheFactsOfBothFiles) {
  write(to / "a.png", "a longer one");
  caller.answers = {{Choice::kSkip, true}};
  both(Operation::kCopy);
  ASSERT_EQ(caller.questions.size(), 1U);
  const Question& question = caller.questions.front();
  EXPECT_EQ(question.kind, Question::Kind::kClash);
  EXPECT_EQ(question.source.path, from / "a.png");
  EXPECT_EQ(question.source.facts.size, 5U);
  EXPECT_EQ(question.target.path, to / "a.png");
  EXPECT_EQ(question.target.facts.size, 12U);
  EXPECT_TRUE(question.canReplace);
  EXPECT_TRUE(question.more);
}

TEST_F(Clashes, OfTheLastFileHaveNoFurtherOnes) {
  caller.answers = {{Choice::kSkip, false}, {Choice::kSkip, false}};
  both(Operation::kCopy);
  EXPECT_FALSE(caller.questions.at(1).more);
}

TEST_F(Clashes, ReplaceOneAndSkipTheOther) {
  for (const Operation operation : {Operation::kCopy, Operation::kMove}) {
    write(to / "a.png", "old a");
    caller.answers = {{Choice::kReplace, false}, {Choice::kSkip, false}};
    caller.questions.clear();
    const Report report = both(operation);
    EXPECT_EQ(listed(to), "a.png=new a b.png=old b");
    EXPECT_EQ(report.done, 1U);
    EXPECT_EQ(reasons(report.skipped), "b.png: there is another file with that name");
    EXPECT_FALSE(report.complete());
  }
  EXPECT_EQ(listed(from), "b.png=new b");
}

TEST_F(Clashes, ReplaceAll) {
  for (const Operation operation : {Operation::kCopy, Operation::kMove}) {
    caller.answers = {{Choice::kReplace, true}};
    caller.questions.clear();
    EXPECT_TRUE(both(operation).complete());
    EXPECT_EQ(listed(to), "a.png=new a b.png=new b");
  }
  EXPECT_EQ(listed(from), "");
}

TEST_F(Clashes, KeepBothUnderTheNextFreeNumber) {
  write(to / "a (2).png", "second");
  caller.answers = {{Choice::kKeepBoth, true}};
  EXPECT_TRUE(both(Operation::kMove).complete());
  EXPECT_EQ(listed(to), "a (2).png=second a (3).png=new a a.png=old a b (2).png=new b b.png=old b");
  EXPECT_EQ(listed(from), "");
}

TEST_F(Clashes, KeepBothOfNamesWithoutExtensionWithSeveralPointsAndOf255Bytes) {
  const std::string longest = std::string(250, 'n') + ".jpeg";
  std::string wide;
  for (int i = 0; i < 125; ++i) wide += "\xC3\xA4";
  wide = "x" + wide + ".png";
  for (const std::string& name :
       {std::string("plain"), std::string(".hidden"), std::string("a.b.c"), longest, wide}) {
    write(from / name, "new");
    write(to / name, "old");
    caller.answers = {{Choice::kKeepBoth, false}};
    caller.questions.clear();
    EXPECT_TRUE(copy({from / name}).complete()) << name;
    EXPECT_EQ(contentOf(to / name), "old");
  }
  EXPECT_EQ(contentOf(to / "plain (2)"), "new");
  EXPECT_EQ(contentOf(to / ".hidden (2)"), "new");
  EXPECT_EQ(contentOf(to / "a.b (2).c"), "new");
  EXPECT_EQ(contentOf(to / (std::string(246, 'n') + " (2).jpeg")), "new");
  std::string cut = "x";
  for (int i = 0; i < 123; ++i) cut += "\xC3\xA4";
  EXPECT_EQ(contentOf(to / (cut + " (2).png")), "new") << "whole characters";
}

TEST_F(Clashes, CancelEndsTheWork) {
  caller.answers = {{Choice::kCancel, false}};
  const Report report = both(Operation::kCopy);
  EXPECT_TRUE(report.canceled);
  EXPECT_EQ(reasons(report.left), "a.png; b.png");
  EXPECT_EQ(listed(to), "a.png=old a b.png=old b");
}

TEST_F(Clashes, InAFolderThatCannotBeWrittenAreNotAskedAbout) {
  fs::permissions(to, fs::perms::owner_read | fs::perms::owner_exec);
  const OrdinaryUser user(root);
  for (const Operation operation : {Operation::kCopy, Operation::kMove}) {
    const std::string reason = "permission to write to the folder \"" + to.string() + "\" is denied";
    EXPECT_EQ(reasons(both(operation).failed), "a.png: " + reason + "; b.png: " + reason);
    EXPECT_TRUE(caller.questions.empty());
  }
  EXPECT_EQ(listed(to), "a.png=old a b.png=old b");
  EXPECT_EQ(listed(from), "a.png=new a b.png=new b");
}

TEST_F(Clashes, OfAMoveFromAFolderThatCannotBeWrittenAreNotAskedAbout) {
  fs::permissions(from, fs::perms::owner_read | fs::perms::owner_exec);
  const OrdinaryUser user(root);
  const std::string reason = "permission to write to the folder \"" + from.string() + "\" is denied";
  EXPECT_EQ(reasons(move({from / "a.png"}).failed), "a.png: " + reason);
  EXPECT_TRUE(caller.questions.empty());
  caller.answers = {{Choice::kReplace, false}};
  EXPECT_TRUE(copy({from / "a.png"}).complete()) << "its files can be copied";
}

TEST_F(Clashes, TwoSourcesOfOneNameClashWithEachOther) {
  write(root / "more/c.png", "second");
  write(from / "c.png", "first");
  caller.answers = {{Choice::kKeepBoth, false}};
  EXPECT_TRUE(copy({from / "c.png", root / "more/c.png"}).complete());
  EXPECT_EQ(contentOf(to / "c.png"), "first");
  EXPECT_EQ(contentOf(to / "c (2).png"), "second");
}

TEST_F(Clashes, ReplaceForAllNeverReplacesWhatTheSameWorkHasPutThere) {
  for (const Operation operation : {Operation::kCopy, Operation::kMove}) {
    write(from / "a.png", "new a");
    write(root / "more/a.png", "second a");
    write(root / "third/a.png", "third a");
    write(from / "b.png", "new b");
    write(to / "a.png", "old a");
    fs::remove(to / "a (2).png");
    fs::remove(to / "a (3).png");
    caller.answers = {{Choice::kReplace, true}, {Choice::kKeepBoth, true}};
    caller.questions.clear();
    EXPECT_TRUE(run(operation, {from / "a.png", root / "more/a.png", root / "third/a.png", from / "b.png"})
                    .complete());
    EXPECT_EQ(caller.questions.size(), 2U) << "the second answer is for all that cannot be replaced";
    EXPECT_FALSE(caller.questions.back().canReplace);
    EXPECT_EQ(listed(to), "a (2).png=second a a (3).png=third a a.png=new a b.png=new b");
  }
}

TEST_F(Clashes, AFileThatAppearsAtTheLastMomentIsAskedAboutToo) {
  write(from / "c.png", std::string(3'000'000, 'c'));
  caller.cancelAt = [&](const Progress& progress) {
    if (progress.bytesDone > 1'000'000 && !fs::exists(to / "c.png")) write(to / "c.png", "fresh");
    return false;
  };
  caller.answers = {{Choice::kSkip, false}};
  copy({from / "c.png"});
  EXPECT_EQ(contentOf(to / "c.png"), "fresh");
  EXPECT_EQ(caller.questions.size(), 1U);
}

TEST_F(Clashes, AFileThatIsReplacedKeepsTheOtherNamesOfItsContent) {
  fs::create_hard_link(to / "a.png", to / "also.png");
  caller.answers = {{Choice::kReplace, false}};
  copy({from / "a.png"});
  EXPECT_EQ(contentOf(to / "a.png"), "new a");
  EXPECT_EQ(contentOf(to / "also.png"), "old a");
}

TEST_F(Clashes, ALinkIsReplacedItselfAndNotItsTarget) {
  for (const Operation operation : {Operation::kCopy, Operation::kMove}) {
    write(root / "outside", "untouched");
    fs::remove(to / "a.png");
    fs::create_symlink(root / "outside", to / "a.png");
    caller.answers = {{Choice::kReplace, false}};
    caller.questions.clear();
    EXPECT_TRUE(run(operation, {from / "a.png"}).complete());
    EXPECT_FALSE(fs::is_symlink(to / "a.png"));
    EXPECT_EQ(contentOf(to / "a.png"), "new a");
    EXPECT_EQ(contentOf(root / "outside"), "untouched");
  }
}

TEST_F(Clashes, ALinkReplacesAFile) {
  fs::remove(from / "a.png");
  fs::create_symlink("text", from / "a.png");
  caller.answers = {{Choice::kReplace, false}};
  EXPECT_TRUE(copy({from / "a.png"}).complete());
  EXPECT_EQ(listed(to), "a.png->text b.png=old b");
}

TEST_F(Clashes, ALinkNeverReplacesTheFileThatItLeadsTo) {
  for (const Operation operation : {Operation::kCopy, Operation::kMove}) {
    for (const char* text : {"../to/a.png", "second"}) {
      fs::remove(from / "a.png");
      fs::remove(from / "second");
      fs::create_symlink("../to/a.png", from / "second");
      fs::create_symlink(text, from / "a.png");
      caller.answers = {{Choice::kSkip, false}};
      caller.questions.clear();
      run(operation, {from / "a.png"});
      EXPECT_FALSE(caller.questions.at(0).canReplace) << text;
      EXPECT_EQ(contentOf(to / "a.png"), "old a");
    }
  }
}

TEST_F(Clashes, ReplaceForAllAsksAboutALinkToTheFileThatWouldBeReplaced) {
  fs::remove(from / "b.png");
  fs::create_symlink(to / "b.png", from / "b.png");
  caller.answers = {{Choice::kReplace, true}, {Choice::kKeepBoth, false}};
  EXPECT_TRUE(both(Operation::kMove).complete());
  EXPECT_EQ(listed(to), "a.png=new a b (2).png->" + (to / "b.png").string() + " b.png=old b");
}

TEST_F(Clashes, AFolderIsNeverReplacedByAFile) {
  fs::remove(to / "a.png");
  write(to / "a.png/inside", "kept");
  for (const Operation operation : {Operation::kCopy, Operation::kMove}) {
    caller.answers = {{Choice::kSkip, false}};
    caller.questions.clear();
    run(operation, {from / "a.png"});
    EXPECT_FALSE(caller.questions.at(0).canReplace);
    EXPECT_EQ(contentOf(to / "a.png/inside"), "kept");
  }
}

TEST_F(Clashes, ReplaceForAllAsksAgainWhereItIsImpossible) {
  fs::remove(to / "b.png");
  fs::create_directory(to / "b.png");
  caller.answers = {{Choice::kReplace, true}, {Choice::kKeepBoth, false}};
  EXPECT_TRUE(both(Operation::kMove).complete());
  EXPECT_EQ(caller.questions.size(), 2U);
  EXPECT_EQ(listed(to), "a.png=new a b (2).png=new b b.png/");
}

TEST_F(Clashes, AMoveOntoAHardLinkOfTheSameFileLeavesOneName) {
  fs::remove(to / "a.png");
  fs::create_hard_link(from / "a.png", to / "a.png");
  caller.answers = {{Choice::kReplace, false}};
  EXPECT_TRUE(move({from / "a.png"}).complete());
  EXPECT_EQ(contentOf(to / "a.png"), "new a");
  EXPECT_FALSE(fs::exists(from / "a.png"));
}

}  // namespace
}  // namespace kestrel::transfer
