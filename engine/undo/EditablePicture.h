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

/// Description of a change to a picture.
struct PictureChange {
  /// Changed rectangle, in picture pixels.
  Rectangle area;
  /// True if the picture was replaced by another one, false for an edit.
  bool otherPicture = false;
  /// True if it was replaced under "No Undo": a load, not an edit.
  bool loaded = false;
};

/// A picture with its undo history. All changes go through here: each either completes, with its undo step,
/// or raises an error and leaves picture, history and `modified` unchanged.
///
/// Undo names: a text names the step, an empty text records an unnamed step, "No Undo" records none.
class EditablePicture {
 public:
  /// An undo point with the state before it.
  struct UndoPoint {
    PictureState picture;
    bool modified;
    UndoStack::Point steps;
  };

  /// Called after each change, undo and redo included.
  std::function<void(const PictureChange&)> onChange;
  /// Called after a `Painting` was rolled back, with the rectangle that had been drawn on.
  std::function<void(const Rectangle&)> onRollBack;
  /// Called when the undo steps have changed but the picture has not.
  std::function<void()> onStepsChange;
  /// Called when `modified` has changed, before `onChange`.
  std::function<void()> onModifiedChange;

  const PictureState& state() const noexcept { return state_; }
  const Bitmap& bitmap() const noexcept { return state_.bitmap; }
  bool empty() const noexcept { return state_.bitmap.empty(); }

  /// Replaces the pixels; format and metadata of the file stay.
  void replacePixels(Bitmap bitmap, const std::string& undoName);

  /// Replaces the picture, its format and metadata included.
  void put(PictureState picture, const std::string& undoName);

  /// Draws on the picture in place. `work` may write only pixels in `areas`, which must lie inside the
  /// picture; without areas nothing happens. The picture must not be empty.
  void paint(std::span<const Rectangle> areas, const std::string& undoName,
             const std::function<void(Pixels)>& work);

  /// Rolls back a `Painting` under way. Call it before computing new pixels from the present ones; all
  /// changes do so themselves.
  void rollBackPainting();

  void undo() { step(&UndoStack::undo); }
  void redo() { step(&UndoStack::redo); }
  /// Records the present picture as one undo step for the unrecorded changes that follow.
  UndoPoint createUndoPoint(const std::string& name);
  /// Restores picture, undo steps and `modified` to their state before the point; nothing happens if the
  /// point is no longer the latest step.
  void takeBack(UndoPoint point);

  /// The most undo steps kept; 0 empties the stack.
  void undoLevels(std::int32_t value);

  /// The most bytes that the steps may hold.
  void undoMemoryLimit(std::size_t bytes);

  const UndoStack& history() const noexcept { return history_; }

  /// Bytes that the undo history holds.
  std::size_t undoMemory() const { return history_.memory(state_); }

  /// Sets the scroll position in `state`. It is no change.
  void place(const ScrollPlace& value) noexcept { state_.place = value; }

  bool modified() const noexcept { return modified_; }
  void modified(bool value);

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

/// A transaction that changes a picture's pixels in place: `commit` makes one undo step of it, the destructor
/// rolls back. It is also rolled back, and ended, when something else is about to change the picture.
class [[nodiscard]] Painting {
 public:
  /// The picture must not be empty, and must outlive this.
  explicit Painting(EditablePicture& picture);
  Painting(const Painting&) = delete;
  Painting& operator=(const Painting&) = delete;
  ~Painting() { rollBack(); }

  /// Saves the pixels of `areas` for undo; call it before drawing there. They must lie inside the picture.
  /// Raises RuntimeError 7 or std::bad_alloc when out of memory.
  void touch(std::span<const Rectangle> areas);

  /// The pixels; only touched areas may be written.
  Pixels pixels() { return picture_.state_.bitmap.writable(); }

  /// Bounding rectangle of all touched areas.
  const Rectangle& touched() const { return touched_; }

  /// Records an undo step, unless nothing was touched. After an error the work can still be rolled back.
  void commit(const std::string& undoName);

  /// Restores the pixels. No effect after `commit` or a rollback.
  void rollBack();

  /// True once committed or rolled back; no drawing is allowed then.
  bool ended() const { return picture_.open_ != this; }

 private:
  void keepWhole();
  void putBack() noexcept;

  EditablePicture& picture_;
  UndoStack::Before before_ = KeptTiles();
  Rectangle touched_;
};

}  // namespace kestrel::engine
