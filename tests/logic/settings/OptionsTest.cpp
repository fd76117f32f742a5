#include "settings/Options.h"

#include <functional>
#include <ostream>

#include "Settings.h"
#include "settings/StoredQuality.h"

namespace kestrel {
namespace {

/// A property with its stored name, kind and default. Booleans are 0 and 1.
struct Property {
  const char* name;
  const char* section;
  const char* valueName;
  std::int32_t kind;
  std::int32_t defaultValue;
  bool isBoolean;
  std::function<std::int32_t(const Options&)> get;
  std::function<void(Options&, std::int32_t)> let;
};

void PrintTo(const Property& property, std::ostream* out) { *out << property.name; }

#define NUMBER(Name, Section, ValueName, Kind, Default)                                                     \
  Property {                                                                                                \
#Name, Section, ValueName, Kind, Default, false, [](const Options& o) { return std::int32_t{o.Name()}; }, \
        [](Options& o, std::int32_t value) { o.Name(static_cast<decltype(o.Name())>(value)); } \
  }
#define BOOLEAN(Name, Section, ValueName, Default)                                                        \
  Property {                                                                                              \
#Name, Section, ValueName, kStoreNumber, Default, true,                                               \
        [](const Options& o) { return o.Name() ? 1 : 0; }, [](Options & o,                                \
                                                              std::int32_t value) { o.Name(value != 0); } \
  }

// clang-format off
const Property kProperties[] = {
    NUMBER(JPEGQuality, "JPEG", "Quality", kStoreNumber, 75),
    NUMBER(MaterialBackColor, "Materials", "BackColor", kStoreString, -1),
    NUMBER(MaterialForeColor, "Materials", "ForeColor", kStoreNumber, 255),
    NUMBER(ThumbnailSize, "Thumbnails", "SizeEx", kStoreNumber, 30),
    NUMBER(ThumbnailBackgroundColor, "Thumbnails", "BackgroundColor", kStoreNumber, 16777215),
    BOOLEAN(ThumbnailAutomaticUpdate, "Thumbnails", "AutomaticUpdate", 0),
    BOOLEAN(ThumbnailAddDropShadow, "Thumbnails", "AddDropShadow", 1),
    BOOLEAN(ThumbnailAutoCheck, "Thumbnails", "AutoCheck", 1),
    NUMBER(ZoomLevel, "Settings", "Zoom", kStoreNumber, 10),
    NUMBER(UndoLevels, "Settings", "UndoLevels", kStoreNumber, 10),
    BOOLEAN(ResizeCanvasLockAspectRatio, "ResizeCanvas", "LockAspectRatio", 1),
    NUMBER(ResizeCanvasWidth, "ResizeCanvas", "Width", kStoreNumber, 0),
    NUMBER(ResizeCanvasPlacement, "ResizeCanvas", "Placement", kStoreNumber, 4),
    NUMBER(ResizeCanvasHeight, "ResizeCanvas", "Height", kStoreNumber, 0),
    NUMBER(ResizeCanvasColor, "ResizeCanvas", "ResizeCanvasColor", kStoreNumber, 16777215),
    NUMBER(FlattenAlphaColor, "Channels", "FlattenAlphaColor", kStoreNumber, 16777215),
    NUMBER(PasteSpecialMaskColor, "Edit", "PasteSpecialMaskColor", kStoreNumber, 16711935),
    BOOLEAN(ResizeLockAspectRatio, "Resize", "LockAspectRatio", 1),
    NUMBER(ResizeWidth, "Resize", "Width", kStoreNumber, 0),
    NUMBER(ResizeHeight, "Resize", "Height", kStoreNumber, 0),
    NUMBER(ResizeScale, "Resize", "Scale", kStoreNumber, 0),
    NUMBER(ResizeMode, "Resize", "Mode", kStoreNumber, 2),
    NUMBER(DropShadowColor, "DropShadow", "Color", kStoreNumber, 0),
    BOOLEAN(DropShadowAutomaticMask, "DropShadow", "AutomaticMask", 1),
    NUMBER(DropShadowMaskColor, "DropShadow", "MaskColor", kStoreNumber, 0),
    NUMBER(DropShadowHorizontalOffset, "DropShadow", "HorizontalOffset", kStoreNumber, 5),
    NUMBER(DropShadowVerticalOffset, "DropShadow", "VerticalOffset", kStoreNumber, 5),
    NUMBER(DropShadowBlur, "DropShadow", "Blur", kStoreNumber, 128),
    NUMBER(DropShadowOpacity, "DropShadow", "Opacity", kStoreNumber, 75),
    NUMBER(RotateAngle, "Rotate", "Angle", kStoreNumber, 90),
    NUMBER(RotateDirection, "Rotate", "Direction", kStoreNumber, 1),
    NUMBER(BackgroundGridColor1, "Background", "Color1", kStoreNumber, 16777215),
    NUMBER(BackgroundGridColor2, "Background", "Color2", kStoreNumber, 12632256),
    NUMBER(BackgroundGridSize, "Background", "Size", kStoreNumber, 20),
    NUMBER(ThumbnailSizeType, "Thumbnails", "SizeType", kStoreNumber, 0),
};
// clang-format on

class EachOption : public Settings, public testing::WithParamInterface<Property> {
 protected:
  std::string key() const { return kRoot + "\\" + GetParam().section; }
  Variant stored() { return store_.ReadValue(HKEY_CURRENT_USER, key(), GetParam().valueName); }

  Options options_;
};

TEST_P(EachOption, ReadsItsDefaultOnAFreshProfileAndCreatesNothing) {
  EXPECT_EQ(GetParam().get(options_), GetParam().defaultValue);
  EXPECT_TRUE(store_.isEmpty());
  EXPECT_EQ(reports(), 0u);
}

TEST_P(EachOption, IsStoredUnderItsSectionAndNameAsItsKind) {
  const std::int32_t value = GetParam().isBoolean ? 1 : 1234567;
  GetParam().let(options_, value);
  EXPECT_TRUE(store_.hasKey(HKEY_CURRENT_USER, key()));
  if (GetParam().kind == kStoreString) {
    EXPECT_EQ(stored().TypeCode(), static_cast<std::int32_t>(Variant::Type::kString));
    EXPECT_EQ(stored().ToString(), "1234567");
  } else {
    EXPECT_EQ(stored().TypeCode(), static_cast<std::int32_t>(Variant::Type::kInt32));
    EXPECT_EQ(stored().ToInt32(), GetParam().isBoolean ? -1 : 1234567);
  }
  EXPECT_EQ(GetParam().get(options_), value);
}

TEST_P(EachOption, IsWrittenEvenIfItIsTheDefault) {
  GetParam().let(options_, GetParam().defaultValue);
  EXPECT_NE(stored().TypeCode(), 0);
  EXPECT_EQ(GetParam().get(options_), GetParam().defaultValue);
}

TEST_P(EachOption, KeepsNegativeNumbers) {
  GetParam().let(options_, -1);
  EXPECT_EQ(GetParam().get(options_), GetParam().isBoolean ? 1 : -1);
}

TEST_P(EachOption, IsReadFromTheStoreAtEachGet) {
  GetParam().get(options_);
  const int reads = store_.reads;
  Options another;
  GetParam().let(another, 0);
  EXPECT_EQ(GetParam().get(options_), 0);
  EXPECT_EQ(GetParam().get(options_), 0);
  EXPECT_EQ(store_.reads, reads + 2);
}

TEST_P(EachOption, ReadsItsDefaultIfTheOtherKindIsStored) {
  const bool isText = GetParam().kind == kStoreString;
  store_.WriteValue(HKEY_CURRENT_USER, key(), GetParam().valueName, 7, isText ? kStoreNumber : kStoreString);
  EXPECT_EQ(GetParam().get(options_), GetParam().defaultValue);
  EXPECT_EQ(reports(), 0u);
}

TEST_P(EachOption, ThatCannotBeReadIsReportedOnceAndIsZero) {
  store_.readsFail = true;
  EXPECT_EQ(GetParam().get(options_), 0);
  ASSERT_EQ(reports(), 1u);
  const std::string& text = platform_.boxes.boxes[0].text;
  EXPECT_NE(text.find("Module: Options\r\nProcedure: " + std::string(GetParam().name) + "\r\n"), text.npos);
  EXPECT_NE(text.find("\r\n\r\nThe store can't be read. (57)"), text.npos);
}

TEST_P(EachOption, ThatCannotBeWrittenIsReportedAndTheCallerContinues) {
  store_.writesFail = true;
  GetParam().let(options_, 1);
  ASSERT_EQ(reports(), 1u);
  store_.writesFail = false;
  EXPECT_EQ(GetParam().get(options_), GetParam().defaultValue);
}

INSTANTIATE_TEST_SUITE_P(Of, EachOption, testing::ValuesIn(kProperties),
                         [](const auto& property) { return property.param.name; });

class OptionsTest : public Settings {
 protected:
  void storeNumber(const char* section, const char* name, std::int32_t value) {
    store_.WriteValue(HKEY_CURRENT_USER, kRoot + "\\" + section, name, value, kStoreNumber);
  }
  Options options_;
};

TEST_F(OptionsTest, AreThirtyFive) { EXPECT_EQ(std::size(kProperties), 35u); }

TEST_F(OptionsTest, ReadAnyNumberButZeroAsTrue) {
  for (const std::int32_t number : {1, -1, 2, 255, static_cast<std::int32_t>(0x80000000)}) {
    storeNumber("Thumbnails", "AutomaticUpdate", number);
    EXPECT_TRUE(options_.ThumbnailAutomaticUpdate()) << number;
  }
  storeNumber("Thumbnails", "AutoCheck", 0);
  EXPECT_FALSE(options_.ThumbnailAutoCheck());
}

TEST_F(OptionsTest, ReturnTheStoredQualityOnlyIfItIsAReadableNumber) {
  EXPECT_EQ(StoredJPEGQuality(), 75) << "none is stored";
  options_.JPEGQuality(31);
  EXPECT_EQ(StoredJPEGQuality(), 31);
  store_.WriteValue(HKEY_CURRENT_USER, kRoot + "\\JPEG", "Quality", "good", kStoreString);
  EXPECT_THROW(StoredJPEGQuality(), RuntimeError);
  store_.readsFail = true;
  EXPECT_THROW(StoredJPEGQuality(), RuntimeError);
  EXPECT_EQ(reports(), 0u);
}

TEST_F(OptionsTest, StoreTheMaterialBackgroundAsText) {
  options_.MaterialBackColor(-1);
  EXPECT_EQ(store_.ReadValue(HKEY_CURRENT_USER, kRoot + "\\Materials", "BackColor").ToString(), "-1");
  EXPECT_EQ(options_.MaterialBackColor(), -1);
}

TEST_F(OptionsTest, ReportAnInvalidTextAndReadItAsZero) {
  for (const char* text : {"red", "", "12 apples", "99999999999"}) {
    const std::size_t before = reports();
    store_.WriteValue(HKEY_CURRENT_USER, kRoot + "\\Materials", "BackColor", text, kStoreString);
    EXPECT_EQ(options_.MaterialBackColor(), 0) << text;
    EXPECT_EQ(reports(), before + 1) << text;
  }
}

TEST_F(OptionsTest, KeepTheTwoWidthsApart) {
  options_.ResizeWidth(100);
  options_.ResizeCanvasWidth(200);
  EXPECT_EQ(options_.ResizeWidth(), 100);
  EXPECT_EQ(options_.ResizeCanvasWidth(), 200);
}

TEST_F(OptionsTest, DoNotValidate) {
  options_.JPEGQuality(1000);
  EXPECT_EQ(options_.JPEGQuality(), 1000);
  options_.RotateDirection(static_cast<ImageProcessingDirectionConstants>(7));
  EXPECT_EQ(options_.RotateDirection(), 7);
}

}  // namespace
}  // namespace kestrel
