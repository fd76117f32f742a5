#include "BatchStore.h"
#include "EditingTest.h"
#include "dialogs/frmOptions.h"
#include "imaging/contract/controls/CheckBox.h"
#include "imaging/contract/controls/ColorPicker.h"
#include "imaging/contract/controls/ComboBox.h"
#include "imaging/contract/controls/CommandButton.h"
#include "imaging/contract/controls/Frame.h"
#include "imaging/contract/controls/Label.h"
#include "imaging/contract/controls/OptionButton.h"
#include "imaging/contract/controls/Slider.h"
#include "imaging/contract/controls/TabStrip.h"
#include "imaging/contract/controls/TextBox.h"

namespace kestrel {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

/// The controls of the options dialog.
class Dialog {
 public:
  explicit Dialog(Form& form) : form_(form) {}

  Form& form() { return form_; }
  TabStrip& tabs() { return Bind<TabStrip>(form_, "tabView"); }
  Frame& page(std::int32_t index) { return Bind<Frame>(form_, "fraView", index); }
  ComboBox& gridSize() { return Bind<ComboBox>(form_, "cboGridSize"); }
  ColorPicker& gridColor(std::int32_t index) { return Bind<ColorPicker>(form_, "cpkGrid", index); }
  Frame& sample() { return Bind<Frame>(form_, "fraGrid"); }
  Slider& zoom() { return Bind<Slider>(form_, "sldZoom"); }
  CheckBox& create() { return Bind<CheckBox>(form_, "chkAddThumbnails"); }
  OptionButton& type(std::int32_t index) { return Bind<OptionButton>(form_, "optSizeType", index); }
  TextBox& size(std::int32_t index) { return Bind<TextBox>(form_, "txtField", index); }
  CheckBox& shadow() { return Bind<CheckBox>(form_, "chkDropShadow"); }
  CheckBox& update() { return Bind<CheckBox>(form_, "chkAutomaticUpdate"); }
  ColorPicker& background() { return Bind<ColorPicker>(form_, "cpkColor", 0); }
  Slider& quality() { return Bind<Slider>(form_, "sldJPEGQuality"); }
  void ok() { Bind<CommandButton>(form_, "cmdAction", 0).Press(); }
  void cancel() { Bind<CommandButton>(form_, "cmdAction", 1).Press(); }
  engine::Bitmap pattern() { return engine::bitmapOf(*sample().BackgroundPicture()); }

 private:
  Form& form_;
};

class EditingOptionsDialog : public EditingTest {
 protected:
  bool show(std::function<void(Dialog&)> doing) {
    user().uses("frmOptions", [doing = std::move(doing)](Form& form) {
      Dialog dialog(form);
      doing(dialog);
    });
    return editor().ShowOptions();
  }
};

TEST_P(EditingOptionsDialog, HasTheCaptionsOfItsControls) {
  show([](Dialog& dialog) {
    EXPECT_EQ(dialog.form().Caption(), "Options");
    ASSERT_EQ(dialog.tabs().Count(), 3);
    EXPECT_EQ(dialog.tabs().Caption(1), "General");
    EXPECT_EQ(dialog.tabs().Caption(2), "Thumbnails");
    EXPECT_EQ(dialog.tabs().Caption(3), "JPEG");
    EXPECT_EQ(dialog.form().UBound("fraView"), 2);
    EXPECT_EQ(dialog.create().Caption(), "Create &thumbnails");
    EXPECT_EQ(dialog.type(0).Caption(), "&Percentage of original:");
    EXPECT_EQ(dialog.type(1).Caption(), "Specific &Width:");
    EXPECT_EQ(dialog.shadow().Caption(), "Add &drop shadow");
    EXPECT_EQ(dialog.update().Caption(), "A&utomatically update thumbnails");
    EXPECT_EQ(Bind<CommandButton>(dialog.form(), "cmdAction", 0).Caption(), "OK");
    EXPECT_EQ(Bind<CommandButton>(dialog.form(), "cmdAction", 1).Caption(), "Cancel");
    const std::string labels[] = {"&Grid size:",
                                  "Color &1:",
                                  "Color &2:",
                                  "&Zoom Level:",
                                  "%",
                                  "pixels",
                                  "Background &Color:",
                                  "&Zoom Level:",
                                  "Highest compression, lowest quality",
                                  "Lower compression, best quality"};
    for (std::int32_t i = 0; i < 10; ++i) {
      EXPECT_EQ(Bind<Label>(dialog.form(), "lblHdr", i).Caption(), labels[i]);
    }
    EXPECT_EQ(Bind<Frame>(dialog.form(), "fraBackground").Caption(), "Background");
    EXPECT_EQ(Bind<Frame>(dialog.form(), "fraZoom").Caption(), "Zoom");
    EXPECT_EQ(Bind<Frame>(dialog.form(), "fraThumbnails").Caption(), "Automatic thumbnail generation");
    EXPECT_EQ(Bind<Frame>(dialog.form(), "fraCompression").Caption(), "Compression");
    dialog.cancel();
  });
}

TEST_P(EditingOptionsDialog, TheGridSizesHaveTheirNumbers) {
  show([](Dialog& dialog) {
    const std::pair<const char*, std::int32_t> entries[] = {
        {"Tiny", 4}, {"Small", 8}, {"Medium", 20}, {"Large", 32}};
    ASSERT_EQ(dialog.gridSize().ListCount(), 4);
    for (std::int32_t i = 0; i < 4; ++i) {
      EXPECT_EQ(dialog.gridSize().List(i), entries[i].first);
      EXPECT_EQ(dialog.gridSize().ItemData(i), entries[i].second);
    }
    dialog.cancel();
  });
}

TEST_P(EditingOptionsDialog, LoadsWithoutAnIconAndAppliesTheSkinLast) {
  platform().Screen().MousePointer(kBusyHourglass);
  show([this](Dialog& dialog) {
    EXPECT_FALSE(dynamic_cast<headless::Form&>(dialog.form()).hasIcon());
    EXPECT_EQ(platform().WindowFunctions().styles(dialog.size(0).hWnd()), 8192);
    EXPECT_EQ(platform().WindowFunctions().styles(dialog.size(1).hWnd()), 8192);
    EXPECT_EQ(platform().FormSkin().applied().back().name, "frmOptions");
    EXPECT_EQ(platform().Screen().MousePointer(), kBusyDefault);
    dialog.cancel();
  });
}

TEST_P(EditingOptionsDialog, OpensOnTheDefaultsOfAFreshProfile) {
  show([](Dialog& dialog) {
    EXPECT_EQ(dialog.gridSize().ListIndex(), 2);
    EXPECT_EQ(dialog.gridColor(0).Value(), 0xFFFFFF);
    EXPECT_EQ(dialog.gridColor(1).Value(), 0xC0C0C0);
    EXPECT_EQ(dialog.zoom().Value(), 10);
    EXPECT_EQ(dialog.create().Value(), 1);
    EXPECT_TRUE(dialog.type(0).Value());
    EXPECT_EQ(dialog.size(0).Text(), "30");
    EXPECT_EQ(dialog.size(1).Text(), "");
    EXPECT_EQ(dialog.shadow().Value(), 1);
    EXPECT_EQ(dialog.update().Value(), 0);
    EXPECT_EQ(dialog.background().Value(), 0xFFFFFF);
    EXPECT_EQ(dialog.quality().Value(), 25) << "100 - 75";
    dialog.cancel();
  });
}

TEST_P(EditingOptionsDialog, OpensOnTheStoredSettings) {
  options().BackgroundGridColor1(0x010203);
  options().BackgroundGridColor2(0x040506);
  options().ZoomLevel(17);
  options().ThumbnailAutoCheck(false);
  options().ThumbnailSizeType(tstWidthInPixels);
  options().ThumbnailSize(120);
  options().ThumbnailAddDropShadow(false);
  options().ThumbnailAutomaticUpdate(true);
  options().ThumbnailBackgroundColor(0x070809);
  options().JPEGQuality(40);
  show([](Dialog& dialog) {
    EXPECT_EQ(dialog.gridColor(0).Value(), 0x010203);
    EXPECT_EQ(dialog.gridColor(1).Value(), 0x040506);
    EXPECT_EQ(dialog.zoom().Value(), 17);
    EXPECT_EQ(dialog.create().Value(), 0);
    EXPECT_TRUE(dialog.type(1).Value());
    EXPECT_EQ(dialog.size(0).Text(), "");
    EXPECT_EQ(dialog.size(1).Text(), "120");
    EXPECT_EQ(dialog.shadow().Value(), 0);
    EXPECT_EQ(dialog.update().Value(), 1);
    EXPECT_EQ(dialog.background().Value(), 0x070809);
    EXPECT_EQ(dialog.quality().Value(), 60);
    dialog.cancel();
  });
}

TEST_P(EditingOptionsDialog, AStoredGridSizeSelectsItsEntryAndAnyOtherMedium) {
  const std::pair<std::int32_t, std::int32_t> selected[] = {{4, 0},  {8, 1},  {20, 2},
                                                            {32, 3}, {16, 2}, {-1, 2}};
  for (const auto& [stored, index] : selected) {
    options().BackgroundGridSize(stored);
    show([index = index](Dialog& dialog) {
      EXPECT_EQ(dialog.gridSize().ListIndex(), index);
      dialog.cancel();
    });
    EXPECT_EQ(options().BackgroundGridSize(), stored);
  }
}

TEST_P(EditingOptionsDialog, AGridSizeThatIsNotInTheListIsStoredAs20) {
  options().BackgroundGridSize(16);
  EXPECT_TRUE(show([](Dialog& dialog) { dialog.ok(); }));
  EXPECT_EQ(options().BackgroundGridSize(), 20);
}

TEST_P(EditingOptionsDialog, AnySizeTypeButZeroMeansPixels) {
  options().ThumbnailSizeType(static_cast<ThumbnailSizeTypeEnum>(7));
  EXPECT_TRUE(show([](Dialog& dialog) {
    EXPECT_TRUE(dialog.type(1).Value());
    EXPECT_EQ(dialog.size(1).Text(), "30");
    dialog.ok();
  }));
  EXPECT_EQ(options().ThumbnailSizeType(), tstWidthInPixels);
}

// -- Pages ------------------------------------------------------------------------------------------------

TEST_P(EditingOptionsDialog, ShowsThePageOfTheSelectedTab) {
  show([](Dialog& dialog) {
    const auto pages = [&] {
      return std::vector<bool>{dialog.page(0).Visible(), dialog.page(1).Visible(), dialog.page(2).Visible()};
    };
    EXPECT_THAT(pages(), ElementsAre(true, false, false));
    dialog.tabs().SelectedIndex(3);
    EXPECT_THAT(pages(), ElementsAre(false, false, true));
    dialog.tabs().SelectedIndex(2);
    EXPECT_THAT(pages(), ElementsAre(false, true, false));
    dialog.tabs().SelectedIndex(1);
    EXPECT_THAT(pages(), ElementsAre(true, false, false));
    dialog.cancel();
  });
}

TEST_P(EditingOptionsDialog, TypingASizeSelectsItsType) {
  show([](Dialog& dialog) {
    dialog.size(1).Text("64");
    EXPECT_TRUE(dialog.type(1).Value());
    EXPECT_FALSE(dialog.type(0).Value());
    dialog.size(0).Text("5");
    EXPECT_TRUE(dialog.type(0).Value());
    dialog.cancel();
  });
}

TEST_P(EditingOptionsDialog, SelectsTheWholeTextOnFocus) {
  show([this](Dialog& dialog) {
    dialog.tabs().SelectedIndex(2);
    platform().FormUtility().SetFocusTo(dialog.size(0));
    EXPECT_EQ(dialog.size(0).SelectedText(), "30");
    dialog.cancel();
  });
}

// -- The sliders ------------------------------------------------------------------------------------------

TEST_P(EditingOptionsDialog, ShowsTheNumbersOfItsSliders) {
  options().ZoomLevel(2);
  options().JPEGQuality(99);
  show([](Dialog& dialog) {
    const auto shown = [&](std::int32_t index) {
      return Bind<Label>(dialog.form(), "lblValue", index).Caption();
    };
    EXPECT_EQ(shown(0), "2") << "where the slider begins";
    EXPECT_EQ(shown(1), "99");
    dialog.zoom().Value(17);
    EXPECT_EQ(shown(0), "17");
    EXPECT_EQ(shown(1), "99");
    dialog.quality().Value(40);
    EXPECT_EQ(shown(1), "60") << "the quality, which is 100 less the compression";
    dialog.cancel();
  });
}

// -- The sample of the grid -------------------------------------------------------------------------------

/// The rule of the sample for one pixel: squares of the second color at each even place, and at the places
/// between, shifted by the size on both axes.
OLE_COLOR gridColorAt(std::int32_t x, std::int32_t y, std::int32_t size, OLE_COLOR first, OLE_COLOR second) {
  return (x / size) % 2 == (y / size) % 2 ? second : first;
}

TEST_P(EditingOptionsDialog, DrawsACheckerboardInTheSizeOfItsFrame) {
  options().BackgroundGridColor1(0x112233);
  options().BackgroundGridColor2(0x445566);
  for (const std::int32_t size : {4, 8, 20, 32}) {
    options().BackgroundGridSize(size);
    show([&](Dialog& dialog) {
      const engine::Bitmap pattern = dialog.pattern();
      ASSERT_EQ(pattern.width(), dialog.sample().Width());
      ASSERT_EQ(pattern.height(), dialog.sample().Height());
      for (std::int32_t y = 0; y < pattern.height(); ++y) {
        for (std::int32_t x = 0; x < pattern.width(); ++x) {
          ASSERT_EQ(colorOf(pattern.at(x, y)), gridColorAt(x, y, size, 0x112233, 0x445566))
              << x << ", " << y << " of size " << size;
        }
      }
      dialog.cancel();
    });
  }
}

TEST_P(EditingOptionsDialog, TheSampleIsInPixelsOfTheUnitsOfItsFrame) {
  platform().Screen().twipsPerPixelY = 15;
  options().BackgroundGridSize(4);
  show([](Dialog& dialog) {
    dialog.sample().Height(97 * 15 + 8);
    dialog.gridColor(0).Value(0x0000FF);
    EXPECT_EQ(dialog.pattern().width(), dialog.sample().Width());
    EXPECT_EQ(dialog.pattern().height(), 98) << "97.53, rounded";
    dialog.sample().Height(97 * 15 + 7);
    dialog.gridColor(0).Value(0x00FF00);
    EXPECT_EQ(dialog.pattern().height(), 97) << "97.47";
    EXPECT_EQ(colorOf(dialog.pattern().at(4, 0)), 0x00FF00) << "squares of 4 pixels, not of 60 units";
    dialog.cancel();
  });
}

TEST_P(EditingOptionsDialog, TheSampleFollowsSizeAndColors) {
  show([](Dialog& dialog) {
    dialog.gridColor(0).Value(0x0000FF);
    EXPECT_EQ(colorOf(dialog.pattern().at(20, 0)), 0x0000FF);
    dialog.gridColor(1).Value(0x00FF00);
    EXPECT_EQ(colorOf(dialog.pattern().at(0, 0)), 0x00FF00);
    dialog.gridSize().ListIndex(0);
    EXPECT_EQ(colorOf(dialog.pattern().at(3, 0)), 0x00FF00);
    EXPECT_EQ(colorOf(dialog.pattern().at(4, 0)), 0x0000FF);
    dialog.cancel();
  });
}

TEST_P(EditingOptionsDialog, ABlackGridOfTheSmallestSizeIsDrawnToo) {
  options().BackgroundGridSize(4);
  options().BackgroundGridColor1(0);
  options().BackgroundGridColor2(0);
  show([](Dialog& dialog) {
    EXPECT_NE(dialog.sample().BackgroundPicture(), nullptr);
    dialog.cancel();
  });
}

// -- OK and Cancel ----------------------------------------------------------------------------------------

TEST_P(EditingOptionsDialog, OKStoresEveryControlAndAppliesTheSettings) {
  EXPECT_TRUE(show([](Dialog& dialog) {
    dialog.gridSize().ListIndex(1);
    dialog.gridColor(0).Value(0x0000FF);
    dialog.gridColor(1).Value(0x00FF00);
    dialog.zoom().Value(3);
    dialog.create().Value(0);
    dialog.size(1).Text("90");
    dialog.shadow().Value(0);
    dialog.update().Value(1);
    dialog.background().Value(0xABCDEF);
    dialog.quality().Value(10);
    dialog.ok();
    EXPECT_FALSE(dialog.form().Visible());
  }));
  EXPECT_EQ(options().BackgroundGridSize(), 8);
  EXPECT_EQ(options().BackgroundGridColor1(), 0x0000FF);
  EXPECT_EQ(options().BackgroundGridColor2(), 0x00FF00);
  EXPECT_EQ(options().ZoomLevel(), 3);
  EXPECT_FALSE(options().ThumbnailAutoCheck());
  EXPECT_EQ(options().ThumbnailSizeType(), tstWidthInPixels);
  EXPECT_EQ(options().ThumbnailSize(), 90);
  EXPECT_FALSE(options().ThumbnailAddDropShadow());
  EXPECT_TRUE(options().ThumbnailAutomaticUpdate());
  EXPECT_EQ(options().ThumbnailBackgroundColor(), 0xABCDEF);
  EXPECT_EQ(options().JPEGQuality(), 90);
  EXPECT_EQ(view().ImgX()->JPEGQuality(), 90) << "the settings are applied";
  EXPECT_FALSE(editor().Changed());
}

TEST_P(EditingOptionsDialog, OnlyAnAcceptedDialogSetsTheGridOnTheView) {
  log().clear();
  EXPECT_FALSE(show([](Dialog& dialog) {
    dialog.gridSize().ListIndex(0);
    dialog.cancel();
  }));
  EXPECT_THAT(calls(), Not(Contains("BackgroundImage")));
  EXPECT_TRUE(show([](Dialog& dialog) {
    dialog.gridSize().ListIndex(0);
    dialog.ok();
  }));
  EXPECT_EQ(view().backgroundSize(), (Size{8, 8})) << "two squares of 4";
}

TEST_P(EditingOptionsDialog, OKStoresItsSettingsTogether) {
  BatchStore store;
  useStore(&store);
  EXPECT_TRUE(show([&](Dialog& dialog) {
    store.batches.clear();
    dialog.ok();
  }));
  EXPECT_THAT(store.batches.front(),
              ElementsAre("Size", "Color1", "Color2", "AutomaticUpdate", "BackgroundColor", "SizeType",
                          "SizeEx", "AddDropShadow", "AutoCheck", "Zoom", "Quality"));
  useStore(nullptr);
}

TEST_P(EditingOptionsDialog, CancelAndTheCloseBoxStoreNothing) {
  for (const bool byCloseBox : {false, true}) {
    EXPECT_FALSE(show([&](Dialog& dialog) {
      dialog.gridSize().ListIndex(0);
      dialog.zoom().Value(3);
      dialog.quality().Value(90);
      byCloseBox ? dynamic_cast<headless::Form&>(dialog.form()).pressCloseBox() : dialog.cancel();
    }));
    EXPECT_EQ(options().BackgroundGridSize(), 20);
    EXPECT_EQ(options().ZoomLevel(), 10);
    EXPECT_EQ(options().JPEGQuality(), 75);
  }
}

TEST_P(EditingOptionsDialog, JPEGQuality25ShowsTheSliderAt75AndIsStoredUnchanged) {
  options().JPEGQuality(25);
  EXPECT_TRUE(show([](Dialog& dialog) {
    EXPECT_EQ(dialog.quality().Min(), 1);
    EXPECT_EQ(dialog.quality().Max(), 100);
    EXPECT_EQ(dialog.quality().Value(), 75);
    dialog.ok();
  }));
  EXPECT_EQ(options().JPEGQuality(), 25);
}

TEST_P(EditingOptionsDialog, TheBestQualityOfTheSliderIs99) {
  options().JPEGQuality(100);
  EXPECT_TRUE(show([](Dialog& dialog) {
    EXPECT_EQ(dialog.quality().Value(), 1);
    dialog.ok();
  }));
  EXPECT_EQ(options().JPEGQuality(), 99);
}

TEST_P(EditingOptionsDialog, TheSlidersBoundsHoldForAStoredZoomLevel) {
  const std::pair<std::int32_t, std::int32_t> levels[] = {{1, 2}, {-5, 2}, {21, 20}, {1000, 20}};
  for (const auto& [stored, bound] : levels) {
    options().ZoomLevel(stored);
    EXPECT_TRUE(show([bound = bound](Dialog& dialog) {
      EXPECT_EQ(dialog.zoom().Min(), 2);
      EXPECT_EQ(dialog.zoom().Max(), 20);
      EXPECT_EQ(dialog.zoom().Value(), bound);
      dialog.ok();
    }));
    EXPECT_EQ(options().ZoomLevel(), bound);
  }
}

TEST_P(EditingOptionsDialog, TheSizeOfTheSelectedTypeCountsWithoutValidation) {
  const std::pair<const char*, std::int32_t> sizes[] = {
      {"", 0}, {"0", 0}, {"-5", -5}, {"12px", 12}, {"2.5", 2}, {"3.5", 4}, {"2147483647", 2147483647}};
  for (const auto& [text, size] : sizes) {
    EXPECT_TRUE(show([text = text](Dialog& dialog) {
      dialog.size(1).Text("77");
      dialog.size(0).Text("1");
      dialog.size(0).Text(text);
      dialog.ok();
    }));
    EXPECT_EQ(options().ThumbnailSize(), size) << text;
    EXPECT_EQ(options().ThumbnailSizeType(), tstPercentage);
    options().ThumbnailSize(30);
  }
}

TEST_P(EditingOptionsDialog, ASizeBeyond32BitsIsReportedAndTheDialogStays) {
  EXPECT_FALSE(show([this](Dialog& dialog) {
    dialog.zoom().Value(3);
    dialog.update().Value(1);
    dialog.size(0).Text("99999999999");
    user().answers(kAnswerOK);
    dialog.ok();
    EXPECT_TRUE(dialog.form().Visible());
    dialog.cancel();
  }));
  ASSERT_THAT(user().boxes(), SizeIs(1));
  EXPECT_EQ(user().boxes()[0].title, "Application Error");
  EXPECT_THAT(user().boxes()[0].text, HasSubstr("Procedure: cmdAction_Click\r\n"));
  EXPECT_EQ(options().ThumbnailSize(), 30);
  EXPECT_TRUE(options().ThumbnailAutomaticUpdate()) << "stored before the size";
  EXPECT_EQ(options().ZoomLevel(), 10) << "to be stored after the size";
}

TEST_P(EditingOptionsDialog, AStoredQualityBeyondTheSubtractionIsReported) {
  options().JPEGQuality(-2147483647 - 1);
  user().answers(kAnswerOK);
  EXPECT_FALSE(show([](Dialog& dialog) {
    EXPECT_TRUE(dialog.page(0).Visible());
    EXPECT_FALSE(dialog.page(1).Visible());
    EXPECT_FALSE(dialog.page(2).Visible());
    dialog.cancel();
  }));
  EXPECT_THAT(user().boxes()[0].text, HasSubstr("Procedure: Form_Load\r\n"));
}

TEST_P(EditingOptionsDialog, KeepsItsFieldsReadableAndLeavesTheResultEmpty) {
  frmOptions dialog;
  EXPECT_FALSE(dialog.Success);
  EXPECT_FALSE(dialog.SafeToUnload);
  user().uses("frmOptions", [](Form& form) { Dialog(form).ok(); });
  EXPECT_TRUE(dialog.ShowModal());
  EXPECT_TRUE(dialog.Success);
  EXPECT_EQ(dialog.ResultData, "");
}

TEST_P(EditingOptionsDialog, TheCommandOpensItWithAndWithoutAPicture) {
  for (const bool withPicture : {true, false}) {
    if (!withPicture) editor().Picture(nullptr);
    int shown = 0;
    user().uses("frmOptions", [&](Form& form) {
      ++shown;
      Dialog(form).cancel();
    });
    click("btnToolsOptions");
    EXPECT_EQ(shown, 1);
  }
  EXPECT_THAT(user().boxes(), IsEmpty());
}

KESTREL_WITH_BOTH_PATHS(EditingOptionsDialog);

}  // namespace
}  // namespace kestrel
