#include <stdexcept>

#include "SampleTest.h"

namespace kestrel::dispatch {
namespace {

class LateBoundEvents : public SampleTest {
 protected:
  void On(const std::string& event, Handler handler) {
    connections_.push_back(Connect(reference(), event, std::move(handler)));
  }

  std::vector<Connection> connections_;
};

TEST_F(LateBoundEvents, HandlersGetTheArguments) {
  std::string heard;
  On("sAID",
     [&](std::span<Variant> arguments) { heard = arguments[0].ToString() + " " + arguments[1].ToString(); });
  sample().Said("hello", 5);
  EXPECT_EQ(heard, "hello 5");
}

TEST_F(LateBoundEvents, AnEventIsFoundByItsNumber) {
  int calls = 0;
  const Connection connection = Connect(reference(), 1, [&](std::span<Variant> arguments) {
    EXPECT_TRUE(arguments.empty());
    ++calls;
  });
  sample().Nothing();
  EXPECT_EQ(calls, 1);
}

TEST_F(LateBoundEvents, AnUnknownEventIs459) {
  EXPECT_EQ(RaisedBy([&] { On("Number", {}); }), "459 Sample has no event \"Number\". (Sample)");
  EXPECT_EQ(RaisedBy([&] { const auto connection = Connect(reference(), 12, {}); }),
            "459 Sample has no event \"12\". (Sample)");
}

TEST_F(LateBoundEvents, ADisconnectedHandlerIsNotCalled) {
  int calls = 0;
  On("Nothing", [&](std::span<Variant>) { ++calls; });
  connections_.clear();
  sample().Nothing();
  EXPECT_EQ(calls, 0);
}

TEST_F(LateBoundEvents, ArgumentsByReferenceGoBackToTheRaiser) {
  On("Asked", [](std::span<Variant> arguments) {
    arguments[0] = 12;
    arguments[1] = "true";
    arguments[2] = 99;
  });
  std::string text = "before";
  bool cancel = false;
  sample().Asked(text, cancel, 3);
  EXPECT_EQ(text, "12") << "the number as a text";
  EXPECT_TRUE(cancel) << "the text as a boolean";
}

TEST_F(LateBoundEvents, AnEnumerationByReferenceGoesBackToo) {
  On("Directed", [](std::span<Variant> arguments) { arguments[0] = 1; });
  auto direction = ipDirectionLeft;
  sample().Directed(direction);
  EXPECT_EQ(direction, ipDirectionRight);
}

TEST_F(LateBoundEvents, EachHandlerSeesWhatTheOneBeforeLeft) {
  const auto add = [](std::span<Variant> arguments) { arguments[0] = arguments[0].ToString() + "!"; };
  On("Asked", add);
  On("Asked", add);
  std::string text = "a";
  bool cancel = false;
  sample().Asked(text, cancel, 0);
  EXPECT_EQ(text, "a!!");
}

TEST_F(LateBoundEvents, AValueThatCannotBeConvertedIsAnErrorOfTheRaise) {
  On("Asked", [](std::span<Variant> arguments) { arguments[1] = "perhaps"; });
  std::string text;
  bool cancel = false;
  EXPECT_EQ(RaisedBy([&] { sample().Asked(text, cancel, 0); }),
            "@2 13 Argument 2 (Cancel) of Asked must be True or False. (Sample)");
}

TEST_F(LateBoundEvents, ErrorsOfHandlersPropagateToTheRaiser) {
  On("Nothing", [](std::span<Variant>) { throw std::logic_error("of the handler"); });
  EXPECT_THROW(sample().Nothing(), std::logic_error);
}

TEST_F(LateBoundEvents, ObjectsArePartsOfTheSource) {
  sample().Elements().Add("one");
  Variant kept;
  On("Chosen", [&](std::span<Variant> arguments) { kept = arguments[0]; });
  sample().Chosen(sample().Elements().Item(1));
  EXPECT_EQ(Get(ReferenceIn(kept), "Name").ToString(), "one");
  EXPECT_TRUE(ReferenceIn(kept).IsSame(ReferenceIn(Get(reference(), "First"))));
  sample().Elements().Clear();
  EXPECT_EQ(RaisedBy([&] { Get(ReferenceIn(kept), "Name"); }),
            "91 The object of class Element no longer exists. (Element)");
}

TEST_F(LateBoundEvents, AnObjectMayVanishInTheHandler) {
  sample().Elements().Add("one");
  std::string raised;
  On("Chosen", [&](std::span<Variant> arguments) {
    Call(ReferenceIn(Get(reference(), "Elements")), "Clear");
    raised = RaisedBy([&] { Get(ReferenceIn(arguments[0]), "Name"); });
  });
  sample().Chosen(sample().Elements().Item(1));
  EXPECT_EQ(raised, "91 The object of class Element no longer exists. (Element)");
}

TEST_F(LateBoundEvents, AValueObjectByReferenceIsCopiedBack) {
  Variant kept;
  On("Vetoed", [&](std::span<Variant> arguments) {
    kept = arguments[0];
    Put(ReferenceIn(arguments[0]), "Yes", true);
  });
  sample::Answer answer;
  sample().Vetoed(answer);
  EXPECT_TRUE(answer.yes);
  Put(ReferenceIn(kept), "Yes", false);
  EXPECT_TRUE(answer.yes) << "after the event it is the host's own";
}

TEST_F(LateBoundEvents, AnObjectOfTheRaiserEndsWithTheEvent) {
  Variant kept;
  std::int32_t during = 0;
  On("Passed", [&](std::span<Variant> arguments) {
    kept = arguments[0];
    during = Get(ReferenceIn(kept), "Number").ToInt32();
  });
  sample::Moment moment;
  sample().Passed(moment);
  EXPECT_EQ(during, 1);
  EXPECT_EQ(RaisedBy([&] { Get(ReferenceIn(kept), "Number"); }),
            "91 The object of class Moment no longer exists. (Moment)");
}

TEST_F(LateBoundEvents, AConnectionDoesNotKeepTheObjectAlive) {
  const std::weak_ptr<Object> watch = object_;
  On("Chosen", [](std::span<Variant>) {});
  object_.reset();
  reference_.reset();
  EXPECT_TRUE(watch.expired());
  connections_.clear();
}

TEST_F(LateBoundEvents, AHandlerMayEndTheObject) {
  auto token = std::make_shared<char>();
  auto owned = std::make_unique<Object>();
  const auto watched = Reference::Watch(Describe<Object>(), owned.get(), token);
  std::string raised;
  connections_.push_back(Connect(*watched, "Asked", [&](std::span<Variant> arguments) {
    token.reset();
    raised = RaisedBy([&] { Get(*watched, "Serial"); });
    arguments[1] = true;
  }));
  std::string text;
  bool cancel = false;
  owned->Asked(text, cancel, 0);
  EXPECT_EQ(raised, "91 The object of class Sample no longer exists. (Sample)");
  EXPECT_TRUE(cancel);
}

}  // namespace
}  // namespace kestrel::dispatch
