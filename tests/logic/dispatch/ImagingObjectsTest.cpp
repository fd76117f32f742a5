// The view, the pictures and their sub-objects, late-bound.

#include "HostFixture.h"
#include "engine/pixels/Bitmap.h"

namespace kestrel::dispatch {
namespace {

using testing::StartsWith;

const Variant kNothing = Variant::ObjectReference();

class LateBoundImaging : public HostFixture {
 protected:
  void SetUp() override {
    HostFixture::SetUp();
    control_ = embedded();
    Call(*control_, "OpenImage", png());
    view_ = Get(*control_, "ImageControl");
  }
  void TearDown() override {
    control_.reset();
    view_ = {};
    HostFixture::TearDown();
  }

  static Variant point(std::int32_t x, std::int32_t y) {
    const auto made = Create("Point");
    Put(*made, "X", x);
    Put(*made, "Y", y);
    return ToVariant(made);
  }
  static std::int32_t number(const Variant& object, const std::string& name) {
    return get(object, name).ToInt32();
  }
  static bool same(const Variant& left, const Variant& right) {
    return ReferenceIn(left).IsSame(ReferenceIn(right));
  }
  static Variant call(const Variant& object, const std::string& name, std::vector<Variant> arguments = {}) {
    return Invoke(ReferenceIn(object), name, Use::kGet, arguments);
  }

  Reference::Pointer control_;
  Variant view_;
};

TEST_F(LateBoundImaging, DrawsBetweenTwoPoints) {
  const Variant draw = get(view_, "Draw");
  Put(ReferenceIn(get(draw, "Color")), "Value", 255);
  Put(ReferenceIn(draw), "FillMode", 6);
  call(draw, "Rectangle", {point(0, 0), point(10, 10)});
  const Variant image = get(view_, "Image");
  const Variant inside = call(image, "GetPixel", {2, 2});
  EXPECT_EQ(number(inside, "Value"), 255);
  EXPECT_EQ(number(inside, "Red"), 255);
  EXPECT_EQ(number(inside, "Alpha"), 255);
  const Variant outside = call(image, "GetPixel", {20, 20});
  EXPECT_EQ(number(outside, "Red"), 0x99);
  EXPECT_EQ(number(outside, "Green"), 0x66);
  EXPECT_EQ(number(outside, "Blue"), 0x33);
  EXPECT_THAT(raised([&] { call(image, "GetPixel", {40, 0}); }), StartsWith("5 "));
}

TEST_F(LateBoundImaging, AColorIsMadeByColors) {
  const Variant colors = get(view_, "Colors");
  const Variant color = call(colors, "Create", {0x112233, 128});
  EXPECT_EQ(number(color, "Red"), 0x33);
  EXPECT_EQ(number(color, "Alpha"), 128);
  EXPECT_TRUE(get(call(colors, "Create", {-1}), "IsNone").ToBoolean());
  EXPECT_FALSE(same(color, call(colors, "Create", {0x112233, 128}))) << "each is a value of its own";
}

TEST_F(LateBoundImaging, TheColorOfDrawIsThatOfThePictureOfNow) {
  const Variant picture = get(view_, "ImgX");
  const Variant color = get(get(picture, "Draw"), "Color");
  const Variant ofView = get(get(view_, "Draw"), "Color");
  EXPECT_TRUE(same(color, ofView)) << "the view's own object shares its settings";

  call(get(picture, "Document"), "NewImage", {4, 4, kNothing});
  EXPECT_FALSE(same(color, ofView));
  const std::int32_t before = number(ofView, "Value");
  Put(ReferenceIn(color), "Value", before + 1);
  EXPECT_EQ(number(ofView, "Value"), before);
  EXPECT_EQ(number(get(get(picture, "Draw"), "Color"), "Value"), before + 1);
}

TEST_F(LateBoundImaging, AnImageIsThatOfTheLatestLoad) {
  const Variant image = get(view_, "Image");
  call(get(view_, "Document"), "NewImage", {7, 5, kNothing});
  EXPECT_EQ(number(image, "Width"), 7);
  EXPECT_EQ(number(image, "Height"), 5);
  EXPECT_TRUE(same(image, get(view_, "Image")));
}

TEST_F(LateBoundImaging, AFreePictureHasNoImageUntilItIsGivenOne) {
  const Variant scratch = ToVariant(Create("ImgX"));
  EXPECT_EQ(get(scratch, "Image").AsObject(), nullptr);
  EXPECT_THAT(raised([&] { call(get(scratch, "Effects"), "Flip", {0}); }), StartsWith("91 "));
  call(get(scratch, "Document"), "CopyFrom", {get(view_, "ImgX")});
  EXPECT_EQ(number(get(scratch, "Image"), "Width"), 40);

  call(get(scratch, "Effects"), "ApplyPalette", {ToVariant(Create("Palette")), false});
  const Variant pixel = call(get(scratch, "Image"), "GetPixel", {0, 0});
  EXPECT_EQ(number(pixel, "Red"), number(pixel, "Green"));
  EXPECT_EQ(number(pixel, "Red"), number(pixel, "Blue"));
  EXPECT_EQ(number(call(get(view_, "Image"), "GetPixel", {0, 0}), "Red"), 0x99) << "the view's own is kept";
}

TEST_F(LateBoundImaging, SubObjectsOfAFreePictureKeepItAlive) {
  const Variant document = get(ToVariant(Create("ImgX")), "Document");
  call(document, "NewImage", {3, 2, kNothing});
  EXPECT_EQ(raised([&] { call(document, "FromPicture", {get(view_, "Picture")}); }), "");
}

TEST_F(LateBoundImaging, AnUndoPointTakesFailedWorkBack) {
  EXPECT_FALSE(get(view_, "CanUndo").ToBoolean());
  const Variant undoPoint = call(view_, "CreateUndoPoint", {"Step"});
  call(get(view_, "Effects"), "Crop", {0, 0, 5, 5, "No Undo"});
  EXPECT_EQ(get(view_, "UndoName").ToString(), "Step");
  EXPECT_EQ(number(get(view_, "Image"), "Width"), 5);
  call(undoPoint, "TakeBack");
  EXPECT_EQ(number(get(view_, "Image"), "Width"), 40);
  EXPECT_FALSE(get(view_, "CanUndo").ToBoolean());
}

TEST_F(LateBoundImaging, AnUndoPointMayOutliveItsView) {
  const Variant undoPoint = call(view_, "CreateUndoPoint", {"Step"});
  endEditor();
  EXPECT_EQ(raised([&] { call(undoPoint, "TakeBack"); }), "");
}

TEST_F(LateBoundImaging, TheUndoMemoryLimitIsANumberOfBytes) {
  const auto write = [&](double bytes) {
    return raised([&] { Put(ReferenceIn(view_), "UndoMemoryLimit", bytes); });
  };
  EXPECT_EQ(write(6e9), "");
  EXPECT_EQ(get(view_, "UndoMemoryLimit").ToDouble(), 6e9);
  EXPECT_THAT(write(-1), StartsWith("6 "));
  EXPECT_THAT(write(1e300), StartsWith("6 "));
  EXPECT_EQ(get(view_, "UndoMemoryLimit").ToDouble(), 6e9);
}

TEST_F(LateBoundImaging, ThePointerPixelIsNothingOffThePicture) {
  view().move(0, 0, {view().Width() / 2, view().Height() / 2});
  const auto expected = view().PointerPixel();
  ASSERT_TRUE(expected);
  EXPECT_EQ(number(get(view_, "PointerPixel"), "X"), expected->X);
  EXPECT_EQ(number(get(view_, "PointerPixel"), "Y"), expected->Y);
  view().leave();
  EXPECT_EQ(get(view_, "PointerPixel").AsObject(), nullptr);
}

TEST_F(LateBoundImaging, APictureIsDrawnOnTheBackBufferDuringTheEvent) {
  Put(ReferenceIn(view_), "DoubleBuffer", true);
  const Variant surface = get(get(view_, "ImgX"), "Surface");
  Variant kept;
  std::int32_t width = 0;
  std::string refused;
  on(ReferenceIn(view_), "DoubleBufferPaintAfter", [&](std::span<Variant> arguments) {
    kept = arguments[0];
    width = number(kept, "Width");
    call(surface, "DrawTo", {kept, 0, 0});
    refused = raised([&] { call(surface, "DrawTo", {kept, 0, 0, 1}); });
  });
  const engine::Bitmap painted = view().painted();
  EXPECT_EQ(width, view().Width());
  EXPECT_EQ(painted.pixels().data[0], 0x99) << "the picture's red in the corner of the view";
  EXPECT_THAT(refused, StartsWith("5 ")) << "another raster operation";
  EXPECT_EQ(raisedByGet(kept, "Width"), "91 The object of class DeviceContext no longer exists.");
}

TEST_F(LateBoundImaging, ANoticeHasAButtonIfItIsGivenOne) {
  call(view_, "SetNotice", {"The file was damaged.", "Details"});
  EXPECT_EQ(get(view_, "Notice").ToString(), "The file was damaged.");
  EXPECT_EQ(view().noticeButton(), "Details");
  int pressed = 0;
  on(ReferenceIn(view_), "NoticeAction", [&](std::span<Variant>) { ++pressed; });
  view().pressNoticeButton();
  EXPECT_EQ(pressed, 1);
  call(view_, "SetNotice", {""});
  EXPECT_EQ(get(view_, "Notice").ToString(), "");
}

TEST_F(LateBoundImaging, SubObjectsEndWithTheEditor) {
  std::vector<Variant> parts;
  for (const char* name : {"Document", "Draw", "Effects", "Writer", "Alpha", "Colors", "Image"}) {
    parts.push_back(get(view_, name));
  }
  parts.push_back(get(get(view_, "Draw"), "Color"));
  endEditor();
  for (const Variant& part : parts) {
    const Reference& reference = ReferenceIn(part);
    EXPECT_THAT(raised([&] { reference.Target(); }), StartsWith("91 ")) << reference.TypeName();
  }
}

}  // namespace
}  // namespace kestrel::dispatch
