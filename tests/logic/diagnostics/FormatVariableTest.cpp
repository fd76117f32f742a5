#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "FailingAllocator.h"
#include "base/Collection.h"
#include "base/RuntimeError.h"
#include "diagnostics/modTollgarthSupport.h"

namespace kestrel {
namespace {

using modTollgarthSupport::qdkDimensionMissing;
using modTollgarthSupport::qdkFormatVariable;
using Type = Variant::Type;

std::string format(const Variant& value, std::int32_t indent = 0, const std::string& name = "Name") {
  return qdkFormatVariable(name, value, 99, indent);
}

class Plain : public Object {
 public:
  std::string TypeName() const override { return "Plain"; }
};

TEST(FormatVariable, RendersScalarsAsTheirText) {
  EXPECT_EQ(format(true), "<Name>True</Name>\r\n");
  EXPECT_EQ(format(false), "<Name>False</Name>\r\n");
  EXPECT_EQ(format(std::uint8_t{255}), "<Name>255</Name>\r\n");
  EXPECT_EQ(format(std::int16_t{-5}), "<Name>-5</Name>\r\n");
  EXPECT_EQ(format(1234567), "<Name>1234567</Name>\r\n");
  EXPECT_EQ(format(0.9F), "<Name>0.9</Name>\r\n");
  EXPECT_EQ(format(-12.5), "<Name>-12.5</Name>\r\n");
  EXPECT_EQ(format("text"), "<Name>text</Name>\r\n");
  EXPECT_EQ(format(""), "<Name></Name>\r\n");
}

TEST(FormatVariable, RendersTheTypesWithoutAText) {
  EXPECT_EQ(format(Variant()), "<Name>{Empty}</Name>\r\n");
  EXPECT_EQ(format(Variant::Null()), "<Name>{Null}</Name>\r\n");
  EXPECT_EQ(format(Variant::Error{13}), "<Name></Name>\r\n");
  EXPECT_EQ(format(Variant::DataObject()), "<Name>{Nothing}</Name>\r\n");
  EXPECT_EQ(format(Variant::DataObject{std::make_shared<int>(1)}), "<Name>{DataObject}</Name>\r\n");
  EXPECT_EQ(format(Variant::Record{"ThumbnailData"}), "<Name>{UDT - ThumbnailData}</Name>\r\n");
  EXPECT_EQ(format(Variant::ObjectReference()), "<Name>{Nothing}</Name>\r\n");
}

TEST(FormatVariable, ReplacesEachNul) {
  EXPECT_EQ(format(std::string("a\0b", 3), 0, "s"), "<s>a{Null}b</s>\r\n");
  EXPECT_EQ(format(std::string("\0\0", 2), 0, "s"), "<s>{Null}{Null}</s>\r\n");
}

TEST(FormatVariable, WritesTheErrorInPlaceOfAScalarThatFails) {
  constexpr std::size_t kLarge = 100'000;
  const Variant value(std::string(kLarge, 'x'));
  test::failAllocationsAfter(0, kLarge);
  const std::string text = format(value, 4);
  test::failAllocationsAfter(-1);
  EXPECT_EQ(text, "{Error 7 formatting for output}");
}

TEST(FormatVariable, WritesTheErrorIfItFailsBeforeTheElements) {
  // A negative indent raises an error.
  const Plain plain;
  const Variant values[] = {5, Variant(), Variant::Null(), Variant::Borrow(&plain),
                            Variant(VariantArray(Type::kInt32, {{0, 0}}, {7}))};
  for (const Variant& value : values) {
    EXPECT_EQ(format(value, -1), "{Error 5 formatting for output}") << value.TypeCode();
  }
}

TEST(FormatVariable, IndentsWithSpaces) {
  EXPECT_EQ(format(5, 3), "   <Name>5</Name>\r\n");
  EXPECT_EQ(format(Variant(), 2), "  <Name>{Empty}</Name>\r\n");
}

TEST(FormatVariable, ClosesWithTheNameWithoutItsAttribute) {
  EXPECT_EQ(format(5, 0, "Name Index=\"1\""), "<Name Index=\"1\">5</Name>\r\n");
  EXPECT_EQ(format(Variant::Null(), 0, "Name Index=\"1\""), "<Name Index=\"1\">{Null}</Name>\r\n");
}

TEST(FormatVariable, NamesTheTypeOfAnObjectThatIsNotEnumerable) {
  const Plain plain;
  EXPECT_EQ(format(Variant::Borrow(&plain)), "<Name>{Plain}</Name>\r\n");
}

TEST(FormatVariable, RendersTheElementsOfACollection) {
  Collection<std::string> items;
  items.Add("one");
  items.Add("two");
  EXPECT_EQ(format(Variant::Borrow(&items), 0, "Items"),
            "<Items>\r\n"
            "  <Items[1]>one</Items[1]>\r\n"
            "  <Items[2]>two</Items[2]>\r\n"
            "</Items>\r\n");
  EXPECT_EQ(format(Variant::Borrow(&items), 4, "Items"),
            "    <Items>\r\n"
            "      <Items[1]>one</Items[1]>\r\n"
            "      <Items[2]>two</Items[2]>\r\n"
            "    </Items>\r\n");
}

TEST(FormatVariable, RendersAnEmptyCollection) {
  const Collection<std::string> items;
  EXPECT_EQ(format(Variant::Borrow(&items), 2, "Items"), "  <Items>\r\n  </Items>\r\n");
}

TEST(FormatVariable, RendersCollectionsWithinCollections) {
  auto inner = std::make_shared<Collection<std::int32_t>>();
  inner->Add(7);
  Collection<Variant> outer;
  outer.Add(Variant(Variant::ObjectReference(inner)));
  outer.Add(Variant());
  EXPECT_EQ(format(Variant::Borrow(&outer), 0, "a"),
            "<a>\r\n"
            "  <a[1]>\r\n"
            "    <a[1][1]>7</a[1][1]>\r\n"
            "  </a[1]>\r\n"
            "  <a[2]>{Empty}</a[2]>\r\n"
            "</a>\r\n");
}

/// Fails while its elements are enumerated.
class FailingCollection : public Object {
 public:
  explicit FailingCollection(int given) : given_(given) {}
  std::string TypeName() const override { return "FailingCollection"; }
  bool Enumerate(const std::function<void(const Variant&)>& visit) const override {
    for (int i = 0; i < given_; ++i) visit(i);
    throw RuntimeError(err::kInvalidCall, "No further.");
  }

 private:
  int given_;
};

TEST(FormatVariable, TreatsAFailureToBeginAsNotEnumerable) {
  const FailingCollection failing(0);
  EXPECT_EQ(format(Variant::Borrow(&failing)), "<Name>{FailingCollection}</Name>\r\n");
}

TEST(FormatVariable, AFailureWithinTheLoopReachesTheCaller) {
  const FailingCollection failing(2);
  EXPECT_THROW(format(Variant::Borrow(&failing)), RuntimeError);
}

TEST(FormatVariable, RendersAnArrayOfOneDimension) {
  EXPECT_EQ(format(VariantArray(Type::kInt32, {{-1, 1}}, {7, 8, 9}), 0, "Name"),
            "<Name>\r\n"
            "  <Name Index=\"-1\">7</Name>\r\n"
            "  <Name Index=\"0\">8</Name>\r\n"
            "  <Name Index=\"1\">9</Name>\r\n"
            "</Name>\r\n");
}

TEST(FormatVariable, RendersAnArrayOfTwoByTwo) {
  EXPECT_EQ(format(VariantArray(Type::kString, {{1, 2}, {1, 2}}, {"a", "b", "c", "d"}), 1, "m"),
            " <m>\r\n"
            "   <m Index=\"1,1\">a</m>\r\n"
            "   <m Index=\"1,2\">b</m>\r\n"
            "   <m Index=\"2,1\">c</m>\r\n"
            "   <m Index=\"2,2\">d</m>\r\n"
            " </m>\r\n");
}

TEST(FormatVariable, RendersAnArrayOfThreeDimensions) {
  EXPECT_EQ(format(VariantArray(Type::kBoolean, {{0, 0}, {0, 1}, {5, 6}}, {true, false, true, true}), 0, "b"),
            "<b>\r\n"
            "  <b Index=\"0,0,5\">True</b>\r\n"
            "  <b Index=\"0,0,6\">False</b>\r\n"
            "  <b Index=\"0,1,5\">True</b>\r\n"
            "  <b Index=\"0,1,6\">True</b>\r\n"
            "</b>\r\n");
}

TEST(FormatVariable, FailsOnFourDimensionsWithTheSubscript) {
  // The count stays at 0, so elements are read by three indices.
  const VariantArray array(Type::kInt32, {{0, 0}, {0, 0}, {0, 0}, {0, 0}}, {1});
  try {
    format(array);
    FAIL() << "no error for three of four indices";
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.Number(), err::kSubscript);
  }
}

TEST(FormatVariable, RendersAnUnallocatedArray) {
  EXPECT_EQ(format(VariantArray(Type::kInt32), 0, "Name"), "<Name>\r\n{UnInitialised Array}</Name>\r\n");
  EXPECT_EQ(format(VariantArray(Type::kInt32), 2, "Name"), "  <Name>\r\n{UnInitialised Array}  </Name>\r\n");
}

TEST(FormatVariable, RendersArraysWithinArrays) {
  const Variant inner(VariantArray(Type::kInt32, {{0, 0}}, {5}));
  EXPECT_EQ(format(VariantArray(Type::kVariant, {{0, 1}}, {inner, Variant::Null()}), 0, "v"),
            "<v>\r\n"
            "  <v Index=\"0\">\r\n"
            "    <v Index=\"0\" Index=\"0\">5</v>\r\n"
            "  </v>\r\n"
            "  <v Index=\"1\">{Null}</v>\r\n"
            "</v>\r\n");
}

TEST(FormatVariable, HasNoDepthLimit) {
  Variant nested(VariantArray(Type::kInt32, {{0, 0}}, {5}));
  for (int i = 0; i < 6; ++i) nested = Variant(VariantArray(Type::kVariant, {{0, 0}}, {nested}));
  EXPECT_NE(qdkFormatVariable("v", nested, 1, 0).find(">5</v>"), std::string::npos);
}

TEST(DimensionMissing, IsTrueWhereTheBoundsCanNotBeRead) {
  const VariantArray none(Type::kInt32);
  const VariantArray two(Type::kInt32, {{0, 0}, {3, 3}}, {1});
  EXPECT_TRUE(qdkDimensionMissing(none, 1));
  EXPECT_FALSE(qdkDimensionMissing(two, 1));
  EXPECT_FALSE(qdkDimensionMissing(two, 2));
  EXPECT_TRUE(qdkDimensionMissing(two, 3));
}

}  // namespace
}  // namespace kestrel
