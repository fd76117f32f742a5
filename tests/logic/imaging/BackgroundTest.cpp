#include <limits>

#include "ImagingTest.h"
#include "platform/headless/ImageView.h"

namespace kestrel {
namespace {

using namespace modImgX;
using testing::ElementsAre;
using testing::IsEmpty;

/// Records the calls of a drawing helper.
class DrawSpy final : public Draw {
 public:
  Colour& Color() override { return color_; }
  std::int32_t FillMode() const override { return fillMode_; }
  void FillMode(std::int32_t value) override {
    fillMode_ = value;
    calls.push_back("FillMode=" + std::to_string(value));
  }
  std::int32_t PenSetting() const override { return 1; }
  void PenSetting(std::int32_t) override {}
  void Rectangle(const Point& start, const Point& end, std::int32_t radiusX, std::int32_t radiusY,
                 const std::string& undoName) override {
    calls.push_back("Rectangle " + std::to_string(start.X) + ',' + std::to_string(start.Y) + ' ' +
                    std::to_string(end.X) + ',' + std::to_string(end.Y) + ' ' + std::to_string(radiusX) +
                    ',' + std::to_string(radiusY) + " \"" + undoName + "\" color " +
                    std::to_string(color_.Value()) + " fill " + std::to_string(fillMode_));
  }
  void Image(const kestrel::Image&, std::int32_t, std::int32_t, const Colour*, float, bool,
             const std::string&) override {}
  void ImageWithAlpha(const kestrel::Image&, std::int32_t, std::int32_t, const std::string&) override {}

  std::vector<std::string> calls;

 private:
  Colour color_;
  std::int32_t fillMode_ = 77;
};

TEST(DrawBoxes, WithBothColorsFillFirstAndOutlineOverIt) {
  DrawSpy draw;
  DrawBox(draw, 2, 3, 10, 20, 111, 222);
  EXPECT_THAT(draw.calls, ElementsAre("FillMode=6", "Rectangle 2,3 12,23 0,0 \"\" color 222 fill 6",
                                      "FillMode=-1", "Rectangle 2,3 12,23 0,0 \"\" color 111 fill -1"));
  EXPECT_EQ(draw.Color().Value(), 111) << "the color stays changed";
}

TEST(DrawBoxes, WithABackgroundAloneFillOnly) {
  DrawSpy draw;
  DrawBox(draw, 0, 0, 5, 5, -1, 222);
  EXPECT_THAT(draw.calls,
              ElementsAre("FillMode=6", "Rectangle 0,0 5,5 0,0 \"\" color 222 fill 6", "FillMode=-1"));
}

TEST(DrawBoxes, WithAForegroundAloneKeepTheFillMode) {
  DrawSpy draw;
  DrawBox(draw, 0, 0, 5, 5, 111, -1);
  EXPECT_THAT(draw.calls, ElementsAre("Rectangle 0,0 5,5 0,0 \"\" color 111 fill 77"));
}

TEST(DrawBoxes, WithoutColorsDrawNothing) {
  DrawSpy draw;
  DrawBox(draw, 0, 0, 5, 5, -1, -1);
  EXPECT_THAT(draw.calls, IsEmpty());
}

TEST(DrawBoxes, WithEdgesBeyond32BitsRaise6) {
  constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();
  DrawSpy draw;
  for (const auto& box : {Rectangle{1, 0, kMost, 5}, Rectangle{0, 1, 5, kMost}}) {
    try {
      DrawBox(draw, box.Left, box.Top, box.Width, box.Height, 1, 2);
      FAIL() << "nothing was raised";
    } catch (const RuntimeError& error) {
      EXPECT_EQ(error.Number(), 6);
    }
  }
  EXPECT_THAT(draw.calls, IsEmpty());
}

class Background : public ImagingTest {
 protected:
  void SetUp() override {
    ImagingTest::SetUp();
    site_ = platform().createEditorSite();
    site_->Move(0, 0, 400, 300);
    view_ = &Bind<headless::ImageView>(*site_, "igxImage");
    view_->Move(0, 0, 200, 100);
  }
  void TearDown() override {
    site_.reset();
    ImagingTest::TearDown();
  }
  headless::ImageView& view() { return *view_; }

 private:
  std::unique_ptr<headless::Site> site_;
  headless::ImageView* view_ = nullptr;
};

TEST_F(Background, HasColor1TopRightAndBottomLeftAndColor2Elsewhere) {
  view().Document().NewImage(300, 200, nullptr, kPixelFormatRgba, kNoUndo);
  SetupBackground(view(), 10, 0x000000FF, 0x0000FF00);
  const engine::Bitmap painted = view().painted();
  const auto colorOf = [&](std::int32_t x, std::int32_t y) {
    const engine::Pixel pixel = painted.at(x, y);
    return pixel.r | (pixel.g << 8) | (pixel.b << 16);
  };
  // The phase of the tiles belongs to the view: only the pattern is checked.
  const std::int32_t here = colorOf(5, 5);
  const std::int32_t there = colorOf(15, 5);
  EXPECT_NE(here, there);
  EXPECT_TRUE(here == 0x000000FF || here == 0x0000FF00);
  EXPECT_TRUE(there == 0x000000FF || there == 0x0000FF00);
  EXPECT_EQ(colorOf(5, 15), there);
  EXPECT_EQ(colorOf(15, 15), here);
  EXPECT_EQ(colorOf(25, 5), here);
}

TEST_F(Background, TheTileIsTwiceTheSizeWithColor1TopRightAndBottomLeft) {
  const auto tile = platform().CreateImgX();
  DrawBackgroundTile(*tile, 10, 0x000000FF, 0x0000FF00);
  ASSERT_EQ(tile->Image()->Width(), 20);
  ASSERT_EQ(tile->Image()->Height(), 20);
  for (std::int32_t y = 0; y < 20; ++y) {
    for (std::int32_t x = 0; x < 20; ++x) {
      const bool second = (x < 10) == (y < 10);
      ASSERT_EQ(colorAt(*tile->Image(), x, y), second ? 0x0000FF00 : 0x000000FF) << x << ", " << y;
      ASSERT_EQ(tile->Image()->GetPixel(x, y).Alpha(), 255);
    }
  }
}

TEST_F(Background, LeavesTheViewsColorAndFillMode) {
  view().Draw().Color().Value(0x00123456);
  view().Draw().FillMode(6);
  SetupBackground(view(), 10, 0x000000FF, 0x0000FF00);
  EXPECT_EQ(view().Draw().Color().Value(), 0x00123456);
  EXPECT_EQ(view().Draw().FillMode(), 6);
}

TEST_F(Background, LeavesTheViewsPictureUndoAndModified) {
  const Colour red(0x000000FF);
  view().Document().NewImage(30, 20, &red, kPixelFormatRgba, kNoUndo);
  view().UndoLevels(5);
  view().Modified(false);
  int changes = 0;
  const Connection connection = view().Changed.Connect([&] { ++changes; });
  SetupBackground(view(), 10, 0x000000FF, 0x0000FF00);
  EXPECT_EQ(changes, 0);
  EXPECT_FALSE(view().Modified());
  EXPECT_EQ(view().UndoName(), "");
  EXPECT_EQ(view().Image()->Width(), 30);
  EXPECT_EQ(colorAt(*view().Image(), 5, 5), 0x000000FF);
}

TEST_F(Background, OfSquaresBeyond32BitsRaises6) {
  try {
    SetupBackground(view(), 1'100'000'000, 0, 0);
    FAIL() << "nothing was raised";
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.Number(), 6);
  }
}

TEST_F(Background, TheGrayPaletteLeavesNoColorAndKeepsAlpha) {
  const auto picture = platform().CreateImgX();
  const Colour half(0x00204080, 100);
  picture->Document().NewImage(4, 4, &half);
  ApplyPalette(*picture, 0);
  const Colour gray = picture->Image()->GetPixel(1, 1);
  EXPECT_EQ(gray.Red(), gray.Green());
  EXPECT_EQ(gray.Green(), gray.Blue());
  EXPECT_EQ(gray.Alpha(), 100);
}

}  // namespace
}  // namespace kestrel
