#pragma once

#include <cstddef>
#include <cstdint>
#include <list>
#include <string>
#include <variant>

#include "KeptTiles.h"
#include "PictureState.h"
#include "engine/pixels/Memory.h"

namespace kestrel::engine {

/// Undo and redo steps of a picture.
///
/// A step holds the picture before a change: the whole picture by reference, or the tiles that were drawn on.
/// Undo swaps it with the present pixels, so the same step serves for redo. The steps form a chain without
/// gaps; an unrecorded change therefore joins the step before it.
class UndoStack {
 public:
  using Before = std::variant<PictureState, KeptTiles>;

 private:
  struct Step {
    std::string name;
    Before before;
    std::uint64_t serial = 0;
    std::size_t bytes = 0;  ///< bytes of pixels held by this step alone
  };

  /// Steps and the sum of their bytes. The last one is adjacent to the present picture.
  struct Steps {
    std::list<Step> list;
    std::size_t bytes = 0;

    void take(Steps& from, std::list<Step>::iterator step) noexcept;
    void dropFirst() noexcept;
    void bytesOf(Step& step, std::size_t value) noexcept;
  };

 public:
  /// Steps that an undo point has displaced, for `takeBack`.
  class Point {
    friend class UndoStack;
    std::uint64_t serial = 0;  ///< 0 if `levels` was 0, so that no step was made
    Steps oldest;
    Steps undone;
  };

  std::int32_t levels() const noexcept { return levels_; }
  /// The most steps kept; the oldest are dropped. 0 and less empties the stack.
  void levels(std::int32_t value);

  /// Upper bound for the bytes of pixels held by the steps; by default a quarter of the machine's memory. The
  /// oldest steps are dropped, but never the latest one.
  std::size_t memoryLimit() const noexcept { return memoryLimit_; }
  void memoryLimit(std::size_t bytes);

  /// Adds a step; drops the redo steps and the oldest steps beyond `levels` and `memoryLimit`. Moves from
  /// `before`. On an error nothing has changed.
  void record(const std::string& name, Before& before);

  /// Merges an unrecorded change into the latest step, and drops the redo steps. Moves from `before` as
  /// needed. On an error nothing has changed.
  void absorb(Before& before);

  /// Adds a step ahead of a series of unrecorded changes. On an error nothing has changed.
  Point recordPoint(const std::string& name, const PictureState& present);
  /// Removes a point and restores the steps that it displaced. Returns false, without effect, if the point is
  /// no longer the latest step.
  bool takeBack(Point& point) noexcept;

  /// Swap the latest step with the picture. Return false if there is none. On an error nothing has changed.
  bool undo(PictureState& present) { return take(done_, undone_, present); }
  bool redo(PictureState& present) { return take(undone_, done_, present); }

  /// Name of the next step to undo or redo; empty if there is none.
  std::string undoName() const { return done_.list.empty() ? std::string() : done_.list.back().name; }
  std::string redoName() const { return undone_.list.empty() ? std::string() : undone_.list.back().name; }
  std::int32_t undoSteps() const noexcept { return static_cast<std::int32_t>(done_.list.size()); }
  std::int32_t redoSteps() const noexcept { return static_cast<std::int32_t>(undone_.list.size()); }

  /// Bytes of pixels held by the steps, without those of the present picture. Pixels shared by successive
  /// steps count once.
  std::size_t memory(const PictureState& present) const;

 private:
  static std::size_t bytesOf(const Before& before) noexcept;
  static std::size_t bytesBeyond(const Before& before, const Bitmap& neighbor) noexcept;
  Steps makeStep(const std::string& name);
  void add(Steps& one, Steps& removed) noexcept;
  void keepLimits(Steps& removed) noexcept;
  static bool take(Steps& from, Steps& to, PictureState& present);

  Steps done_;
  Steps undone_;
  std::int32_t levels_ = 0;
  std::size_t memoryLimit_ = machineMemory() / 4;
  std::uint64_t lastSerial_ = 0;
};

}  // namespace kestrel::engine
