#pragma once

#include <optional>
#include <string>

#include "base/Object.h"
#include "diagnostics/modTollgarthSupport.h"

namespace kestrel {

/// The sink that notifies a host of opens and saves and lets it choose the names. The members do nothing; a
/// host overrides those it needs. Each member is called after the control's event of the same name and
/// receives the arguments as the event's handlers left them.
class IImageEvents : public Object {
 public:
  IImageEvents() : iCount(modTollgarthSupport::Counted::kIImageEvents) {}

  std::string TypeName() const override { return "IImageEvents"; }

  /// Called when a Save Image As request is made
  virtual void RequestSaveFilename(std::string& /*Filename*/, bool& /*CancelDefault*/) {}
  /// Called when a Open Image request is made
  virtual void RequestOpenFilename(std::string& /*Filename*/, bool& /*CancelDefault*/) {}
  /// Called when an image is saved
  virtual void ImageSave(const std::string& /*Filename*/) {}
  /// Called when an image is opened
  virtual void ImageOpen(const std::string& /*Filename*/) {}

 protected:
  /// For an object of the component that is counted under another name.
  struct NotCounted {};
  explicit IImageEvents(NotCounted /*sink*/) {}

 private:
  std::optional<InstanceCount> iCount;
};

}  // namespace kestrel
