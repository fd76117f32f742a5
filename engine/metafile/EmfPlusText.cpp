// Text drawing of the EMF+ painter.

#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>

#include "EmfPlusBrushes.h"
#include "EmfPlusPainter.h"
#include "MetafileGlyphs.h"
#include "MetafileText.h"

namespace kestrel::engine::emf::plus {
namespace {

struct Line {
  std::vector<std::string> letters;
  std::vector<double> widths;

  double width() const { return std::accumulate(widths.begin(), widths.end(), 0.0); }
};

/// Breaks the text into lines at newlines and, unless `most` is 0, before words that do not fit into `most`
/// pixels.
std::vector<Line> linesOf(metafile::Letterer& letterer, cairo_t* c, const std::vector<std::string>& letters,
                          double most) {
  std::vector<Line> lines(1);
  std::size_t word = 0;  // start of the current word in the current line
  double present = 0;    // width of the current line
  for (const std::string& letter : letters) {
    if (letter == "\n") {
      lines.emplace_back();
      word = 0;
      present = 0;
      continue;
    }
    Line* line = &lines.back();
    const double width = letterer.advanceOf(c, letter);
    if (most > 0 && letter != " " && !line->letters.empty() && present + width > most) {
      // Move the word to the next line, or split it if it began the line.
      const std::size_t from = word > 0 ? word : line->letters.size();
      Line next;
      next.letters.assign(line->letters.begin() + static_cast<std::ptrdiff_t>(from), line->letters.end());
      next.widths.assign(line->widths.begin() + static_cast<std::ptrdiff_t>(from), line->widths.end());
      line->letters.resize(from);
      line->widths.resize(from);
      lines.push_back(std::move(next));
      line = &lines.back();
      word = 0;
      present = line->width();
    }
    line->letters.push_back(letter);
    line->widths.push_back(width);
    present += width;
    if (letter == " ") word = line->letters.size();
  }
  return lines;
}

/// Offset of a span of `length` aligned in `room`.
double offsetIn(double room, double length, std::uint32_t align) {
  return align == 1 ? (room - length) / 2 : align == 2 ? room - length : 0;
}

}  // namespace

/// In world units.
double Painter::fontSize(const Font& font) const {
  // A font size in other units is a device size, independent of the page scale.
  const double page = state_.pageScale * pixelsPer(state_.pageUnit);
  if (font.unit == 0 || !(std::abs(page) > 1e-9)) return std::abs(font.size);
  return std::abs(font.size * pixelsPer(font.unit) / page);
}

/// Sets the context's transform to pixels along the text's direction, and selects font and brush; `scale` is
/// pixels per unit. Returns false, without effect, if nothing can be drawn.
bool Painter::beginText(const cairo_matrix_t& transform, const Font& font, std::size_t letters,
                        const Brush& brush, double& scale) {
  cairo_matrix_t m = matrix();
  cairo_matrix_multiply(&m, &transform, &m);
  scale = std::sqrt(std::abs(m.xx * m.yy - m.xy * m.yx));
  constexpr double kFarthest = 4e6;
  const bool usable = std::isfinite(scale) && scale > 1e-6 && scale < 1e6 && std::abs(m.x0) < kFarthest &&
                      std::abs(m.y0) < kFarthest && std::abs(m.xx) < 1e6 && std::abs(m.xy) < 1e6 &&
                      std::abs(m.yx) < 1e6 && std::abs(m.yy) < 1e6;
  const double size = fontSize(font) * scale;
  constexpr double kPerLetter = 2000, kLargest = 4000;
  if (!usable || !(size > 0) || size > kLargest ||
      !canvas_.work().take(static_cast<double>(letters) * (kPerLetter + size * size * weightOf(brush))) ||
      !setBrush(brush))
    return false;
  cairo_t* const c = canvas_.context();
  canvas_.newPath();
  cairo_save(c);
  cairo_matrix_scale(&m, 1 / scale, 1 / scale);
  cairo_set_matrix(c, &m);
  cairo_set_operator(c, CAIRO_OPERATOR_OVER);
  canvas_.letterer().choose(c, font.face, font.bold, font.italic, size);
  return true;
}

void Painter::text(const std::vector<std::string>& letters, const Font& font, const StringFormat& format,
                   const Rect& box, const Brush& brush) {
  double scale = 1;
  if (!beginText({1, 0, 0, 1, 0, 0}, font, letters.size(), brush, scale)) return;
  cairo_t* const c = canvas_.context();
  const bool vertical = (format.flags & StringFormat::kVertical) != 0;
  double width = (box.right - box.left) * scale, height = (box.bottom - box.top) * scale;
  cairo_translate(c, box.left * scale, box.top * scale);
  if (vertical) {
    cairo_translate(c, width, 0);
    cairo_rotate(c, std::numbers::pi / 2);
    std::swap(width, height);
  }
  const double size = fontSize(font) * scale;
  const metafile::Letterer::Cell cell = canvas_.letterer().cellOf(c, font.face);
  const double ascent = cell.ascent * size, descent = cell.descent * size;
  const double margin = format.leadingMargin * size;
  const bool wraps = (format.flags & StringFormat::kNoWrap) == 0 && width > 0;
  const std::vector<Line> lines =
      linesOf(canvas_.letterer(), c, letters, wraps ? std::max(1.0, width - 2 * margin) : 0);
  const double lineHeight = ascent + descent;
  double y = offsetIn(height, lineHeight * static_cast<double>(lines.size()), format.lineAlign) + ascent;
  const bool backwards = (format.flags & StringFormat::kRightToLeft) != 0;
  const std::uint32_t align = backwards && format.align != 1 ? 2 - std::min(format.align, 2U) : format.align;
  for (const Line& line : lines) {
    const double length = line.width();
    cairo_save(c);
    cairo_translate(c, margin + offsetIn(width - 2 * margin, length, align), y);
    canvas_.letterer().draw(c, line.letters, line.widths, 1, false);
    const auto bar = [&](double at) {
      cairo_rectangle(c, 0, at, length, std::max(1.0, lineHeight / 18));
      cairo_fill(c);
    };
    if (font.underline) bar(descent / 3);
    if (font.strikeOut) bar(-ascent / 3);
    cairo_restore(c);
    y += lineHeight;
  }
  cairo_restore(c);
  canvas_.newPath();
}

void Painter::placedText(const std::vector<std::string>& letters, const std::vector<Point>& places,
                         const Font& font, const cairo_matrix_t& transform, const Brush& brush) {
  double scale = 1;
  if (letters.empty() || places.empty() || !beginText(transform, font, letters.size(), brush, scale)) return;
  cairo_t* const c = canvas_.context();
  // The face may not be here; what stands in for it must not be wider than the places allow.
  double natural = 0, room = 0;
  std::vector<double> widths;
  for (std::size_t i = 0; i < letters.size(); ++i) {
    widths.push_back(canvas_.letterer().advanceOf(c, letters[i]));
    if (i + 1 >= places.size() || places[i + 1].y != places[i].y || !(places[i + 1].x > places[i].x))
      continue;
    natural += widths[i];
    room += (places[i + 1].x - places[i].x) * scale;
    widths[i] = (places[i + 1].x - places[i].x) * scale;
  }
  const double stretch = natural > room && room > 0 ? std::max(0.5, room / natural) : 1;
  double x = 0, y = 0;
  for (std::size_t i = 0; i < letters.size(); ++i) {
    if (i < places.size()) {
      x = places[i].x * scale;
      y = places[i].y * scale;
    }
    constexpr double kFarthest = 4e6;
    if (!(std::abs(x) < kFarthest) || !(std::abs(y) < kFarthest)) break;
    cairo_save(c);
    cairo_translate(c, x, y);
    canvas_.letterer().draw(c, {letters[i]}, {widths[i]}, stretch, false);
    cairo_restore(c);
    x += widths[i];
  }
  cairo_restore(c);
  canvas_.newPath();
}

}  // namespace kestrel::engine::emf::plus
