#pragma once

#include <cairo.h>

#include <compare>
#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace kestrel::engine::metafile {

struct Work;

/// Draws the letters of a drawing. Letters that the chosen face lacks come from other faces that the font
/// system has.
class Letterer {
 public:
  explicit Letterer(Work& work) : work_(work) {}

  /// Sets the context's font, before each of the following. Sizes out of 0.5 to 4000 pixels become the
  /// nearest of these.
  void choose(cairo_t* context, const std::string& face, bool bold, bool italic, double size);

  /// How far the font advances behind a letter.
  double advanceOf(cairo_t* context, const std::string& letter);

  /// The average character width of the chosen font. TrueType fonts store it (OS/2 table, versions 0 to 2) as
  /// that of lower-case letters and space, weighted by how often they occur.
  double averageWidth(cairo_t* context) const;

  /// Draws the letters side by side from the origin on, stretched across, each followed by the next at its
  /// width; unknown ones as boxes. With `outline` they are only added to the path.
  void draw(cairo_t* context, const std::vector<std::string>& letters, const std::vector<double>& widths,
            double stretch, bool outline);

 private:
  struct DestroyFace {
    void operator()(cairo_font_face_t* face) const { cairo_font_face_destroy(face); }
  };
  using Face = std::unique_ptr<cairo_font_face_t, DestroyFace>;
  struct Style {
    std::string face;
    bool bold = false, italic = false;
    auto operator<=>(const Style&) const = default;
  };
  struct Substitute {
    bool bold, italic;
    Face face;
  };

  cairo_font_face_t* substituteFor(cairo_t* context, const std::string& letter);
  cairo_font_face_t* findSubstitute(cairo_t* context, const std::string& letter);

  Work& work_;
  Style style_;
  double signWidth_ = 0;  ///< of a face of signs, which a face of text is drawn for; 0 for others
  std::vector<Substitute> substitutes_;
  /// The face of each letter that was asked for, null for the style's own.
  std::map<Style, std::map<std::string, cairo_font_face_t*>> known_;
  std::size_t asked_ = 0;
};

}  // namespace kestrel::engine::metafile
