#include "host/interface/IImageEvents.h"

#include <memory>
#include <tuple>

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

Reference::Pointer Create() { return Refer(std::make_shared<IImageEvents>()); }

constexpr ClassDescription kClass = MakeClass<IImageEvents, kMembers>({
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
