#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "FileMapping.h"
#include "Window.h"
#include "engine/pixels/Bitmap.h"
#include "engine/view/View.h"

namespace kestrel::headless {

/// The engine's image view without a window: a test sends pointer events and reads the painted pixels.
class ImageView : public WindowOf<engine::View> {
 public:
  ImageView(Desktop& desktop, Window* parent, std::string name, engine::ClipboardPort& clipboard,
            const FileSystem& files);

  kestrel::Document& Document() override { return document_; }
  kestrel::Writer& Writer() override { return writer_; }

  // User input, in view pixels.
  void press(std::int32_t button, std::int32_t shift, Point at);
  void move(std::int32_t button, std::int32_t shift, Point to);
  void release(std::int32_t button, std::int32_t shift, Point at);
  /// Presses at the first position, moves to the second in a few steps and releases there.
  void drag(Point from, Point to, std::int32_t button = kLeftButton, std::int32_t shift = 0);
  void click(Point at, std::int32_t button = kLeftButton, std::int32_t shift = 0);
  /// Two clicks in quick succession.
  void doubleClick(Point at);
  void leave();
  void turnWheel(std::int32_t notches, std::int32_t shift, Point at);
  /// Presses the button of the current notice.
  void pressNoticeButton();

  /// What the whole view looks like when it is painted now; empty for a view without an area.
  engine::Bitmap painted();
  /// What is on the screen: painted bit by bit, only where the view has asked for it. The same as `painted`,
  /// unless the view has forgotten a part.
  const engine::Bitmap& screen();
  engine::ViewCursor cursor() const { return cursor_; }
  /// The caption of the notice's button; empty for none.
  const std::string& noticeButton() const { return noticeButton_; }
  /// The number of full repaints.
  std::int32_t repaints() const { return repaints_; }

 private:
  void resized() override;
  void paintOn(engine::Bitmap& target, const Rectangle& area);
  void pointAt(Point position);

  void invalidate(const Rectangle& area) override;
  void repaint() override;
  void showCursor(engine::ViewCursor cursor) override { cursor_ = cursor; }
  void scrollRangesChanged() override {}
  void setTimer(engine::ViewTimer /*which*/, bool /*on*/) override {}
  void showNotice(const std::string& /*text*/, const std::string& action) override { noticeButton_ = action; }

  MappedDocument document_;
  MappedWriter writer_;
  engine::ViewCursor cursor_ = engine::ViewCursor::arrow;
  std::string noticeButton_;
  std::int32_t repaints_ = 0;
  engine::Bitmap screen_;
  std::vector<Rectangle> invalid_;
};

}  // namespace kestrel::headless
