#include "host/interface/IImageEvents.h"

#include <memory>
#include <tuple>

#include "host/dispatch/HostSink.h"
#include "host/dispatch/Table.h"

namespace kestrel::dispatch {
namespace {

constexpr std::tuple kMembers{
    Method("RequestSaveFilename", 1, &IImageEvents::RequestSaveFilename, {"Filename", "CancelDefault"},
           "Called when a Save Image As request is made"),
    Method("RequestOpenFilename", 2, &IImageEvents::RequestOpenFilename, {"Filename", "CancelDefault"},
           "Called when a Open Image request is made"),
    Method("ImageSave", 3, &IImageEvents::ImageSave, {"Filename"}, "Called when an image is saved"),
    Method("ImageOpen", 4, &IImageEvents::ImageOpen, {"Filename"}, "Called when an image is opened"),
};

/// Raises RuntimeError 459 for a sink that a host has derived: it overrides the members instead.
HostSink& WithEvents(IImageEvents& sink) {
  if (auto* found = dynamic_cast<HostSink*>(&sink)) return *found;
  throw RuntimeError(err::kNoSuchEvent, "This sink raises no events.", "IImageEvents");
}
auto& OnRequestSaveFilename(IImageEvents& sink) { return WithEvents(sink).OnRequestSaveFilename; }
auto& OnRequestOpenFilename(IImageEvents& sink) { return WithEvents(sink).OnRequestOpenFilename; }
auto& OnImageSave(IImageEvents& sink) { return WithEvents(sink).OnImageSave; }
auto& OnImageOpen(IImageEvents& sink) { return WithEvents(sink).OnImageOpen; }

constexpr std::tuple kEvents{
    EventOf("RequestSaveFilename", 1, &OnRequestSaveFilename, {"Filename", "CancelDefault"},
            "The member of that name was called."),
    EventOf("RequestOpenFilename", 2, &OnRequestOpenFilename, {"Filename", "CancelDefault"},
            "The member of that name was called."),
    EventOf("ImageSave", 3, &OnImageSave, {"Filename"}, "The member of that name was called."),
    EventOf("ImageOpen", 4, &OnImageOpen, {"Filename"}, "The member of that name was called."),
};

Reference::Pointer Create() { return Refer(std::shared_ptr<IImageEvents>(std::make_shared<HostSink>())); }

constexpr ClassDescription kClass = MakeClass<IImageEvents, kMembers, kEvents>({
    .name = "IImageEvents",
    .help = "The sink that notifies a host of opens and saves and lets it choose the names.",
    .create = &Create,
});

}  // namespace

template <>
const ClassDescription& Describe<IImageEvents>() {
  return kClass;
}

}  // namespace kestrel::dispatch
