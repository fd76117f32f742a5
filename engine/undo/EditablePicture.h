#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>

#include "PictureState.h"
#include "UndoStack.h"
#include "imaging/contract/Types.h"

namespace kestrel::engine {

class Painting;

/// What a change has done to a picture.
struct PictureChange {
  /// The changed part, in picture pixels.
  Rectangle area;
  /// Another picture was put in, rather than this one worked on.
  bool otherPicture = false;
  /// It was put in under "No Undo": a load, which is no edit.
  bool loaded = false;
};

/// One picture with its history. All changes go through here: each either happens whole, with its undo step,
/// or raises an error and leaves picture, history and `modified` as they were.
///
/// Undo names: a text names the step, empty records an unnamed one, "No Undo" records none.
class EditablePicture {
 public:
  /// An undo point and what was there before it.
  struct UndoPoint {
    PictureState picture;
    bool modified;
    UndoStack::Point steps;
  };

  /// Called after each change, undo and redo included.
  std::function<void(const PictureChange&)> onChange;
  /// Called when a `Painting` was taken back, with the part that was drawn on.
  std::function<void(const Rectangle&)> onRollBack;
  /// Called when the steps have changed and the picture has not.
  std::function<void()> onStepsChange;

  const PictureState& state() const noexcept { return state_; }
  const Bitmap& bitmap() const noexcept { return state_.bitmap; }
  bool empty() const noexcept { return state_.bitmap.empty(); }

  /// Puts new pixels into the picture; what is known of its file stays.
  void replacePixels(Bitmap bitmap, const std::string& undoName);

  /// Puts another picture in.
  void put(PictureState picture, const std::string& undoName);

  /// Draws on the picture in place. `work` touches pixels in `areas` only, which must lie inside the picture;
  /// if there are none nothing happens. Not for an empty picture.
  void paint(std::span<const Rectangle> areas, const std::string& undoName,
             const std::function<void(Pixels)>& work);

  /// Takes back a `Painting` under way. For those who are about to make something new of the pixels; all
  /// changes do so by themselves.
  void giveUpPainting();

  void undo() { step(&UndoStack::undo); }
  void redo() { step(&UndoStack::redo); }
  /// Records the present picture as a step for unrecorded work that follows.
  UndoPoint createUndoPoint(const std::string& name);
  /// Makes picture, steps and `modified` what they were before the point, unless the point is no longer the
  /// latest step.
  void takeBack(UndoPoint point);

  /// How many steps are kept at most; 0 empties the stack.
  void undoLevels(std::int32_t value);

  /// The most bytes that the steps may hold.
  void undoMemoryLimit(std::size_t bytes);

  const UndoStack& history() const noexcept { return history_; }

  /// Bytes that the undo history holds.
  std::size_t undoMemory() const { return history_.memory(state_); }

  bool modified() const noexcept { return modified_; }
  void modified(bool value) noexcept { modified_ = value; }

 private:
  friend class Painting;

  void exchangeWith(PictureState next, const std::string& undoName, bool otherPicture);
  void step(bool (UndoStack::*direction)(PictureState&));
  void changed(const PictureChange& change);
  void stepsChanged() const;

  PictureState state_;
  UndoStack history_;
  bool modified_ = false;
  Painting* open_ = nullptr;
};

/// Work on a picture's pixels in place that becomes one step when it is committed, and is taken back if it is
/// not. It is also taken back, and over, when anything else is about to change the picture.
class [[nodiscard]] Painting {
 public:
  /// The picture must not be empty, and must outlive this.
  explicit Painting(EditablePicture& picture);
  Painting(const Painting&) = delete;
  Painting& operator=(const Painting&) = delete;
  ~Painting() { rollBack(); }

  /// To be called before drawing on parts of the picture, which must lie inside it. Raises RuntimeError 7 or
  /// std::bad_alloc when memory runs out.
  void touch(std::span<const Rectangle> areas);

  /// The pixels to draw on, where they have been touched.
  Pixels pixels() { return picture_.state_.bitmap.writable(); }

  /// What has been touched so far lies in here.
  const Rectangle& touched() const { return touched_; }

  /// Makes a step of it, unless nothing was touched. On an error the work can still be taken back.
  void commit(const std::string& undoName);

  /// Puts back what was there. Nothing happens if it was committed or taken back already.
  void rollBack();

  /// Committed or taken back: there is no more drawing.
  bool ended() const { return picture_.open_ != this; }

 private:
  void keepWhole();
  void putBack() noexcept;

  EditablePicture& picture_;
  UndoStack::Before before_ = KeptTiles();
  Rectangle touched_;
};

}  // namespace kestrel::engine
