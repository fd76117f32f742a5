#include <limits>

#include "SampleTest.h"

namespace kestrel::dispatch {
namespace {

class Conversion : public SampleTest {
 protected:
  /// What the property reads after the write of the value.
  Variant After(const std::string& property, const Variant& value) {
    Put(reference(), property, value);
    return Get(reference(), property);
  }
  static std::string Mismatch(const std::string& property, const std::string& expected) {
    return "@1 13 Argument 1 (Value) of " + property + " must be " + expected + ". (Sample)";
  }
  static std::string OutOfRange(const std::string& property) {
    return "@1 6 Argument 1 (Value) of " + property + " is out of range. (Sample)";
  }
  static std::string Null(const std::string& property) {
    return "@1 94 Argument 1 (Value) of " + property + " is Null. (Sample)";
  }
};

TEST_F(Conversion, ResultsHaveTheTypeOfTheMember) {
  using Type = Variant::Type;
  const auto type = [this](const std::string& name) {
    return static_cast<Type>(Get(reference(), name).TypeCode());
  };
  EXPECT_EQ(type("Flag"), Type::kBoolean);
  EXPECT_EQ(type("Small"), Type::kByte);
  EXPECT_EQ(type("Short"), Type::kInt16);
  EXPECT_EQ(type("Number"), Type::kInt32);
  EXPECT_EQ(type("Single"), Type::kFloat);
  EXPECT_EQ(type("Real"), Type::kDouble);
  EXPECT_EQ(type("Text"), Type::kString);
  EXPECT_EQ(type("Tint"), Type::kInt32);
  EXPECT_EQ(type("Direction"), Type::kInt32);
  EXPECT_EQ(type("Window"), Type::kInt32);
  EXPECT_EQ(type("Any"), Type::kEmpty);
  EXPECT_EQ(type("Elements"), Type::kObject);
}

TEST_F(Conversion, TextsThatAreNumbersAreNumbers) {
  EXPECT_EQ(After("Number", "12").ToInt32(), 12);
  EXPECT_EQ(After("Number", " -3.5 ").ToInt32(), -4);
  EXPECT_EQ(After("Real", "1.25").ToDouble(), 1.25);
  EXPECT_EQ(After("Flag", "1").ToBoolean(), true);
  EXPECT_EQ(RaisedByPut("Number", "12px"), Mismatch("Number", "a number"));
  EXPECT_EQ(RaisedByPut("Number", ""), Mismatch("Number", "a number"));
}

TEST_F(Conversion, NumbersRoundToNearestTiesToEven) {
  EXPECT_EQ(After("Number", 0.5).ToInt32(), 0);
  EXPECT_EQ(After("Number", 1.5).ToInt32(), 2);
  EXPECT_EQ(After("Number", 2.5).ToInt32(), 2);
  EXPECT_EQ(After("Number", -1.5).ToInt32(), -2);
  EXPECT_EQ(After("Small", 254.5).ToInt32(), 254);
  EXPECT_EQ(After("Short", 2.51).ToInt32(), 3);
  EXPECT_EQ(After("Direction", 0.6).ToInt32(), ipDirectionRight);
  EXPECT_EQ(After("Window", 3.5).ToInt32(), 4);
}

TEST_F(Conversion, NumbersAreTexts) {
  EXPECT_EQ(After("Text", 12).ToString(), "12");
  EXPECT_EQ(After("Text", 0.5).ToString(), "0.5");
  EXPECT_EQ(After("Text", true).ToString(), "True");
}

TEST_F(Conversion, ABooleanIsMinusOneOrZero) {
  EXPECT_EQ(After("Number", true).ToInt32(), -1);
  EXPECT_EQ(After("Number", false).ToInt32(), 0);
  EXPECT_EQ(After("Real", true).ToDouble(), -1);
  EXPECT_TRUE(After("Flag", 2).ToBoolean());
  EXPECT_TRUE(After("Flag", 0.1).ToBoolean());
  EXPECT_FALSE(After("Flag", 0).ToBoolean());
  EXPECT_TRUE(After("Flag", "TRUE").ToBoolean());
  EXPECT_FALSE(After("Flag", "false").ToBoolean());
  EXPECT_EQ(RaisedByPut("Flag", "yes"), Mismatch("Flag", "True or False"));
  EXPECT_EQ(RaisedByPut("Small", true), OutOfRange("Small")) << "-1 is no byte";
}

TEST_F(Conversion, EmptyIsZeroAndTheEmptyTextAndFalse) {
  sample().Number(5);
  sample().Text("a");
  sample().Flag(true);
  EXPECT_EQ(After("Number", Variant()).ToInt32(), 0);
  EXPECT_EQ(After("Text", Variant()).ToString(), "");
  EXPECT_FALSE(After("Flag", Variant()).ToBoolean());
}

TEST_F(Conversion, NumbersOutOfRangeAre6) {
  EXPECT_EQ(RaisedByPut("Small", 256), OutOfRange("Small"));
  EXPECT_EQ(RaisedByPut("Small", -1), OutOfRange("Small"));
  EXPECT_EQ(RaisedByPut("Short", 32768), OutOfRange("Short"));
  EXPECT_EQ(RaisedByPut("Number", 2147483648.0), OutOfRange("Number"));
  EXPECT_EQ(RaisedByPut("Number", std::numeric_limits<double>::quiet_NaN()), OutOfRange("Number"));
  EXPECT_EQ(RaisedByPut("Single", 1e39), OutOfRange("Single"));
  EXPECT_EQ(RaisedByPut("Number", "1e400"), OutOfRange("Number"));
  EXPECT_EQ(RaisedByPut("Direction", 1e10), OutOfRange("Direction"));
  EXPECT_EQ(RaisedByPut("Window", 1e19), OutOfRange("Window"));
  EXPECT_EQ(RaisedByPut("Window", std::numeric_limits<double>::quiet_NaN()), OutOfRange("Window"));
}

TEST_F(Conversion, NullIs94) {
  EXPECT_EQ(RaisedByPut("Number", Variant::Null()), Null("Number"));
  EXPECT_EQ(RaisedByPut("Text", Variant::Null()), Null("Text"));
  EXPECT_EQ(RaisedByPut("Flag", Variant::Null()), Null("Flag"));
}

TEST_F(Conversion, OtherTypesAre13) {
  const VariantArray array(Variant::Type::kInt32, {{1, 1}}, {5});
  EXPECT_EQ(RaisedByPut("Text", array), Mismatch("Text", "a text"));
  EXPECT_EQ(RaisedByPut("Tint", array), Mismatch("Tint", "a color number"));
  EXPECT_EQ(RaisedByPut("Direction", Variant::Error{5}),
            Mismatch("Direction", "a number of ImageProcessingDirectionConstants"));
  EXPECT_EQ(RaisedByPut("Real", Variant::Record{"R"}), Mismatch("Real", "a number"));
  EXPECT_EQ(RaisedByPut("Text", ToVariant(reference_)), Mismatch("Text", "a text"));
}

TEST_F(Conversion, WindowsOfMoreThan32BitsAreDoubles) {
  sample().Window(WindowHandle{1} << 40);
  EXPECT_EQ(Get(reference(), "Window").ToDouble(), 1099511627776.0);
  EXPECT_EQ(After("Window", 1099511627777.0).ToDouble(), 1099511627777.0);
  EXPECT_EQ(sample().Window(), (WindowHandle{1} << 40) + 1);
}

TEST_F(Conversion, AVariantTakesEverything) {
  EXPECT_EQ(After("Any", "text").ToString(), "text");
  EXPECT_EQ(After("Any", Variant::Null()).TypeCode(), static_cast<std::int32_t>(Variant::Type::kNull));
  const Variant object = After("Any", ToVariant(reference_));
  EXPECT_TRUE(ReferenceIn(object).IsSame(reference()));
  sample().Any({});
}

}  // namespace
}  // namespace kestrel::dispatch
