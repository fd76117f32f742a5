#include <string_view>

#include "ImageProcessingCtl.h"
#include "base/Numbers.h"
#include "base/Required.h"
#include "base/RuntimeError.h"
#include "diagnostics/Trailer.h"
#include "imaging/modImgX.h"

namespace kestrel {
namespace {

/// The dispatch key: a command's key behind its three-letter prefix, in lower case.
std::string DispatchKey(const Command& command) {
  const std::string& name = command.Name();
  return name.size() > 3 ? LowerCase(std::string_view(name).substr(3)) : std::string();
}

}  // namespace

/// What the command of a dispatch key does. The members that only rows call have no trailer: what fails in
/// them is a failure of the dispatcher, `mrgUI_CommandClick`.
struct ImageProcessingCtl::CommandRow {
  std::string_view Key;
  void (*Action)(ImageProcessingCtl& Editor, Command& Command);
};

std::span<const ImageProcessingCtl::CommandRow> ImageProcessingCtl::zCommandRows() {
  using Editor = ImageProcessingCtl;
  static constexpr CommandRow kRows[] = {
      {"fileclose", [](Editor& e, Command&) { e.zRequestExit(); }},
      {"fileexit", [](Editor& e, Command&) { e.zRequestExit(); }},
      {"fileopen",
       [](Editor& e, Command&) {
         if (e.SaveChanges()) e.OpenImage();
       }},
      {"filesave", [](Editor& e, Command&) { e.SaveImage(); }},
      {"filesaveas", [](Editor& e, Command&) { e.SaveImageAs(); }},
      {"filemru", [](Editor& e, Command& c) { e.zOpenRecent(c); }},
      {"filesimplesave", [](Editor& e, Command&) { e.zRequestSimpleSave(); }},
      {"editundo", [](Editor& e, Command&) { e.Undo(); }},
      {"editredo", [](Editor& e, Command&) { e.Redo(); }},
      {"editcopy", [](Editor& e, Command&) { e.Copy(e.zUseSelection()); }},
      {"editcut", [](Editor& e, Command&) { e.Cut(e.zUseSelection()); }},
      {"editpaste", [](Editor& e, Command&) { e.zBeginPaste(); }},
      {"selectionall", [](Editor& e, Command&) { e.SelectAll(); }},
      {"selectionnone", [](Editor& e, Command&) { e.ResetSelection(); }},
      {"drawzoom", [](Editor& e, Command&) { e.Tool(ipToolZoom); }},
      {"drawpan", [](Editor& e, Command&) { e.Tool(ipToolPan); }},
      {"drawselect", [](Editor& e, Command&) { e.Tool(ipToolSelect); }},
      {"drawline", [](Editor& e, Command&) { e.Tool(ipToolLine); }},
      {"drawrectangle", [](Editor& e, Command&) { e.Tool(ipToolRectangle); }},
      {"drawellipse", [](Editor& e, Command&) { e.Tool(ipToolEllipse); }},
      {"drawfreehand", [](Editor& e, Command&) { e.Tool(ipToolFreehand); }},
      {"drawpicker", [](Editor& e, Command&) { e.Tool(ipToolDropper); }},
      {"imagecrop", [](Editor& e, Command&) { e.zCropOrBeginCrop(); }},
      {"imagegrayscale", [](Editor& e, Command&) { e.ApplyGrayScale(e.zHasSelection()); }},
      {"imagemirror", [](Editor& e, Command&) { e.FlipHorizontally(e.zHasSelection()); }},
      {"imageflip", [](Editor& e, Command&) { e.FlipVertically(e.zHasSelection()); }},
      {"rotatefree", [](Editor& e, Command&) { e.ShowRotateDialog(); }},
      {"rotateright", [](Editor& e, Command&) { e.Rotate(90, ipUseDefault, e.zHasSelection()); }},
      {"rotateleft", [](Editor& e, Command&) { e.Rotate(270, ipUseDefault, e.zHasSelection()); }},
      {"zoomactualsize", [](Editor& e, Command&) { e.ZoomActualSize(); }},
      {"zoomin", [](Editor& e, Command&) { e.ZoomIn(); }},
      {"zoomout", [](Editor& e, Command&) { e.ZoomOut(); }},
      {"viewmaterialswindow", [](Editor& e, Command&) { e.zToggleDockWindow("dkwMaterials"); }},
      {"viewzoomwindow", [](Editor& e, Command&) { e.zToggleDockWindow("dkwZoom"); }},
      {"viewstatusbar", [](Editor& e, Command&) { e.zToggleStatusBar(); }},
      {"helpcontents", [](Editor& e, Command&) { e.zShowHelp(); }},
      {"helpabout", [](Editor& e, Command&) { e.zShowAbout(); }},
  };
  return kRows;
}

void ImageProcessingCtl::mrgUI_CommandClick(Command& Command) {
  std::string Key;
  try {
    Key = DispatchKey(Command);
    for (const CommandRow& row : zCommandRows()) {
      if (row.Key == Key) return row.Action(*this, Command);
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
    zFollowBar(CommandBar, false);
  } catch (...) {
    QDK_TRAILER(mrgUI_CommandBarHiding, QDK_PARAMETERS(CommandBar), QDK_LOCALS());
  }
}

void ImageProcessingCtl::mrgUI_CommandBarShowing(CommandBar& CommandBar) {
  try {
    zFollowBar(CommandBar, true);
  } catch (...) {
    QDK_TRAILER(mrgUI_CommandBarShowing, QDK_PARAMETERS(CommandBar), QDK_LOCALS());
  }
}

void ImageProcessingCtl::zFollowBar(CommandBar& CommandBar, bool Shown) {
  if (LowerCase(CommandBar.Name()) != "status bar") return;
  mrgUI.DockFunctions().SetChecked(Commands()("btnViewStatusBar"), Shown);
}

void ImageProcessingCtl::mrgUI_DockWindowHiding(DockWindow& DockWindow) {
  try {
    zFollowDockWindow(DockWindow, false);
  } catch (...) {
    QDK_TRAILER(mrgUI_DockWindowHiding, QDK_PARAMETERS(DockWindow), QDK_LOCALS());
  }
}

void ImageProcessingCtl::mrgUI_DockWindowShowing(DockWindow& DockWindow) {
  try {
    zFollowDockWindow(DockWindow, true);
  } catch (...) {
    QDK_TRAILER(mrgUI_DockWindowShowing, QDK_PARAMETERS(DockWindow), QDK_LOCALS());
  }
}

void ImageProcessingCtl::zFollowDockWindow(DockWindow& DockWindow, bool Shown) {
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
    Required(igxImage.ImgX()).JPEGQuality(options.StoredJPEGQuality());
  } catch (...) {
    QDK_TRAILER(ApplyOptions, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

}  // namespace kestrel
