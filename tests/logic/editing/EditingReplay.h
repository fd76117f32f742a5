#pragma once

#include <deque>
#include <functional>
#include <memory>

#include "Asked.h"
#include "engine/pixels/Bitmap.h"
#include "imaging/contract/Platform.h"
#include "imaging/contract/Types.h"

namespace kestrel {

/// Carries out what was asked of an editor without any editor or view: with the engine's operations and
/// drawing on pictures of its own, and whole pictures for undo steps. The pen is one pixel wide, the zoom 1.
class EditingReplay {
 public:
  /// The editor's colors and the view's drawing state at the start.
  struct Start {
    engine::Bitmap picture;
    OLE_COLOR foreColor = 0;
    OLE_COLOR backColor = 0;
    OLE_COLOR drawColor = 0;
    std::int32_t fillMode = 0;
    std::int32_t undoLevels = 0;
    OLE_COLOR rotateColor = 0;
    Size view;
  };

  EditingReplay(Platform& platform, Start start) : platform_(platform), now_(std::move(start)) {}

  void carryOut(const Asked& asked);
  const engine::Bitmap& picture() const { return now_.picture; }

 private:
  using Work = std::function<void(ImgX&)>;

  bool hasSelection() const { return visible_ && selection_.Width != 0 && selection_.Height != 0; }
  bool selects() const;
  void resetSelection();
  void tool(std::int32_t value);
  void foreColor(OLE_COLOR value);
  void backColor(OLE_COLOR value);

  void press(Point at);
  void drag(Point from, Point to);
  void click(Point at, std::int32_t button);
  void dragSelection(bool inside, Point from, Point to);
  void drawShape(Point from, Point to);
  void drawStroke(Point from, const std::vector<Point>& way);
  void pick(Point at, std::int32_t button);
  void showMenu(std::int32_t button);

  void cropToSelection();
  void copy();
  void cut();
  void commitPaste();
  void cancelPaste();
  void undo(std::deque<engine::Bitmap>& from, std::deque<engine::Bitmap>& to);
  void levels(std::int32_t value);

  std::shared_ptr<ImgX> load(const engine::Bitmap& bitmap);
  engine::Bitmap worked(const engine::Bitmap& bitmap, const Work& work);
  engine::Bitmap section();
  /// Lays the section back if anything of it falls on the picture.
  void layBack(bool asStep);
  void operate(bool onSelection, const Work& work);
  void maskedShadow(const Asked& asked);
  void step(engine::Bitmap next);
  void remember();

  Platform& platform_;
  Start now_;
  std::int32_t tool_ = 1;
  Rectangle selection_;
  bool visible_ = false;
  bool cropping_ = false;
  bool pasting_ = false;
  Point pasteAt_;
  engine::Bitmap scratch_;
  engine::Bitmap clipboard_;
  std::deque<engine::Bitmap> done_;
  std::deque<engine::Bitmap> undone_;
};

}  // namespace kestrel
