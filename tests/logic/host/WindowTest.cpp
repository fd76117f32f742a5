// The editor's window: its place, its activation, and the ways to close it.

#include "HostTest.h"
#include "host/frmImageEditor.h"

namespace kestrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class HostWindow : public HostTest {
 protected:
  static Site& siteOf(frmImageEditor& window) { return Bind<Site>(window.Form(), "Processing"); }
  /// Whether the control has been through `Terminate` since its start.
  static bool terminated(IImageProcessingCtl& control) { return control.ZoomWindow() == nullptr; }
  static bool terminated(const ImageProcessing& processing) { return terminated(processing.Control()); }

  /// A shown window with a picture.
  void open(ImageProcessing& processing) {
    processing.Initialize();
    processing.Show();
    ASSERT_TRUE(processing.OpenImage(png()));
    record(processing);
  }
};

// -- The window ---------------------------------------------------------------------------------------------

TEST_F(HostWindow, IsFilledByTheEditorUnlessItIsMinimized) {
  frmImageEditor window;
  window.Form().Show();
  window.Form().Move(10, 20, 900, 700);
  EXPECT_EQ(siteOf(window).Left(), 0);
  EXPECT_EQ(siteOf(window).Top(), 0);
  EXPECT_EQ(siteOf(window).Width(), 900);
  EXPECT_EQ(siteOf(window).Height(), 700);
  window.Form().WindowState(kWindowMinimized);
  window.Form().Move(10, 20, 100, 30);
  EXPECT_EQ(siteOf(window).Width(), 900);
}

TEST_F(HostWindow, ResetsThePointerAtItsFirstActivationOnly) {
  ImageProcessing processing;
  processing.Initialize();
  platform().Screen().MousePointer(kBusyHourglass);
  processing.Show();
  EXPECT_EQ(platform().Screen().MousePointer(), 0);
  platform().Screen().MousePointer(kBusyHourglass);
  formOf(processing).Activate();
  EXPECT_EQ(platform().Screen().MousePointer(), kBusyHourglass);
}

TEST_F(HostWindow, IsShownWithoutAPictureAndReportsNothing) {
  ImageProcessing processing;
  processing.Initialize();
  processing.Show();
  EXPECT_THAT(user().boxes(), IsEmpty());
}

TEST_F(HostWindow, RedrawsTheMagnifierAtItsFirstActivationOnly) {
  ImageProcessing processing;
  processing.Initialize();
  ASSERT_TRUE(processing.OpenImage(png()));
  const auto& magnifier = dynamic_cast<headless::Form&>(*suiteOf(processing).attached("dkwZoom"));
  const auto drawn = [&] {
    const engine::Bitmap face = magnifier.face();
    for (std::int32_t y = 0; y < face.height(); ++y) {
      for (std::int32_t x = 0; x < face.width(); ++x) {
        if (face.at(x, y).a != 0) return true;
      }
    }
    return false;
  };
  processing.Control().ZoomWindow()->ClearZoomWindow();
  ASSERT_FALSE(drawn());
  processing.Show();
  EXPECT_TRUE(drawn());
  processing.Control().ZoomWindow()->ClearZoomWindow();
  formOf(processing).Activate();
  EXPECT_FALSE(drawn());
}

TEST_F(HostWindow, MayBeShownBeforeInitialize) {
  ImageProcessing processing;
  processing.Show();
  EXPECT_TRUE(processing.Visible());
}

TEST_F(HostWindow, RestoresItsPositionOnLoad) {
  for (const auto& [name, value] :
       {std::pair("Left", 30), {"Top", 40}, {"Width", 640}, {"Height", 480}, {"State", 0}}) {
    platform().RegistryStore().WriteValue(HKEY_CURRENT_USER, kEditorPosition, name, std::int32_t{value},
                                          kStoreNumber);
  }
  frmImageEditor window;
  EXPECT_NE(window.Form().Left(), 30);
  window.Form().Show();
  EXPECT_EQ(window.Form().Left(), 30);
  EXPECT_EQ(window.Form().Top(), 40);
  EXPECT_EQ(window.Form().Width(), 640);
  EXPECT_EQ(window.Form().Height(), 480);
}

TEST_F(HostWindow, WithoutAKeyRestoresAndStoresNoPosition) {
  platform().RegistryStore().WriteValue(HKEY_CURRENT_USER, kEditorPosition, "Left", std::int32_t{30},
                                        kStoreNumber);
  platform().WindowPositions().RegistryKey({});
  ImageProcessing processing;
  open(processing);
  EXPECT_NE(formOf(processing).Left(), 30);
  change(processing);
  user().answers(kAnswerNo);
  formOf(processing).pressCloseBox();
  EXPECT_FALSE(processing.Visible());
  EXPECT_EQ(storedPosition("Left").ToInt32(), 30);
  EXPECT_EQ(storedPosition("Width").TypeCode(), 0);
}

// -- Closing ------------------------------------------------------------------------------------------------

TEST_F(HostWindow, SafeToUnloadLetsTheUnloadGoOn) {
  frmImageEditor window;
  window.Processing().Initialize();
  window.Form().Show();
  int unloaded = 0;
  on(window.Form().Unloaded, [&] { ++unloaded; });
  window.SafeToUnload = true;
  window.Form().Unload();
  EXPECT_EQ(unloaded, 1);
  EXPECT_FALSE(window.Form().Visible());
  EXPECT_FALSE(terminated(window.Processing()));
}

TEST_F(HostWindow, ClosingAHiddenWindowTerminatesTheControlOnly) {
  int unloaded = 0;
  ImageProcessing processing;
  open(processing);
  change(processing);
  formOf(processing).Hide();
  on(formOf(processing).Unloaded, [&] { ++unloaded; });
  formOf(processing).Unload();
  EXPECT_TRUE(terminated(processing)) << "without a question about the changes";
  EXPECT_EQ(unloaded, 0);
  EXPECT_EQ(storedPosition("Left").TypeCode(), 0);
  EXPECT_THAT(log_, ElementsAre("WindowClosed")) << "an attempt to close it too";
}

TEST_F(HostWindow, ClosingWithoutChangesHidesItAndStoresNoPosition) {
  ImageProcessing processing;
  open(processing);
  ASSERT_FALSE(processing.Control().Changed());
  int unloaded = 0;
  on(formOf(processing).Unloaded, [&] { ++unloaded; });
  formOf(processing).pressCloseBox();
  EXPECT_FALSE(processing.Visible());
  EXPECT_TRUE(terminated(processing));
  EXPECT_EQ(unloaded, 0);
  EXPECT_EQ(storedPosition("Left").TypeCode(), 0);
  EXPECT_THAT(log_, ElementsAre("WindowClosed"));
}

TEST_F(HostWindow, ClosingWithChangesThatTheUserDoesNotWantToLoseLeavesItAsItIs) {
  ImageProcessing processing;
  open(processing);
  change(processing);
  user().answers(kAnswerCancel);
  formOf(processing).pressCloseBox();
  EXPECT_TRUE(processing.Visible());
  EXPECT_FALSE(terminated(processing));
  EXPECT_TRUE(processing.Control().Changed());
  EXPECT_EQ(storedPosition("Left").TypeCode(), 0);
  EXPECT_THAT(log_, ElementsAre("WindowClosed")) << "although it stays open";
}

TEST_F(HostWindow, WindowClosedIsRaisedBeforeTheQuestionAboutTheChanges) {
  ImageProcessing processing;
  open(processing);
  change(processing);
  std::size_t asked = 99;
  on(processing.WindowClosed, [&] { asked = user().boxes().size(); });
  user().answers(kAnswerCancel);
  formOf(processing).pressCloseBox();
  EXPECT_EQ(asked, 0u);
  EXPECT_EQ(user().boxes().size(), 1u);
}

TEST_F(HostWindow, ClosingWithChangesThatMayGoStoresThePositionAndHidesIt) {
  ImageProcessing processing;
  open(processing);
  formOf(processing).Move(30, 40, 640, 480);
  change(processing);
  user().answers(kAnswerNo);
  formOf(processing).pressCloseBox();
  EXPECT_FALSE(processing.Visible());
  EXPECT_TRUE(terminated(processing));
  EXPECT_EQ(storedPosition("Left").ToInt32(), 30);
  EXPECT_EQ(storedPosition("Top").ToInt32(), 40);
  EXPECT_EQ(storedPosition("Width").ToInt32(), 640);
  EXPECT_EQ(storedPosition("Height").ToInt32(), 480);
}

TEST_F(HostWindow, ClosingWithChangesStoresThePositionThenTerminatesTheControlThenHidesIt) {
  ImageProcessing processing;
  open(processing);
  change(processing);
  on(suiteOf(processing).attached("dkwZoom")->Unloaded, [&] {
    log_.push_back(storedPosition("Left").TypeCode() != 0 ? "stored" : "not stored");
    log_.push_back(processing.Visible() ? "shown" : "hidden");
  });
  user().answers(kAnswerNo);
  formOf(processing).pressCloseBox();
  EXPECT_THAT(log_, ElementsAre("WindowClosed", "stored", "shown"));
  EXPECT_FALSE(processing.Visible());
}

TEST_F(HostWindow, ClosingAfterASaveStoresThePositionWithoutAQuestion) {
  ImageProcessing processing;
  open(processing);
  change(processing);
  ASSERT_TRUE(processing.SaveImage());
  ASSERT_TRUE(processing.Control().Changed());
  formOf(processing).pressCloseBox();
  EXPECT_FALSE(processing.Visible());
  EXPECT_THAT(user().boxes(), IsEmpty());
  EXPECT_NE(storedPosition("Left").TypeCode(), 0);
}

TEST_F(HostWindow, ClosingWithChangesThatCannotBeSavedLeavesItAsItIs) {
  ImageProcessing processing;
  open(processing);
  change(processing);
  std::filesystem::remove_all(platform().files().host("C:\\a"));
  user().answers(kAnswerYes);
  user().answers(kAnswerOK);
  formOf(processing).pressCloseBox();
  EXPECT_EQ(user().boxes().back().title, "Save Image");
  EXPECT_TRUE(processing.Visible());
  EXPECT_FALSE(terminated(processing));
  EXPECT_EQ(storedPosition("Left").TypeCode(), 0);
}

TEST_F(HostWindow, ClosingWithChangesThatAreSavedClosesIt) {
  ImageProcessing processing;
  open(processing);
  change(processing);
  user().answers(kAnswerYes);
  formOf(processing).pressCloseBox();
  EXPECT_FALSE(processing.Visible());
  EXPECT_NE(storedPosition("Left").TypeCode(), 0);
  EXPECT_THAT(log_, ElementsAre("WindowClosed", "ImageSave C:\\a\\b.png"));
}

TEST_F(HostWindow, EveryAttemptRaisesWindowClosed) {
  ImageProcessing processing;
  open(processing);
  change(processing);
  for (int attempt = 1; attempt <= 3; ++attempt) {
    user().answers(kAnswerCancel);
    formOf(processing).pressCloseBox();
    EXPECT_EQ(log_, std::vector<std::string>(static_cast<std::size_t>(attempt), "WindowClosed"));
  }
}

TEST_F(HostWindow, TheCommandCloseClosesItAsTheUserDoes) {
  ImageProcessing processing;
  open(processing);
  processing.ShowClose(true);
  EXPECT_TRUE(suiteOf(processing).click("btnFileClose"));
  EXPECT_FALSE(processing.Visible());
  EXPECT_THAT(log_, ElementsAre("WindowClosed"));
}

TEST_F(HostWindow, TheCommandCloseAsksAboutChanges) {
  ImageProcessing processing;
  open(processing);
  processing.ShowClose(true);
  change(processing);
  user().answers(kAnswerCancel);
  EXPECT_TRUE(suiteOf(processing).click("btnFileClose"));
  EXPECT_TRUE(processing.Visible());
}

TEST_F(HostWindow, AfterTheUserClosedItTheObjectKeepsWorkingAndShowBringsItBack) {
  ImageProcessing processing;
  open(processing);
  headless::Form* const form = &formOf(processing);
  form->pressCloseBox();
  EXPECT_FALSE(processing.Visible());
  EXPECT_EQ(processing.Image()->Width(), 40);
  processing.Resize(20);
  EXPECT_EQ(processing.Image()->Width(), 20);
  processing.Show();
  EXPECT_TRUE(processing.Visible());
  EXPECT_EQ(&formOf(processing), form) << "the same window";
  EXPECT_EQ(processing.Control().ZoomWindow(), nullptr) << "its control has been through Terminate";
  EXPECT_FALSE(processing.Control().EventSink());
}

TEST_F(HostWindow, AfterTheUserClosedItCommandsOfWhatIsReleasedAreDisabled) {
  ImageProcessing processing;
  open(processing);
  const auto enabled = [&] {
    std::string names;
    for (const char* name :
         {"btnViewMaterialsWindow", "btnViewZoomWindow", "btnHelpContents", "btnFileOpen"}) {
      if (processing.Commands()(name).Enabled()) names += std::string(name) + ' ';
    }
    return names;
  };
  const std::string before = enabled();
  EXPECT_EQ(before, "btnViewMaterialsWindow btnViewZoomWindow btnHelpContents btnFileOpen ");
  formOf(processing).pressCloseBox();
  processing.Show();
  EXPECT_EQ(enabled(), "btnFileOpen ");
  processing.Initialize();
  EXPECT_EQ(enabled(), before);
}

TEST_F(HostWindow, AfterTheUserClosedItASecondCloseIsPossible) {
  ImageProcessing processing;
  open(processing);
  formOf(processing).pressCloseBox();
  processing.Show();
  formOf(processing).pressCloseBox();
  EXPECT_FALSE(processing.Visible());
  EXPECT_THAT(log_, ElementsAre("WindowClosed", "WindowClosed"));
}

TEST_F(HostWindow, IsShownModally) {
  ImageProcessing processing;
  processing.Initialize();
  record(processing);
  bool shown = false;
  user().uses("frmImageEditor", [&](Form& form) {
    shown = processing.Visible();
    EXPECT_TRUE(processing.OpenImage(png()));
    dynamic_cast<headless::Form&>(form).pressCloseBox();
  });
  processing.Show(true);
  EXPECT_TRUE(shown);
  EXPECT_FALSE(processing.Visible());
  EXPECT_THAT(log_, ElementsAre("ImageOpen C:\\a\\b.png", "WindowClosed")) << "from within its loop";
}

TEST_F(HostWindow, AShowThatFailsIsReportedAndReturns) {
  ImageProcessing processing;
  processing.Show();
  user().answers(kAnswerOK);
  processing.Show(true);  // a window that is shown cannot be shown modally
  ASSERT_EQ(user().boxes().size(), 1u);
  EXPECT_THAT(user().boxes()[0].text, testing::HasSubstr("Procedure: Show\r\n"));
}

TEST_F(HostWindow, AHandlerThatFailsIsReportedAndTheWindowCloses) {
  ImageProcessing processing;
  open(processing);
  on(processing.WindowClosed, [] { throw RuntimeError(5, "The host failed."); });
  user().answers(kAnswerOK);
  formOf(processing).pressCloseBox();
  EXPECT_FALSE(processing.Visible());
  ASSERT_EQ(user().boxes().size(), 1u);
  EXPECT_THAT(user().boxes()[0].text,
              testing::HasSubstr("Module: ImageProcessing\r\nProcedure: mForm_QueryUnload\r\n"));
}

// -- The caption --------------------------------------------------------------------------------------------

TEST_F(HostWindow, TitleWithoutAPictureIsBehindUntitled) {
  ImageProcessing processing;
  processing.Title("Pictures");
  EXPECT_EQ(processing.Title(), "Pictures");
  EXPECT_EQ(formOf(processing).Caption(), "Untitled - Pictures");
}

TEST_F(HostWindow, TitleWithAPictureIsBehindTheNameOfItsFile) {
  ImageProcessing processing;
  open(processing);
  processing.Title("Pictures");
  EXPECT_EQ(formOf(processing).Caption(), "b.png - Pictures");
}

TEST_F(HostWindow, AnEmptyTitleIsThatOfTheApplication) {
  ImageProcessing processing;
  platform().App().title = "Kestrel";
  processing.Title("Pictures");
  processing.Title("");
  EXPECT_EQ(formOf(processing).Caption(), "Untitled - Kestrel");
}

TEST_F(HostWindow, ATitleThatIsTheSameLeavesTheCaptionAlone) {
  ImageProcessing processing;
  processing.Title("Pictures");
  formOf(processing).Caption("Changed by hand");
  processing.Title("Pictures");
  EXPECT_EQ(formOf(processing).Caption(), "Changed by hand");
  processing.Title("Other");
  EXPECT_EQ(formOf(processing).Caption(), "Untitled - Other");
}

TEST_F(HostWindow, TheEmptyTitleAtTheStartIsTheSameToo) {
  ImageProcessing processing;
  formOf(processing).Caption("Changed by hand");
  processing.Title("");
  EXPECT_EQ(formOf(processing).Caption(), "Changed by hand");
}

}  // namespace
}  // namespace kestrel
