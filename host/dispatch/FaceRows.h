#pragma once

#include <tuple>

#include "Rows.h"
#include "imaging/contract/ImgX.h"

namespace kestrel::dispatch {

/// The rows of the sub-objects that a view and an ImgX object share, to be appended to their own.
inline constexpr std::tuple kFaceRows{
    ReadOnly("Document", 51, &ImagingFace::Document, "Replaces the whole picture."),
    ReadOnly("Draw", 52, &ImagingFace::Draw, "Draws on the picture."),
    ReadOnly("Effects", 53, &ImagingFace::Effects, "Changes the whole picture."),
    ReadOnly("Writer", 54, &ImagingFace::Writer,
             "Writes the picture to a file, the clipboard or a picture object."),
    ReadOnly("Alpha", 55, &ImagingFace::Alpha, "The picture's transparency."),
    ReadOnly("Colors", 56, &ImagingFace::Colors, "Makes color objects."),
};

}  // namespace kestrel::dispatch
