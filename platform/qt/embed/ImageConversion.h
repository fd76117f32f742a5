#pragma once

#include <QImage>

#include "engine/undo/PictureState.h"

namespace kestrel::qt {

/// The picture as an image: RGBA with straight alpha, sRGB, with the resolution of the picture's file. Shares
/// the pixels until one of the two changes. Null for an empty picture.
QImage imageOf(const engine::PictureState& picture);

/// The image as a picture: converted to sRGB from its color space, with its resolution. Raises RuntimeError
/// 5 for a null image, 7 for one that is too large.
engine::PictureState pictureOf(const QImage& image);

}  // namespace kestrel::qt
