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

/// The picture before and after, side by side. On the left stands the user's picture, or its selected
/// section, or a small stock picture; on the right what the dialog's settings make of it. The control
/// computes nothing: the dialog calls `Reset` and then works on the right pane.
class Preview final : public Object {
 public:
  /// The site holds the views "igxOriginal" and "igxPreview" and the picture "imgPreview".
  explicit Preview(Site& site);

  std::string TypeName() const override { return "Preview"; }

  /// Scrolling one pane moves the other.
  bool LinkedScrolling() const { return mLinkedScrolling; }
  void LinkedScrolling(bool Value);
  /// Makes the right pane a fresh copy of the left one.
  void Reset();
  /// Runs work that puts another picture into a pane, which then shows the same place as before if the
  /// picture is as large as before.
  void KeepPlace(ImageView& Pane, const std::function<void()>& Work);
  /// The user's picture instead of the stock picture.
  bool UseOriginal() const { return pUseOriginal; }
  void UseOriginal(bool Value);
  /// The view with the user's picture, lent; null for none. With a valid selection it is used at once.
  ImageView* OriginalPicture() const { return pOriginalPicture; }
  void OriginalPicture(ImageView* Value);

  ImageView& Original() { return igxOriginal; }
  ImageView& PreviewPane() { return igxPreview; }

  /// After the panes were refreshed by a change of `UseOriginal`.
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
  void zFollowScroll(ImageView& From, ImageView& To);

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
