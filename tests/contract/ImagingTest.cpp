#include <filesystem>
#include <fstream>

#include "ContractTest.h"
#include "TiffBytes.h"

namespace kestrel::contract {
namespace {

const Colour kRed(0x000000FF);
const Colour kGreen(0x0000FF00);

class Pictures : public ContractTest {
 protected:
  void SetUp() override {
    ContractTest::SetUp();
    picture_ = platform().CreateImgX();
  }
  void TearDown() override {
    picture_.reset();
    ContractTest::TearDown();
  }
  ImgX& picture() { return *picture_; }

 private:
  std::shared_ptr<ImgX> picture_;
};

TEST_P(Pictures, HaveNoImageWhileTheyAreNew) {
  EXPECT_EQ(picture().Image(), nullptr);
  EXPECT_EQ(errorOf([&] { picture().Effects().Flip(0); }), 91);
  EXPECT_EQ(errorOf([&] { picture().Writer().ToClipboard(); }), 91);
}

TEST_P(Pictures, AreMadeBlankInAColorOrTransparent) {
  picture().Document().NewImage(4, 3, &kRed);
  ASSERT_NE(picture().Image(), nullptr);
  EXPECT_EQ(picture().Image()->Width(), 4);
  EXPECT_EQ(picture().Image()->Height(), 3);
  EXPECT_EQ(picture().Image()->Format(), 0) << "it came from no file";
  EXPECT_EQ(picture().Image()->GetPixel(3, 2).Red(), 255);
  EXPECT_EQ(picture().Image()->GetPixel(3, 2).Alpha(), 255);
  EXPECT_EQ(errorOf([&] { picture().Image()->GetPixel(4, 0); }), 5);
  EXPECT_EQ(errorOf([&] { picture().Image()->GetPixel(0, -1); }), 5);
  picture().Document().NewImage(2, 2, nullptr);
  EXPECT_EQ(picture().Image()->GetPixel(0, 0).Alpha(), 0);
}

TEST_P(Pictures, AreUnchangedIfAnotherCannotBeAssigned) {
  picture().Document().NewImage(4, 3, &kRed);
  EXPECT_NE(errorOf([&] { picture().Document().FromFile(path("missing.png")); }), 0);
  std::ofstream(user().host(path("text.png"))) << "no picture";
  EXPECT_NE(errorOf([&] { picture().Document().FromFile(path("text.png")); }), 0);
  EXPECT_NE(errorOf([&] { picture().Document().FromFile(user().folder()); }), 0);
  EXPECT_NE(errorOf([&] { picture().Document().NewImage(0, 5, nullptr); }), 0);
  EXPECT_EQ(picture().Image()->Width(), 4);
}

TEST_P(Pictures, AreReadInTheirFormatUnderAnyName) {
  picture().Document().NewImage(5, 4, &kGreen);
  picture().Writer().ToFile(path("really a png.jpg"), 2);
  const std::shared_ptr<ImgX> loaded = platform().CreateImgX();
  loaded->Document().FromFile(path("really a png.jpg"));
  EXPECT_EQ(loaded->Image()->Format(), 2);
  EXPECT_EQ(loaded->Image()->Width(), 5);
  EXPECT_EQ(loaded->Image()->GetPixel(4, 3).Green(), 255);
  picture().Writer().ToFile(path("by name.bmp"), 0);
  loaded->Document().FromFile(path("by name.bmp"));
  EXPECT_EQ(loaded->Image()->Format(), 6);
}

TEST_P(Pictures, KeepAnOlderFileIfTheyCannotBeWritten) {
  picture().Document().NewImage(5, 4, &kGreen);
  picture().Writer().ToFile(path("kept.png"), 2);
  const auto size = std::filesystem::file_size(user().host(path("kept.png")));
  EXPECT_EQ(errorOf([&] { picture().Writer().ToFile(path("kept.png"), 2, 0, false); }), 58);
  EXPECT_NE(errorOf([&] { picture().Writer().ToFile(path("kept.png"), 99); }), 0);
  EXPECT_EQ(std::filesystem::file_size(user().host(path("kept.png"))), size);
}

TEST_P(Pictures, KeepThePageCountOfTheirFileUntilReplaced) {
  std::ofstream(user().host(path("pages.tif")), std::ios::binary) << grayTiff(6, 5, 3);
  picture().Document().FromFile(path("pages.tif"));
  EXPECT_EQ(picture().Image()->Pages(), 3);
  EXPECT_EQ(picture().Image()->DecodeErrors(), "");
  picture().Effects().Flip(0);
  EXPECT_EQ(picture().Image()->Pages(), 3) << "the picture still is that file's";
  const std::shared_ptr<ImgX> copy = platform().CreateImgX();
  copy->Document().CopyFrom(picture());
  EXPECT_EQ(copy->Image()->Pages(), 3) << "a copy is";
  picture().Document().NewImage(4, 3, &kRed);
  EXPECT_EQ(picture().Image()->Pages(), 1);
}

TEST_P(Pictures, DescribeTheDecodeErrorsOfTheirFile) {
  const std::string whole = grayTiff(6, 5);
  std::ofstream(user().host(path("cut.tif")), std::ios::binary) << whole.substr(0, whole.size() - 12);
  picture().Document().FromFile(path("cut.tif"));
  EXPECT_EQ(picture().Image()->DecodeErrors(),
            "The file is damaged or truncated: only 3 of 5 rows could be read.");
  picture().Effects().Flip(1);
  EXPECT_NE(picture().Image()->DecodeErrors(), "");
  std::ofstream(user().host(path("whole.tif")), std::ios::binary) << whole;
  picture().Document().FromFile(path("whole.tif"));
  EXPECT_EQ(picture().Image()->DecodeErrors(), "");
}

TEST_P(Pictures, AreCopiedIndependently) {
  picture().Document().NewImage(4, 4, &kRed);
  const std::shared_ptr<ImgX> copy = platform().CreateImgX();
  copy->Document().CopyFrom(picture());
  copy->Draw().Color().Value(0x0000FF00);
  copy->Draw().FillMode(kFillSolid);
  copy->Draw().Rectangle({0, 0}, {4, 4});
  EXPECT_EQ(copy->Image()->GetPixel(2, 2).Green(), 255);
  EXPECT_EQ(picture().Image()->GetPixel(2, 2).Red(), 255);
  const std::shared_ptr<ImgX> empty = platform().CreateImgX();
  EXPECT_EQ(errorOf([&] { copy->Document().CopyFrom(*empty); }), 91);
}

TEST_P(Pictures, DrawARectangleWithoutTheLargerCoordinate) {
  picture().Document().NewImage(6, 6, &kRed);
  picture().Draw().Color().Value(0x0000FF00);
  picture().Draw().FillMode(kFillSolid);
  picture().Draw().Rectangle({4, 5}, {1, 2});
  EXPECT_EQ(picture().Image()->GetPixel(1, 2).Green(), 255);
  EXPECT_EQ(picture().Image()->GetPixel(3, 4).Green(), 255);
  EXPECT_EQ(picture().Image()->GetPixel(4, 4).Green(), 0);
  EXPECT_EQ(picture().Image()->GetPixel(3, 5).Green(), 0);
  EXPECT_EQ(picture().Image()->GetPixel(0, 2).Green(), 0);
}

TEST_P(Pictures, ClampTheQuality) {
  picture().JPEGQuality(0);
  EXPECT_EQ(picture().JPEGQuality(), 1);
  picture().JPEGQuality(101);
  EXPECT_EQ(picture().JPEGQuality(), 100);
  picture().JPEGQuality(75);
  EXPECT_EQ(picture().JPEGQuality(), 75);
}

class Views : public ContractTest {
 protected:
  void SetUp() override {
    ContractTest::SetUp();
    Site& site = user().editorSite();
    view_ = &Bind<ImageView>(site, "igxImage");
    view_->Move(0, 0, 400, 300);
    view_->Visible(true);
    user().settle();
    connections_.push_back(view_->Changed.Connect([this] { log_ += "changed "; }));
  }
  void TearDown() override {
    connections_.clear();
    ContractTest::TearDown();
  }
  ImageView& view() { return *view_; }
  void load(std::int32_t width, std::int32_t height) {
    view().Document().NewImage(width, height, &kRed, kPixelFormatRgba, kNoUndo);
    user().settle();
    log_.clear();
  }
  void fill(const char* undoName) {
    view().Draw().Color().Value(0x0000FF00);
    view().Draw().FillMode(kFillSolid);
    view().Draw().Rectangle({0, 0}, {10, 10}, 0, 0, undoName);
  }

  std::vector<Connection> connections_;
  std::string log_;

 private:
  ImageView* view_ = nullptr;
};

TEST_P(Views, HaveNoImageBeforeOneIsLoaded) {
  EXPECT_EQ(view().Image(), nullptr);
  EXPECT_EQ(view().Picture(), nullptr);
  EXPECT_FALSE(view().Modified());
}

TEST_P(Views, RaiseChangedAndAreModifiedAfterEachChange) {
  load(20, 20);
  view().Modified(false);
  fill("Box");
  EXPECT_EQ(log_, "changed ");
  EXPECT_TRUE(view().Modified());
  EXPECT_EQ(view().Image()->GetPixel(5, 5).Green(), 255);
}

TEST_P(Views, RaiseBeforeZoomChangedFirstForAnyValue) {
  load(20, 20);
  std::string zooms;
  connections_.push_back(view().BeforeZoomChanged.Connect(
      [&](double zoom) { zooms += std::to_string(zoom) + '/' + std::to_string(view().Zoom()) + ' '; }));
  view().Zoom(1.0);
  EXPECT_EQ(zooms, "1.000000/1.000000 ");
  zooms.clear();
  view().Zoom(2.0);
  EXPECT_EQ(zooms, "2.000000/1.000000 ") << "the view still shows the old one";
  EXPECT_DOUBLE_EQ(view().Zoom(), 2.0);
  view().Zoom(1000.0);
  EXPECT_DOUBLE_EQ(view().Zoom(), 64.0);
  view().Zoom(0.0);
  EXPECT_DOUBLE_EQ(view().Zoom(), 0.01);
}

TEST_P(Views, AreScrolledToTheEndOfThePicture) {
  load(2000, 1500);
  int scrolls = 0;
  connections_.push_back(view().ScrollChanged.Connect([&] { ++scrolls; }));
  view().ScrollLeft(100);
  view().ScrollTop(50);
  EXPECT_EQ(view().ScrollLeft(), 100);
  EXPECT_EQ(view().ScrollTop(), 50);
  EXPECT_EQ(scrolls, 2);
  view().ScrollLeft(100);
  EXPECT_EQ(scrolls, 2) << "nothing moved";
  view().ScrollLeft(-5);
  EXPECT_EQ(view().ScrollLeft(), 0);
  view().ScrollLeft(100000);
  EXPECT_LT(view().ScrollLeft(), 2000);
  EXPECT_GT(view().ScrollLeft(), 1000);
}

TEST_P(Views, CenterASmallerPictureSoThatTheScrollIsNegative) {
  load(100, 100);
  EXPECT_LT(view().ScrollLeft(), 0);
  EXPECT_LT(view().ScrollTop(), 0);
}

TEST_P(Views, KeepAnAssignedSelectionWithoutAnEvent) {
  load(100, 100);
  int events = 0;
  connections_.push_back(view().Selected.Connect([&](auto, auto, auto, auto) { ++events; }));
  connections_.push_back(view().SelectChanged.Connect([&](auto, auto, auto, auto) { ++events; }));
  view().SetSelectionRect(10, 20, 30, 40);
  view().SelectionVisible(true);
  EXPECT_EQ(view().SelectionLeft(), 10);
  EXPECT_EQ(view().SelectionTop(), 20);
  EXPECT_EQ(view().SelectionWidth(), 30);
  EXPECT_EQ(view().SelectionHeight(), 40);
  EXPECT_TRUE(view().SelectionVisible());
  view().SelectionWidth(0);
  view().SelectionHeight(0);
  EXPECT_EQ(view().SelectionWidth(), 0);
  EXPECT_EQ(view().SelectionHeight(), 0);
  EXPECT_EQ(events, 0);
}

TEST_P(Views, UndoAndRedoNamedStepsAndRaiseChanged) {
  load(20, 20);
  view().UndoLevels(5);
  EXPECT_EQ(view().UndoName(), "");
  fill("Box");
  EXPECT_EQ(view().UndoName(), "Box");
  EXPECT_EQ(view().RedoName(), "");
  log_.clear();
  view().Undo();
  EXPECT_EQ(log_, "changed ");
  EXPECT_EQ(view().Image()->GetPixel(5, 5).Red(), 255);
  EXPECT_EQ(view().RedoName(), "Box");
  view().Redo();
  EXPECT_EQ(view().Image()->GetPixel(5, 5).Green(), 255);
  log_.clear();
  view().Redo();
  EXPECT_EQ(log_, "") << "there is nothing to redo";
}

TEST_P(Views, RecordNoStepUnderTheNameNoUndo) {
  load(20, 20);
  view().UndoLevels(5);
  view().CreateUndoPoint("Whole");
  fill(kNoUndo);
  EXPECT_EQ(view().UndoName(), "Whole");
  view().Undo();
  EXPECT_EQ(view().Image()->GetPixel(5, 5).Red(), 255);
}

TEST_P(Views, DropTheirStepsWithoutUndoLevels) {
  load(20, 20);
  view().UndoLevels(5);
  fill("Box");
  view().UndoLevels(0);
  view().UndoLevels(5);
  EXPECT_EQ(view().UndoName(), "");
  log_.clear();
  view().Undo();
  EXPECT_EQ(log_, "");
}

TEST_P(Views, KeepTheirPictureWhenTheirObjectGetsAnother) {
  load(20, 20);
  const std::shared_ptr<ImgX> tile = view().ImgX();
  ASSERT_NE(tile->Image(), nullptr);
  EXPECT_EQ(tile->Image()->Width(), 20) << "it begins as the view's picture";
  tile->Document().NewImage(8, 8, nullptr);
  view().BackgroundImage(tile->Image());
  EXPECT_EQ(view().Image()->Width(), 20);
  EXPECT_EQ(tile->Image()->Width(), 8);
  EXPECT_EQ(log_, "");
}

TEST_P(Views, ReturnTheSameObjectWithTheirSettings) {
  load(20, 20);
  const std::shared_ptr<ImgX> object = view().ImgX();
  EXPECT_EQ(view().ImgX(), object);
  object->JPEGQuality(31);
  object->Draw().Color().Value(0x123456);
  object->Draw().FillMode(kFillSolid);
  EXPECT_EQ(view().JPEGQuality(), 31);
  EXPECT_EQ(view().Draw().Color().Value(), 0x123456);
  EXPECT_EQ(view().Draw().FillMode(), kFillSolid);
  object->Document().NewImage(8, 8, nullptr);
  EXPECT_NE(view().ImgX(), object);
  EXPECT_EQ(view().ImgX()->JPEGQuality(), 31);
}

TEST_P(Views, DoNotRaiseChangedForALoad) {
  load(20, 20);
  log_.clear();
  view().Picture(platform().CreateCanvas(7, 5)->Picture());
  EXPECT_EQ(log_, "");
}

TEST_P(Views, ReportWhetherTheyCanUndoAndRedo) {
  load(20, 20);
  view().UndoLevels(5);
  EXPECT_FALSE(view().CanUndo());
  fill("");
  EXPECT_TRUE(view().CanUndo());
  EXPECT_FALSE(view().CanRedo());
  view().Undo();
  EXPECT_FALSE(view().CanUndo());
  EXPECT_TRUE(view().CanRedo());
}

TEST_P(Views, TakeAnUndoPointBack) {
  load(20, 20);
  view().UndoLevels(5);
  const auto point = view().CreateUndoPoint("Whole");
  fill(kNoUndo);
  point->TakeBack();
  EXPECT_FALSE(view().CanUndo());
  EXPECT_EQ(view().Image()->GetPixel(5, 5).Red(), 255);
}

TEST_P(Views, ChangeTheirPictureThroughTheirObject) {
  load(20, 10);
  view().ImgX()->Effects().Crop(0, 0, 10, 10);
  EXPECT_EQ(view().Image()->Width(), 10);
  EXPECT_EQ(log_, "changed ");
}

TEST_P(Views, LoadAndReturnAPictureObject) {
  view().Picture(platform().CreateCanvas(7, 5)->Picture());
  ASSERT_NE(view().Image(), nullptr);
  EXPECT_EQ(view().Image()->Width(), 7);
  const PicturePtr given = view().Picture();
  ASSERT_NE(given, nullptr);
  EXPECT_EQ(given->Height(), 5);
}

TEST_P(Views, RaiseTheBackBufferEventOnRefresh) {
  load(20, 20);
  int paints = 0;
  connections_.push_back(view().DoubleBufferPaintAfter.Connect([&](DeviceContext& target) {
    ++paints;
    EXPECT_GT(target.Width(), 0);
    EXPECT_GT(target.Height(), 0);
    const std::shared_ptr<ImgX> stamp = platform().CreateImgX();
    stamp->Document().NewImage(4, 4, &kGreen);
    stamp->Surface().DrawTo(target, -2, 1);
  }));
  view().DoubleBuffer(false);
  view().Refresh();
  user().settle();
  EXPECT_EQ(paints, 0);
  view().DoubleBuffer(true);
  view().Refresh();
  user().settle();
  EXPECT_GE(paints, 1);
}

TEST_P(Views, ReportThePointerInViewPixelsAndClickAfterRelease) {
  load(100, 100);
  view().Tool(kViewToolNone);
  std::string log;
  connections_.push_back(
      view().MouseDown.Connect([&](std::int32_t button, std::int32_t shift, float x, float y) {
        log += "down" + std::to_string(button) + std::to_string(shift) + '@' +
               std::to_string(static_cast<int>(x)) + ',' + std::to_string(static_cast<int>(y)) + ' ';
      }));
  connections_.push_back(view().MouseUp.Connect([&](auto, auto, auto, auto) { log += "up "; }));
  connections_.push_back(view().Click.Connect([&] { log += "click "; }));
  user().pressPointer(view(), kLeftButton, kShiftMask, {200, 150});
  user().releasePointer(view(), kLeftButton, kShiftMask, {200, 150});
  EXPECT_EQ(log, "down11@200,150 up click ");
}

TEST_P(Views, ReportThePixelUnderThePointer) {
  load(1000, 1000);
  std::string log;
  connections_.push_back(view().MouseMovePixel.Connect([&](auto, auto, std::int32_t x, std::int32_t y) {
    log += std::to_string(x) + ',' + std::to_string(y) + ' ';
  }));
  const std::int32_t left = view().ScrollLeft();
  const std::int32_t top = view().ScrollTop();
  user().movePointer(view(), 0, 0, {30, 40});
  EXPECT_EQ(log, std::to_string(left + 30) + ',' + std::to_string(top + 40) + ' ');
}

TEST_P(Views, SelectByDragWithEventsDuringAndAtTheEnd) {
  load(1000, 1000);
  view().Tool(kViewToolSelect);
  int during = 0;
  std::string ended;
  connections_.push_back(view().SelectChanged.Connect([&](auto, auto, auto, auto) { ++during; }));
  connections_.push_back(view().Selected.Connect([&](auto left, auto top, auto width, auto height) {
    ended += std::to_string(left) + ',' + std::to_string(top) + ',' + std::to_string(width) + ',' +
             std::to_string(height);
  }));
  const std::int32_t left = view().ScrollLeft();
  const std::int32_t top = view().ScrollTop();
  user().pressPointer(view(), kLeftButton, 0, {20, 30});
  user().movePointer(view(), kLeftButton, 0, {60, 50});
  user().movePointer(view(), kLeftButton, 0, {120, 90});
  user().releasePointer(view(), kLeftButton, 0, {120, 90});
  EXPECT_GE(during, 1);
  EXPECT_EQ(ended, std::to_string(left + 20) + ',' + std::to_string(top + 30) + ",100,60");
}

TEST_P(Views, PanByDragWithEventsDuringAndAtTheEnd) {
  load(1000, 1000);
  view().ScrollLeft(100);
  view().ScrollTop(100);
  view().Tool(kViewToolPan);
  std::string log;
  connections_.push_back(view().Pan.Connect([&] { log += "pan "; }));
  connections_.push_back(view().PanChanged.Connect([&] { log += "ended "; }));
  connections_.push_back(view().Scroll.Connect([&] { log += "scroll "; }));
  user().pressPointer(view(), kLeftButton, 0, {120, 90});
  user().movePointer(view(), kLeftButton, 0, {100, 70});
  EXPECT_EQ(log, "pan ");
  EXPECT_EQ(view().ScrollLeft(), 120);
  EXPECT_EQ(view().ScrollTop(), 120);
  user().releasePointer(view(), kLeftButton, 0, {100, 70});
  EXPECT_EQ(log, "pan ended ");
}

TEST_P(Views, RaiseWheelZoomForTheWheelWithCtrl) {
  load(1000, 1000);
  std::string log;
  connections_.push_back(
      view().WheelZoom.Connect([&](std::int32_t way) { log += std::to_string(way) + ' '; }));
  user().turnWheel(view(), 1, kCtrlMask, {50, 50});
  user().turnWheel(view(), -1, kCtrlMask, {50, 50});
  EXPECT_EQ(log, "1 -1 ");
  user().turnWheel(view(), -1, 0, {50, 50});
  EXPECT_EQ(log, "1 -1 ");
  EXPECT_GT(view().ScrollTop(), 0) << "without Ctrl the wheel scrolls";
}

TEST_P(Views, RaiseModifiedChangedForEachChangeOfIt) {
  load(20, 10);
  view().Modified(false);
  std::string log;
  connections_.push_back(
      view().ModifiedChanged.Connect([&] { log += view().Modified() ? "modified " : "saved "; }));
  view().Effects().Flip(0, "Flip");
  view().Effects().Flip(0, "Flip");
  view().Modified(false);
  view().Undo();
  EXPECT_EQ(log, "modified saved modified ");
}

TEST_P(Views, KeepTheirHintWhichIsNoPicture) {
  view().EmptyHint("Open a picture.");
  EXPECT_EQ(view().EmptyHint(), "Open a picture.");
  EXPECT_EQ(view().Image(), nullptr);
  EXPECT_FALSE(view().Modified());
}

TEST_P(Views, ShowANoticeUntilItIsCleared) {
  EXPECT_EQ(view().Notice(), "");
  EXPECT_EQ(user().noticeText(view()), "");
  view().Notice("Mind the paint.");
  user().settle();
  EXPECT_EQ(view().Notice(), "Mind the paint.");
  EXPECT_EQ(user().noticeText(view()), "Mind the paint.");
  EXPECT_EQ(user().noticeButton(view()), "");
  view().Notice("It has dried.");
  user().settle();
  EXPECT_EQ(user().noticeText(view()), "It has dried.");
  view().Notice("");
  user().settle();
  EXPECT_EQ(view().Notice(), "");
  EXPECT_EQ(user().noticeText(view()), "");
}

TEST_P(Views, HaveAnEmptyNoticeAfterTheUserClosedIt) {
  int presses = 0;
  connections_.push_back(view().NoticeAction.Connect([&] { ++presses; }));
  view().Notice("Mind the paint.", "Paint again");
  user().settle();
  user().closeNotice(view());
  user().settle();
  EXPECT_EQ(view().Notice(), "");
  EXPECT_EQ(user().noticeText(view()), "");
  EXPECT_EQ(user().noticeButton(view()), "");
  EXPECT_EQ(presses, 0);
  view().Notice("Mind the paint.", "Paint again");
  user().settle();
  EXPECT_EQ(user().noticeText(view()), "Mind the paint.") << "shown again";
}

TEST_P(Views, ReportTheNoticesButtonAndKeepTheNotice) {
  int presses = 0;
  connections_.push_back(view().NoticeAction.Connect([&] { ++presses; }));
  view().Notice("Mind the paint.", "Paint again");
  user().settle();
  EXPECT_EQ(user().noticeButton(view()), "Paint again");
  user().pressNoticeButton(view());
  EXPECT_EQ(presses, 1);
  EXPECT_EQ(user().noticeText(view()), "Mind the paint.");
}

TEST_P(Views, AllowClearingTheNoticeInItsButtonsEvent) {
  connections_.push_back(view().NoticeAction.Connect([&] { view().Notice(""); }));
  view().Notice("Mind the paint.", "Paint again");
  user().settle();
  user().pressNoticeButton(view());
  user().settle();
  EXPECT_EQ(user().noticeText(view()), "");
}

TEST_P(Views, KeepPictureSelectionAndZoomUnderANotice) {
  load(1000, 1000);
  view().SetSelectionRect(10, 20, 30, 40);
  view().Zoom(2.0);
  view().ScrollLeft(50);
  view().ScrollTop(60);
  log_.clear();
  view().Notice("Mind the paint.", "Paint again");
  user().settle();
  EXPECT_EQ(log_, "") << "it is no change of the picture";
  EXPECT_EQ(view().Width(), 400);
  EXPECT_EQ(view().Height(), 300);
  EXPECT_DOUBLE_EQ(view().Zoom(), 2.0);
  EXPECT_EQ(view().ScrollLeft(), 50);
  EXPECT_EQ(view().ScrollTop(), 60);
  EXPECT_EQ(view().SelectionLeft(), 10);
  EXPECT_EQ(view().SelectionHeight(), 40);
  std::string pixels;
  connections_.push_back(view().MouseMovePixel.Connect([&](auto, auto, std::int32_t x, std::int32_t y) {
    pixels += std::to_string(x) + ',' + std::to_string(y) + ' ';
  }));
  user().movePointer(view(), 0, 0, {20, 40});
  EXPECT_EQ(pixels, "60,80 ") << "view pixels still begin at ScrollLeft and ScrollTop";
}

KESTREL_ON_ALL_PLATFORMS(Pictures);
KESTREL_ON_ALL_PLATFORMS(Views);

}  // namespace
}  // namespace kestrel::contract
