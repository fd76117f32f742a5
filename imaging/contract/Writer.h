#pragma once

#include <cstdint>
#include <string>

#include "Picture.h"

namespace kestrel {

/// Writes the picture to a file, the clipboard or a picture object.
class Writer {
 public:
  virtual ~Writer() = default;

  /// Writes the picture in the format of the code, regardless of the file's extension; code 0 takes the
  /// format from the extension. The write is atomic: after an error an existing file of that name is
  /// unchanged. `overwrite` false refuses an existing file. Options is 0.
  virtual void ToFile(const std::string& filename, std::int32_t format, std::int32_t options = 0,
                      bool overwrite = true) = 0;
  virtual void ToClipboard() = 0;
  virtual PicturePtr ToPicture() = 0;
};

}  // namespace kestrel
