#include <thread>

#include "SampleTest.h"

namespace kestrel::dispatch {
namespace {

class ReferenceLife : public SampleTest {
 protected:
  const Reference& Element(const Variant& index) {
    kept_.push_back(Call(reference(), "Elements", index));
    return ReferenceIn(kept_.back());
  }
  std::string RaisedByName(const Reference& element) {
    return RaisedBy([&] { Get(element, "Name"); });
  }

  const std::string kElementGone = "91 The object of class Element no longer exists. (Element)";

 private:
  std::vector<Variant> kept_;
};

TEST_F(ReferenceLife, AnOwnedObjectLivesAsLongAsItsReferences) {
  const std::weak_ptr<Object> watch = object_;
  const Variant elements = Get(reference(), "Elements");
  object_.reset();
  reference_.reset();
  EXPECT_FALSE(watch.expired()) << "a reference to a part of it is left";
  EXPECT_EQ(Get(ReferenceIn(elements), "Count").ToInt32(), 0);
}

TEST_F(ReferenceLife, AWatchedObjectEndsWithItsToken) {
  auto token = std::make_shared<char>();
  const auto watched = Reference::Watch(Describe<sample::Sample>(), object_.get(), token);
  const Variant elements = Get(*watched, "Elements");
  Call(ReferenceIn(elements), "Add", "one");
  const Variant element = Call(*watched, "Elements", 1);
  EXPECT_EQ(Get(*watched, "Serial").ToInt32(), 42);

  token.reset();
  EXPECT_EQ(RaisedBy([&] { Get(*watched, "Serial"); }),
            "91 The object of class Sample no longer exists. (Sample)");
  EXPECT_EQ(RaisedBy([&] { Get(ReferenceIn(elements), "Count"); }),
            "91 The object of class Sample no longer exists. (Sample)");
  EXPECT_EQ(RaisedByName(ReferenceIn(element)), "91 The object of class Sample no longer exists. (Sample)");
  EXPECT_EQ(
      RaisedBy([&] { const auto connection = Connect(*watched, "Nothing", [](std::span<Variant>) {}); }),
      "91 The object of class Sample no longer exists. (Sample)");
}

TEST_F(ReferenceLife, ALocatedObjectThatHasVanishedIs91) {
  sample().Elements().Add("one");
  const Reference& element = Element(1);
  EXPECT_EQ(Get(element, "Name").ToString(), "one");
  sample().Elements().Clear();
  EXPECT_EQ(RaisedByName(element), kElementGone);
  EXPECT_EQ(Raised("NameOf", {Variant(element.shared_from_this())}),
            "@1 91 Argument 1 (Element) of NameOf: The object of class Element no longer exists. (Sample)");
}

TEST_F(ReferenceLife, ALocatedObjectIsFoundAgainWhereverItIs) {
  sample().Elements().Add("one");
  sample().Elements().Add("two");
  const Reference& two = Element(2);
  sample().Elements().Clear();
  sample().Elements().Add("two");
  EXPECT_EQ(Get(two, "Name").ToString(), "two");
}

TEST_F(ReferenceLife, AValueObjectIsACopy) {
  const Variant answer = Call(reference(), "MakeAnswer");
  EXPECT_TRUE(Get(ReferenceIn(answer), "Yes").ToBoolean());
  Put(ReferenceIn(answer), "Yes", false);
  EXPECT_FALSE(Get(ReferenceIn(answer), "Yes").ToBoolean());
}

TEST_F(ReferenceLife, TheSameObjectHandedOutTwiceIsTheSame) {
  sample().Elements().Add("one");
  sample().Elements().Add("two");
  const auto same = [](const Variant& left, const Variant& right) {
    return ReferenceIn(left).IsSame(ReferenceIn(right));
  };
  const Variant elements = Get(reference(), "Elements");
  EXPECT_TRUE(same(elements, Get(reference(), "Elements")));
  EXPECT_TRUE(same(elements, Get(ReferenceIn(elements), "Same")));
  EXPECT_TRUE(same(Call(reference(), "Elements", 1), Get(reference(), "First")));
  EXPECT_FALSE(same(Call(reference(), "Elements", 1), Call(reference(), "Elements", 2)));
  EXPECT_FALSE(same(elements, ToVariant(reference_)));
  EXPECT_FALSE(same(Call(reference(), "MakeAnswer"), Call(reference(), "MakeAnswer")));
}

TEST_F(ReferenceLife, AReferenceToAVanishedObjectIsTheSameAsItselfOnly) {
  sample().Elements().Add("one");
  const Reference& left = Element(1);
  const Reference& right = Element(1);
  EXPECT_TRUE(left.IsSame(right));
  sample().Elements().Clear();
  EXPECT_TRUE(left.IsSame(left));
  EXPECT_FALSE(left.IsSame(right));
}

TEST_F(ReferenceLife, AWeakenedReferenceDoesNotKeepItsObjectAlive) {
  sample().Elements().Add("one");
  const auto weak = reference_->Weakened();
  const auto part = SharedReferenceIn(Get(reference(), "Elements"))->Weakened();
  const auto element = SharedReferenceIn(Call(reference(), "Elements", 1))->Weakened();
  EXPECT_TRUE(weak->IsSame(reference()));
  EXPECT_EQ(Get(*part, "Count").ToInt32(), 1);
  EXPECT_EQ(Get(*element, "Name").ToString(), "one");

  const std::weak_ptr<Object> watch = object_;
  object_.reset();
  reference_.reset();
  EXPECT_TRUE(watch.expired());
  const std::string gone = "91 The object of class Sample no longer exists. (Sample)";
  EXPECT_EQ(RaisedBy([&] { Get(*weak, "Serial"); }), gone);
  EXPECT_EQ(RaisedBy([&] { Get(*part, "Count"); }), gone);
  EXPECT_EQ(RaisedBy([&] { Get(*element, "Name"); }), gone);
}

TEST_F(ReferenceLife, CallsFromAnotherThreadAreRefused) {
  const Variant elements = Get(reference(), "Elements");
  const auto onOther = [](const std::function<void()>& act) {
    std::string raised;
    std::thread([&] { raised = RaisedBy(act); }).join();
    return raised;
  };
  const std::string refused =
      "-2147417842 An object of class Sample can be used only on the thread that it was made on. (Sample)";
  EXPECT_EQ(onOther([&] { Get(reference(), "Serial"); }), refused);
  EXPECT_EQ(onOther([&] { Put(reference(), "Number", 1); }), refused);
  EXPECT_EQ(
      onOther([&] { const auto connection = Connect(reference(), "Nothing", [](std::span<Variant>) {}); }),
      refused);
  EXPECT_EQ(onOther([&] { Get(ReferenceIn(elements), "Count"); }),
            "-2147417842 An object of class Elements can be used only on the thread that it was made on. "
            "(Elements)");
  EXPECT_EQ(onOther([&] { reference().IsSame(ReferenceIn(elements)); }), "") << "of different classes";
  EXPECT_EQ(onOther([&] {
              ReferenceIn(elements).IsSame(*Reference::Part(Describe<sample::Elements>(), nullptr, shared()));
            }).substr(0, 12),
            "-2147417842 ");
  EXPECT_EQ(sample().Number(), 0);
}

}  // namespace
}  // namespace kestrel::dispatch
