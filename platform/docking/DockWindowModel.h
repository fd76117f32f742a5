#pragma once

#include <cstdint>
#include <string>
#include <utility>

#include "StoredLayout.h"
#include "imaging/contract/Moorage.h"

namespace kestrel::docking {

class MoorageModel;

class DockWindowModel : public DockWindow {
 public:
  DockWindowModel(MoorageModel& suite, StoredDockWindow stored, const StoredPane& pane)
      : suite_(suite), stored_(std::move(stored)), edge_(pane.edge), size_(pane.size) {}

  const std::string& Name() const override { return stored_.key; }
  std::string Caption() const override { return stored_.caption; }
  bool Visible() const override { return stored_.visible; }
  void Visible(bool value) override { show(value, kReasonCode); }

  /// Shows or hides it, unless a handler of the event raised before cancels.
  void show(bool value, std::int32_t reason);

  /// The edge where it is docked initially, and its size across that edge in pixels.
  Edge edge() const { return edge_; }
  std::int32_t size() const { return size_; }
  MoorageModel& suite() const { return suite_; }

 private:
  MoorageModel& suite_;
  StoredDockWindow stored_;
  Edge edge_;
  std::int32_t size_;
};

}  // namespace kestrel::docking
