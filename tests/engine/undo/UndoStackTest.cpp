#include "engine/undo/UndoStack.h"

#include <limits>

#include "Pictures.h"
#include "base/RuntimeError.h"

namespace kestrel::engine {
namespace {

/// Replaces the picture and records the step under the name.
void change(UndoStack& stack, PictureState& picture, const std::string& name, std::uint32_t seed) {
  UndoStack::Before before = picture;
  stack.record(name, before);
  picture.bitmap = noise(8, 8, seed);
}

TEST(UndoStack, StartsWithoutLevelsAndKeepsNothing) {
  UndoStack stack;
  EXPECT_EQ(stack.levels(), 0);
  PictureState picture{noise(8, 8)};
  change(stack, picture, "Step", 2);
  EXPECT_EQ(stack.undoSteps(), 0);
  EXPECT_FALSE(stack.undo(picture));
}

TEST(UndoStack, UndoesAndRedoesItsSteps) {
  UndoStack stack;
  stack.levels(3);
  PictureState picture{noise(8, 8, 1)};
  change(stack, picture, "One", 2);
  change(stack, picture, "Two", 3);
  EXPECT_EQ(stack.undoName(), "Two");
  EXPECT_EQ(stack.redoName(), "");

  EXPECT_TRUE(stack.undo(picture));
  EXPECT_TRUE(samePixels(picture.bitmap, noise(8, 8, 2)));
  EXPECT_EQ(stack.undoName(), "One");
  EXPECT_EQ(stack.redoName(), "Two");
  EXPECT_TRUE(stack.undo(picture));
  EXPECT_TRUE(samePixels(picture.bitmap, noise(8, 8, 1)));
  EXPECT_FALSE(stack.undo(picture));
  EXPECT_EQ(stack.undoName(), "");

  EXPECT_TRUE(stack.redo(picture));
  EXPECT_TRUE(stack.redo(picture));
  EXPECT_TRUE(samePixels(picture.bitmap, noise(8, 8, 3)));
  EXPECT_FALSE(stack.redo(picture));
}

TEST(UndoStack, KeepsTheLatestStepsUpToItsLevels) {
  UndoStack stack;
  stack.levels(2);
  PictureState picture{noise(8, 8, 1)};
  for (std::uint32_t seed = 2; seed <= 5; ++seed) change(stack, picture, "Step", seed);
  EXPECT_EQ(stack.undoSteps(), 2);
  while (stack.undo(picture)) {
  }
  EXPECT_TRUE(samePixels(picture.bitmap, noise(8, 8, 3)));
}

TEST(UndoStack, FewerLevelsDropTheOldestAndZeroEmptiesIt) {
  UndoStack stack;
  stack.levels(5);
  PictureState picture{noise(8, 8, 1)};
  for (std::uint32_t seed = 2; seed <= 5; ++seed) change(stack, picture, "Step", seed);
  stack.undo(picture);
  stack.levels(2);
  EXPECT_EQ(stack.undoSteps(), 2);
  EXPECT_EQ(stack.redoSteps(), 1);
  stack.levels(0);
  EXPECT_EQ(stack.undoSteps(), 0);
  EXPECT_EQ(stack.redoSteps(), 0);
  stack.levels(2);
  EXPECT_FALSE(stack.undo(picture));
}

TEST(UndoStack, TreatsNegativeLevelsAsZero) {
  UndoStack stack;
  stack.levels(2);
  PictureState picture{noise(8, 8, 1)};
  change(stack, picture, "One", 2);
  stack.levels(-1);
  EXPECT_EQ(stack.levels(), 0);
  EXPECT_EQ(stack.undoSteps(), 0);
  stack.levels(std::numeric_limits<std::int32_t>::min());
  EXPECT_EQ(stack.levels(), 0);
}

TEST(UndoStack, AChangeAfterUndoDropsTheRedoSteps) {
  UndoStack stack;
  stack.levels(3);
  PictureState picture{noise(8, 8, 1)};
  change(stack, picture, "One", 2);
  stack.undo(picture);
  change(stack, picture, "Other", 3);
  EXPECT_FALSE(stack.redo(picture));
  EXPECT_EQ(stack.redoName(), "");
}

TEST(UndoStack, CountsEachHeldPictureOnceWithoutTheCurrentOne) {
  UndoStack stack;
  stack.levels(5);
  PictureState picture{noise(64, 64, 1)};
  stack.recordPoint("Point", picture);
  EXPECT_EQ(stack.memory(picture), 0U);
  change(stack, picture, "One", 2);
  EXPECT_EQ(stack.memory(picture), std::size_t{64} * 64 * 4);
}

const std::size_t kPictureBytes = noise(8, 8).byteSize();

TEST(UndoStack, DropsTheOldestStepsBeyondTheMemoryLimit) {
  UndoStack stack;
  stack.levels(100);
  stack.memoryLimit(3 * kPictureBytes);
  PictureState picture{noise(8, 8, 1)};
  for (int i = 1; i <= 10; ++i) change(stack, picture, std::to_string(i), static_cast<unsigned>(i + 1));
  EXPECT_EQ(stack.undoSteps(), 3);
  EXPECT_EQ(stack.memory(picture), 3 * kPictureBytes);
  for (const char* name : {"10", "9", "8"}) {
    EXPECT_EQ(stack.undoName(), name);
    EXPECT_TRUE(stack.undo(picture));
    EXPECT_EQ(stack.memory(picture), 3 * kPictureBytes) << "undoing keeps the steps for redo";
  }
  EXPECT_FALSE(stack.undo(picture));
}

TEST(UndoStack, KeepsTheLatestStepOfAnySize) {
  UndoStack stack;
  stack.levels(100);
  stack.memoryLimit(1);
  PictureState picture{noise(8, 8, 1)};
  const PictureState before = picture;
  change(stack, picture, "One", 2);
  change(stack, picture, "Two", 3);
  EXPECT_EQ(stack.undoSteps(), 1);
  EXPECT_EQ(stack.undoName(), "Two");
  EXPECT_TRUE(stack.undo(picture));
}

TEST(UndoStack, ALowerMemoryLimitHoldsAtOnceForUndoAndRedo) {
  UndoStack stack;
  stack.levels(100);
  PictureState picture{noise(8, 8, 1)};
  for (int i = 1; i <= 6; ++i) change(stack, picture, std::to_string(i), static_cast<unsigned>(i + 1));
  for (int i = 0; i < 3; ++i) stack.undo(picture);
  stack.memoryLimit(3 * kPictureBytes);
  EXPECT_EQ(stack.undoSteps(), 1);
  EXPECT_EQ(stack.undoName(), "3");
  EXPECT_EQ(stack.redoSteps(), 2);
  EXPECT_EQ(stack.redoName(), "4");
  EXPECT_LE(stack.memory(picture), 3 * kPictureBytes);
}

TEST(UndoStack, APointThatDroppedStepsForMemoryGivesThemBack) {
  UndoStack stack;
  stack.levels(100);
  stack.memoryLimit(2 * kPictureBytes);
  PictureState picture{noise(8, 8, 1)};
  for (int i = 1; i <= 2; ++i) change(stack, picture, std::to_string(i), static_cast<unsigned>(i + 1));
  auto point = stack.recordPoint("Point", picture);
  EXPECT_TRUE(stack.takeBack(point));
  EXPECT_EQ(stack.undoSteps(), 2);
  EXPECT_EQ(stack.memory(picture), 2 * kPictureBytes);
}

TEST(UndoStack, TheFirstMemoryLimitIsAQuarterOfTheMachinesMemory) {
  EXPECT_EQ(UndoStack().memoryLimit(), machineMemory() / 4);
}

}  // namespace
}  // namespace kestrel::engine
