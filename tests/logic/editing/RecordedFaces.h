#pragma once

#include <memory>
#include <utility>

#include "RecordedCalls.h"
#include "engine/imgx/ImgXObject.h"
#include "platform/headless/FileMapping.h"
#include "platform/headless/Platform.h"
#include "tests/logic/fakes/ForwardingPlatform.h"

namespace kestrel::recorded {

/// The view of the editor under test. Records each call on its picture and selection.
class RecordedView final : public RecordingView {
 public:
  template <typename... Args>
  explicit RecordedView(Log& log, Args&&... args)
      : RecordingView(log, std::forward<Args>(args)...),
        log_(log),
        effects_(log, "view", ImageView::Effects()),
        alpha_(log, "view", ImageView::Alpha()),
        document_(log, "view", ImageView::Document()),
        writer_(log, "view", ImageView::Writer()),
        draw_(log, "view", ImageView::Draw()),
        image_(log, "view") {}

  kestrel::Image* Image() override { return image_.now(RecordingView::Image()); }
  kestrel::Effects& Effects() override { return effects_; }
  kestrel::Alpha& Alpha() override { return alpha_; }
  kestrel::Document& Document() override { return document_; }
  kestrel::Writer& Writer() override { return writer_; }
  kestrel::Draw& Draw() override { return draw_; }

  using RecordingView::MousePointer;
  using RecordingView::ScrollLeft;
  using RecordingView::ScrollTop;
  using RecordingView::Tool;
  void Tool(std::int32_t value) override {
    log_.add("Tool=" + text(value));
    RecordingView::Tool(value);
  }
  void MousePointer(std::int32_t value) override {
    log_.add("MousePointer=" + text(value));
    RecordingView::MousePointer(value);
  }
  void SetSelectionRect(std::int32_t left, std::int32_t top, std::int32_t width,
                        std::int32_t height) override {
    log_.add(call("SetSelectionRect", left, top, width, height));
    RecordingView::SetSelectionRect(left, top, width, height);
  }
  std::unique_ptr<UndoPoint> CreateUndoPoint(const std::string& name) override {
    log_.add(call("CreateUndoPoint", name));
    return RecordingView::CreateUndoPoint(name);
  }
  void Undo() override {
    log_.add("Undo()");
    RecordingView::Undo();
  }
  void Redo() override {
    log_.add("Redo()");
    RecordingView::Redo();
  }
  void Refresh() override {
    log_.add("Refresh()");
    RecordingView::Refresh();
  }

 private:
  Log& log_;
  RecordedEffects effects_;
  RecordedAlpha alpha_;
  RecordedDocument document_;
  RecordedWriter writer_;
  RecordedDraw draw_;
  RecordedImage image_;
};

/// An unbound picture that records each call.
class RecordedPicture final : public engine::ImgXObject {
 public:
  RecordedPicture(Log& log, engine::ClipboardPort& clipboard, const headless::FileSystem& files)
      : ImgXObject(clipboard),
        mappedDocument_(files, parts_.document),
        mappedWriter_(files, parts_.writer),
        effects_(log, "scratch", parts_.effects),
        alpha_(log, "scratch", parts_.alpha),
        document_(log, "scratch", mappedDocument_),
        writer_(log, "scratch", mappedWriter_),
        draw_(log, "scratch", parts_.draw),
        surface_(log, "scratch", ImgXObject::Surface()) {}

  kestrel::Effects& Effects() override { return effects_; }
  kestrel::Alpha& Alpha() override { return alpha_; }
  kestrel::Document& Document() override { return document_; }
  kestrel::Writer& Writer() override { return writer_; }
  kestrel::Draw& Draw() override { return draw_; }
  kestrel::Surface& Surface() override { return surface_; }

 private:
  headless::MappedDocument mappedDocument_;
  headless::MappedWriter mappedWriter_;
  RecordedEffects effects_;
  RecordedAlpha alpha_;
  RecordedDocument document_;
  RecordedWriter writer_;
  RecordedDraw draw_;
  RecordedSurface surface_;
};

/// The headless platform with unbound pictures that record their calls.
class RecordedPlatform : public fakes::ForwardingPlatform {
 public:
  RecordedPlatform(Log& log, headless::Platform& inner)
      : ForwardingPlatform(inner), log_(log), inner_(inner) {}

  std::shared_ptr<ImgX> CreateImgX() override {
    return std::make_shared<RecordedPicture>(log_, inner_.Clipboard(), inner_.files());
  }
  kestrel::RegistryStore& RegistryStore() override {
    if (std::exchange(storeFailsOnce, false)) throw RuntimeError(57, "The settings cannot be read.");
    return store ? *store : inner_.RegistryStore();
  }

  /// The next use of the key store fails.
  bool storeFailsOnce = false;
  /// The key store to use instead of the platform's own, or null.
  kestrel::RegistryStore* store = nullptr;

 private:
  Log& log_;
  headless::Platform& inner_;
};

}  // namespace kestrel::recorded
