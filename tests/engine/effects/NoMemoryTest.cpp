#include <new>

#include "FailingAllocator.h"
#include "Pictures.h"
#include "engine/effects/Canvas.h"
#include "engine/effects/Composite.h"
#include "engine/effects/Crop.h"
#include "engine/effects/DropShadow.h"
#include "engine/effects/Flatten.h"
#include "engine/effects/Flip.h"
#include "engine/effects/GrayScale.h"
#include "engine/effects/ReplaceColor.h"
#include "engine/effects/Rotate.h"
#include "engine/effects/gaussian/Blur.h"
#include "engine/effects/resample/Resize.h"

namespace kestrel::engine {
namespace {

using namespace test;

TEST(NoMemory, DuringAnEffectLeavesThePictureUnchanged) {
  const Bitmap picture = randomPicture(300, 280, AlphaKind::Any);
  const Bitmap expected = madeBy(300, 280, [&](int x, int y) { return picture.at(x, y); });
  const std::function<Bitmap()> effects[] = {
      [&] { return crop(picture, 1, 1, 200, 200); },
      [&] { return resizeCanvas(picture, 400, 400, {}, 9, 9); },
      [&] { return flip(picture, FlipDirection::LeftToRight); },
      [&] { return rotate(picture, 90); },
      [&] { return rotate(picture, 33); },
      [&] { return grayScale(picture); },
      [&] { return flatten(picture, {}); },
      [&] { return replaceColor(picture, {}, {}, 3); },
      [&] { return composite(picture, picture, 5, 5); },
      [&] { return resize(picture, 100, 0, ResampleMethod::Lanczos3); },
      [&] { return resize(picture, 500, 500, ResampleMethod::Bicubic); },
      [&] { return resize(picture, 99, 99, ResampleMethod::Pixel); },
      [&] { return blur(picture, 1.5); },
      [&] { return blur(picture, 30); },
      [&] {
        return dropShadow(picture, 5, 5, {0, 0, 0, 99}, 200);
      },
  };
  for (const auto& effect : effects) {
    const Bitmap whole = effect();
    int failures = 0;
    for (bool done = false; !done; ++failures) {
      Bitmap result;
      kestrel::test::failAllocationsAfter(failures);
      try {
        result = effect();
        done = true;
      } catch (const std::bad_alloc&) {
      } catch (const RuntimeError& error) {
        kestrel::test::failAllocationsAfter(-1);
        EXPECT_EQ(error.Number(), err::kOutOfMemory);
      }
      kestrel::test::failAllocationsAfter(-1);
      ASSERT_TRUE(samePicture(picture, expected));
      ASSERT_TRUE(!done || samePicture(result, whole));
      ASSERT_LT(failures, 5000);
    }
    EXPECT_GT(failures, 1) << "the effect asked for no memory";
  }
}

}  // namespace
}  // namespace kestrel::engine
