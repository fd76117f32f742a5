#pragma once

#include <QLabel>
#include <QProgressBar>
#include <QWidget>

#include "platform/docking/MoorageModel.h"

namespace kestrel::qt {

/// One panel of the status bar: a small icon and a text, or a progress bar.
class PanelField final : public QWidget {
  Q_OBJECT

 public:
  PanelField(docking::CommandModel& command, const QIcon& icon);

  /// Updates from the model. A new text of the spring panel is painted before this returns: the work that it
  /// announces may block painting for long.
  void refresh();

  QString text() const { return text_->text(); }
  bool showsProgress() const { return progress_; }

 protected:
  bool event(QEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void showIcon();
  void fitText();

  docking::CommandModel& command_;
  QIcon icon_;
  QLabel* picture_;
  QLabel* text_;
  QProgressBar* progress_ = nullptr;
};

}  // namespace kestrel::qt
