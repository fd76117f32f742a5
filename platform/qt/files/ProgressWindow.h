#pragma once

#include <QElapsedTimer>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTimer>
#include <functional>

#include "UserDialog.h"
#include "platform/filetransfer/BackgroundTransfer.h"

namespace kestrel::qt {

/// Shows how far a transfer is, and lets the user cancel it. Closes when the transfer has finished, or when
/// the user leaves one that does not end after it was canceled.
class ProgressWindow final : public UserDialog {
  Q_OBJECT

 public:
  /// Lets the user answer the transfer's question, in a window above that one. False if that was destroyed.
  using Ask = std::function<bool(QWidget* parent)>;

  /// `transfer` must outlive this window.
  ProgressWindow(transfer::BackgroundTransfer& transfer, transfer::Operation operation, Ask ask,
                 QWidget* parent);

 protected:
  void cancel() override;

 private:
  void look();
  bool hangs() const;
  void show(const transfer::Progress& progress);

  transfer::BackgroundTransfer& transfer_;
  const QString process_;
  Ask ask_;
  QLabel* name_;
  QLabel* counts_;
  QLabel* time_;
  QProgressBar* bar_;
  QPushButton* button_;
  QTimer timer_;
  QElapsedTimer clock_;
  QElapsedTimer canceled_;  ///< runs since the user has canceled
  qint64 asked_ = 0;        ///< milliseconds in which the user was asked, and nothing went on
};

}  // namespace kestrel::qt
