#pragma once

#include <string>

#include "Codecs.h"
#include "MetafileCanvas.h"

namespace kestrel::engine {

namespace metafile {

struct Drawing {
  Bitmap bitmap;
  bool complete = false;  ///< the file was played up to its end
};

/// The largest picture that is believed: a drawing has a size that someone may want to see, a larger one
/// needs the bytes of a bitmap to fill it. Raises RuntimeError 7 or 481 for others.
void checkDrawingSize(std::int32_t width, std::int32_t height, std::size_t fileSize);

/// What to tell the user of a drawing that could not be played whole; empty for others.
std::string noticeOf(const Drawing& drawing, const Work& work);

}  // namespace metafile

// A file played at its natural size, which is that of 96 pixels per inch. Raises as the decoders.

namespace emf {
metafile::Drawing draw(Bytes file, metafile::Work& work);
}

namespace wmf {
metafile::Drawing draw(Bytes file, metafile::Work& work);
}

}  // namespace kestrel::engine
