#pragma once

#include <cstdint>

#include "Constants.h"
#include "base/Event.h"
#include "base/Object.h"
#include "imaging/contract/ImageView.h"
#include "imaging/contract/ImgXDialog.h"

namespace kestrel {

/// The interface of the editor for its dialogs and tool windows. The members are documented in
/// `ImageProcessingCtl`.
class IImageProcessingCtl : public Object {
 public:
  virtual OLE_COLOR BackColor() const = 0;
  virtual void BackColor(OLE_COLOR Value) = 0;
  virtual OLE_COLOR ForeColor() const = 0;
  virtual void ForeColor(OLE_COLOR Value) = 0;

  virtual kestrel::Image* Image() = 0;
  virtual ImageView& ImageControl() = 0;
  virtual ImgXDialog* BrowseDialog() = 0;

  virtual void Resize(std::int32_t Width, std::int32_t Height = 0, std::int32_t ResampleMethod = 0) = 0;
  virtual void ResizeCanvas(std::int32_t Width, std::int32_t Height, std::int32_t OffsetX = 0,
                            std::int32_t OffsetY = 0, OLE_COLOR BackColor = ipUseDefault) = 0;

  Event<OLE_COLOR> ForeColorChange;
  Event<OLE_COLOR> BackColorChange;
};

}  // namespace kestrel
