#pragma once

#include <string>

#include "base/Event.h"
#include "host/interface/IImageEvents.h"

namespace kestrel::dispatch {

/// A sink for hosts that cannot derive from `IImageEvents`: raises an event for each call.
class HostSink final : public IImageEvents {
 public:
  void RequestSaveFilename(std::string& Filename, bool& CancelDefault) override {
    OnRequestSaveFilename(Filename, CancelDefault);
  }
  void RequestOpenFilename(std::string& Filename, bool& CancelDefault) override {
    OnRequestOpenFilename(Filename, CancelDefault);
  }
  void ImageSave(const std::string& Filename) override { OnImageSave(Filename); }
  void ImageOpen(const std::string& Filename) override { OnImageOpen(Filename); }

  Event<std::string&, bool&> OnRequestSaveFilename;
  Event<std::string&, bool&> OnRequestOpenFilename;
  Event<const std::string&> OnImageSave;
  Event<const std::string&> OnImageOpen;
};

}  // namespace kestrel::dispatch
