#include "SampleTest.h"

namespace kestrel::dispatch {
namespace {

class LateBinding : public SampleTest {
 protected:
  std::string Join(std::vector<Variant> positional, std::vector<NamedArgument> named = {}) {
    return Invoke(reference(), "Join", Use::kGet, positional, named).ToString();
  }
};

// -- Members ----------------------------------------------------------------------------------------------

TEST_F(LateBinding, FindsNamesInAnyCase) {
  Put(reference(), "nUMBER", 12);
  EXPECT_EQ(sample().Number(), 12);
  EXPECT_EQ(Get(reference(), "NUMBER").ToInt32(), 12);
}

TEST_F(LateBinding, FindsMembersByTheirNumber) {
  Variant value = 5;
  Invoke(reference(), 4, Use::kPut, {&value, 1});
  EXPECT_EQ(sample().Number(), 5);
  EXPECT_EQ(Invoke(reference(), 4, Use::kGet).ToInt32(), 5);
}

TEST_F(LateBinding, AnUnknownNameOrNumberIs438) {
  EXPECT_EQ(Raised("Numbers"), "438 Sample has no member \"Numbers\". (Sample)");
  EXPECT_EQ(Raised(""), "438 Sample has no member \"\". (Sample)");
  EXPECT_EQ(RaisedBy([&] { Invoke(reference(), 99, Use::kGet); }), "438 Sample has no member 99. (Sample)");
  EXPECT_EQ(RaisedBy([&] { Invoke(reference(), -4, Use::kGet); }), "438 Sample has no member -4. (Sample)");
  EXPECT_EQ(RaisedBy([&] { Invoke(reference(), 0, Use::kGet); }),
            "438 Sample has no default member. (Sample)");
}

TEST_F(LateBinding, WritesToAReadOnlyPropertyAre383AndReadsOfAWriteOnlyOne394) {
  EXPECT_EQ(RaisedByPut("Serial", 1), "383 The property Serial is read-only. (Sample)");
  EXPECT_EQ(Raised("Secret"), "394 The property Secret is write-only. (Sample)");
  Put(reference(), "Secret", "word");
  EXPECT_EQ(sample().Text(), "secret word");
}

TEST_F(LateBinding, NothingCanBeAssignedToAMethod) {
  EXPECT_EQ(RaisedByPut("Join", 1), "438 Join is a method: nothing can be assigned to it. (Sample)");
}

TEST_F(LateBinding, ErrorsOfTheMemberPropagate) {
  EXPECT_EQ(Raised("Fail"), "1234 It failed. (Sample's source)");
}

// -- Arguments --------------------------------------------------------------------------------------------

TEST_F(LateBinding, OmittedArgumentsHaveTheirDefaults) {
  EXPECT_EQ(Join({1}), "1-5");
  EXPECT_EQ(Join({1, 2}), "1-2");
  EXPECT_EQ(Join({1, 2, "+"}), "1+2");
  EXPECT_EQ(Join({1, 2, "+", true}), "2+1");
}

TEST_F(LateBinding, AnArgumentInTheMiddleCanBeOmitted) {
  EXPECT_EQ(Join({1, Omitted(), "+"}), "1+5");
  EXPECT_EQ(Join({1, Omitted(), Omitted(), true}), "5-1");
}

TEST_F(LateBinding, NamedArgumentsComeInAnyOrderAndCase) {
  Variant first = 1;
  Variant reverse = true;
  EXPECT_EQ(Join({}, {{"REVERSE", &reverse}, {"first", &first}}), "5-1");
  EXPECT_EQ(Join({8}, {{"reverse", &reverse}}), "5-8");
}

TEST_F(LateBinding, TooManyArgumentsAre450) {
  EXPECT_EQ(Raised("Join", {1, 2, "+", true, 5}), "450 Join takes 1 to 4 arguments, not 5. (Sample)");
  EXPECT_EQ(Raised("Exchange", {1, 2, 3}), "450 Exchange takes 2 arguments, not 3. (Sample)");
  EXPECT_EQ(Raised("Fail", {1}), "450 Fail takes no arguments, not 1. (Sample)");
  EXPECT_EQ(Raised("Number", {1}), "450 Number takes no arguments, not 1. (Sample)");
  std::vector<Variant> two = {1, 2};
  EXPECT_EQ(RaisedBy([&] { Invoke(reference(), "Number", Use::kPut, two); }),
            "450 Number takes no arguments, not 1. (Sample)");
}

TEST_F(LateBinding, ARequiredArgumentThatIsOmittedIs449) {
  EXPECT_EQ(Raised("Join"), "@1 449 Argument 1 (First) of Join is not optional. (Sample)");
  EXPECT_EQ(Raised("Join", {Omitted(), 2}), "@1 449 Argument 1 (First) of Join is not optional. (Sample)");
  EXPECT_EQ(Raised("Exchange", {"a"}), "@2 449 Argument 2 (Right) of Exchange is not optional. (Sample)");
  EXPECT_EQ(RaisedBy([&] { Invoke(reference(), "Number", Use::kPut); }),
            "@1 449 Argument 1 (Value) of Number is not optional. (Sample)");
  EXPECT_EQ(RaisedByPut("Number", Omitted()),
            "@1 449 Argument 1 (Value) of Number is not optional. (Sample)");
}

TEST_F(LateBinding, AnUnknownArgumentNameIs448) {
  Variant value = 1;
  EXPECT_EQ(RaisedBy([&] { Join({}, {{"Frist", &value}}); }), "448 Join has no argument \"Frist\". (Sample)");
  EXPECT_EQ(RaisedBy([&] {
              Join({1}, {{"First", &value}});
            }),
            "448 The argument \"First\" of Join is given twice. (Sample)");
}

TEST_F(LateBinding, ArgumentsByReferenceAreWrittenBack) {
  std::vector<Variant> arguments = {"a", "true"};
  Invoke(reference(), "Exchange", Use::kGet, arguments);
  EXPECT_EQ(arguments[0].ToString(), "a yes");
  EXPECT_EQ(arguments[1].TypeCode(), static_cast<std::int32_t>(Variant::Type::kBoolean));
  EXPECT_FALSE(arguments[1].ToBoolean());
}

TEST_F(LateBinding, NamedArgumentsByReferenceAreWrittenBackToo) {
  Variant left = "a";
  Variant right = false;
  const std::vector<NamedArgument> named = {{"Right", &right}, {"Left", &left}};
  Invoke(reference(), "Exchange", Use::kGet, {}, named);
  EXPECT_EQ(left.ToString(), "a no");
  EXPECT_TRUE(right.ToBoolean());
}

TEST_F(LateBinding, ArgumentsOfAFailedConversionLeaveTheMemberUncalled) {
  std::vector<Variant> arguments = {"a", "perhaps"};
  EXPECT_EQ(RaisedBy([&] { Invoke(reference(), "Exchange", Use::kGet, arguments); }),
            "@2 13 Argument 2 (Right) of Exchange must be True or False. (Sample)");
  EXPECT_EQ(arguments[0].ToString(), "a");
}

// -- Objects ----------------------------------------------------------------------------------------------

TEST_F(LateBinding, TakesObjectsOfTheRightClassOnly) {
  sample().Elements().Add("one");
  const Variant element = Call(ReferenceIn(Get(reference(), "Elements")), "Item", 1);
  EXPECT_EQ(Call(reference(), "NameOf", element).ToString(), "one");
  EXPECT_EQ(Raised("NameOf", {Get(reference(), "Elements")}),
            "@1 13 Argument 1 (Element) of NameOf must be an object of class Element. (Sample)");
  EXPECT_EQ(Raised("NameOf", {5}),
            "@1 424 Argument 1 (Element) of NameOf must be an object of class Element. (Sample)");
  EXPECT_EQ(Raised("NameOf", {Variant()}),
            "@1 424 Argument 1 (Element) of NameOf must be an object of class Element. (Sample)");
}

TEST_F(LateBinding, TakesNothingWhereTheMemberDoes) {
  EXPECT_EQ(Call(reference(), "NameOrNone").ToString(), "none");
  EXPECT_EQ(Call(reference(), "NameOrNone", Variant::ObjectReference()).ToString(), "none");
  EXPECT_EQ(Raised("NameOf", {Variant::ObjectReference()}),
            "@1 91 Argument 1 (Element) of NameOf: The object is Nothing. (Sample)");
}

TEST_F(LateBinding, ReturnsNothingForANullPointer) {
  const Variant first = Get(reference(), "First");
  EXPECT_TRUE(IsObject(first));
  EXPECT_EQ(first.AsObject(), nullptr);
  EXPECT_EQ(RaisedBy([&] { ReferenceIn(first); }), "91 The object is Nothing. ()");
  EXPECT_EQ(RaisedBy([&] { ReferenceIn(Variant(5)); }), "424 An object is required. ()");
}

TEST_F(LateBinding, SharedObjectsGoInAndOut) {
  EXPECT_EQ(Get(reference(), "Shared").AsObject(), nullptr);
  const auto object = std::make_shared<sample::Shared>();
  Put(reference(), "Shared", ToVariant(Refer(object)));
  EXPECT_EQ(sample().Shared(), object);
  Put(ReferenceIn(Get(reference(), "Shared")), "Number", 9);
  EXPECT_EQ(object->Number(), 9);
  Put(reference(), "Shared", Variant::ObjectReference());
  EXPECT_EQ(sample().Shared(), nullptr);
  EXPECT_EQ(object.use_count(), 1);
}

// -- Default members and collections ----------------------------------------------------------------------

TEST_F(LateBinding, APropertyPassesArgumentsToTheDefaultMemberOfItsObject) {
  sample().Elements().Add("one");
  sample().Elements().Add("two");
  EXPECT_EQ(Get(ReferenceIn(Call(reference(), "Elements", 2)), "Name").ToString(), "two");
  EXPECT_EQ(Get(ReferenceIn(Call(reference(), "Elements", "one")), "Name").ToString(), "one");
  EXPECT_EQ(Raised("Elements", {"three"}), "5 There is no element \"three\". ()");
  EXPECT_EQ(Raised("Elements", {3}), "9 There is no such element. ()");
  EXPECT_EQ(Raised("Elements", {1, 2}), "450 Item takes 1 argument, not 2. (Elements)");
}

TEST_F(LateBinding, AnObjectWithoutDefaultMemberTakesNoArguments) {
  sample().Shared(std::make_shared<sample::Shared>());
  EXPECT_EQ(Raised("Shared", {1}), "438 Shared has no default member. (Shared)");
}

TEST_F(LateBinding, AnObjectWhereAValueIsAskedIsItsDefaultProperty) {
  sample().Elements().Add("one");
  sample().Elements().Item(1).Value(31);
  const Variant element = Call(reference(), "Elements", 1);
  Put(reference(), "Number", element);
  EXPECT_EQ(sample().Number(), 31);
  Put(reference(), "Text", element);
  EXPECT_EQ(sample().Text(), "31");
  EXPECT_EQ(RaisedByPut("Number", Get(reference(), "Elements")),
            "@1 13 Argument 1 (Value) of Number must be a number. (Sample)")
      << "its default member needs an argument";
}

TEST_F(LateBinding, CollectionsEnumerateFromOneToCount) {
  std::vector<std::string> names;
  const auto note = [&](const Variant& element) {
    names.push_back(Get(ReferenceIn(element), "Name").ToString());
  };
  const auto elements = SharedReferenceIn(Get(reference(), "Elements"));
  EXPECT_TRUE(elements->Enumerate(note));
  EXPECT_THAT(names, testing::IsEmpty());
  for (const char* name : {"one", "two", "three"}) Call(*elements, "Add", name);
  VisitElements(*elements, note);
  EXPECT_THAT(names, testing::ElementsAre("one", "two", "three"));
  EXPECT_FALSE(reference().Enumerate(note));
  EXPECT_EQ(RaisedBy([&] { VisitElements(reference(), note); }),
            "438 Sample has no member \"_NewEnum\". (Sample)");
}

TEST_F(LateBinding, AnEnumerationEndsWhereAHandlerClearsTheCollection) {
  const auto elements = SharedReferenceIn(Get(reference(), "Elements"));
  for (const char* name : {"one", "two", "three"}) Call(*elements, "Add", name);
  int visits = 0;
  VisitElements(*elements, [&](const Variant&) {
    ++visits;
    Call(*elements, "Clear");
  });
  EXPECT_EQ(visits, 1);
}

}  // namespace
}  // namespace kestrel::dispatch
