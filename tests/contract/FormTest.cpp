#include <cstdint>
#include <utility>

#include "ContractTest.h"
#include "imaging/contract/controls/CheckBox.h"

namespace kestrel::contract {
namespace {

class Forms : public ContractTest {
 protected:
  void SetUp() override {
    ContractTest::SetUp();
    form_ = user().controls();
    connections_.push_back(form_->Load.Connect([this] { log_ += "load "; }));
    connections_.push_back(form_->Activate.Connect([this] { log_ += "activate "; }));
    connections_.push_back(form_->QueryUnload.Connect([this](bool& cancel, std::int32_t reason) {
      log_ += "query" + std::to_string(reason) + ' ';
      cancel = keepOpen_;
    }));
    connections_.push_back(form_->Unloaded.Connect([this] { log_ += "unloaded "; }));
  }
  void TearDown() override {
    connections_.clear();
    form_.reset();
    ContractTest::TearDown();
  }

  std::unique_ptr<Form> form_;
  std::vector<Connection> connections_;
  std::string log_;
  bool keepOpen_ = false;
};

TEST_P(Forms, AreMadeByNameAndHidden) {
  const std::unique_ptr<Form> form = platform().CreateForm("frmResources");
  EXPECT_EQ(form->Name(), "frmResources");
  EXPECT_FALSE(form->Visible());
  EXPECT_EQ(Bind<CheckBox>(*form, "chkThumbnail").Caption(), "Save Th&umbnail");
}

TEST_P(Forms, OfUnknownNamesRaise429) {
  EXPECT_EQ(errorOf([&] { platform().CreateForm("frmNothing"); }), 429);
}

TEST_P(Forms, RaiseLoadBeforeShowingAndActivateOnceShown) {
  bool shownAtLoad = true;
  const Connection connection = form_->Load.Connect([&] { shownAtLoad = form_->Visible(); });
  form_->Show();
  user().settle();
  EXPECT_EQ(log_.substr(0, 14), "load activate ");
  EXPECT_FALSE(shownAtLoad);
  EXPECT_TRUE(form_->Visible());
}

TEST_P(Forms, AreLoadedOnce) {
  form_->Show();
  form_->Hide();
  form_->Show();
  user().settle();
  EXPECT_EQ(log_.find("load"), 0u);
  EXPECT_EQ(log_.find("load", 1), std::string::npos);
}

TEST_P(Forms, ShownModallyReturnWhenTheyAreHidden) {
  bool up = false;
  user().willUse([&](Form& form) {
    up = form.Visible();
    form.Hide();
  });
  platform().FormUtility().ShowDialog(*form_, 1, nullptr);
  EXPECT_TRUE(up);
  EXPECT_FALSE(form_->Visible());
  EXPECT_EQ(log_.find("unloaded"), std::string::npos) << "hiding does not unload";
}

TEST_P(Forms, ShownAsADialogReturnTheirAnswer) {
  const auto show = [this] {
    user().willUse([](Form& form) { form.Hide(); });
    return platform().FormUtility().ShowDialog(*form_, 1, nullptr);
  };
  EXPECT_FALSE(show()) << "nobody answers";
  bool accepted = true;
  const Connection connection = form_->QueryResult.Connect([&](bool& result) {
    EXPECT_FALSE(form_->Visible()) << "the form is hidden by now";
    result = accepted;
  });
  EXPECT_TRUE(show());
  accepted = false;
  EXPECT_FALSE(show());
}

TEST_P(Forms, KeepTheirCaptionUnchanged) {
  form_->Caption("a[*]b[*][*].png - Editor");
  EXPECT_EQ(form_->Caption(), "a[*]b[*][*].png - Editor");
}

TEST_P(Forms, ShownModallyReturnWhenTheyAreUnloaded) {
  user().willUse([&](Form& form) { form.Unload(); });
  form_->Show(true);
  EXPECT_FALSE(form_->Visible());
  EXPECT_NE(log_.find("query1 unloaded "), std::string::npos);
}

TEST_P(Forms, ThatAreShownCannotBeShownModally) {
  form_->Show();
  user().settle();
  EXPECT_EQ(errorOf([&] { form_->Show(true); }), 400);
  EXPECT_TRUE(form_->Visible());
}

TEST_P(Forms, RaiseQueryUnloadWithTheCauseBeforeUnloading) {
  form_->Show();
  user().settle();
  log_.clear();
  keepOpen_ = true;
  form_->Unload();
  EXPECT_EQ(log_, "query1 ");
  EXPECT_TRUE(form_->Visible()) << "the handler canceled it";
  user().pressCloseBox(*form_);
  EXPECT_EQ(log_, "query1 query0 ");
  keepOpen_ = false;
  user().pressCloseBox(*form_);
  EXPECT_EQ(log_, "query1 query0 query0 unloaded ");
  EXPECT_FALSE(form_->Visible());
}

TEST_P(Forms, ThatAreNotLoadedUnloadWithoutAnEvent) {
  form_->Unload();
  EXPECT_EQ(log_, "");
}

TEST_P(Forms, LoadAgainAfterUnloading) {
  form_->Show();
  form_->Unload();
  log_.clear();
  form_->Show();
  user().settle();
  EXPECT_EQ(log_.substr(0, 5), "load ");
}

TEST_P(Forms, ShowUnsavedChangesWithoutAChangeOfTheirCaption) {
  form_->Caption("a[*].png - Editor");
  EXPECT_FALSE(form_->Modified());
  form_->Modified(true);
  EXPECT_TRUE(form_->Modified());
  EXPECT_EQ(form_->Caption(), "a[*].png - Editor");
  form_->Modified(false);
  EXPECT_FALSE(form_->Modified());
}

TEST_P(Forms, KeepTheirCaption) {
  form_->Caption("a.png - Editor");
  EXPECT_EQ(form_->Caption(), "a.png - Editor");
}

TEST_P(Forms, AreVisibleOnTheDesktopOnlyWithAllTheirParents) {
  auto& box = Bind<CheckBox>(*form_, "chkBox");
  WindowFunctions& windows = platform().WindowFunctions();
  EXPECT_FALSE(windows.IsWindowVisible(box.hWnd()));
  form_->Show();
  user().settle();
  EXPECT_TRUE(windows.IsWindowVisible(form_->hWnd()));
  EXPECT_TRUE(windows.IsWindowVisible(box.hWnd()));
  box.Visible(false);
  EXPECT_FALSE(windows.IsWindowVisible(box.hWnd()));
  EXPECT_FALSE(windows.IsWindowVisible(0));
}

TEST_P(Forms, KeepTheDrawingOnTheirFaceUntilCleared) {
  form_->Move(0, 0, 400, 300);
  form_->Show();
  user().settle();
  Graphics& graphics = form_->Graphics();
  graphics.Clear();
  const auto canvas = platform().CreateCanvas(2, 1);
  canvas->FillRectangle({0, 0, 1, 1}, 0x000000FF);
  canvas->FillRectangle({1, 0, 1, 1}, 0x0000FF00);
  graphics.DrawMode(kDrawCopy);
  graphics.PaintPicture(*canvas->Picture(), {10, 10, 20, 10}, {0, 0, 2, 1});
  EXPECT_EQ(user().faceColor(*form_, {10, 10}), 0x000000FF);
  EXPECT_EQ(user().faceColor(*form_, {19, 19}), 0x000000FF) << "stretched without smoothing";
  EXPECT_EQ(user().faceColor(*form_, {20, 10}), 0x0000FF00);
  EXPECT_EQ(user().faceColor(*form_, {29, 19}), 0x0000FF00);
  EXPECT_EQ(user().faceColor(*form_, {30, 10}), kNoColor);
  EXPECT_EQ(user().faceColor(*form_, {10, 20}), kNoColor);
}

TEST_P(Forms, AreDrawnOnWithBoxesThatIncludeBothCorners) {
  form_->Move(0, 0, 400, 300);
  Graphics& graphics = form_->Graphics();
  graphics.Clear();
  graphics.DrawMode(kDrawCopy);
  graphics.DrawBox(5, 6, 15, 12, 0x00FF0000);
  for (const Point& on :
       {Point{5, 6}, Point{15, 6}, Point{5, 12}, Point{15, 12}, Point{10, 6}, Point{5, 9}}) {
    EXPECT_EQ(user().faceColor(*form_, on), 0x00FF0000) << on.X << ',' << on.Y;
  }
  for (const Point& off : {Point{6, 7}, Point{16, 6}, Point{5, 13}, Point{4, 6}, Point{10, 9}}) {
    EXPECT_EQ(user().faceColor(*form_, off), kNoColor) << off.X << ',' << off.Y;
  }
}

TEST_P(Forms, InvertTheirFaceInDrawMode6) {
  form_->Move(0, 0, 400, 300);
  Graphics& graphics = form_->Graphics();
  graphics.Clear();
  const auto canvas = platform().CreateCanvas(4, 4);
  canvas->FillRectangle({0, 0, 4, 4}, 0x00102030);
  graphics.PaintPicture(*canvas->Picture(), {0, 0, 40, 40}, {0, 0, 4, 4});
  graphics.DrawMode(kDrawInvert);
  graphics.DrawBox(10, 10, 20, 20, 0);
  EXPECT_EQ(user().faceColor(*form_, {10, 10}), 0x00EFDFCF);
  graphics.DrawBox(10, 10, 20, 20, 0);
  EXPECT_EQ(user().faceColor(*form_, {10, 10}), 0x00102030);
  EXPECT_EQ(errorOf([&] { graphics.DrawMode(7); }), 380);
}

TEST_P(Forms, ReplaceTheirFaceByThePaintedPicture) {
  form_->Move(0, 0, 400, 300);
  Graphics& graphics = form_->Graphics();
  graphics.Clear();
  const auto canvas = platform().CreateCanvas(4, 4);
  canvas->FillRectangle({0, 0, 4, 4}, 0x00102030);
  graphics.PaintPicture(*canvas->Picture(), {0, 0, 80, 40}, {0, 0, 4, 4});
  canvas->FillRectangle({0, 0, 4, 4}, 0x000000FF);
  graphics.PaintPicture(*canvas->Picture(), {0, 0, 80, 40}, {-4, 0, 8, 4});
  EXPECT_EQ(user().faceColor(*form_, {20, 20}), kNoColor) << "beyond the picture";
  EXPECT_EQ(user().faceColor(*form_, {60, 20}), 0x000000FF);

  const auto glass = platform().CreateImgX();
  glass->Document().NewImage(4, 4, nullptr);
  graphics.PaintPicture(*glass->Writer().ToPicture(), {40, 0, 20, 20}, {0, 0, 4, 4});
  EXPECT_EQ(user().faceColor(*form_, {50, 10}), kNoColor) << "transparent pixels replace too";
  EXPECT_EQ(user().faceColor(*form_, {70, 10}), 0x000000FF);
}

TEST_P(Forms, ShowTheBackgroundBehindAlphaAndBeyondThePicture) {
  form_->Move(0, 0, 400, 300);
  Graphics& graphics = form_->Graphics();
  graphics.Clear();
  const auto tile = platform().CreateCanvas(20, 20);
  tile->FillRectangle({0, 0, 20, 20}, 0x00102030);
  tile->FillRectangle({10, 0, 10, 20}, 0x00405060);
  graphics.Ground(tile->Picture());
  EXPECT_EQ(user().faceColor(*form_, {5, 5}), kNoColor) << "the ground alone draws nothing";

  const auto glass = platform().CreateImgX();
  glass->Document().NewImage(4, 4, nullptr);
  graphics.PaintPicture(*glass->Writer().ToPicture(), {0, 0, 40, 40}, {0, 0, 4, 4});
  EXPECT_EQ(user().faceColor(*form_, {5, 5}), 0x00102030);
  EXPECT_EQ(user().faceColor(*form_, {35, 25}), 0x00405060) << "tiled from the window's corner";

  const auto canvas = platform().CreateCanvas(4, 4);
  canvas->FillRectangle({0, 0, 4, 4}, 0x000000FF);
  graphics.PaintPicture(*canvas->Picture(), {0, 0, 80, 40}, {-4, 0, 8, 4});
  EXPECT_EQ(user().faceColor(*form_, {25, 5}), 0x00102030);
  EXPECT_EQ(user().faceColor(*form_, {60, 20}), 0x000000FF);
  graphics.Ground(nullptr);
  graphics.PaintPicture(*canvas->Picture(), {0, 0, 80, 40}, {-4, 0, 8, 4});
  EXPECT_EQ(user().faceColor(*form_, {25, 5}), kNoColor);
}

TEST_P(Forms, ShowOnlyTheBackgroundForASourceWithoutArea) {
  form_->Move(0, 0, 400, 300);
  Graphics& graphics = form_->Graphics();
  graphics.Clear();
  const auto tile = platform().CreateCanvas(4, 4);
  tile->FillRectangle({0, 0, 4, 4}, 0x00102030);
  graphics.Ground(tile->Picture());
  const auto canvas = platform().CreateCanvas(4, 4);
  canvas->FillRectangle({0, 0, 4, 4}, 0x000000FF);
  graphics.PaintPicture(*canvas->Picture(), {0, 0, 40, 40}, {1, 1, 0, 2});
  EXPECT_EQ(user().faceColor(*form_, {5, 5}), 0x00102030);
  graphics.PaintPicture(*canvas->Picture(), {40, 0, 40, 40}, {1, 1, 2, -2});
  EXPECT_EQ(user().faceColor(*form_, {45, 5}), 0x00102030);
  graphics.PaintPicture(*canvas->Picture(), {100, 0, 0, -40}, {1, 1, 2, 2});
  EXPECT_EQ(user().faceColor(*form_, {100, 5}), kNoColor) << "a destination without an area draws nothing";
}

TEST_P(Forms, AreDrawnOnWithBoxesFromAnyCornerAndBeyondTheEdges) {
  form_->Move(0, 0, 400, 300);
  Graphics& graphics = form_->Graphics();
  graphics.Clear();
  graphics.DrawBox(15, 12, 5, 6, 0x00FF0000);
  for (const Point& on : {Point{5, 6}, Point{15, 12}, Point{10, 6}, Point{5, 9}}) {
    EXPECT_EQ(user().faceColor(*form_, on), 0x00FF0000) << on.X << ',' << on.Y;
  }
  EXPECT_EQ(user().faceColor(*form_, {10, 9}), kNoColor);
  EXPECT_EQ(user().faceColor(*form_, {16, 9}), kNoColor);
  constexpr std::int32_t kLeast = INT32_MIN, kMost = INT32_MAX;
  graphics.DrawBox(kLeast, 20, kMost, 30, 0x0000FF00);
  EXPECT_EQ(user().faceColor(*form_, {0, 20}), 0x0000FF00);
  EXPECT_EQ(user().faceColor(*form_, {399, 30}), 0x0000FF00);
  EXPECT_EQ(user().faceColor(*form_, {0, 25}), kNoColor);
  graphics.DrawBox(50, kLeast, 60, kMost, 0x000000FF);
  EXPECT_EQ(user().faceColor(*form_, {50, 299}), 0x000000FF);
  EXPECT_EQ(user().faceColor(*form_, {55, 0}), kNoColor);
}

TEST_P(Forms, PassASiteItsStoredValues) {
  const std::unique_ptr<Form> form = platform().CreateForm("frmImageEditor");
  auto& site = Bind<Site>(*form, "Processing");
  std::string log;
  const Connection initialised = site.InitProperties.Connect([&] { log += "init "; });
  const Connection read = site.ReadProperties.Connect([&](const PropertyBag& bag) {
    log += bag.ReadProperty("ShowMenuBar", false).ToBoolean() ? "menu " : "no menu ";
    log += bag.ReadProperty("NeverStored", true).ToBoolean() ? "default" : "no default";
  });
  form->Show();
  user().settle();
  EXPECT_EQ(log, "menu default") << "a stored control is read, not initialized";
}

TEST_P(Forms, UnloadedInQueryUnloadAreUnloadedOnce) {
  form_->Show();
  user().settle();
  log_.clear();
  bool again = true;
  const Connection connection = form_->QueryUnload.Connect([&](bool&, std::int32_t) {
    if (std::exchange(again, false)) form_->Unload();
  });
  user().pressCloseBox(*form_);
  EXPECT_EQ(log_, "query0 query1 unloaded ");
  EXPECT_FALSE(form_->Visible());
}

TEST_P(Forms, ShownModallyAreCallsToTheUser) {
  bool during = false;
  user().willUse([&](Form& form) {
    during = platform().Calls.Any();
    form.Hide();
  });
  form_->Show(true);
  EXPECT_TRUE(during);
  EXPECT_FALSE(platform().Calls.Any());
}

KESTREL_ON_ALL_PLATFORMS(Forms);

}  // namespace
}  // namespace kestrel::contract
