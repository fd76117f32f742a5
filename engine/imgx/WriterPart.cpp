#include "WriterPart.h"

#include <filesystem>
#include <memory>
#include <system_error>

#include "PictureObject.h"
#include "engine/codecs/Codecs.h"
#include "platform/os/Paths.h"

namespace kestrel::engine {

void WriterPart::ToFile(const std::string& filename, std::int32_t format, std::int32_t options,
                        bool overwrite) {
  if (options != 0) throw RuntimeError(err::kInvalidCall, "There are no options for writing pictures.");
  const PictureState& state = owner_.loadedPicture().state();
  std::error_code none;
  if (!overwrite && std::filesystem::exists(filename, none)) {
    throw RuntimeError(err::kFileExists, "The file \"" + filename + "\" exists already.");
  }
  const Metadata nothing;
  encodeFile(state.bitmap, state.metadata ? *state.metadata : nothing, format,
             {.jpegQuality = owner_.settings().jpegQuality}, os::pathOf(filename));
}

void WriterPart::ToClipboard() { clipboard_.offer(owner_.loadedPicture().bitmap()); }

PicturePtr WriterPart::ToPicture() {
  return std::make_shared<PictureObject>(owner_.loadedPicture().bitmap());
}

}  // namespace kestrel::engine
