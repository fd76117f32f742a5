#pragma once

#include <memory>
#include <string>
#include <vector>

#include "../editor/EditorTest.h"
#include "RecordedFaces.h"
#include "engine/imgx/PictureObject.h"
#include "engine/pixels/Bitmap.h"
#include "platform/headless/Form.h"

namespace kestrel {

/// An editor whose view and scratch picture record the calls of the engine, with an open picture of 40 by 30
/// pixels, each of a different color.
///
/// The picture is smaller than the view and so centered: `position(pixel)` converts pixels to view positions.
class EditingTest : public EditorTest {
 protected:
  static constexpr std::int32_t kWidth = 40;
  static constexpr std::int32_t kHeight = 30;

  void SetUp() override {
    EditorTest::SetUp();
    modProcessing::Detach();
    recorded_ = std::make_unique<recorded::RecordedPlatform>(log(), platform());
    modProcessing::Attach(*recorded_);
    modProcessing::Main();
    start();
    open(kWidth, kHeight);
  }

  std::unique_ptr<RecordingView> makeView() override {
    return std::make_unique<recorded::RecordedView>(log(), platform().desktop(), &site(), "igxImage",
                                                    platform().Clipboard(), platform().files());
  }

  static engine::Pixel pixelOf(std::int32_t x, std::int32_t y) {
    return {static_cast<std::uint8_t>(5 * x + 20), static_cast<std::uint8_t>(7 * y + 20),
            static_cast<std::uint8_t>(3 * x + 4 * y), 255};
  }
  static OLE_COLOR colorOf(const engine::Pixel& pixel) { return pixel.b << 16 | pixel.g << 8 | pixel.r; }

  static engine::Bitmap gradient(std::int32_t width, std::int32_t height) {
    auto bitmap = engine::Bitmap::filled(width, height);
    const engine::Pixels pixels = bitmap.writable();
    for (std::int32_t y = 0; y < height; ++y) {
      for (std::int32_t x = 0; x < width; ++x) {
        reinterpret_cast<engine::Pixel*>(pixels.row(y))[x] = pixelOf(x, y);
      }
    }
    return bitmap;
  }
  void open(std::int32_t width, std::int32_t height) { show(gradient(width, height)); }
  void show(engine::Bitmap bitmap) {
    editor().Picture(std::make_shared<engine::PictureObject>(std::move(bitmap)));
    platform().FormUtility().forgetPointers();
    log().clear();
  }
  /// Puts a picture of one color on the clipboard.
  void fillClipboard(std::int32_t width, std::int32_t height, engine::Pixel color) {
    platform().Clipboard().offer(engine::Bitmap::filled(width, height, color));
  }

  /// The pixels by reference, past the object that records calls.
  engine::Bitmap shown() { return engine::bitmapOf(*view().RecordingView::Image()); }
  engine::Pixel at(std::int32_t x, std::int32_t y) { return shown().at(x, y); }

  /// The view position that the editor maps to that pixel.
  Point position(std::int32_t x, std::int32_t y) {
    return {x - view().ScrollLeft() + 1, y - view().ScrollTop() + 1};
  }
  /// Drags a selection rectangle with the pointer, from one corner to the opposite one.
  void dragSelection(Point from, Point to) { view().drag(position(from.X, from.Y), position(to.X, to.Y)); }

  /// From now on the event runs the handler as well.
  template <typename Event, typename Handler>
  void when(Event& event, Handler handler) {
    connections_.push_back(event.Connect(std::move(handler)));
  }

  bool pressed(const char* key) { return command(key).Checked(); }
  std::vector<std::string> calls() { return log().entries(); }
  /// The entries of the log that are calls of the engine, without properties of the view.
  std::vector<std::string> engineCalls() {
    std::vector<std::string> result;
    for (const std::string& entry : log().entries()) {
      if (entry.find('(') != std::string::npos && entry != "Refresh()") result.push_back(entry);
    }
    return result;
  }
  /// Reading the next setting fails.
  void loseNextSetting() { recorded_->storeFailsOnce = true; }
  /// Uses this settings store from now on, or none if null. The store must outlive the test.
  void useStore(RegistryStore* store) {
    recorded_->store = store;
    modProcessing::Attach(*recorded_);
    modProcessing::Main();
  }
  /// Expects one error report from the calls that follow.
  void expectReport() { user().answers(kAnswerOK); }
  std::string undoCaption() { return command("btnEditUndo").Caption(); }
  std::string redoCaption() { return command("btnEditRedo").Caption(); }

 private:
  std::unique_ptr<recorded::RecordedPlatform> recorded_;
};

/// Whether two pictures have the same size and pixels.
inline testing::AssertionResult same(const engine::Bitmap& left, const engine::Bitmap& right) {
  if (left.width() != right.width() || left.height() != right.height()) {
    return testing::AssertionFailure()
           << left.width() << "x" << left.height() << " and " << right.width() << "x" << right.height();
  }
  for (std::int32_t y = 0; y < left.height(); ++y) {
    for (std::int32_t x = 0; x < left.width(); ++x) {
      if (!(left.at(x, y) == right.at(x, y))) {
        return testing::AssertionFailure() << "differ at (" << x << ", " << y << ")";
      }
    }
  }
  return testing::AssertionSuccess();
}

}  // namespace kestrel
