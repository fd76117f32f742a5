#include "MetafileText.h"

#include <cairo-ft.h>
#include <fontconfig/fontconfig.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>

#include "MetafileGlyphs.h"
#include "MetafilePlayer.h"
#include "MetafileSigns.h"

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

/// Whether the context's present face has the letter.
bool hasLetter(cairo_t* c, const std::string& letter) {
  cairo_glyph_t* glyphs = nullptr;
  int count = 0;
  const cairo_status_t status = cairo_scaled_font_text_to_glyphs(
      cairo_get_scaled_font(c), 0, 0, letter.data(), static_cast<int>(letter.size()), &glyphs, &count,
      nullptr, nullptr, nullptr);
  if (status != CAIRO_STATUS_SUCCESS) return true;  // nor would another face
  const bool all = std::all_of(glyphs, glyphs + count, [](const cairo_glyph_t& g) { return g.index != 0; });
  cairo_glyph_free(glyphs);
  return all;
}

struct DestroyFontPattern {
  void operator()(FcPattern* pattern) const { FcPatternDestroy(pattern); }
};
using FontPattern = std::unique_ptr<FcPattern, DestroyFontPattern>;

/// The first Unicode value of the text.
FcChar32 codeOf(const std::string& letter) {
  FcChar32 code = 0;
  FcUtf8ToUcs4(reinterpret_cast<const FcChar8*>(letter.data()), &code, static_cast<int>(letter.size()));
  return code;
}

/// The installed face that is most like the one asked for and has the letter; null if none has it.
cairo_font_face_t* installedFaceWith(const std::string& letter, const std::string& face, bool bold,
                                     bool italic) {
  const FcChar32 code = codeOf(letter);
  FcCharSet* const letters = FcCharSetCreate();
  FcCharSetAddChar(letters, code);
  const FontPattern wanted(FcPatternCreate());
  FcPatternAddCharSet(wanted.get(), FC_CHARSET, letters);
  FcCharSetDestroy(letters);
  FcPatternAddString(wanted.get(), FC_FAMILY, reinterpret_cast<const FcChar8*>(face.c_str()));
  FcPatternAddInteger(wanted.get(), FC_WEIGHT, bold ? FC_WEIGHT_BOLD : FC_WEIGHT_NORMAL);
  FcPatternAddInteger(wanted.get(), FC_SLANT, italic ? FC_SLANT_ITALIC : FC_SLANT_ROMAN);
  FcPatternAddBool(wanted.get(), FC_SCALABLE, FcTrue);
  FcConfigSubstitute(nullptr, wanted.get(), FcMatchPattern);
  FcDefaultSubstitute(wanted.get());
  FcResult result = FcResultNoMatch;
  const FontPattern found(FcFontMatch(nullptr, wanted.get(), &result));
  FcCharSet* covered = nullptr;
  if (!found || FcPatternGetCharSet(found.get(), FC_CHARSET, 0, &covered) != FcResultMatch ||
      FcCharSetHasChar(covered, code) == FcFalse)
    return nullptr;
  return cairo_ft_font_face_create_for_pattern(found.get());
}

/// The cell of a face that is not installed.
Letterer::Cell usualCellOf(const std::string& face) {
  const std::string name = plainName(face);
  if (name == "arial" || name == "helvetica") return {0.905, 0.212};
  if (name == "timesnewroman") return {0.891, 0.216};
  if (name == "couriernew") return {0.833, 0.300};
  return {0.93, 0.233};
}

/// Whether fonts of this family are installed, not only others in their stead.
bool isInstalled(const std::string& family) {
  const auto* const name = reinterpret_cast<const FcChar8*>(family.c_str());
  const FontPattern wanted(FcPatternCreate());
  FcPatternAddString(wanted.get(), FC_FAMILY, name);
  FcConfigSubstitute(nullptr, wanted.get(), FcMatchPattern);
  FcDefaultSubstitute(wanted.get());
  FcResult result = FcResultNoMatch;
  const FontPattern found(FcFontMatch(nullptr, wanted.get(), &result));
  FcChar8* own = nullptr;
  for (int i = 0; found && FcPatternGetString(found.get(), FC_FAMILY, i, &own) == FcResultMatch; ++i) {
    if (FcStrCmpIgnoreCase(own, name) == 0) return true;
  }
  return false;
}

}  // namespace

void Letterer::choose(cairo_t* context, const std::string& face, bool bold, bool italic, double size) {
  style_ = {textFaceFor(face), bold, italic};
  cairo_select_font_face(context, style_.face.c_str(),
                         italic ? CAIRO_FONT_SLANT_ITALIC : CAIRO_FONT_SLANT_NORMAL,
                         bold ? CAIRO_FONT_WEIGHT_BOLD : CAIRO_FONT_WEIGHT_NORMAL);
  constexpr double kLargest = 4000;
  size_ = std::clamp(size, 0.5, kLargest);
  cairo_set_font_size(context, size_);
  signs_ = signFaceOf(face, 0);
}

/// Whether the font system may be asked once more, which takes milliseconds.
bool Letterer::mayAsk() {
  constexpr double kPerQuestion = 2e6;
  constexpr std::size_t kMostAsked = 256;
  if (asked_ >= kMostAsked || !work_.take(kPerQuestion)) return false;
  ++asked_;
  return true;
}

Letterer::Cell Letterer::cellOf(cairo_t* context, const std::string& asked) {
  const std::string face = textFaceFor(asked);
  const auto known = cells_.find(face);
  if (known != cells_.end()) return known->second;
  Cell cell = usualCellOf(face);
  if (mayAsk() && isInstalled(face)) {
    cairo_save(context);
    cairo_select_font_face(context, face.c_str(), CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_NORMAL);
    constexpr double kSize = 1000;  // so that whole pixels are exact enough
    cairo_set_font_size(context, kSize);
    cairo_font_extents_t line{};
    cairo_font_extents(context, &line);
    cairo_restore(context);
    if (line.ascent + line.descent > 0) cell = {line.ascent / kSize, line.descent / kSize};
  }
  cells_.emplace(face, cell);
  return cell;
}

cairo_font_face_t* Letterer::findSubstitute(cairo_t* context, const std::string& letter) {
  cairo_save(context);
  const auto known = std::ranges::find_if(substitutes_, [&](const Substitute& each) {
    if (each.bold != style_.bold || each.italic != style_.italic) return false;
    cairo_set_font_face(context, each.face.get());
    return hasLetter(context, letter);
  });
  cairo_restore(context);
  if (known != substitutes_.end()) return known->face.get();
  constexpr std::size_t kMostSubstitutes = 32;
  if (substitutes_.size() >= kMostSubstitutes || !mayAsk()) return nullptr;
  Face found(installedFaceWith(letter, style_.face, style_.bold, style_.italic));
  if (!found || cairo_font_face_status(found.get()) != CAIRO_STATUS_SUCCESS) return nullptr;
  substitutes_.push_back({style_.bold, style_.italic, std::move(found)});
  return substitutes_.back().face.get();
}

Letterer::Source Letterer::sourceOf(cairo_t* context, const std::string& letter) {
  auto& sources = known_[style_];
  const auto known = sources.find(letter);
  if (known != sources.end()) return known->second;
  Source source;
  if (!hasLetter(context, letter)) {
    source.substitute = findSubstitute(context, letter);
    source.missing = source.substitute == nullptr;
  }
  sources.emplace(letter, source);
  return source;
}

double Letterer::advanceOf(cairo_t* context, const std::string& letter) {
  const Source source = letter == kUnknownLetter ? Source{nullptr, true} : sourceOf(context, letter);
  const std::string& drawn = source.missing ? "n" : letter;
  cairo_text_extents_t extents{};
  cairo_save(context);
  if (source.substitute != nullptr) cairo_set_font_face(context, source.substitute);
  cairo_text_extents(context, drawn.c_str(), &extents);
  cairo_restore(context);
  return extents.x_advance;
}

/// The mean width of the signs that the drawn face has itself, in parts of the size; 0 if it has none.
double Letterer::averageSignWidth(cairo_t* context) {
  const auto known = signWidths_.find({style_, signs_});
  if (known != signWidths_.end()) return known->second;
  double sum = 0;
  int count = 0;
  constexpr int kFirst = 0x21, kLast = 0xFF;
  for (int code = kFirst; code <= kLast; ++code) {
    const std::string letter = signLetter(signs_, static_cast<std::uint32_t>(code));
    if (letter == kUnknownLetter || !hasLetter(context, letter)) continue;
    cairo_text_extents_t extents{};
    cairo_text_extents(context, letter.c_str(), &extents);
    sum += extents.x_advance / size_;
    ++count;
  }
  const double mean = count > 0 ? sum / count : 0;
  signWidths_.emplace(std::pair(style_, signs_), mean);
  return mean;
}

double Letterer::averageWidth(cairo_t* context) {
  // The mean of the widths in the font's published metrics.
  constexpr double kSymbol = 0.586;
  if (signs_ == SignFace::symbol) return kSymbol * size_;
  if (signs_ != SignFace::none) return averageSignWidth(context) * size_;
  constexpr double kPerThousand[] = {64, 14, 27, 35, 100, 20, 14, 42, 63, 3,  6, 35, 20,
                                     56, 56, 17, 4,  49,  56, 71, 31, 10, 18, 3, 18, 2};
  constexpr double kSpaces = 166;
  const auto advance = [context](char letter) {
    const char text[] = {letter, 0};
    cairo_text_extents_t extents{};
    cairo_text_extents(context, text, &extents);
    return extents.x_advance;
  };
  double sum = kSpaces * advance(' ');
  for (int i = 0; i < 26; ++i) sum += kPerThousand[i] * advance(static_cast<char>('a' + i));
  return sum / 1000;
}

void Letterer::draw(cairo_t* context, const std::vector<std::string>& letters,
                    const std::vector<double>& widths, double stretch, bool outline) {
  double x = 0;
  for (std::size_t i = 0; i < letters.size(); ++i) {
    cairo_save(context);
    cairo_translate(context, x, 0);
    const bool blank = letters[i].empty() || letters[i] == " ";
    const Source source =
        blank || letters[i] == kUnknownLetter ? Source{nullptr, true} : sourceOf(context, letters[i]);
    if (!blank && source.missing) {
      addBox(context, widths[i]);
      if (!outline) cairo_fill(context);
    } else if (!blank) {
      if (source.substitute != nullptr) cairo_set_font_face(context, source.substitute);
      cairo_scale(context, stretch, 1);
      cairo_move_to(context, 0, 0);
      outline ? cairo_text_path(context, letters[i].c_str()) : cairo_show_text(context, letters[i].c_str());
    }
    cairo_restore(context);
    x += widths[i];
  }
}

/// How a line of letters lies along its direction, in pixels.
struct Player::LineOfText {
  std::vector<double> widths;  ///< how far each letter's successor is
  double width = 0;            ///< of all
  double stretch = 1;          ///< of the letters across
};

/// Lays out the letters in the context's font; `across` are the pixels of a logical unit.
Player::LineOfText Player::layOut(const std::vector<std::string>& letters,
                                  const std::vector<double>& advances, double across) {
  cairo_t* const c = canvas_.context();
  LineOfText line;
  // The face may not be here; what is drawn instead is made as wide as the record says.
  const double average = state_.font.width != 0 ? canvas_.letterer().averageWidth(c) : 0;
  if (average > 0) line.stretch = std::clamp(std::abs(state_.font.width) * across / average, 0.25, 4.0);
  // Nothing follows the last letter, which therefore need not fit.
  const auto isLetter = [](const std::string& letter) { return !letter.empty(); };
  const auto last = static_cast<std::size_t>(
      std::distance(std::find_if(letters.rbegin(), letters.rend(), isLetter), letters.rend()));
  double natural = 0, given = 0;
  for (std::size_t i = 0; i < letters.size(); ++i) {
    const double own = canvas_.letterer().advanceOf(c, letters[i]) * line.stretch;
    const double space = (state_.letterSpace + (letters[i] == " " ? state_.breakSpace : 0)) * across;
    line.widths.push_back(bounded(i < advances.size() ? advances[i] * across : own + space));
    line.width += line.widths.back();
    if (i + 1 >= last) continue;
    natural += own;
    given += line.widths.back();
  }
  if (!advances.empty() && given > 0 && natural > given) line.stretch *= std::max(0.5, given / natural);
  return line;
}

void Player::text(Point at, const std::vector<std::string>& letters, const std::vector<double>& advances) {
  if (letters.empty()) return;
  const Font& font = state_.font;
  cairo_t* const c = canvas_.context();
  const cairo_matrix_t m = matrix();
  const double across = std::hypot(m.xx, m.yx), down = std::hypot(m.xy, m.yy);
  const Letterer::Cell cell = canvas_.letterer().cellOf(c, font.face);
  // A positive height is that of a cell.
  const double height = font.height == 0 ? 12 : font.height > 0 ? font.height / cell.height() : -font.height;
  const double size = height * down, ascent = cell.ascent * size, descent = cell.descent * size;

  cairo_save(c);
  if (!inPath_) canvas_.newPath();
  canvas_.letterer().choose(c, font.face, font.bold, font.italic, size);
  const LineOfText text = layOut(letters, advances, across);
  const double width = text.width;

  constexpr std::uint32_t kUpdatePosition = 1, kHorizontal = 6, kRight = 2, kCentre = 6, kVertical = 24,
                          kBottom = 8, kBaseline = 24;
  const std::uint32_t align = state_.textAlign;
  Point origin = toPicture((align & kUpdatePosition) != 0 ? state_.position : at);
  const double left = (align & kHorizontal) == kRight    ? -width
                      : (align & kHorizontal) == kCentre ? -width / 2
                                                         : 0;
  const double base = (align & kVertical) == kBaseline ? 0
                      : (align & kVertical) == kBottom ? -descent
                                                       : ascent;
  // Letters run the way the world is turned; a mapping that counts leftwards does not turn them.
  const double forward = state_.mapping.windowExtent.x * state_.mapping.viewportExtent.x < 0 ? -1 : 1;
  cairo_translate(c, bounded(origin.x), bounded(origin.y));
  // The angle is counterclockwise on a page that is mirrored in both axes or in none, else clockwise.
  const double clockwise = mirrorsOneAxis() ? font.escapement : -font.escapement;
  cairo_rotate(c, std::atan2(m.yx * forward, m.xx * forward) + clockwise * std::numbers::pi / 180);
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
      bar(-ascent, ascent + descent);
    }
    setSource(state_.textColor);
    canvas_.letterer().draw(c, letters, text.widths, text.stretch, inPath_);
    if (font.underline) bar(descent / 3, std::max(1.0, size / 16));
    if (font.strikeOut) bar(-ascent / 3, std::max(1.0, size / 16));
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
