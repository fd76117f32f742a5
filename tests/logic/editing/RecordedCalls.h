#pragma once

#include <cstdint>
#include <string>

#include "../editor/RecordingView.h"
#include "base/Numbers.h"
#include "imaging/contract/ImgX.h"

/// The engine's sub-objects, recording each call as "view.Effects.Flip(0, "")". The first word names the
/// owner of the sub-object.
namespace kestrel::recorded {

inline std::string text(std::int32_t value) { return ToText(value); }
inline std::string text(double value) { return ToText(value); }
inline std::string text(float value) { return ToText(value); }
inline std::string text(bool value) { return boolean(value); }
inline std::string text(const std::string& value) { return '"' + value + '"'; }
inline std::string text(const Point& value) { return '(' + ToText(value.X) + ", " + ToText(value.Y) + ')'; }
/// The color number and its alpha.
inline std::string text(const Colour& value) {
  return '#' + ToText(value.Value()) + '/' + ToText(std::int32_t{value.Alpha()});
}
inline std::string text(const Colour* value) { return value == nullptr ? "Nothing" : text(*value); }
inline std::string text(const Image& value) {
  return ToText(value.Width()) + 'x' + ToText(value.Height()) + " picture";
}

template <typename... Args>
std::string call(const std::string& name, const Args&... args) {
  std::string list;
  ((list += (list.empty() ? "" : ", ") + text(args)), ...);
  return name + '(' + list + ')';
}

class RecordedEffects final : public Effects {
 public:
  RecordedEffects(Log& log, std::string owner, Effects& inner)
      : log_(log), name_(std::move(owner) + ".Effects."), inner_(inner) {}

  void Crop(std::int32_t left, std::int32_t top, std::int32_t width, std::int32_t height,
            const std::string& undoName) override {
    log_.add(call(name_ + "Crop", left, top, width, height, undoName));
    inner_.Crop(left, top, width, height, undoName);
  }
  void Flip(std::int32_t direction, const std::string& undoName) override {
    log_.add(call(name_ + "Flip", direction, undoName));
    inner_.Flip(direction, undoName);
  }
  void Resize(std::int32_t width, std::int32_t height, std::int32_t method,
              const std::string& undoName) override {
    log_.add(call(name_ + "Resize", width, height, method, undoName));
    inner_.Resize(width, height, method, undoName);
  }
  void ResizeCanvas(std::int32_t width, std::int32_t height, const Colour& color, std::int32_t offsetX,
                    std::int32_t offsetY, const std::string& undoName) override {
    log_.add(call(name_ + "ResizeCanvas", width, height, color, offsetX, offsetY, undoName));
    inner_.ResizeCanvas(width, height, color, offsetX, offsetY, undoName);
  }
  void Rotate(float angle, const Colour* color, std::int32_t quality, const std::string& undoName) override {
    log_.add(call(name_ + "Rotate", angle, color, quality, undoName));
    inner_.Rotate(angle, color, quality, undoName);
  }
  void DropShadow(std::int32_t offsetX, std::int32_t offsetY, const Colour& color, double blur, bool grow,
                  const std::string& undoName) override {
    log_.add(call(name_ + "DropShadow", offsetX, offsetY, color, blur, grow, undoName));
    inner_.DropShadow(offsetX, offsetY, color, blur, grow, undoName);
  }
  void ReplaceColor(const Colour& from, const Colour& to, double tolerance, std::int32_t mode,
                    const std::string& undoName) override {
    log_.add(call(name_ + "ReplaceColor", from, to, tolerance, mode, undoName));
    inner_.ReplaceColor(from, to, tolerance, mode, undoName);
  }
  void ApplyPalette(const Palette& palette, bool dither, const std::string& undoName) override {
    log_.add(call(name_ + "ApplyPalette", palette.Type(), dither, undoName));
    inner_.ApplyPalette(palette, dither, undoName);
  }

 private:
  Log& log_;
  std::string name_;
  Effects& inner_;
};

/// Records the calls on a picture that change it.
class RecordedImage final : public Image {
 public:
  RecordedImage(Log& log, std::string owner) : log_(log), name_(std::move(owner) + ".Image.") {}

  /// The picture that this object is now; null for none.
  kestrel::Image* now(kestrel::Image* inner) {
    inner_ = inner;
    return inner ? this : nullptr;
  }

  std::int32_t Width() const override { return inner_->Width(); }
  std::int32_t Height() const override { return inner_->Height(); }
  std::int32_t Format() const override { return inner_->Format(); }
  std::int32_t Pages() const override { return inner_->Pages(); }
  std::string DecodeErrors() const override { return inner_->DecodeErrors(); }
  Colour GetPixel(std::int32_t x, std::int32_t y) const override { return inner_->GetPixel(x, y); }
  void Convert(const Colour* background, std::int32_t pixelFormat) override {
    log_.add(call(name_ + "Convert", background, pixelFormat));
    inner_->Convert(background, pixelFormat);
  }
  PixelRows Pixels() const override { return inner_->Pixels(); }

 private:
  Log& log_;
  std::string name_;
  kestrel::Image* inner_ = nullptr;
};

class RecordedAlpha final : public Alpha {
 public:
  RecordedAlpha(Log& log, std::string owner, Alpha& inner)
      : log_(log), name_(std::move(owner) + ".Alpha."), inner_(inner) {}

  void Flatten(const Colour& color, const std::string& undoName) override {
    log_.add(call(name_ + "Flatten", color, undoName));
    inner_.Flatten(color, undoName);
  }

 private:
  Log& log_;
  std::string name_;
  Alpha& inner_;
};

class RecordedDocument final : public Document {
 public:
  RecordedDocument(Log& log, std::string owner, Document& inner)
      : log_(log), name_(std::move(owner) + ".Document."), inner_(inner) {}

  void FromFile(const std::string& filename, std::int32_t page, const std::string& undoName) override {
    log_.add(call(name_ + "FromFile", filename, page, undoName));
    inner_.FromFile(filename, page, undoName);
  }
  void FromPicture(const Picture& picture, const std::string& undoName) override {
    log_.add(call(name_ + "FromPicture", undoName));
    inner_.FromPicture(picture, undoName);
  }
  void Paste(const std::string& undoName) override {
    log_.add(call(name_ + "Paste", undoName));
    inner_.Paste(undoName);
  }
  void CopyFrom(ImgX& source, std::int32_t mode, const std::string& undoName) override {
    log_.add(call(name_ + "CopyFrom", mode, undoName));
    inner_.CopyFrom(source, mode, undoName);
  }
  void NewImage(std::int32_t width, std::int32_t height, const Colour* background, std::int32_t pixelFormat,
                const std::string& undoName) override {
    log_.add(call(name_ + "NewImage", width, height, background, pixelFormat, undoName));
    inner_.NewImage(width, height, background, pixelFormat, undoName);
  }

 private:
  Log& log_;
  std::string name_;
  Document& inner_;
};

class RecordedWriter final : public Writer {
 public:
  RecordedWriter(Log& log, std::string owner, Writer& inner)
      : log_(log), name_(std::move(owner) + ".Writer."), inner_(inner) {}

  void ToFile(const std::string& filename, std::int32_t format, std::int32_t options,
              bool overwrite) override {
    log_.add(call(name_ + "ToFile", filename, format, options, overwrite));
    inner_.ToFile(filename, format, options, overwrite);
  }
  void ToClipboard() override {
    log_.add(call(name_ + "ToClipboard"));
    inner_.ToClipboard();
  }
  PicturePtr ToPicture() override {
    log_.add(call(name_ + "ToPicture"));
    return inner_.ToPicture();
  }

 private:
  Log& log_;
  std::string name_;
  Writer& inner_;
};

class RecordedDraw final : public Draw {
 public:
  RecordedDraw(Log& log, std::string owner, Draw& inner)
      : log_(log), name_(std::move(owner) + ".Draw."), inner_(inner) {}

  Colour& Color() override { return inner_.Color(); }
  std::int32_t FillMode() const override { return inner_.FillMode(); }
  void FillMode(std::int32_t value) override {
    log_.add(name_ + "FillMode=" + text(value));
    inner_.FillMode(value);
  }
  std::int32_t PenSetting() const override { return inner_.PenSetting(); }
  void PenSetting(std::int32_t value) override { inner_.PenSetting(value); }
  void Rectangle(const Point& start, const Point& end, std::int32_t radiusX, std::int32_t radiusY,
                 const std::string& undoName) override {
    log_.add(call(name_ + "Rectangle", start, end, radiusX, radiusY, undoName));
    inner_.Rectangle(start, end, radiusX, radiusY, undoName);
  }
  void Image(const kestrel::Image& source, std::int32_t x, std::int32_t y, const Colour* maskColor,
             float opacity, bool blend, const std::string& undoName) override {
    log_.add(call(name_ + "Image", source, x, y, maskColor, opacity, blend, undoName));
    inner_.Image(source, x, y, maskColor, opacity, blend, undoName);
  }
  void ImageWithAlpha(const kestrel::Image& source, std::int32_t x, std::int32_t y,
                      const std::string& undoName) override {
    log_.add(call(name_ + "ImageWithAlpha", source, x, y, undoName));
    inner_.ImageWithAlpha(source, x, y, undoName);
  }

 private:
  Log& log_;
  std::string name_;
  Draw& inner_;
};

class RecordedSurface final : public Surface {
 public:
  RecordedSurface(Log& log, std::string owner, Surface& inner)
      : log_(log), name_(std::move(owner) + ".Surface."), inner_(inner) {}

  void DrawTo(DeviceContext& target, std::int32_t x, std::int32_t y, std::uint32_t rasterOperation) override {
    log_.add(call(name_ + "DrawTo", x, y, static_cast<std::int32_t>(rasterOperation)));
    inner_.DrawTo(target, x, y, rasterOperation);
  }

 private:
  Log& log_;
  std::string name_;
  Surface& inner_;
};

}  // namespace kestrel::recorded
