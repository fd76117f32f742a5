#pragma once

#include <cstddef>
#include <cstdint>
#include <list>
#include <string>
#include <variant>

#include "KeptTiles.h"
#include "PictureState.h"

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
  };
  using Steps = std::list<Step>;

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

  /// Adds a step, drops the steps that were undone, and the oldest beyond `levels`. Takes `before` over. On
  /// an error nothing has changed.
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
  std::string undoName() const { return done_.empty() ? std::string() : done_.back().name; }
  std::string redoName() const { return undone_.empty() ? std::string() : undone_.back().name; }
  std::int32_t undoSteps() const noexcept { return static_cast<std::int32_t>(done_.size()); }
  std::int32_t redoSteps() const noexcept { return static_cast<std::int32_t>(undone_.size()); }

  /// Bytes of pixels that the steps hold beyond those of the present picture; shared ones count once.
  std::size_t memory(const PictureState& present) const;

 private:
  Steps makeStep(const std::string& name);
  void add(Steps& one, Steps& removed) noexcept;
  static bool take(Steps& from, Steps& to, PictureState& present);

  Steps done_;
  Steps undone_;
  std::int32_t levels_ = 0;
  std::uint64_t lastSerial_ = 0;
};

}  // namespace kestrel::engine
