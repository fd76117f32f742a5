#pragma once

#include <QCheckBox>
#include <QPushButton>

#include "UserDialog.h"
#include "platform/filetransfer/FileTransfer.h"

class QHBoxLayout;

namespace kestrel::engine {
class ThumbnailReader;
}

namespace kestrel::qt {

/// Asks what to do with a file whose name is taken, with what is known about both, or with one that has no
/// trash. Closing it cancels the work.
class QuestionWindow final : public UserDialog {
  Q_OBJECT

 public:
  /// The readers must outlive the window, and are for its use alone until then.
  QuestionWindow(const transfer::Question& question, transfer::Operation operation,
                 engine::ThumbnailReader& oldReader, engine::ThumbnailReader& newReader, QWidget* parent);

  const transfer::Answer& answer() const { return answer_; }

 protected:
  void cancel() override;

 private:
  QPushButton* addButton(QHBoxLayout& row, const char* name, const char* text, transfer::Choice choice);
  void choose(transfer::Choice choice);

  QCheckBox* forAll_;
  transfer::Answer answer_;
};

}  // namespace kestrel::qt
