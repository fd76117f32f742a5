#pragma once

#include <functional>
#include <string>
#include <vector>

#include "base/Event.h"
#include "base/Object.h"
#include "diagnostics/modTollgarthSupport.h"
#include "imaging/contract/ImageView.h"
#include "imaging/contract/Site.h"
#include "imaging/contract/controls/PictureBox.h"

namespace kestrel {

/// The picture before and after an effect, side by side. The left pane shows the user's picture, or its
/// selected section, or a small stock picture; the right pane shows the result of the dialog's settings. The
/// control computes nothing: the dialog calls `Reset` and then works on the right pane.
///
/// The panes start at actual size. In either pane the wheel with Ctrl zooms both, and a double click fits
/// both pictures into view or goes back to actual size.
class Preview final : public Object {
 public:
  /// The site must contain the views "igxOriginal" and "igxPreview" and the picture "imgPreview".
  explicit Preview(Site& site);

  std::string TypeName() const override { return "Preview"; }

  /// Scrolling one pane moves the other.
  bool LinkedScrolling() const { return mLinkedScrolling; }
  void LinkedScrolling(bool Value);
  /// Copies the left pane's picture to the right pane.
  void Reset();
  /// Runs work that replaces a pane's picture, and restores the scroll position if the new picture has the
  /// same size.
  void KeepScrollPosition(ImageView& Pane, const std::function<void()>& Work);
  /// Whether the user's picture is shown instead of the stock picture.
  bool UseOriginal() const { return pUseOriginal; }
  void UseOriginal(bool Value);
  /// The view with the user's picture, not owned; null for none. If it has a valid selection, it is shown at
  /// once.
  ImageView* OriginalPicture() const { return pOriginalPicture; }
  void OriginalPicture(ImageView* Value);

  ImageView& Original() { return igxOriginal; }
  ImageView& PreviewPane() { return igxPreview; }

  /// Raised after a change of `UseOriginal` has refreshed the panes.
  Event<const bool&> UseOriginalChange;

 private:
  void Usercontrol_Initialize();
  void UserControl_InitProperties();
  void UserControl_ReadProperties(const PropertyBag& PropBag);
  void zInitialise();
  void UserControl_Resize();
  void zLoadOriginal();
  void igxOriginal_Scroll();
  void igxPreview_Scroll();
  void zLinkScroll(ImageView& From, ImageView& To);
  void igxOriginal_WheelZoom(std::int32_t Direction);
  void igxPreview_WheelZoom(std::int32_t Direction);
  void igxOriginal_DblClick();
  void igxPreview_DblClick();
  void zWheelZoom(ImageView& Pane, std::int32_t Direction);
  void zFitOrActualSize(ImageView& Pane);
  void zZoomBoth(ImageView& Pane, double Factor);
  double zFitZoom() const;

  std::string qdkDumpModuleVariables() const;

  InstanceCount iCount;
  Site& UserControl;
  ImageView& igxOriginal;
  ImageView& igxPreview;
  PictureBox& imgPreview;

  bool pUseOriginal = false;
  bool mLinkedScrolling = true;
  ImageView* pOriginalPicture = nullptr;
  bool iScrolling = false;

  std::vector<Connection> iConnections;
};

}  // namespace kestrel
