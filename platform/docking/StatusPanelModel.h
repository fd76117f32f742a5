#pragma once

#include <cstdint>
#include <string>

#include "imaging/contract/Moorage.h"

namespace kestrel::docking {

class CommandModel;

/// The content of a panel command in the status bar: the command's caption, or progress.
class StatusPanelModel : public StatusPanel {
 public:
  explicit StatusPanelModel(CommandModel& command) : command_(command) {}

  std::string Caption() const override;
  void Caption(const std::string& value) override;
  bool Visible() const override;
  void Visible(bool value) override;

  void ProgressMin(std::int32_t value) override { set(minimum_, value); }
  void ProgressMax(std::int32_t value) override { set(maximum_, value); }
  void ProgressValue(std::int32_t value) override { set(value_, value); }

  /// Progress as a fraction from 0 to 1 for any values of the three numbers.
  double progress() const;

 private:
  void set(std::int32_t& number, std::int32_t value);

  CommandModel& command_;
  std::int32_t minimum_ = 0;
  std::int32_t maximum_ = 100;
  std::int32_t value_ = 0;
};

}  // namespace kestrel::docking
