#pragma once

#include <cairo.h>

#include <compare>
#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "MetafileSigns.h"

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

  /// How far a line of a face reaches above and below its baseline, in parts of the letters' size.
  struct Cell {
    double ascent = 0, descent = 0;
    double height() const { return ascent + descent; }
  };
  /// The cell of the face that was asked for, also where another is drawn in its stead: of a face that is not
  /// installed the usual values are known, or taken.
  Cell cellOf(cairo_t* context, const std::string& face);

  /// How far the font advances behind a letter.
  double advanceOf(cairo_t* context, const std::string& letter);

  /// The average character width of the chosen font. TrueType fonts store it (OS/2 table, versions 0 to 2) as
  /// that of lower-case letters and space, weighted by how often they occur; fonts of signs as the mean of
  /// all.
  double averageWidth(cairo_t* context);

  /// Draws the letters side by side from the origin on, stretched across, each followed by the next at its
  /// width; letters that are unknown, or that no face has, as boxes. With `outline` they are only added to
  /// the path.
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

  /// What draws a letter.
  struct Source {
    cairo_font_face_t* substitute = nullptr;  ///< null for the chosen face
    bool missing = false;                     ///< no face has the letter
  };

  bool mayAsk();
  Source sourceOf(cairo_t* context, const std::string& letter);
  cairo_font_face_t* findSubstitute(cairo_t* context, const std::string& letter);
  double averageSignWidth(cairo_t* context);

  Work& work_;
  Style style_;
  SignFace signs_ = SignFace::none;  ///< which a face of text is drawn for
  double size_ = 0;
  std::vector<Substitute> substitutes_;
  std::map<Style, std::map<std::string, Source>> known_;
  std::map<std::string, Cell> cells_;
  std::map<std::pair<Style, SignFace>, double> signWidths_;  ///< in parts of the size
  std::size_t asked_ = 0;
};

}  // namespace kestrel::engine::metafile
