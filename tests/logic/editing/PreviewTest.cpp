#include "EditingTest.h"
#include "dialogs/Preview.h"
#include "imaging/modImgX.h"
#include "platform/headless/Surfaces.h"
#include "platform/headless/controls/PictureBox.h"

namespace kestrel {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

/// A preview on its own site, with the editor's view as the original.
class EditingPreview : public EditingTest {
 protected:
  void SetUp() override {
    EditingTest::SetUp();
    surface_ = headless::makePreviewSite(platform().desktop(), nullptr, "Preview", platform().surroundings());
    original_ = &Bind<headless::ImageView>(*surface_, "igxOriginal");
    preview_ = &Bind<headless::ImageView>(*surface_, "igxPreview");
    createControl();
  }
  void TearDown() override {
    control_.reset();
    surface_.reset();
    EditingTest::TearDown();
  }
  void createControl() {
    control_ = std::make_unique<Preview>(*surface_);
    surface_->InitProperties();
    surface_->Move(0, 0, 372, 180);
  }

  Preview& control() { return *control_; }
  engine::Bitmap left() { return engine::bitmapOf(*original_->Image()); }
  engine::Bitmap right() { return engine::bitmapOf(*preview_->Image()); }
  engine::Bitmap stock() {
    return engine::bitmapOf(*Bind<headless::PictureBox>(*surface_, "imgPreview").Picture());
  }

  std::unique_ptr<headless::Site> surface_;
  headless::ImageView* original_ = nullptr;
  headless::ImageView* preview_ = nullptr;
  std::unique_ptr<Preview> control_;
};

TEST_P(EditingPreview, StartsWithTheStockPictureInBothPanes) {
  EXPECT_FALSE(control().UseOriginal());
  EXPECT_TRUE(control().LinkedScrolling());
  EXPECT_EQ(control().OriginalPicture(), nullptr);
  EXPECT_TRUE(same(left(), stock()));
  EXPECT_TRUE(same(right(), stock()));
}

TEST_P(EditingPreview, SetsTheCheckerboardOfTheOptionsInThePanes) {
  // Under a transparent picture the pane shows the two colors.
  options().BackgroundGridColor1(0x0000FF);
  options().BackgroundGridColor2(0x00FF00);
  createControl();
  control().Original().Picture(
      std::make_shared<engine::PictureObject>(engine::Bitmap::filled(300, 300, {0, 0, 0, 0})));
  const engine::Bitmap seen = original_->painted();
  bool first = false, second = false;
  for (std::int32_t x = 20; x < seen.width() - 20; ++x) {
    first |= seen.at(x, 50) == engine::Pixel{255, 0, 0, 255};
    second |= seen.at(x, 50) == engine::Pixel{0, 255, 0, 255};
  }
  EXPECT_TRUE(first && second);
}

TEST_P(EditingPreview, AppliesTheSharedSkinAtItsStart) {
  EXPECT_EQ(platform().FormSkin().applied().back().name, "Preview");
  EXPECT_EQ(platform().FormSkin().applied().back().foreColor, -1);
  EXPECT_EQ(platform().FormSkin().applied().back().backColor, -1);
}

TEST_P(EditingPreview, InitPropertiesTakesTheTabStopAndShowsThePanes) {
  EXPECT_FALSE(surface_->tabStop());
  EXPECT_TRUE(original_->Visible());
  EXPECT_TRUE(preview_->Visible());
}

TEST_P(EditingPreview, ReadPropertiesShowsThePanesAndLeavesTheTabStop) {
  surface_ = headless::makePreviewSite(platform().desktop(), nullptr, "Preview", platform().surroundings());
  original_ = &Bind<headless::ImageView>(*surface_, "igxOriginal");
  control_ = std::make_unique<Preview>(*surface_);
  original_->Visible(false);
  surface_->ReadProperties(headless::BagOfProperties());
  EXPECT_TRUE(surface_->tabStop());
  EXPECT_TRUE(original_->Visible());
}

TEST_P(EditingPreview, IsCreated4800By3600WithItsPanesLaidOut) {
  const auto fresh =
      headless::makePreviewSite(platform().desktop(), nullptr, "Preview", platform().surroundings());
  EXPECT_EQ(fresh->Width() * 15, 4800);
  EXPECT_EQ(fresh->Height() * 15, 3600);
  Preview made(*fresh);
  fresh->InitProperties();
  EXPECT_EQ(Bind<headless::ImageView>(*fresh, "igxOriginal").Width(), (320 - 12) / 2);
  EXPECT_EQ(Bind<headless::ImageView>(*fresh, "igxPreview").Height(), 240);
}

TEST_P(EditingPreview, PanesKeepTheirPositionWhileTheSizeIsTheSame) {
  open(1000, 900);
  control().OriginalPicture(&view());
  control().UseOriginal(true);
  control().Original().ScrollLeft(300);
  control().Original().ScrollTop(200);
  const auto expectPlace = [&](ImageView& pane) {
    EXPECT_EQ(pane.ScrollLeft(), 300);
    EXPECT_EQ(pane.ScrollTop(), 200);
  };
  control().Reset();
  expectPlace(control().PreviewPane());
  control().PreviewPane().Effects().Flip(0);
  control().Reset();
  expectPlace(control().PreviewPane());
  expectPlace(control().Original());
}

TEST_P(EditingPreview, APaneKeepsItsPositionIfTheFinalSizeIsTheSame) {
  open(1000, 900);
  control().OriginalPicture(&view());
  control().UseOriginal(true);
  const auto widen = [this] {
    control().KeepScrollPosition(control().PreviewPane(), [this] {
      control().Reset();
      control().PreviewPane().Effects().ResizeCanvas(1400, 1200, Colour(0), 0, 0);
    });
  };
  widen();
  control().LinkedScrolling(false);
  control().PreviewPane().ScrollLeft(1100);
  control().PreviewPane().ScrollTop(900);
  control().Original().ScrollLeft(50);
  control().LinkedScrolling(true);
  widen();
  EXPECT_EQ(control().PreviewPane().ScrollLeft(), 1100);
  EXPECT_EQ(control().PreviewPane().ScrollTop(), 900);
  EXPECT_EQ(control().Original().ScrollLeft(), 50) << "nobody has scrolled";
}

TEST_P(EditingPreview, APictureOfAnotherSizeIsShownFromItsCorner) {
  open(1000, 900);
  control().OriginalPicture(&view());
  control().UseOriginal(true);
  control().Original().ScrollLeft(300);
  open(1000, 800);
  control().UseOriginal(false);
  control().UseOriginal(true);
  EXPECT_EQ(control().Original().ScrollLeft(), 0);
  EXPECT_EQ(control().PreviewPane().ScrollLeft(), 0);
}

TEST_P(EditingPreview, ReportsUseOriginalAsChangedAtItsStart) {
  control_.reset();
  surface_ = headless::makePreviewSite(platform().desktop(), nullptr, "Preview", platform().surroundings());
  control_ = std::make_unique<Preview>(*surface_);
  EXPECT_THAT(surface_->changedProperties(), ElementsAre("UseOriginal"));
}

TEST_P(EditingPreview, HidesThePanesOnADesignSurface) {
  const PicturePtr picture = Bind<headless::PictureBox>(*surface_, "imgPreview").Picture();
  for (const bool isStored : {false, true}) {
    control_.reset();
    surface_ = platform().createSite("Preview", false);
    for (const char* name : {"igxOriginal", "igxPreview"}) {
      surface_->add(std::make_unique<headless::ImageView>(platform().desktop(), surface_.get(), name,
                                                          platform().Clipboard(), platform().files()));
    }
    auto box = std::make_unique<headless::PictureBox>(platform().desktop(), surface_.get(), "imgPreview", -1);
    box->Picture(picture);
    surface_->add(std::move(box));
    control_ = std::make_unique<Preview>(*surface_);
    if (isStored) {
      surface_->ReadProperties(headless::BagOfProperties());
    } else {
      surface_->InitProperties();
    }
    EXPECT_FALSE(control().Original().Visible());
    EXPECT_FALSE(control().PreviewPane().Visible());
  }
}

TEST_P(EditingPreview, InitAndReadPropertiesBothLayOutThePanes) {
  for (const bool isStored : {false, true}) {
    control_.reset();
    surface_ = headless::makePreviewSite(platform().desktop(), nullptr, "Preview", platform().surroundings());
    surface_->Move(0, 0, 312, 100);
    control_ = std::make_unique<Preview>(*surface_);
    EXPECT_NE(control().Original().Width(), 150) << "not yet";
    if (isStored) {
      surface_->ReadProperties(headless::BagOfProperties());
    } else {
      surface_->InitProperties();
    }
    EXPECT_EQ(control().Original().Width(), 150);
    EXPECT_EQ(control().PreviewPane().Left(), 162);
    EXPECT_EQ(control().PreviewPane().Height(), 100);
  }
}

TEST_P(EditingPreview, WithoutASelectionOpensOnTheStockPicture) {
  control().OriginalPicture(&view());
  EXPECT_FALSE(control().UseOriginal());
  EXPECT_TRUE(same(left(), stock()));
}

TEST_P(EditingPreview, ASelectionMakesItUseTheSelectedSectionAtOnce) {
  editor().SetSelection(5, 6, 10, 8);
  std::vector<bool> values;
  when(control().UseOriginalChange, [&](const bool& use) { values.push_back(use); });
  control().OriginalPicture(&view());
  EXPECT_TRUE(control().UseOriginal());
  EXPECT_THAT(values, ElementsAre(true));
  EXPECT_EQ(left().width(), 10);
  EXPECT_EQ(left().height(), 8);
  EXPECT_EQ(left().at(0, 0), pixelOf(5, 6));
  EXPECT_TRUE(same(right(), left()));
}

TEST_P(EditingPreview, ASelectionOfZeroWidthCountsAsNone) {
  editor().SetSelection(5, 6, 0, 8);
  control().OriginalPicture(&view());
  EXPECT_FALSE(control().UseOriginal());
  control().UseOriginal(true);
  EXPECT_TRUE(same(left(), gradient(kWidth, kHeight))) << "the whole picture is taken";
}

TEST_P(EditingPreview, OriginalPictureSetTwiceDoesNotRefreshThePanes) {
  editor().SetSelection(5, 6, 10, 8);
  control().OriginalPicture(&view());
  editor().SetSelection(0, 0, 20, 20);
  control().OriginalPicture(&view());
  EXPECT_EQ(left().width(), 10);
}

TEST_P(EditingPreview, UseOriginalWithoutAPictureShowsTheStockPicture) {
  std::vector<bool> values;
  when(control().UseOriginalChange, [&](const bool& use) { values.push_back(use); });
  control().UseOriginal(true);
  EXPECT_THAT(values, ElementsAre(true));
  EXPECT_TRUE(same(left(), stock()));
}

TEST_P(EditingPreview, UseOriginalNotifiesContainerAndHostAfterThePanes) {
  control().OriginalPicture(&view());
  std::int32_t width = 0;
  when(control().UseOriginalChange, [&](const bool&) { width = right().width(); });
  control().UseOriginal(true);
  EXPECT_EQ(surface_->changedProperties().back(), "UseOriginal");
  EXPECT_EQ(width, kWidth);
  const auto before = surface_->changedProperties().size();
  control().UseOriginal(true);
  EXPECT_EQ(surface_->changedProperties().size(), before) << "the current value does nothing";
  control().UseOriginal(false);
  EXPECT_TRUE(same(left(), stock()));
  EXPECT_TRUE(same(right(), stock()));
}

TEST_P(EditingPreview, UseOriginalNotifiesThePropertyBeforeLoading) {
  control().OriginalPicture(&view());
  const auto before = surface_->changedProperties().size();
  std::size_t marked = 0;
  when(original_->Changed, [&] { marked = surface_->changedProperties().size(); });
  control().UseOriginal(true);
  EXPECT_EQ(marked, before + 1);
}

TEST_P(EditingPreview, EachHandlerReceivesTheValueThatWasRaised) {
  std::vector<bool> values;
  when(control().UseOriginalChange, [&](const bool& use) {
    if (use) control().UseOriginal(false);
  });
  when(control().UseOriginalChange, [&](const bool& use) { values.push_back(use); });
  control().UseOriginal(true);
  EXPECT_THAT(values, ElementsAre(false, true)) << "the change within the first one comes first";
}

TEST_P(EditingPreview, WithoutASelectionUseOriginalIsUnchanged) {
  control().OriginalPicture(&view());
  control().UseOriginal(true);
  control().OriginalPicture(nullptr);
  EXPECT_TRUE(control().UseOriginal());
  EXPECT_TRUE(same(left(), gradient(kWidth, kHeight))) << "and the pane too";
}

TEST_P(EditingPreview, ResetDoesNotTouchTheLeftPane) {
  int changes = 0;
  when(original_->Changed, [&] { ++changes; });
  control().Reset();
  EXPECT_EQ(changes, 0);
}

TEST_P(EditingPreview, ResetMakesTheRightPaneAFreshCopyOfTheLeft) {
  control().PreviewPane().Effects().Flip(0);
  EXPECT_FALSE(same(right(), left()));
  EXPECT_TRUE(same(left(), stock()));
  control().Reset();
  EXPECT_TRUE(same(right(), left()));
}

TEST_P(EditingPreview, NeverTouchesTheUsersPicture) {
  editor().SetSelection(5, 6, 10, 8);
  control().OriginalPicture(&view());
  control().PreviewPane().Effects().Flip(0);
  EXPECT_TRUE(same(shown(), gradient(kWidth, kHeight)));
  EXPECT_TRUE(view().SelectionVisible());
  EXPECT_FALSE(editor().Changed());
}

// -- Layout -----------------------------------------------------------------------------------------------

TEST_P(EditingPreview, ThePanesShareTheWidthMinusAGapOf12) {
  surface_->Move(0, 0, 312, 100);
  EXPECT_EQ(original_->Width(), 150);
  EXPECT_EQ(preview_->Width(), 150);
  EXPECT_EQ(preview_->Left(), 162);
  EXPECT_EQ(original_->Left(), 0);
  EXPECT_EQ(original_->Height(), 100);
  EXPECT_EQ(preview_->Height(), 100);
}

TEST_P(EditingPreview, ALayoutChangesSizesAndTheRightPanesLeftAlone) {
  original_->Move(7, 5, 30, 30);
  preview_->Move(80, 9, 30, 30);
  surface_->Move(0, 0, 312, 100);
  EXPECT_EQ(original_->Left(), 7);
  EXPECT_EQ(original_->Top(), 5);
  EXPECT_EQ(preview_->Top(), 9);
  EXPECT_EQ(preview_->Left(), 162);
}

TEST_P(EditingPreview, AWidthOf12GivesPanesOfNoWidth) {
  surface_->Move(0, 0, 12, 100);
  EXPECT_EQ(original_->Width(), 0);
  EXPECT_EQ(preview_->Width(), 0);
  EXPECT_EQ(preview_->Left(), 12);
}

TEST_P(EditingPreview, HalfWidthsRoundToEvenAndTheRightEdgeIsFlush) {
  surface_->Move(0, 0, 313, 100);  // half is 150.5
  EXPECT_EQ(original_->Width(), 150);
  EXPECT_EQ(preview_->Left(), 163);
  surface_->Move(0, 0, 315, 100);  // half is 151.5
  EXPECT_EQ(original_->Width(), 152);
  EXPECT_EQ(preview_->Left(), 163);
  EXPECT_EQ(preview_->Left() + preview_->Width(), 315);
}

// -- Linked scrolling -------------------------------------------------------------------------------------

class EditingPreviewScroll : public EditingPreview {
 protected:
  void SetUp() override {
    EditingPreview::SetUp();
    open(1000, 900);
    control().OriginalPicture(&view());
    control().UseOriginal(true);
  }
  static Point scrollOf(ImageView& pane) { return {pane.ScrollLeft(), pane.ScrollTop()}; }
};

TEST_P(EditingPreviewScroll, ScrollingOnePaneMovesTheOther) {
  original_->ScrollLeft(120);
  original_->ScrollTop(90);
  EXPECT_EQ(scrollOf(*preview_), (Point{120, 90}));
  preview_->ScrollLeft(30);
  EXPECT_EQ(scrollOf(*original_), (Point{30, 90}));
}

TEST_P(EditingPreviewScroll, EachOfTheFourEventsCopiesBothPositions) {
  std::int32_t place = 0;
  const auto expectFollows = [&](headless::ImageView& from, headless::ImageView& to, Event<>& event) {
    place += 10;
    control().LinkedScrolling(false);
    from.ScrollLeft(place);
    from.ScrollTop(place + 5);
    control().LinkedScrolling(true);
    ASSERT_NE(scrollOf(to), (Point{place, place + 5}));
    event();
    EXPECT_EQ(scrollOf(to), (Point{place, place + 5}));
  };
  for (Event<>* event :
       {&original_->Scroll, &original_->Pan, &original_->PanChanged, &original_->ScrollChanged}) {
    expectFollows(*original_, *preview_, *event);
  }
  for (Event<>* event :
       {&preview_->Scroll, &preview_->Pan, &preview_->PanChanged, &preview_->ScrollChanged}) {
    expectFollows(*preview_, *original_, *event);
  }
}

TEST_P(EditingPreviewScroll, AfterAFailureThePanesNoLongerFollow) {
  {
    const Connection failing =
        preview_->ScrollChanged.Connect([] { throw RuntimeError(err::kInternal, "Chosen to fail."); });
    user().answers(kAnswerOK);
    original_->ScrollLeft(120);
  }
  ASSERT_EQ(user().boxes().size(), 1u);
  const Point before = scrollOf(*preview_);
  original_->ScrollLeft(40);
  EXPECT_EQ(scrollOf(*preview_), before);
}

TEST_P(EditingPreviewScroll, PanningOnePaneMovesTheOtherAtEachStep) {
  original_->Tool(kViewToolPan);
  original_->press(kLeftButton, 0, {100, 100});
  original_->move(kLeftButton, 0, {80, 70});
  EXPECT_EQ(scrollOf(*preview_), (Point{20, 30}));
  original_->move(kLeftButton, 0, {60, 60});
  EXPECT_EQ(scrollOf(*preview_), (Point{40, 40}));
  original_->release(kLeftButton, 0, {60, 60});
  EXPECT_EQ(scrollOf(*preview_), scrollOf(*original_));
}

TEST_P(EditingPreviewScroll, TheWheelOverTheRightPaneMovesTheLeft) {
  preview_->turnWheel(-2, 0, {50, 50});
  EXPECT_GT(preview_->ScrollTop(), 0);
  EXPECT_EQ(scrollOf(*original_), scrollOf(*preview_));
}

TEST_P(EditingPreviewScroll, UnlinkedPanesScrollAloneUntilLinkedAndScrolled) {
  control().LinkedScrolling(false);
  EXPECT_EQ(surface_->changedProperties().back(), "LinkedScrolling");
  original_->ScrollLeft(120);
  EXPECT_EQ(scrollOf(*preview_), (Point{0, 0}));
  control().LinkedScrolling(true);
  EXPECT_EQ(scrollOf(*preview_), (Point{0, 0})) << "linking does not align them";
  original_->ScrollTop(5);
  EXPECT_EQ(scrollOf(*preview_), (Point{120, 5}));
}

TEST_P(EditingPreviewScroll, SettingTheCurrentLinkIsNoChange) {
  const auto before = surface_->changedProperties().size();
  control().LinkedScrolling(true);
  EXPECT_EQ(surface_->changedProperties().size(), before);
}

KESTREL_WITH_BOTH_PATHS(EditingPreview);
KESTREL_WITH_BOTH_PATHS(EditingPreviewScroll);

}  // namespace
}  // namespace kestrel
