#include "StatusPanelModel.h"

#include <algorithm>

#include "CommandModel.h"

namespace kestrel::docking {

std::string StatusPanelModel::Caption() const { return command_.Caption(); }
void StatusPanelModel::Caption(const std::string& value) { command_.Caption(value); }
bool StatusPanelModel::Visible() const { return command_.Visible(); }
void StatusPanelModel::Visible(bool value) { command_.Visible(value); }

double StatusPanelModel::progress() const {
  const double range = static_cast<double>(maximum_) - minimum_;
  if (range <= 0) return 0;
  return std::clamp((static_cast<double>(value_) - minimum_) / range, 0.0, 1.0);
}

void StatusPanelModel::set(std::int32_t& number, std::int32_t value) {
  if (number == value) return;
  number = value;
  command_.updated();
}

}  // namespace kestrel::docking
