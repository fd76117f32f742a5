#include "base/Variant.h"

#include <gtest/gtest.h>

#include <functional>

#include "base/RuntimeError.h"

namespace kestrel {
namespace {

using Type = Variant::Type;

int numberRaisedBy(const std::function<void()>& call) {
  try {
    call();
  } catch (const RuntimeError& error) {
    return error.Number();
  }
  return 0;
}

TEST(Variant, HasTheTypeCodeOfItsValue) {
  EXPECT_EQ(Variant().TypeCode(), 0);
  EXPECT_EQ(Variant(Variant::Null()).TypeCode(), 1);
  EXPECT_EQ(Variant(std::int16_t{1}).TypeCode(), 2);
  EXPECT_EQ(Variant(1).TypeCode(), 3);
  EXPECT_EQ(Variant(1.0F).TypeCode(), 4);
  EXPECT_EQ(Variant(1.0).TypeCode(), 5);
  EXPECT_EQ(Variant("text").TypeCode(), 8);
  EXPECT_EQ(Variant(Variant::ObjectReference()).TypeCode(), 9);
  EXPECT_EQ(Variant(Variant::Error{5}).TypeCode(), 10);
  EXPECT_EQ(Variant(true).TypeCode(), 11);
  EXPECT_EQ(Variant(Variant::DataObject()).TypeCode(), 13);
  EXPECT_EQ(Variant(std::uint8_t{1}).TypeCode(), 17);
  EXPECT_EQ(Variant(Variant::Record{"R"}).TypeCode(), 36);
  EXPECT_EQ(Variant(VariantArray(Type::kInt16)).TypeCode(), 8194);
  EXPECT_EQ(Variant(VariantArray(Type::kString)).TypeCode(), 8200);
  EXPECT_EQ(Variant(VariantArray(Type::kVariant)).TypeCode(), 8204);
  EXPECT_TRUE(Variant(VariantArray(Type::kInt16)).IsArray());
  EXPECT_FALSE(Variant("text").IsArray());
}

TEST(Variant, ConvertsToText) {
  EXPECT_EQ(Variant().ToString(), "");
  EXPECT_EQ(Variant(true).ToString(), "True");
  EXPECT_EQ(Variant(false).ToString(), "False");
  EXPECT_EQ(Variant(-5).ToString(), "-5");
  EXPECT_EQ(Variant(std::uint8_t{200}).ToString(), "200");
  EXPECT_EQ(Variant(0.9F).ToString(), "0.9");
  EXPECT_EQ(Variant(2.5).ToString(), "2.5");
}

TEST(Variant, ConvertsToNumbers) {
  EXPECT_EQ(Variant().ToInt32(), 0);
  EXPECT_EQ(Variant(true).ToInt32(), -1);
  EXPECT_EQ(Variant("-1").ToInt32(), -1);
  EXPECT_EQ(Variant(2.5).ToInt32(), 2);
  EXPECT_EQ(Variant("2.5").ToDouble(), 2.5);
  EXPECT_EQ(numberRaisedBy([] { Variant("12 apples").ToInt32(); }), err::kTypeMismatch);
  EXPECT_EQ(numberRaisedBy([] { Variant("").ToInt32(); }), err::kTypeMismatch);
  EXPECT_EQ(numberRaisedBy([] { Variant(3e9).ToInt32(); }), err::kOverflow);
}

TEST(Variant, ConvertsToBooleans) {
  EXPECT_TRUE(Variant(-1).ToBoolean());
  EXPECT_TRUE(Variant(0.5).ToBoolean());
  EXPECT_FALSE(Variant(0).ToBoolean());
  EXPECT_FALSE(Variant().ToBoolean());
  EXPECT_TRUE(Variant("true").ToBoolean());
  EXPECT_FALSE(Variant("False").ToBoolean());
  EXPECT_TRUE(Variant("2").ToBoolean());
  EXPECT_EQ(numberRaisedBy([] { Variant("yes").ToBoolean(); }), err::kTypeMismatch);
}

TEST(Variant, RaisesForValuesThatDoNotConvert) {
  EXPECT_EQ(numberRaisedBy([] { Variant(Variant::Null()).ToString(); }), 94);
  EXPECT_EQ(numberRaisedBy([] { Variant(Variant::Null()).ToInt32(); }), 94);
  EXPECT_EQ(numberRaisedBy([] { Variant(Variant::Record{"R"}).ToString(); }), 13);
  EXPECT_EQ(numberRaisedBy([] { Variant(VariantArray(Type::kInt32)).ToInt32(); }), 13);
  EXPECT_EQ(numberRaisedBy([] { Variant(5).AsObject(); }), 13);
  EXPECT_EQ(numberRaisedBy([] { Variant(5).AsArray(); }), 13);
}

TEST(Variant, BorrowsOrSharesAnObject) {
  class Plain : public Object {
   public:
    std::string TypeName() const override { return "Plain"; }
  };
  const Plain lent;
  EXPECT_EQ(Variant::Borrow(&lent).AsObject().get(), &lent);
  EXPECT_EQ(Variant::Borrow(nullptr).AsObject(), nullptr);
  std::weak_ptr<const Plain> watched;
  {
    Variant holding;
    {
      const auto shared = std::make_shared<const Plain>();
      watched = shared;
      holding = Variant(Variant::ObjectReference(shared));
    }
    EXPECT_FALSE(watched.expired());
  }
  EXPECT_TRUE(watched.expired());
}

TEST(VariantArray, HasBoundsPerDimension) {
  const VariantArray array(Type::kInt32, {{-1, 0}, {5, 7}}, {1, 2, 3, 4, 5, 6});
  EXPECT_EQ(array.Dimensions(), 2);
  EXPECT_EQ(array.Lower(1), -1);
  EXPECT_EQ(array.Upper(1), 0);
  EXPECT_EQ(array.Lower(2), 5);
  EXPECT_EQ(array.Upper(2), 7);
  EXPECT_EQ(array.At({-1, 7}).ToInt32(), 3);
  EXPECT_EQ(array.At({0, 5}).ToInt32(), 4);
}

TEST(VariantArray, RaisesSubscriptOutOfRangeOutsideItsBounds) {
  const VariantArray array(Type::kInt32, {{1, 2}}, {1, 2});
  EXPECT_EQ(numberRaisedBy([&] { array.At({0}); }), err::kSubscript);
  EXPECT_EQ(numberRaisedBy([&] { array.At({3}); }), err::kSubscript);
  EXPECT_EQ(numberRaisedBy([&] { array.At({1, 1}); }), err::kSubscript);
  EXPECT_EQ(numberRaisedBy([&] { array.Lower(0); }), err::kSubscript);
  EXPECT_EQ(numberRaisedBy([&] { array.Lower(2); }), err::kSubscript);
}

TEST(VariantArray, HasNoDimensionsWithoutBounds) {
  const VariantArray array(Type::kInt32);
  EXPECT_EQ(array.Dimensions(), 0);
  EXPECT_EQ(numberRaisedBy([&] { array.Lower(1); }), err::kSubscript);
}

TEST(VariantArray, RefusesElementsThatDoNotFitItsBounds) {
  EXPECT_EQ(numberRaisedBy([] { VariantArray(Type::kInt32, {{0, 2}}, {1, 2}); }), err::kInvalidCall);
  EXPECT_EQ(numberRaisedBy([] { VariantArray(Type::kInt32, {}, {}); }), err::kInvalidCall);
}

}  // namespace
}  // namespace kestrel
