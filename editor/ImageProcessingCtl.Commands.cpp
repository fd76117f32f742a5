#include <span>
#include <string_view>

#include "CommandTable.h"
#include "Tools.h"
#include "base/Numbers.h"
#include "base/Required.h"
#include "base/RuntimeError.h"
#include "diagnostics/Trailer.h"
#include "imaging/contract/DispatchKey.h"
#include "imaging/modImgX.h"
#include "settings/StoredQuality.h"

namespace kestrel {

/// Rows that need a picture come first, in the switching order of `SetControls`.
std::span<const ImageProcessingCtl::CommandRow> ImageProcessingCtl::zCommandRows() {
  using Editor = ImageProcessingCtl;
  static constexpr std::uint32_t kFullEdits = kEditsPicture | kFullTools;
  static constexpr CommandRow kRows[] = {
      {"btnFileSave", kEditsPicture, [](Editor& e, Command&) { e.SaveImage(); }},
      {"btnFileSaveAs", kEditsPicture, [](Editor& e, Command&) { e.SaveImageAs({}); }},
      {"btnFileExport", kEditsPicture, [](Editor& e, Command&) { e.ShowExportDialog(); }},
      {"btnEditUndo", kNeedsPicture | kNeedsUndoStep, [](Editor& e, Command&) { e.Undo(); }},
      {"btnEditRedo", kNeedsPicture | kNeedsRedoStep, [](Editor& e, Command&) { e.Redo(); }},
      {"btnEditCopy", kEditsPicture, [](Editor& e, Command&) { e.Copy(e.zUseSelection()); }},
      {"btnEditCut", kFullEdits, [](Editor& e, Command&) { e.Cut(e.zUseSelection()); }},
      {"btnEditPaste", kFullEdits, [](Editor& e, Command&) { e.zBeginPaste(); }},
      {"btnEditPasteSpecial", kFullEdits, [](Editor& e, Command&) { e.zBeginPasteSpecial(); }},
      {"btnImageFlip", kFullEdits, [](Editor& e, Command&) { e.FlipVertically(e.zHasSelection()); }},
      {"btnImageMirror", kFullEdits, [](Editor& e, Command&) { e.FlipHorizontally(e.zHasSelection()); }},
      {"btnRotateLeft", kFullEdits,
       [](Editor& e, Command&) { e.Rotate(270, ipUseDefault, e.zHasSelection()); }},
      {"btnRotateRight", kFullEdits,
       [](Editor& e, Command&) { e.Rotate(90, ipUseDefault, e.zHasSelection()); }},
      {"btnRotateFree", kFullEdits, [](Editor& e, Command&) { e.ShowRotateDialog(); }},
      {"btnImageResizeCanvas", kFullEdits, [](Editor& e, Command&) { e.ShowResizeCanvasDialog(); }},
      {"btnImageResize", kFullEdits, [](Editor& e, Command&) { e.ShowResizeDialog(); }},
      {"btnImageCrop", kNeedsPicture | kWaitsForPaste, [](Editor& e, Command&) { e.zCropOrBeginCrop(); }},
      {"btnImageDropShadow", kEditsPicture, [](Editor& e, Command&) { e.ShowDropShadowDialog(); }},
      {"btnImageShapedDropShadow", kEditsPicture,
       [](Editor& e, Command&) { e.ShowMaskedDropShadowDialog(); }},
      {"btnImageGrayScale", kEditsPicture, [](Editor& e, Command&) { e.ApplyGrayScale(e.zHasSelection()); }},
      {"btnToolsFlattenAlpha", kEditsPicture, [](Editor& e, Command&) { e.ShowFlattenAlphaDialog(); }},
      {"btnSelectionAll", kEditsPicture, [](Editor& e, Command&) { e.SelectAll(); }},
      {"btnSelectionNone", kEditsPicture, [](Editor& e, Command&) { e.ResetSelection(); }},
      {"btnZoomIn", kNeedsPicture, [](Editor& e, Command&) { e.ZoomIn(); }},
      {"btnZoomOut", kNeedsPicture, [](Editor& e, Command&) { e.ZoomOut(); }},
      {"btnZoomBestFit", kNeedsPicture, nullptr},

      {"btnZoomActualSize", kAlwaysUsable, [](Editor& e, Command&) { e.ZoomActualSize(); }},
      {"btnFileClose", kAlwaysUsable, [](Editor& e, Command&) { e.zRequestExit(); }},
      {"btnFileExit", kAlwaysUsable, [](Editor& e, Command&) { e.zRequestExit(); }},
      {"btnFileOpen", kAlwaysUsable,
       [](Editor& e, Command&) {
         if (e.SaveChanges()) e.OpenImage({});
       }},
      {"mnuFileMRU", kAlwaysUsable, [](Editor& e, Command& c) { e.zOpenRecent(c); }},
      {"btnFileSimpleSave", kAlwaysUsable, [](Editor& e, Command&) { e.zRequestSimpleSave(); }},
      {"mnuRotate", kFullTools, nullptr},
      {"btnToolsOptions", kAlwaysUsable, [](Editor& e, Command&) { e.ShowOptions(); }},
      {"btnViewMaterialsWindow", kAlwaysUsable,
       [](Editor& e, Command&) { e.zToggleDockWindow("dkwMaterials"); }},
      {"btnViewZoomWindow", kAlwaysUsable, [](Editor& e, Command&) { e.zToggleDockWindow("dkwZoom"); }},
      {"btnViewStatusBar", kAlwaysUsable, [](Editor& e, Command&) { e.zToggleStatusBar(); }},
      {"btnHelpContents", kAlwaysUsable, [](Editor& e, Command&) { e.zShowHelp(); }},
      {"btnHelpAbout", kAlwaysUsable, [](Editor& e, Command&) { e.zShowAbout(); }},
  };
  return kRows;
}

void ImageProcessingCtl::mrgUI_CommandClick(Command& Command) {
  std::string Key;
  try {
    Key = DispatchKey(Command.Name());
    for (const CommandRow& row : zCommandRows()) {
      if (row.Action != nullptr && DispatchKey(row.Name) == Key) return row.Action(*this, Command);
    }
    for (const ToolRow& row : kTools) {
      if (DispatchKey(row.Command) == Key) return Tool(row.Tool);
    }
  } catch (...) {
    QDK_TRAILER(mrgUI_CommandClick, QDK_PARAMETERS(Command), QDK_LOCALS(Key));
  }
}

void ImageProcessingCtl::zRequestExit() {
  Cancel();
  zRaise(ExitRequest);
  iTerminated = true;
}

void ImageProcessingCtl::zOpenRecent(Command& Command) {
  if (!pShowMRU) {
    zMessageBox("MRU functionality is not available.", kBoxInformation);
    return;
  }
  OpenImage(Command.SelectedItem().Text);
}

void ImageProcessingCtl::zRequestSimpleSave() {
  bool Saved = false;
  zRaise(SimpleSaveRequest, Saved);
  if (Saved) Changed(false);
}

void ImageProcessingCtl::zToggleStatusBar() {
  CommandBar& bar = CommandBars()("Status Bar");
  bar.Visible(!bar.Visible());
}

void ImageProcessingCtl::zToggleDockWindow(const char* Key) {
  DockWindow& window = DockWindows()(Key);
  window.Visible(!window.Visible());
}

void ImageProcessingCtl::zShowHelp() {
  try {
    Required(iHelp).ShowTopic("default.html", 0);
  } catch (const RuntimeError& error) {
    if (error.Number() != err::kFileNotFound) throw;
    zMessageBox(error.Description(), kBoxExclamation, "Help");
  }
}

void ImageProcessingCtl::zShowAbout() {
  const AppInfo& app = iPlatform.App();
  const std::string Version =
      "Version " + ToText(app.Major()) + "." + ToText(app.Minor()) + "." + ToText(app.Revision());
  if (!iRetired) iPlatform.UserInterface().AboutBox(app.Title(), Version, nullptr, UserControl.hWnd());
}

void ImageProcessingCtl::mrgUI_CommandHighlight(Command& Command, std::int32_t HighlightState) {
  try {
    Status(HighlightState == kHighlightHot ? Command.Description() : iStatusText, false, false);
  } catch (...) {
    QDK_TRAILER(mrgUI_CommandHighlight, QDK_PARAMETERS(Command, HighlightState), QDK_LOCALS());
  }
}

void ImageProcessingCtl::mrgUI_CommandHotKeyPress(Command& Command, HotKey& HotKey,
                                                  CancelValue& CancelDefault) {
  try {
    if (!UserControl.UserMode()) CancelDefault.Value = true;
  } catch (...) {
    QDK_TRAILER(mrgUI_CommandHotKeyPress, QDK_PARAMETERS(Command, HotKey, CancelDefault), QDK_LOCALS());
  }
}

void ImageProcessingCtl::mrgUI_CommandBarHiding(CommandBar& CommandBar) {
  try {
    zUpdateBarCommand(CommandBar, false);
  } catch (...) {
    QDK_TRAILER(mrgUI_CommandBarHiding, QDK_PARAMETERS(CommandBar), QDK_LOCALS());
  }
}

void ImageProcessingCtl::mrgUI_CommandBarShowing(CommandBar& CommandBar) {
  try {
    zUpdateBarCommand(CommandBar, true);
  } catch (...) {
    QDK_TRAILER(mrgUI_CommandBarShowing, QDK_PARAMETERS(CommandBar), QDK_LOCALS());
  }
}

void ImageProcessingCtl::zUpdateBarCommand(CommandBar& CommandBar, bool Shown) {
  if (LowerCase(CommandBar.Name()) != "status bar") return;
  mrgUI.DockFunctions().SetChecked(Commands()("btnViewStatusBar"), Shown);
}

void ImageProcessingCtl::mrgUI_DockWindowHiding(DockWindow& DockWindow) {
  try {
    zUpdateDockWindowCommand(DockWindow, false);
  } catch (...) {
    QDK_TRAILER(mrgUI_DockWindowHiding, QDK_PARAMETERS(DockWindow), QDK_LOCALS());
  }
}

void ImageProcessingCtl::mrgUI_DockWindowShowing(DockWindow& DockWindow) {
  try {
    zUpdateDockWindowCommand(DockWindow, true);
  } catch (...) {
    QDK_TRAILER(mrgUI_DockWindowShowing, QDK_PARAMETERS(DockWindow), QDK_LOCALS());
  }
}

void ImageProcessingCtl::zUpdateDockWindowCommand(DockWindow& DockWindow, bool Shown) {
  const std::string Key = LowerCase(DockWindow.Name());
  if (Key == "dkwmaterials") mrgUI.DockFunctions().SetChecked(Commands()("btnViewMaterialsWindow"), Shown);
  if (Key == "dkwzoom") mrgUI.DockFunctions().SetChecked(Commands()("btnViewZoomWindow"), Shown);
}

void ImageProcessingCtl::Status(const std::string& Message, bool ChangeCursor, bool UpdateAsDefault) {
  try {
    if (UpdateAsDefault) iStatusText = Message;
    if (ChangeCursor) iPlatform.FormUtility().SetPointer(Message.empty() ? kBusyDefault : kBusyHourglass);
    mrgUI.StatusPanel("pnlStatus").Caption(Message);
  } catch (...) {
    QDK_TRAILER(Status, QDK_PARAMETERS(Message, ChangeCursor, UpdateAsDefault), QDK_LOCALS());
  }
}

void ImageProcessingCtl::SetToolbarStyle(std::int32_t Style) {
  try {
    mrgUI.DockFunctions().SetStyle(mrgUI, Style);
  } catch (...) {
    QDK_TRAILER(SetToolbarStyle, QDK_PARAMETERS(Style), QDK_LOCALS());
  }
}

void ImageProcessingCtl::ApplyOptions() {
  try {
    const std::shared_ptr<kestrel::Options> shared = Options();
    kestrel::Options& options = Required(shared);
    modImgX::SetupBackground(igxImage, options.BackgroundGridSize(), options.BackgroundGridColor1(),
                             options.BackgroundGridColor2());
    if (fltZoom) fltZoom->ApplyOptions();
    const std::shared_ptr<kestrel::ImgX> picture = igxImage.ImgX();
    kestrel::ImgX& settings = Required(picture);
    // A store that can't be read has been reported by now.
    QDK_RESUME_NEXT(settings.JPEGQuality(StoredJPEGQuality()));
  } catch (...) {
    QDK_TRAILER(ApplyOptions, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

}  // namespace kestrel
