#pragma once

#include <cstdint>
#include <string>

#include "Picture.h"

namespace kestrel {

/// Gives the picture out.
class Writer {
 public:
  virtual ~Writer() = default;

  /// Writes the picture in the format of the code, whatever the name ends in; code 0 takes the format that
  /// the name ends in. The file appears whole or not at all: after an error an older file of that name is
  /// untouched. `overwrite` false refuses an existing file. Options is 0.
  virtual void ToFile(const std::string& filename, std::int32_t format, std::int32_t options = 0,
                      bool overwrite = true) = 0;
  virtual void ToClipboard() = 0;
  virtual PicturePtr ToPicture() = 0;
};

}  // namespace kestrel
