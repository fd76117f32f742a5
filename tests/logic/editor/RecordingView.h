#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "base/Numbers.h"
#include "imaging/contract/Document.h"
#include "imaging/contract/Draw.h"
#include "imaging/contract/Writer.h"
#include "platform/headless/ImageView.h"

namespace kestrel {

/// Calls and events in order, as short texts.
class Log {
 public:
  void add(std::string entry) { entries_.push_back(std::move(entry)); }
  void clear() { entries_.clear(); }
  const std::vector<std::string>& entries() const { return entries_; }

 private:
  std::vector<std::string> entries_;
};

inline std::string boolean(bool value) { return value ? "True" : "False"; }

/// Forwards all calls and records the files that are read.
class RecordingDocument final : public Document {
 public:
  RecordingDocument(Log& log, Document& inner) : log_(log), inner_(inner) {}

  void FromFile(const std::string& filename, std::int32_t page, const std::string& undoName) override {
    log_.add("FromFile " + filename + " " + ToText(page) + " " + undoName);
    inner_.FromFile(filename, page, undoName);
  }
  void FromPicture(const Picture& picture, const std::string& undoName) override {
    inner_.FromPicture(picture, undoName);
  }
  void Paste(const std::string& undoName) override { inner_.Paste(undoName); }
  void CopyFrom(ImgX& source, std::int32_t mode, const std::string& undoName) override {
    inner_.CopyFrom(source, mode, undoName);
  }
  void NewImage(std::int32_t width, std::int32_t height, const Colour* background, std::int32_t pixelFormat,
                const std::string& undoName) override {
    inner_.NewImage(width, height, background, pixelFormat, undoName);
  }

 private:
  Log& log_;
  Document& inner_;
};

/// Forwards all calls and records the files that are written.
class RecordingWriter final : public Writer {
 public:
  RecordingWriter(Log& log, Writer& inner) : log_(log), inner_(inner) {}

  void ToFile(const std::string& filename, std::int32_t format, std::int32_t options,
              bool overwrite) override {
    log_.add("ToFile " + filename + " " + ToText(format) + " " + ToText(options) + " " + boolean(overwrite));
    inner_.ToFile(filename, format, options, overwrite);
  }
  void ToClipboard() override { inner_.ToClipboard(); }
  PicturePtr ToPicture() override { return inner_.ToPicture(); }

 private:
  Log& log_;
  Writer& inner_;
};

/// Forwards and records all calls, and keeps the last fill mode.
class RecordingDraw final : public Draw {
 public:
  RecordingDraw(Log& log, Draw& inner) : log_(log), inner_(inner) {}

  Colour& Color() override { return inner_.Color(); }
  std::int32_t FillMode() const override { return inner_.FillMode(); }
  void FillMode(std::int32_t value) override {
    log_.add("Draw.FillMode=" + ToText(value));
    inner_.FillMode(value);
  }
  std::int32_t PenSetting() const override { return inner_.PenSetting(); }
  void PenSetting(std::int32_t value) override {
    log_.add("Draw.PenSetting=" + ToText(value));
    inner_.PenSetting(value);
  }
  void Rectangle(const Point& start, const Point& end, std::int32_t radiusX, std::int32_t radiusY,
                 const std::string& undoName) override {
    log_.add("Draw.Rectangle " + ToText(start.X) + "," + ToText(start.Y) + " " + ToText(end.X) + "," +
             ToText(end.Y) + " color " + ToText(inner_.Color().Value()));
    inner_.Rectangle(start, end, radiusX, radiusY, undoName);
  }
  void Image(const kestrel::Image& source, std::int32_t x, std::int32_t y, const Colour* maskColor,
             float opacity, bool blend, const std::string& undoName) override {
    inner_.Image(source, x, y, maskColor, opacity, blend, undoName);
  }
  void ImageWithAlpha(const kestrel::Image& source, std::int32_t x, std::int32_t y,
                      const std::string& undoName) override {
    inner_.ImageWithAlpha(source, x, y, undoName);
  }

 private:
  Log& log_;
  Draw& inner_;
};

/// An image with another format code.
class ImageOfFormat final : public Image {
 public:
  ImageOfFormat(Image& inner, std::int32_t format) : inner_(inner), format_(format) {}

  std::int32_t Width() const override { return inner_.Width(); }
  std::int32_t Height() const override { return inner_.Height(); }
  std::int32_t Format() const override { return format_; }
  std::int32_t Pages() const override { return inner_.Pages(); }
  std::string DecodeErrors() const override { return inner_.DecodeErrors(); }
  Colour GetPixel(std::int32_t x, std::int32_t y) const override { return inner_.GetPixel(x, y); }
  void Convert(const Colour* background, std::int32_t pixelFormat) override {
    inner_.Convert(background, pixelFormat);
  }
  PixelRows Pixels() const override { return inner_.Pixels(); }

 private:
  Image& inner_;
  std::int32_t format_;
};

/// The engine's view. Records each property written and each file read or written.
class RecordingView : public headless::ImageView {
 public:
  template <typename... Args>
  explicit RecordingView(Log& log, Args&&... args)
      : ImageView(std::forward<Args>(args)...),
        log_(log),
        document_(log, ImageView::Document()),
        writer_(log, ImageView::Writer()),
        draw_(log, ImageView::Draw()) {}

  kestrel::Document& Document() override { return document_; }
  kestrel::Writer& Writer() override { return writer_; }
  kestrel::Draw& Draw() override { return draw_; }

  using ImageView::JPEGQuality;
  using ImageView::Modified;
  using ImageView::Picture;
  using ImageView::SelectionHeight;
  using ImageView::SelectionVisible;
  using ImageView::SelectionWidth;
  using ImageView::UndoLevels;
  using ImageView::Visible;
  using ImageView::Zoom;
  void Zoom(double value) override {
    log_.add("Zoom=" + ToText(value));
    ImageView::Zoom(value);
  }
  void UndoLevels(std::int32_t value) override {
    log_.add("UndoLevels=" + ToText(value));
    ImageView::UndoLevels(value);
  }
  void Modified(bool value) override {
    log_.add("Modified=" + boolean(value));
    ImageView::Modified(value);
  }
  void Picture(const PicturePtr& value) override {
    log_.add("Picture");
    ImageView::Picture(value);
  }
  void JPEGQuality(std::int32_t value) override {
    log_.add("JPEGQuality=" + ToText(value));
    ImageView::JPEGQuality(value);
  }
  void SelectionWidth(std::int32_t value) override {
    log_.add("SelectionWidth=" + ToText(value));
    ImageView::SelectionWidth(value);
  }
  void SelectionHeight(std::int32_t value) override {
    log_.add("SelectionHeight=" + ToText(value));
    ImageView::SelectionHeight(value);
  }
  void SelectionVisible(bool value) override {
    log_.add("SelectionVisible=" + boolean(value));
    ImageView::SelectionVisible(value);
  }
  void DoubleBuffer(bool value) override {
    log_.add("DoubleBuffer=" + boolean(value));
    ImageView::DoubleBuffer(value);
  }
  void BackgroundImage(const kestrel::Image* value) override {
    log_.add("BackgroundImage");
    background_ = value ? Size{value->Width(), value->Height()} : Size{};
    ImageView::BackgroundImage(value);
  }
  void ImageBorder(bool value) override {
    log_.add("ImageBorder=" + boolean(value));
    ImageView::ImageBorder(value);
  }
  void MousePointerStyle(std::int32_t value) override {
    log_.add("MousePointerStyle=" + ToText(value));
    ImageView::MousePointerStyle(value);
  }
  void AutoRedrawSelection(bool value) override {
    log_.add("AutoRedrawSelection=" + boolean(value));
    ImageView::AutoRedrawSelection(value);
  }
  void SelectionStyle(std::int32_t value) override {
    log_.add("SelectionStyle=" + ToText(value));
    ImageView::SelectionStyle(value);
  }
  void Visible(bool value) override {
    log_.add("Visible=" + boolean(value));
    ImageView::Visible(value);
  }

  Size backgroundSize() const { return background_; }

  kestrel::Image* Image() override { return image_ ? image_.get() : ImageView::Image(); }
  /// From now on the picture reports this file format.
  void reportFormat(std::int32_t format) {
    image_ = std::make_unique<ImageOfFormat>(*ImageView::Image(), format);
  }

 private:
  Log& log_;
  RecordingDocument document_;
  RecordingWriter writer_;
  RecordingDraw draw_;
  Size background_;
  std::unique_ptr<kestrel::Image> image_;
};

}  // namespace kestrel
