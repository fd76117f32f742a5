#include "StatusPanels.h"

#include "PanelField.h"

namespace kestrel::qt {

StatusPanels::StatusPanels(docking::MoorageModel& suite, const CommandActions& actions, QStatusBar& bar)
    : bar_(bar) {
  bar_.setSizeGripEnabled(false);
  for (const auto& model : suite.CommandBars().all()) {
    if (model->kind() == docking::BarKind::StatusBar) model_ = model.get();
  }
  bar_.setVisible(model_ && model_->Visible());
  if (!model_) return;
  for (const auto& entry : model_->Entries().all()) {
    docking::CommandModel& command = entry->command();
    auto* const field = new PanelField(command, actions.iconOf(command));
    fields_[&command] = field;
    command.spring() ? bar_.addWidget(field, 1) : bar_.addPermanentWidget(field);
    field->refresh();
  }
}

void StatusPanels::refresh(docking::CommandBarModel& bar) {
  if (&bar == model_) bar_.setVisible(bar.Visible());
}

void StatusPanels::refresh(docking::CommandModel& command) {
  if (const auto field = fields_.find(&command); field != fields_.end()) field->second->refresh();
}

}  // namespace kestrel::qt
