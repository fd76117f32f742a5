#include "platform/filetransfer/BackgroundTransfer.h"

#include <future>
#include <memory>
#include <new>
#include <stdexcept>

#include "TransferBench.h"

namespace kestrel::transfer {
namespace {

using State = BackgroundTransfer::State;

class Background : public TransferTest {
 protected:
  // Only a failing test waits this long.
  static constexpr std::chrono::seconds kPatience{60};

  Request request(Operation operation, const std::vector<fs::path>& sources) const {
    return {operation, sources, to, root / "home/Trash"};
  }
};

TEST_F(Background, DoesTheWorkAndReports) {
  write(from / "a.png", "content");
  BackgroundTransfer transfer(request(Operation::kMove, {from / "a.png", from / "missing"}));
  ASSERT_EQ(transfer.waitFor(kPatience), State::kFinished);
  EXPECT_EQ(transfer.report().done, 1U);
  EXPECT_EQ(reasons(transfer.report().failed), "missing: it does not exist");
  EXPECT_EQ(transfer.progress().filesDone, 1U);
  EXPECT_EQ(listed(to), "a.png=content");
}

TEST_F(Background, ReportsTheSourcesOfWorkThatEndsWithAnException) {
  const auto exhausts = [](const Request&, Caller&) -> Report { throw std::bad_alloc(); };
  BackgroundTransfer starved(request(Operation::kCopy, {from / "a.png", from / "b.png"}), exhausts);
  ASSERT_EQ(starved.waitFor(kPatience), State::kFinished);
  EXPECT_EQ(starved.report().done, 0U);
  EXPECT_EQ(reasons(starved.report().failed), "a.png: the work ended early; b.png: the work ended early");
  const auto fails = [](const Request&, Caller&) -> Report { throw std::runtime_error("no thread"); };
  BackgroundTransfer failed(request(Operation::kCopy, {from / "a.png"}), fails);
  ASSERT_EQ(failed.waitFor(kPatience), State::kFinished);
  EXPECT_EQ(reasons(failed.report().failed), "a.png: the work ended early");
}

TEST_F(Background, LeavesItsOwnerAloneWhenTheSystemDoesNotAnswer) {
  struct System {
    std::promise<void> answer;
    std::promise<std::string> ended;
  };
  const auto system = std::make_shared<System>();
  {
    const auto hangs = [system](const Request&, Caller& owner) {
      // A failing test must end, too.
      const bool answered = system->answer.get_future().wait_for(kPatience) == std::future_status::ready;
      system->ended.set_value(!answered          ? "the owner waited"
                              : owner.canceled() ? "canceled"
                                                 : "not canceled");
      return Report();
    };
    const BackgroundTransfer transfer(request(Operation::kCopy, {from / "a.png"}), hangs);
  }
  system->answer.set_value();
  EXPECT_EQ(system->ended.get_future().get(), "canceled");
}

TEST_F(Background, WaitsForAnswersOfTheOwnersThread) {
  write(from / "a.png", "new");
  write(to / "a.png", "old");
  BackgroundTransfer transfer(request(Operation::kCopy, {from / "a.png"}));
  ASSERT_EQ(transfer.waitFor(kPatience), State::kAsking);
  EXPECT_EQ(transfer.question().target.path, to / "a.png");
  transfer.answer({Choice::kReplace, false});
  ASSERT_EQ(transfer.waitFor(kPatience), State::kFinished);
  EXPECT_EQ(listed(to), "a.png=new");
}

TEST_F(Background, WithdrawsItsQuestionWhenCanceled) {
  write(from / "a.png", "new");
  write(to / "a.png", "old");
  BackgroundTransfer transfer(request(Operation::kCopy, {from / "a.png"}));
  ASSERT_EQ(transfer.waitFor(kPatience), State::kAsking);
  transfer.cancel();
  ASSERT_EQ(transfer.waitFor(kPatience), State::kFinished);
  EXPECT_TRUE(transfer.report().canceled);
  EXPECT_EQ(reasons(transfer.report().left), "a.png");
  EXPECT_EQ(listed(to), "a.png=old");
}

TEST_F(Background, EndsWithItsOwnerWhileItAsks) {
  write(from / "a.png", "new");
  write(to / "a.png", "old");
  {
    BackgroundTransfer transfer(request(Operation::kCopy, {from / "a.png"}));
    ASSERT_EQ(transfer.waitFor(kPatience), State::kAsking);
  }
  EXPECT_EQ(listed(to), "a.png=old");
}

TEST_F(Background, EndsWithItsOwnerInTheMiddleOfAFile) {
  const std::string content(20'000'000, 'a');
  write(from / "a.png", content);
  write(from / "b.png", content);
  { const BackgroundTransfer transfer(request(Operation::kMove, {from / "a.png", from / "b.png"})); }
  for (const char* name : {"a.png", "b.png"}) {
    const bool there = fs::exists(from / name);
    EXPECT_NE(there, fs::exists(to / name)) << name;
    EXPECT_EQ(fs::file_size((there ? from : to) / name), content.size());
  }
}

}  // namespace
}  // namespace kestrel::transfer
