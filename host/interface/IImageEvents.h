#pragma once

#include <string>

#include "base/Object.h"
#include "diagnostics/modTollgarthSupport.h"

namespace kestrel {

/// The sink through which a host is told of opens and saves, and may choose the names. It does nothing by
/// itself; a host derives from it what it wants to know of. Each member is called after the control's event
/// of the same name and sees what the event's handlers left in the arguments.
class IImageEvents : public Object {
 public:
  std::string TypeName() const override { return "IImageEvents"; }

  /// Called when a Save Image As request is made
  virtual void RequestSaveFilename(std::string& /*Filename*/, bool& /*CancelDefault*/) {}
  /// Called when a Open Image request is made
  virtual void RequestOpenFilename(std::string& /*Filename*/, bool& /*CancelDefault*/) {}
  /// Called when an image is saved
  virtual void ImageSave(const std::string& /*Filename*/) {}
  /// Called when an image is opened
  virtual void ImageOpen(const std::string& /*Filename*/) {}

 private:
  InstanceCount iCount{modTollgarthSupport::Counted::kIImageEvents};
};

}  // namespace kestrel
