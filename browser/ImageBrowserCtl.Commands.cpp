#include <span>

#include "ImageBrowserCtl.h"
#include "base/Numbers.h"
#include "base/Required.h"
#include "base/RuntimeError.h"
#include "diagnostics/Trailer.h"
#include "imaging/contract/DispatchKey.h"

namespace kestrel {

/// One command of the browser. Members that only rows call have no trailer: their failures are those of the
/// dispatcher, `mrgUI_CommandClick`.
struct ImageBrowserCtl::CommandRow {
  const char* Key;
  void (*Action)(ImageBrowserCtl& Browser);
};

/// `btnImageRename` and `btnImageInformation` have no action.
std::span<const ImageBrowserCtl::CommandRow> ImageBrowserCtl::zCommandRows() {
  using Browser = ImageBrowserCtl;
  static constexpr CommandRow kRows[] = {
      {"fileclose", [](Browser& b) { b.zRaise(b.ExitRequest); }},
      {"viewthumbnail", [](Browser& b) { b.thvBrowse.View(kViewThumbnail); }},
      {"viewfilmstrip", [](Browser& b) { b.thvBrowse.View(kViewFilmstrip); }},
      {"viewsingle", [](Browser& b) { b.thvBrowse.View(kViewSingle); }},
      {"imagedelete", [](Browser& b) { b.zDeleteFiles(); }},
      {"imagecopy", [](Browser& b) { b.zCopyFiles(); }},
      {"imagemove", [](Browser& b) { b.zMoveFiles(); }},
      {"helpcontents", [](Browser& b) { b.zShowHelp(); }},
      {"helpabout", [](Browser& b) { b.zShowAbout(); }},
  };
  return kRows;
}

void ImageBrowserCtl::mrgUI_CommandClick(Command& Command) {
  std::string Key;
  try {
    Key = DispatchKey(Command.Name());
    for (const CommandRow& row : zCommandRows()) {
      if (Key == row.Key) return row.Action(*this);
    }
  } catch (...) {
    QDK_TRAILER(mrgUI_CommandClick, QDK_PARAMETERS(Command), QDK_LOCALS(Key));
  }
}

void ImageBrowserCtl::mrgUI_CommandHighlight(Command& Command, std::int32_t HighlightState) {
  try {
    zShowStatus(HighlightState == kHighlightHot ? Command.Description() : iStatusText);
  } catch (...) {
    QDK_TRAILER(mrgUI_CommandHighlight, QDK_PARAMETERS(Command, HighlightState), QDK_LOCALS());
  }
}

void ImageBrowserCtl::zDeleteFiles() {
  {
    const OpenCalls::Call Call(iPlatform.Calls);
    iPlatform.FileHelpers().DeleteFiles(zSelectedFiles(), {}, kAllowUndo, UserControl.hWnd());
  }
  zRefreshView();
}

void ImageBrowserCtl::zCopyFiles() {
  const std::string Folder =
      zBrowseForFolder("Please select the folder to copy the selected file(s) to:", "Copy To");
  if (Folder.empty()) return;
  const OpenCalls::Call Call(iPlatform.Calls);
  iPlatform.FileHelpers().CopyFiles(zSelectedFiles(), Folder, 0, UserControl.hWnd());
}

void ImageBrowserCtl::zMoveFiles() {
  const std::string Folder =
      zBrowseForFolder("Please select the folder to move the selected file(s) to:", "Move To");
  if (Folder.empty()) return;
  {
    const OpenCalls::Call Call(iPlatform.Calls);
    iPlatform.FileHelpers().MoveFiles(zSelectedFiles(), Folder, 0, UserControl.hWnd());
  }
  zRefreshView();
}

/// The names of the selected files, each terminated by a NUL.
std::string ImageBrowserCtl::zSelectedFiles() {
  std::string Buffer;
  kestrel::Thumbnails& items = SelectedItems();
  for (std::int32_t Index = 1; Index <= items.Count(); ++Index) {
    Buffer += items.Item(Index).Filename();
    Buffer += '\0';
  }
  return Buffer;
}

std::string ImageBrowserCtl::zBrowseForFolder(const std::string& Prompt, const std::string& Title) {
  const OpenCalls::Call Call(iPlatform.Calls);
  const std::string Folder = thvBrowse.BrowseForFolder(Prompt, Title, {});
  return iRetired ? std::string() : Folder;
}

void ImageBrowserCtl::zRefreshView() {
  if (!iRetired) thvBrowse.Refresh();
}

void ImageBrowserCtl::zShowHelp() {
  try {
    Required(iHelp).ShowTopic("default.html", 0);
  } catch (const RuntimeError& error) {
    if (error.Number() != err::kFileNotFound) throw;
    iPlatform.UserInterface().MessageBox(error.Description(), kBoxExclamation, "Help", UserControl.hWnd());
  }
}

void ImageBrowserCtl::zShowAbout() {
  const AppInfo& app = iPlatform.App();
  const std::string Version =
      "Version " + ToText(app.Major()) + "." + ToText(app.Minor()) + "." + ToText(app.Revision());
  iPlatform.UserInterface().AboutBox(app.Title(), Version, nullptr, UserControl.hWnd());
}

}  // namespace kestrel
