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

/// The steps that lead back from a picture to what it was, and forth again.
///
/// A step is what the picture was before a change: the whole picture by reference, or the tiles that were
/// drawn on. Taking it exchanges it with what is there, so the same step leads back again. Each step starts
/// where the next one ends; a change that is not recorded therefore joins the step below it.
class UndoStack {
 public:
  using Before = std::variant<PictureState, KeptTiles>;

 private:
  struct Step {
    std::string name;
    Before before;
    std::uint64_t serial = 0;
    std::size_t bytes = 0;  ///< of pixels that the step alone holds
  };

  /// Steps with the sum of their bytes. The last one is next to the present picture.
  struct Steps {
    std::list<Step> list;
    std::size_t bytes = 0;

    void take(Steps& from, std::list<Step>::iterator step) noexcept;
    void dropFirst() noexcept;
    void bytesOf(Step& step, std::size_t value) noexcept;
  };

 public:
  /// What an undo point has displaced, for `takeBack`.
  class Point {
    friend class UndoStack;
    std::uint64_t serial = 0;  ///< 0 if there was no level for a step
    Steps oldest;
    Steps undone;
  };

  std::int32_t levels() const noexcept { return levels_; }
  /// How many steps are kept at most; the oldest go. 0 and less empties the stack.
  void levels(std::int32_t value);

  /// The most bytes of pixels that the steps may hold, a quarter of the machine's memory at first. The oldest
  /// steps go, but never the latest one.
  std::size_t memoryLimit() const noexcept { return memoryLimit_; }
  void memoryLimit(std::size_t bytes);

  /// Adds a step, drops the steps that were undone, and the oldest beyond `levels` and `memoryLimit`. Takes
  /// `before` over. On an error nothing has changed.
  void record(const std::string& name, Before& before);

  /// Notes a change that is no step of its own: undone steps are dropped, and the latest step leads back past
  /// this change too. What it needs of `before` it takes over. On an error nothing has changed.
  void absorb(Before& before);

  /// A step made ahead of a change, for all that follows unrecorded. On an error nothing has changed.
  Point recordPoint(const std::string& name, const PictureState& present);
  /// Removes a point and puts back the steps that it displaced. False, and nothing happens, if the point is
  /// no longer the latest step.
  bool takeBack(Point& point) noexcept;

  /// Exchange the latest step with the picture. False if there is none. On an error nothing has changed.
  bool undo(PictureState& present) { return take(done_, undone_, present); }
  bool redo(PictureState& present) { return take(undone_, done_, present); }

  /// Empty without a step.
  std::string undoName() const { return done_.list.empty() ? std::string() : done_.list.back().name; }
  std::string redoName() const { return undone_.list.empty() ? std::string() : undone_.list.back().name; }
  std::int32_t undoSteps() const noexcept { return static_cast<std::int32_t>(done_.list.size()); }
  std::int32_t redoSteps() const noexcept { return static_cast<std::int32_t>(undone_.list.size()); }

  /// Bytes of pixels that the steps hold beyond those of the present picture. Pixels that successive steps
  /// share count once.
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
