#pragma once

#include <cairo.h>

#include <string>
#include <vector>

namespace kestrel::engine::metafile {

/// Sets the context's font. Sizes beyond what can be drawn are brought near.
void chooseFont(cairo_t* context, const std::string& face, bool bold, bool italic, double size);

/// How far the present font advances behind a letter.
double advanceOf(cairo_t* context, const std::string& letter);

/// Draws the letters side by side from the origin on, stretched across, each followed by the next at its
/// width; unknown ones as boxes. With `outline` they are only added to the path.
void drawLetters(cairo_t* context, const std::vector<std::string>& letters, const std::vector<double>& widths,
                 double stretch, bool outline);

}  // namespace kestrel::engine::metafile
