#include "browser/ImageBrowser.h"

#include <memory>
#include <tuple>

#include "host/dispatch/Table.h"

namespace kestrel::dispatch {
namespace {

constexpr std::tuple kMembers{
    Property("Path", 1, &ImageBrowser::Path, &ImageBrowser::Path, "Returns or sets the browse path"),
    Property("Title", 2, &ImageBrowser::Title, &ImageBrowser::Title, "Returns or sets the window caption"),
    ReadOnly("Visible", 3, &ImageBrowser::Visible, "Whether the window is visible."),
    Method("Show", 4, &ImageBrowser::Show, {{"Modal", false}},
           "Shows the window. Modal: returns when it is hidden."),
    Method("Terminate", 5, &ImageBrowser::Terminate, "Destroys the window. Further calls do nothing."),
};

Reference::Pointer Create() { return Refer(std::make_shared<ImageBrowser>()); }

constexpr ClassDescription kClass = MakeClass<ImageBrowser, kMembers>({
    .name = "ImageBrowser",
    .help = "The image browser in a window of its own.",
    .create = &Create,
});

}  // namespace

template <>
const ClassDescription& Describe<ImageBrowser>() {
  return kClass;
}

}  // namespace kestrel::dispatch
