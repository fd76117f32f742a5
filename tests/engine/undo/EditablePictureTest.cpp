#include "engine/undo/EditablePicture.h"

#include <array>
#include <vector>

#include "Pictures.h"
#include "imaging/contract/ImageView.h"

namespace kestrel::engine {
namespace {

struct Watched : EditablePicture {
  explicit Watched(Bitmap bitmap, std::int32_t levels = 5) {
    put({std::move(bitmap)}, {});
    undoLevels(0);
    undoLevels(levels);
    modified(false);
    onChange = [this](const PictureChange& change) { changes.push_back(change); };
  }

  void draw(const Rectangle& area, Pixel value, const std::string& name) {
    paint(std::array{area}, name,
          [&](Pixels pixels) { fill(pixels, area.Left, area.Top, area.Width, area.Height, value); });
  }

  std::vector<PictureChange> changes;
};

TEST(EditablePicture, AChangeSetsModifiedAndNotifiesOnce) {
  Watched picture(noise(40, 30));
  EXPECT_FALSE(picture.modified());
  picture.replacePixels(noise(20, 10, 2), "Crop");
  EXPECT_TRUE(picture.modified());
  ASSERT_EQ(picture.changes.size(), 1U);
  EXPECT_EQ(picture.changes[0].area, (Rectangle{0, 0, 20, 10}));
  EXPECT_FALSE(picture.changes[0].otherPicture);
}

TEST(EditablePicture, EachChangeOfModifiedNotifiesBeforeTheChangeOfThePicture) {
  Watched picture(noise(40, 30));
  std::vector<bool> values;
  std::size_t changesBefore = 0;
  picture.onModifiedChange = [&] {
    values.push_back(picture.modified());
    changesBefore = picture.changes.size();
  };
  picture.draw({0, 0, 4, 4}, {1, 1, 1, 1}, "One");
  EXPECT_EQ(changesBefore, 0U);
  picture.draw({0, 0, 4, 4}, {2, 2, 2, 2}, "Two");
  picture.modified(true);
  picture.modified(false);
  picture.modified(false);
  picture.undo();
  EXPECT_EQ(values, (std::vector<bool>{true, false, true}));

  picture.modified(false);
  values.clear();
  auto point = picture.createUndoPoint("Point");
  picture.replacePixels(noise(50, 60, 3), kNoUndo);
  picture.takeBack(std::move(point));
  EXPECT_EQ(values, (std::vector<bool>{true, false}));
}

TEST(EditablePicture, AssigningAPictureNotifiesOfANewPicture) {
  Watched picture(noise(40, 30));
  picture.put({noise(4, 4, 2), 7}, "");
  ASSERT_EQ(picture.changes.size(), 1U);
  EXPECT_TRUE(picture.changes[0].otherPicture);
  EXPECT_EQ(picture.state().format, 7);
  picture.undo();
  EXPECT_EQ(picture.state().format, 0);
}

TEST(EditablePicture, APictureAssignedUnderNoUndoIsALoad) {
  Watched picture(noise(40, 30));
  picture.put({noise(4, 4, 2), 7}, kNoUndo);
  picture.put({noise(4, 4, 3), 7}, "");
  picture.replacePixels(noise(4, 4, 4), kNoUndo);
  ASSERT_EQ(picture.changes.size(), 3U);
  EXPECT_TRUE(picture.changes[0].loaded);
  EXPECT_FALSE(picture.changes[1].loaded);
  EXPECT_FALSE(picture.changes[2].loaded);
}

TEST(EditablePicture, FormatStaysWithThePictureThroughAnEdit) {
  Watched picture(noise(8, 8));
  picture.put({noise(8, 8), 2}, "");
  picture.replacePixels(noise(4, 4), "");
  EXPECT_EQ(picture.state().format, 2);
}

TEST(EditablePicture, UndoAndRedoOfDrawingRestoreEveryPixel) {
  const Bitmap before = noise(200, 150);
  Watched picture(deepCopy(before));
  picture.draw({50, 40, 60, 70}, {9, 8, 7, 255}, "Box");
  const Bitmap after = deepCopy(picture.bitmap());
  EXPECT_EQ(picture.changes.back().area, (Rectangle{50, 40, 60, 70}));
  EXPECT_EQ(picture.history().undoName(), "Box");
  picture.undo();
  EXPECT_TRUE(samePixels(picture.bitmap(), before));
  picture.redo();
  EXPECT_TRUE(samePixels(picture.bitmap(), after));
  EXPECT_EQ(picture.changes.size(), 3U);
}

TEST(EditablePicture, AWholePictureStepHoldsTheOldBitmapByReference) {
  const Bitmap before = noise(64, 64);
  Watched picture(before);
  picture.replacePixels(noise(64, 64, 2), "");
  picture.undo();
  EXPECT_TRUE(picture.bitmap().sharesPixelsWith(before));
}

TEST(EditablePicture, ADrawingStepHoldsTheTouchedTilesOnly) {
  Watched picture(noise(1000, 1000));
  picture.draw({100, 100, 10, 10}, {}, "");
  EXPECT_LT(picture.undoMemory(), 4U * 5000);
}

TEST(EditablePicture, ALargeDrawingHoldsTheWholePictureRatherThanItsTiles) {
  Watched picture(noise(3000, 1500));
  const Bitmap before = deepCopy(picture.bitmap());
  picture.draw({0, 0, 3000, 1450}, {1, 2, 3, 255}, "");
  EXPECT_EQ(picture.undoMemory(), picture.bitmap().byteSize());
  picture.undo();
  EXPECT_TRUE(samePixels(picture.bitmap(), before));
}

TEST(EditablePicture, ManySmallChangesEndAsAWholePictureToo) {
  Watched picture(noise(3000, 1500));
  const Bitmap before = deepCopy(picture.bitmap());
  {
    Painting painting(picture);
    for (std::int32_t y = 0; y < 1500; y += 10) {
      painting.touch(std::array{Rectangle{0, y, 3000, 10}});
      fill(painting.pixels(), 0, y, 3000, 10, {5, 5, 5, 5});
    }
    painting.commit("");
  }
  EXPECT_EQ(picture.undoMemory(), picture.bitmap().byteSize());
  picture.undo();
  EXPECT_TRUE(samePixels(picture.bitmap(), before));
}

TEST(EditablePicture, DrawingWithoutAPictureIsNoChange) {
  Watched picture(noise(10, 10));
  picture.paint({}, "Box", [](Pixels) {});
  EXPECT_TRUE(picture.changes.empty());
  EXPECT_EQ(picture.history().undoSteps(), 0);
  EXPECT_FALSE(picture.modified());
}

TEST(EditablePicture, DrawingDoesNotChangeAPictureHandedOut) {
  Watched picture(noise(64, 64));
  const Bitmap given = picture.bitmap();
  const Bitmap copy = deepCopy(given);
  picture.draw({0, 0, 64, 64}, {}, "");
  EXPECT_TRUE(samePixels(given, copy));
  picture.undo();
  EXPECT_TRUE(samePixels(picture.bitmap(), copy));
}

// "No Undo"

TEST(EditablePicture, NoUndoRecordsNothingAndDropsTheRedoSteps) {
  Watched picture(noise(32, 32));
  picture.replacePixels(noise(32, 32, 2), "One");
  picture.undo();
  picture.replacePixels(noise(32, 32, 3), kNoUndo);
  EXPECT_EQ(picture.history().undoSteps(), 0);
  EXPECT_EQ(picture.history().redoSteps(), 0);
  EXPECT_EQ(picture.changes.size(), 3U);
}

TEST(EditablePicture, ASmallerPictureUnderNoUndoKeepsTheStepBelow) {
  const Bitmap before = noise(100, 100);
  Watched picture(deepCopy(before));
  picture.draw({80, 80, 20, 20}, {}, "Box");
  picture.replacePixels(noise(10, 10, 2), kNoUndo);
  picture.undo();
  EXPECT_TRUE(samePixels(picture.bitmap(), before));
  picture.redo();
  EXPECT_TRUE(samePixels(picture.bitmap(), noise(10, 10, 2)));
}

TEST(EditablePicture, DrawingUnderNoUndoIsUndoneWithTheStepBelow) {
  const Bitmap before = noise(100, 100);
  Watched picture(deepCopy(before));
  picture.draw({0, 0, 40, 40}, {}, "Box");
  picture.draw({30, 30, 60, 60}, {1, 2, 3, 4}, kNoUndo);
  EXPECT_EQ(picture.history().undoSteps(), 1);
  picture.undo();
  EXPECT_TRUE(samePixels(picture.bitmap(), before));
}

// Undo points

TEST(EditablePicture, AnUndoPointCoversTheUnrecordedWorkThatFollows) {
  const Bitmap before = noise(100, 100);
  Watched picture(deepCopy(before));
  picture.createUndoPoint("Contoured Drop Shadow");
  EXPECT_TRUE(picture.changes.empty());
  picture.replacePixels(noise(120, 90, 2), kNoUndo);
  picture.draw({0, 0, 50, 50}, {}, kNoUndo);
  EXPECT_EQ(picture.history().undoSteps(), 1);
  EXPECT_EQ(picture.history().undoName(), "Contoured Drop Shadow");
  picture.undo();
  EXPECT_TRUE(samePixels(picture.bitmap(), before));
  EXPECT_EQ(picture.history().redoName(), "Contoured Drop Shadow");
}

TEST(EditablePicture, AnUnnamedStepAfterAnUndoPointIsASeparateStep) {
  const Bitmap before = noise(100, 100);
  Watched picture(deepCopy(before));
  picture.createUndoPoint("Point");
  picture.draw({0, 0, 50, 50}, {}, "");
  EXPECT_EQ(picture.history().undoSteps(), 2);
  EXPECT_EQ(picture.history().undoName(), "");
  picture.undo();
  EXPECT_TRUE(samePixels(picture.bitmap(), before));
  EXPECT_EQ(picture.history().undoName(), "Point");
  picture.undo();
  EXPECT_TRUE(samePixels(picture.bitmap(), before));
  EXPECT_EQ(picture.history().undoSteps(), 0);
}

TEST(EditablePicture, TakingBackAPointRestoresPictureStepsAndModified) {
  const Bitmap first = noise(100, 100);
  Watched picture(deepCopy(first), 2);
  picture.draw({0, 0, 40, 40}, {1, 1, 1, 1}, "One");
  picture.draw({0, 0, 40, 40}, {2, 2, 2, 2}, "Two");
  picture.replacePixels(noise(100, 100, 7), "Three");
  picture.undo();
  picture.modified(false);
  const Bitmap before = deepCopy(picture.bitmap());
  picture.changes.clear();

  auto point = picture.createUndoPoint("Point");
  EXPECT_EQ(picture.history().redoSteps(), 0);
  picture.replacePixels(noise(50, 60, 3), kNoUndo);
  picture.takeBack(std::move(point));
  EXPECT_TRUE(samePixels(picture.bitmap(), before));
  EXPECT_EQ(picture.changes.size(), 2U) << "the change, and its being taken back";
  EXPECT_FALSE(picture.modified());
  EXPECT_EQ(picture.history().undoName(), "Two");
  EXPECT_EQ(picture.history().redoName(), "Three");
  picture.redo();
  EXPECT_TRUE(samePixels(picture.bitmap(), noise(100, 100, 7)));
  picture.undo();
  picture.undo();
  EXPECT_EQ(picture.history().undoSteps(), 0)
      << "two levels kept two steps, and the third displaced the first";
}

TEST(EditablePicture, TakingBackAPointRestoresTheStepItDisplaced) {
  const Bitmap first = noise(100, 100);
  Watched picture(deepCopy(first), 2);
  picture.draw({0, 0, 40, 40}, {1, 1, 1, 1}, "One");
  picture.draw({0, 0, 40, 40}, {2, 2, 2, 2}, "Two");
  auto point = picture.createUndoPoint("Point");
  EXPECT_EQ(picture.history().undoSteps(), 2);
  picture.takeBack(std::move(point));
  EXPECT_EQ(picture.history().undoSteps(), 2);
  picture.undo();
  picture.undo();
  EXPECT_TRUE(samePixels(picture.bitmap(), first));
}

TEST(EditablePicture, APointIsTakenBackWithoutUndoLevelsToo) {
  const Bitmap before = noise(20, 20);
  Watched picture(deepCopy(before), 0);
  auto point = picture.createUndoPoint("Point");
  picture.replacePixels(noise(20, 20, 3), kNoUndo);
  picture.takeBack(std::move(point));
  EXPECT_TRUE(samePixels(picture.bitmap(), before));
  EXPECT_FALSE(picture.modified());
}

TEST(EditablePicture, APointIsNotTakenBackOnceAnotherStepIsRecorded) {
  Watched picture(noise(20, 20));
  auto point = picture.createUndoPoint("Point");
  picture.replacePixels(noise(20, 20, 3), "Later");
  picture.takeBack(std::move(point));
  EXPECT_TRUE(samePixels(picture.bitmap(), noise(20, 20, 3)));
  EXPECT_EQ(picture.history().undoSteps(), 2);
}

TEST(EditablePicture, ChangesOfTheStepsAloneAreNotified) {
  Watched picture(noise(20, 20));
  int calls = 0;
  picture.onStepsChange = [&] { ++calls; };
  auto point = picture.createUndoPoint("Point");
  EXPECT_EQ(calls, 1);
  picture.takeBack(std::move(point));
  EXPECT_EQ(calls, 2);
  picture.undoLevels(0);
  EXPECT_EQ(calls, 3);
  EXPECT_TRUE(picture.changes.empty());
}

TEST(EditablePicture, ANamedStepAfterAnUndoPointKeepsItsName) {
  Watched picture(noise(10, 10));
  picture.createUndoPoint("Point");
  picture.draw({0, 0, 5, 5}, {}, "Cut");
  EXPECT_EQ(picture.history().undoName(), "Cut");
}

// Work in progress

TEST(Painting, IsRevertedUnlessCommitted) {
  Watched picture(noise(100, 100));
  const Bitmap before = deepCopy(picture.bitmap());
  {
    Painting painting(picture);
    painting.touch(std::array{Rectangle{10, 10, 50, 50}});
    fill(painting.pixels(), 10, 10, 50, 50, {});
    EXPECT_FALSE(samePixels(picture.bitmap(), before));
  }
  EXPECT_TRUE(samePixels(picture.bitmap(), before));
  EXPECT_TRUE(picture.changes.empty());
  EXPECT_FALSE(picture.modified());
}

TEST(Painting, IsRevertedWhenSomethingElseChangesThePicture) {
  Watched picture(noise(100, 100));
  const Bitmap before = deepCopy(picture.bitmap());
  Painting painting(picture);
  painting.touch(std::array{Rectangle{10, 10, 50, 50}});
  fill(painting.pixels(), 10, 10, 50, 50, {});
  picture.replacePixels(noise(20, 20, 2), "Other");
  EXPECT_TRUE(painting.ended());
  painting.commit("Late");
  EXPECT_EQ(picture.history().undoName(), "Other");
  picture.undo();
  EXPECT_TRUE(samePixels(picture.bitmap(), before));
}

TEST(Painting, AnErrorRestoresPictureAndHistory) {
  Watched picture(noise(100, 100));
  picture.draw({0, 0, 10, 10}, {}, "One");
  picture.draw({0, 0, 10, 10}, {1, 1, 1, 1}, "Two");
  picture.undo();
  const Bitmap before = deepCopy(picture.bitmap());
  EXPECT_THROW(picture.paint(std::array{Rectangle{0, 0, 60, 60}}, "Three",
                             [](Pixels pixels) {
                               fill(pixels, 0, 0, 30, 30, {});
                               throw std::bad_alloc();
                             }),
               std::bad_alloc);
  EXPECT_TRUE(samePixels(picture.bitmap(), before));
  EXPECT_EQ(picture.history().undoName(), "One");
  EXPECT_EQ(picture.history().redoName(), "Two");
}

}  // namespace
}  // namespace kestrel::engine
