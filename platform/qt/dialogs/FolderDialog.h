#pragma once

#include <QFileDialog>

#include "base/OpenCalls.h"
#include "imaging/contract/Types.h"

class QTreeView;

namespace kestrel::qt {

/// The toolkit's dialog for an existing folder, with a sentence above it that says what the folder is for.
class FolderDialog final : public QFileDialog {
  Q_OBJECT

 public:
  FolderDialog(const QString& prompt, const QString& title, QWidget* parent);
  ~FolderDialog() override;

  /// The chosen folder.
  QString folder() const;

 private:
  void arrangeColumns();
  void addPrompt(const QString& prompt);

  QTreeView* list_ = nullptr;
};

/// Asks the user for an existing folder; empty if canceled. `owner` is the window that asks. The dialog
/// begins at `start`, or at the current folder if there is no such folder.
std::string askForFolder(WindowHandle owner, const std::string& prompt, const std::string& title,
                         const std::string& start, OpenCalls& calls);

}  // namespace kestrel::qt
