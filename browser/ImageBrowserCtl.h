#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "FolderTreeView.h"
#include "base/Event.h"
#include "base/OpenCalls.h"
#include "browser/interface/IImageBrowserCtl.h"
#include "diagnostics/ErrorListener.h"
#include "diagnostics/modTollgarthSupport.h"
#include "imaging/contract/Moorage.h"
#include "imaging/contract/Platform.h"
#include "imaging/contract/Site.h"
#include "imaging/contract/ThumbnailView.h"
#include "imaging/contract/controls/SplitPanel.h"

namespace kestrel {

/// The image browser behind its public members, which `IImageBrowserCtl` describes.
///
/// A container makes it on a `Site` that holds a docking suite "mrgUI", a split panel "pnlBrowse", a site
/// "ftvBrowse" for the folder tree and a thumbnail view "thvBrowse", and raises the site's `InitProperties`
/// or `ReadProperties`. The control is the container of the folder tree.
class ImageBrowserCtl final : public IImageBrowserCtl {
 public:
  /// The thread must be attached to a platform (`modProcessing`). Raises RuntimeError 730 if the site lacks a
  /// child control.
  explicit ImageBrowserCtl(Site& site);
  ~ImageBrowserCtl() override;

  std::string TypeName() const override { return "ImageBrowserCtl"; }

  /// The container has lost its host: loading ends, and from now on the control raises no event and opens no
  /// window.
  ///
  /// A container whose host ends it in an event, or while a window of the control is open, calls this, and
  /// destroys the control when the platform's `Calls` have returned and no member is on the stack.
  void Retire();

  Moorage& ObjectMoorage() override { return mrgUI; }
  FolderTreeView& ObjectFolderBrowse() override { return ftvBrowse; }
  ThumbnailView& ObjectThumbnailView() override { return thvBrowse; }
  kestrel::Thumbnails& Thumbnails() override { return thvBrowse.Thumbnails(); }
  kestrel::Thumbnails& SelectedItems() override { return thvBrowse.SelectedItems(); }

  bool ShowMenuBar() const override { return pShowMenuBar; }
  void ShowMenuBar(bool Value) override;
  std::string Path() const override;
  void Path(const std::string& Value) override;
  std::int32_t DividerPosition() const override { return pnlBrowse.Position(); }
  void DividerPosition(std::int32_t Value) override;

  void SetControls(bool Enabled) override;
  void Status(const std::string& Message) override;

 private:
  struct CommandRow;

  // Calls to host and user, during which the host may destroy the control. Arguments must not refer to its
  // state.
  template <typename... Parameters, typename... Arguments>
  void zRaise(const Event<Parameters...>& Raised, Arguments&&... Values) {
    CallHost(iPlatform.Calls, [&] { Raised(std::forward<Arguments>(Values)...); });
  }
  void zShowPopup(const char* Menu);

  // Set-up
  static std::span<const CommandRow> zCommandRows();
  void zConnect();
  void zConnectTree();
  void zConnectView();
  std::string qdkDumpModuleVariables() const;

  // Requests of the container
  void Usercontrol_Initialize();
  void UserControl_InitProperties();
  void UserControl_ReadProperties(const PropertyBag& PropBag);
  void UserControl_WriteProperties(PropertyBag& PropBag);
  void UserControl_Resize();
  void UserControl_Show();
  void UserControl_Hide();
  void UserControl_KeyDown(std::int32_t KeyCode, std::int32_t Shift);
  void zInitialize();
  void zShowMenuBar();

  // Folders
  void zSetView(const std::string& Path);
  void zResetView(const std::string& Message);
  void ftvBrowse_FolderClick(const std::string& FolderName);
  void ftvBrowse_DesktopClick();
  void ftvBrowse_MyComputerClick();

  // Commands
  void mrgUI_CommandClick(Command& Command);
  void mrgUI_CommandHighlight(Command& Command, std::int32_t HighlightState);
  void mrgUI_ClientAreaChanged();
  void zDeleteFiles();
  void zCopyFiles();
  void zMoveFiles();
  std::string zSelectedFiles();
  std::string zBrowseForFolder(const std::string& Prompt, const std::string& Title);
  void zRefreshView();
  void zShowHelp();
  void zShowAbout();

  // The thumbnail view
  void thvBrowse_FolderLoadStart(bool& Cancel);
  void thvBrowse_FolderSearchComplete(std::int32_t Count);
  void thvBrowse_ThumbnailLoaded(Thumbnail& Item, std::int32_t Percent, bool& Cancel);
  void thvBrowse_FolderLoadComplete(bool Cancelled);
  void thvBrowse_RecalculatingThumbnailsStart();
  void thvBrowse_RecalculatedThumbnail(Thumbnail& Item);
  void thvBrowse_RecalculatingThumbnailsComplete();
  void thvBrowse_ThumbnailContextClick(Thumbnail& Item);
  void thvBrowse_ThumbnailDblClick(Thumbnail& Item);
  void thvBrowse_DeletePressed();
  void thvBrowse_ViewChange(std::int32_t View);
  void zCancelWhileHidden(bool& Cancel);
  void zShowStatus(const std::string& Text);
  void zShowProgress(std::int32_t Maximum);
  void zHideProgress();

  InstanceCount iCount;
  Platform& iPlatform;
  Site& UserControl;
  Site& iTreeSite;
  Moorage& mrgUI;
  SplitPanel& pnlBrowse;
  ThumbnailView& thvBrowse;
  FolderTreeView ftvBrowse;

  bool pShowMenuBar = false;
  bool iRuntime = false;
  std::unique_ptr<HelpViewer> iHelp;
  bool iRetired = false;
  std::string iStatusText;       ///< returns when no command is highlighted
  bool iHidden = false;          ///< it was shown and is hidden now
  bool iLoadsWhenShown = false;  ///< hiding it has ended a load
  bool iLoading = false;         ///< the view loads or recalculates thumbnails

  std::vector<Connection> iConnections;
};

}  // namespace kestrel
