#pragma once

#include <deque>
#include <functional>
#include <memory>

#include "EditRequest.h"
#include "engine/pixels/Bitmap.h"
#include "imaging/contract/Platform.h"
#include "imaging/contract/Types.h"

namespace kestrel {

/// Carries out edit requests without an editor or a view: with the engine's operations and drawing on its own
/// pictures, and whole pictures as undo steps. The pen is one pixel wide, the zoom 1.
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

  void carryOut(const EditRequest& request);
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

  void resizeByDialog(const EditRequest& request);
  void resizeCanvasByDialog(const EditRequest& request);
  void cropToSelection();
  void copy();
  void cut();
  void commitPaste();
  void cancelPaste();
  void undo(std::deque<engine::Bitmap>& from, std::deque<engine::Bitmap>& to);
  void levels(std::int32_t value);

  std::shared_ptr<ImgX> load(const engine::Bitmap& bitmap);
  engine::Bitmap edited(const engine::Bitmap& bitmap, const Work& work);
  engine::Bitmap section();
  /// Draws the section back if it overlaps the picture.
  void drawBack(bool asStep);
  void operate(bool onSelection, const Work& work);
  /// `mask` is -1 for the color of the corner pixel.
  void maskedShadow(const EditRequest& request, OLE_COLOR mask);
  void shadow(const EditRequest& request, bool onSelection);
  void beginPaste(Point at, OLE_COLOR mask);
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
  OLE_COLOR pasteMask_ = -1;  ///< color that the open paste skips, -1 for none
  engine::Bitmap scratch_;
  engine::Bitmap clipboard_;
  std::deque<engine::Bitmap> done_;
  std::deque<engine::Bitmap> undone_;
};

}  // namespace kestrel
