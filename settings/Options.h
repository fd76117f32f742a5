#pragma once

#include <cstdint>

#include "OptionTypes.h"
#include "base/Object.h"
#include "diagnostics/modTollgarthSupport.h"
#include "imaging/contract/Types.h"

namespace kestrel {

/// The user's settings. No cache: each get reads the key store, so changes by another editor or process are
/// visible at once.
///
/// A value that is missing, or stored as the other kind, reads as its default; reading creates nothing.
/// Writing does not validate. Errors are reported, and the property then reads as its zero value.
class Options : public Object {
 public:
  std::string TypeName() const override { return "Options"; }

  std::int32_t JPEGQuality() const;
  void JPEGQuality(std::int32_t Value);
  OLE_COLOR MaterialBackColor() const;
  void MaterialBackColor(OLE_COLOR Value);
  OLE_COLOR MaterialForeColor() const;
  void MaterialForeColor(OLE_COLOR Value);
  std::int32_t ThumbnailSize() const;
  void ThumbnailSize(std::int32_t Value);
  OLE_COLOR ThumbnailBackgroundColor() const;
  void ThumbnailBackgroundColor(OLE_COLOR Value);
  bool ThumbnailAutomaticUpdate() const;
  void ThumbnailAutomaticUpdate(bool Value);
  bool ThumbnailAddDropShadow() const;
  void ThumbnailAddDropShadow(bool Value);
  bool ThumbnailAutoCheck() const;
  void ThumbnailAutoCheck(bool Value);
  std::int32_t ZoomLevel() const;
  void ZoomLevel(std::int32_t Value);
  std::int32_t UndoLevels() const;
  void UndoLevels(std::int32_t Value);
  bool ResizeCanvasLockAspectRatio() const;
  void ResizeCanvasLockAspectRatio(bool Value);
  std::int32_t ResizeCanvasWidth() const;
  void ResizeCanvasWidth(std::int32_t Value);
  std::int32_t ResizeCanvasPlacement() const;
  void ResizeCanvasPlacement(std::int32_t Value);
  std::int32_t ResizeCanvasHeight() const;
  void ResizeCanvasHeight(std::int32_t Value);
  OLE_COLOR ResizeCanvasColor() const;
  void ResizeCanvasColor(OLE_COLOR Value);
  OLE_COLOR FlattenAlphaColor() const;
  void FlattenAlphaColor(OLE_COLOR Value);
  OLE_COLOR PasteSpecialMaskColor() const;
  void PasteSpecialMaskColor(OLE_COLOR Value);
  bool ResizeLockAspectRatio() const;
  void ResizeLockAspectRatio(bool Value);
  std::int32_t ResizeWidth() const;
  void ResizeWidth(std::int32_t Value);
  std::int32_t ResizeHeight() const;
  void ResizeHeight(std::int32_t Value);
  std::int32_t ResizeScale() const;
  void ResizeScale(std::int32_t Value);
  std::int32_t ResizeMode() const;
  void ResizeMode(std::int32_t Value);
  OLE_COLOR DropShadowColor() const;
  void DropShadowColor(OLE_COLOR Value);
  bool DropShadowAutomaticMask() const;
  void DropShadowAutomaticMask(bool Value);
  OLE_COLOR DropShadowMaskColor() const;
  void DropShadowMaskColor(OLE_COLOR Value);
  std::int32_t DropShadowHorizontalOffset() const;
  void DropShadowHorizontalOffset(std::int32_t Value);
  std::int32_t DropShadowVerticalOffset() const;
  void DropShadowVerticalOffset(std::int32_t Value);
  std::int32_t DropShadowBlur() const;
  void DropShadowBlur(std::int32_t Value);
  std::int32_t DropShadowOpacity() const;
  void DropShadowOpacity(std::int32_t Value);
  std::int32_t RotateAngle() const;
  void RotateAngle(std::int32_t Value);
  ImageProcessingDirectionConstants RotateDirection() const;
  void RotateDirection(ImageProcessingDirectionConstants Value);
  OLE_COLOR BackgroundGridColor1() const;
  void BackgroundGridColor1(OLE_COLOR Value);
  OLE_COLOR BackgroundGridColor2() const;
  void BackgroundGridColor2(OLE_COLOR Value);
  std::int32_t BackgroundGridSize() const;
  void BackgroundGridSize(std::int32_t Value);
  ThumbnailSizeTypeEnum ThumbnailSizeType() const;
  void ThumbnailSizeType(ThumbnailSizeTypeEnum Value);

 private:
  InstanceCount count_{modTollgarthSupport::Counted::kOptions};
};

}  // namespace kestrel
