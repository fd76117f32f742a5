#include "MetafileText.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>

#include "MetafileLetters.h"
#include "MetafilePlayer.h"

namespace kestrel::engine::metafile {
namespace {

constexpr double kFarthest = 4e6;

double bounded(double value) { return std::isfinite(value) ? std::clamp(value, -kFarthest, kFarthest) : 0.0; }

/// The usual sign for a letter that a font does not have.
void addBox(cairo_t* c, double width) {
  cairo_font_extents_t line{};
  cairo_font_extents(c, &line);
  const double height = line.ascent * 0.75, inset = width * 0.15, pen = std::max(height / 16, 0.5);
  const double across = width - 2 * inset;
  if (across <= 2 * pen) return;
  cairo_rectangle(c, inset, -height, across, height);
  cairo_rectangle(c, inset + across - pen, pen - height, 2 * pen - across, height - 2 * pen);
}

/// The average letter's width.
double averageOf(cairo_t* c) {
  cairo_text_extents_t extents{};
  cairo_text_extents(c, "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz", &extents);
  return extents.x_advance / 52;
}

}  // namespace

void chooseFont(cairo_t* context, const std::string& face, bool bold, bool italic, double size) {
  cairo_select_font_face(context, face.empty() ? "sans-serif" : face.c_str(),
                         italic ? CAIRO_FONT_SLANT_ITALIC : CAIRO_FONT_SLANT_NORMAL,
                         bold ? CAIRO_FONT_WEIGHT_BOLD : CAIRO_FONT_WEIGHT_NORMAL);
  constexpr double kLargest = 4000;
  cairo_set_font_size(context, std::clamp(size, 0.5, kLargest));
}

double advanceOf(cairo_t* context, const std::string& letter) {
  cairo_text_extents_t extents{};
  cairo_text_extents(context, letter == kUnknownLetter ? "n" : letter.c_str(), &extents);
  return extents.x_advance;
}

void drawLetters(cairo_t* context, const std::vector<std::string>& letters, const std::vector<double>& widths,
                 double stretch, bool outline) {
  double x = 0;
  for (std::size_t i = 0; i < letters.size(); ++i) {
    cairo_save(context);
    cairo_translate(context, x, 0);
    if (letters[i] == kUnknownLetter) {
      addBox(context, widths[i]);
      if (!outline) cairo_fill(context);
    } else if (!letters[i].empty() && letters[i] != " ") {
      cairo_scale(context, stretch, 1);
      cairo_move_to(context, 0, 0);
      outline ? cairo_text_path(context, letters[i].c_str()) : cairo_show_text(context, letters[i].c_str());
    }
    cairo_restore(context);
    x += widths[i];
  }
}

void Player::text(Point at, const std::vector<std::string>& letters, const std::vector<double>& advances) {
  if (letters.empty()) return;
  const Font& font = state_.font;
  cairo_t* const c = canvas_.context();
  const cairo_matrix_t m = matrix();
  const double across = std::hypot(m.xx, m.yx), down = std::hypot(m.xy, m.yy);
  // A cell is taller than a letter by the space between lines.
  constexpr double kLetterOfCell = 0.86;
  const double height =
      (font.height == 0 ? 12.0 : std::abs(font.height)) * (font.height > 0 ? kLetterOfCell : 1.0);
  const double size = height * down;

  cairo_save(c);
  if (!inPath_) canvas_.newPath();
  chooseFont(c, font.face, font.bold, font.italic, size);
  // The face may not be here; what stands in for it is made as wide as the record says.
  double stretch = 1;
  const double average = averageOf(c);
  if (font.width != 0 && average > 0)
    stretch = std::clamp(std::abs(font.width) * across / average, 0.25, 4.0);
  std::vector<double> widths;
  double natural = 0;
  for (std::size_t i = 0; i < letters.size(); ++i) {
    const double own = advanceOf(c, letters[i]) * stretch;
    const double space = (state_.letterSpace + (letters[i] == " " ? state_.breakSpace : 0)) * across;
    natural += own;
    widths.push_back(bounded(i < advances.size() ? advances[i] * across : own + space));
  }
  const double width = std::accumulate(widths.begin(), widths.end(), 0.0);
  if (!advances.empty() && width > 0 && natural > width) stretch *= std::max(0.5, width / natural);
  cairo_font_extents_t line{};
  cairo_font_extents(c, &line);

  constexpr std::uint32_t kUpdatePosition = 1, kHorizontal = 6, kRight = 2, kCentre = 6, kVertical = 24,
                          kBottom = 8, kBaseline = 24;
  const std::uint32_t align = state_.textAlign;
  Point origin = toPicture((align & kUpdatePosition) != 0 ? state_.position : at);
  const double left = (align & kHorizontal) == kRight    ? -width
                      : (align & kHorizontal) == kCentre ? -width / 2
                                                         : 0;
  const double base = (align & kVertical) == kBaseline ? 0
                      : (align & kVertical) == kBottom ? -line.descent
                                                       : line.ascent;
  // Letters run the way the world is turned; a mapping that counts leftwards does not turn them.
  const double forward = state_.mapping.windowExtent.x * state_.mapping.viewportExtent.x < 0 ? -1 : 1;
  cairo_translate(c, bounded(origin.x), bounded(origin.y));
  cairo_rotate(c, std::atan2(m.yx * forward, m.xx * forward) - font.escapement * std::numbers::pi / 180);
  cairo_translate(c, left, base);
  constexpr double kPerLetter = 2000;
  const double area = static_cast<double>(letters.size()) * std::min(size, 4000.0) * std::min(size, 4000.0);
  const bool affordable = canvas_.work().take(kPerLetter * static_cast<double>(letters.size()) + area);
  const auto bar = [&](double y, double thickness) {
    cairo_rectangle(c, 0, y, width, thickness);
    if (!inPath_) cairo_fill(c);
  };
  if (affordable) {
    cairo_set_operator(c, CAIRO_OPERATOR_OVER);
    if (state_.opaqueBack && !inPath_) {
      setSource(state_.backColor);
      bar(-line.ascent, line.ascent + line.descent);
    }
    setSource(state_.textColor);
    drawLetters(c, letters, widths, stretch, inPath_);
    if (font.underline) bar(line.descent / 3, std::max(1.0, size / 16));
    if (font.strikeOut) bar(-line.ascent / 3, std::max(1.0, size / 16));
  }
  cairo_restore(c);
  if (!inPath_) canvas_.newPath();
  if ((align & kUpdatePosition) != 0) state_.position.x += across > 0 ? width / across : 0;
}

void Player::textWithin(const Rect& box, Point at, const std::vector<std::string>& letters,
                        const std::vector<double>& advances) {
  const Clip before = state_.clip;
  if (!inPath_) clipToRects({box}, Combine::intersect);
  text(at, letters, advances);
  if (inPath_) return;
  state_.clip = before;
  showClip();
}

}  // namespace kestrel::engine::metafile
