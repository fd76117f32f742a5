#include "base/Collection.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

namespace kestrel {
namespace {

int numberRaisedBy(const std::function<void()>& call) {
  try {
    call();
  } catch (const RuntimeError& error) {
    return error.Number();
  }
  return 0;
}

class CollectionOfTexts : public testing::Test {
 protected:
  CollectionOfTexts() {
    items_.Add("one", "First");
    items_.Add("two");
    items_.Add("three", "Third");
  }
  std::vector<std::string> all() const { return {items_.begin(), items_.end()}; }

  Collection<std::string> items_;
};

TEST_F(CollectionOfTexts, CountsFromOne) {
  EXPECT_EQ(items_.Count(), 3);
  EXPECT_EQ(items_.Item(1), "one");
  EXPECT_EQ(items_.Item(3), "three");
}

TEST_F(CollectionOfTexts, FindsAKeyInAnyCase) {
  EXPECT_EQ(items_.Item("FIRST"), "one");
  EXPECT_TRUE(items_.Contains("third"));
  EXPECT_FALSE(items_.Contains("second"));
}

TEST_F(CollectionOfTexts, AddsBeforeAnElement) {
  items_.Add("zero", "", 1);
  items_.Add("between", "", 3);
  EXPECT_EQ(all(), (std::vector<std::string>{"zero", "one", "between", "two", "three"}));
}

TEST_F(CollectionOfTexts, RemovesByIndexAndKey) {
  items_.Remove(2);
  items_.Remove("FIRST");
  EXPECT_EQ(all(), std::vector<std::string>{"three"});
  items_.Add("again", "first");
  EXPECT_EQ(items_.Item("First"), "again");
}

TEST_F(CollectionOfTexts, RefusesAKeyThatIsInUse) {
  EXPECT_EQ(numberRaisedBy([&] { items_.Add("x", "fIRST"); }), 457);
  EXPECT_EQ(items_.Count(), 3);
}

TEST_F(CollectionOfTexts, MayHoldAnyNumberOfElementsWithoutAKey) {
  items_.Add("a");
  items_.Add("a");
  EXPECT_EQ(items_.Count(), 5);
  EXPECT_FALSE(items_.Contains(""));
}

TEST_F(CollectionOfTexts, RaisesForAMissingIndexOrKey) {
  for (const std::int32_t index : {0, -1, 4}) {
    EXPECT_EQ(numberRaisedBy([&] { items_.Item(index); }), 9) << index;
    EXPECT_EQ(numberRaisedBy([&] { items_.Remove(index); }), 9) << index;
  }
  EXPECT_EQ(numberRaisedBy([&] { items_.Add("x", "", 4); }), 9);
  EXPECT_EQ(numberRaisedBy([&] { items_.Item("second"); }), 5);
  EXPECT_EQ(numberRaisedBy([&] { items_.Remove("second"); }), 5);
  EXPECT_EQ(numberRaisedBy([&] { items_.Item(""); }), 5);
}

TEST_F(CollectionOfTexts, AllowsChangesOfItsElements) {
  items_.Item(2) = "zwei";
  items_.Item("Third") = "drei";
  EXPECT_EQ(all(), (std::vector<std::string>{"one", "zwei", "drei"}));
}

TEST_F(CollectionOfTexts, EnumeratesItsElements) {
  std::string texts;
  EXPECT_TRUE(items_.Enumerate([&](const Variant& item) { texts += item.ToString() + ";"; }));
  EXPECT_EQ(texts, "one;two;three;");
  EXPECT_EQ(items_.TypeName(), "Collection");
}

TEST_F(CollectionOfTexts, IsEmptyAfterClear) {
  items_.Clear();
  EXPECT_EQ(items_.Count(), 0);
  items_.Add("x", "First");
  EXPECT_EQ(items_.Item("first"), "x");
}

TEST(CollectionOfRecords, CanNotBeEnumeratedByAReport) {
  struct Record {
    int value;
  };
  Collection<Record> items;
  items.Add(Record{1});
  EXPECT_FALSE(items.Enumerate([](const Variant&) { FAIL() << "a record is no value"; }));
}

}  // namespace
}  // namespace kestrel
