#include "QtImgXDialog.h"

#include <QDir>
#include <QFileInfo>
#include <QScreen>
#include <QStringList>
#include <utility>

#include "FileDialogWindow.h"
#include "Modal.h"
#include "base/RuntimeError.h"
#include "platform/qt/core/Handles.h"
#include "platform/qt/core/Text.h"
#include "platform/qt/services/BusyPointer.h"

namespace kestrel::qt {
namespace {

/// Default size, enough for about a dozen files with their dates, if the screen is large enough.
constexpr QSize kDefaultSize(780, 520);
constexpr double kShareOfScreen = 0.9;

}  // namespace

QStringList nameFilters(const std::string& filter) {
  const QStringList parts = toQt(filter).split(u'|');
  QStringList filters;
  for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
    QStringList patterns = parts[i + 1].split(u';', Qt::SkipEmptyParts);
    // On this system "*.*" must also match names without a point.
    patterns.replaceInStrings(QStringLiteral("*.*"), QStringLiteral("*"));
    filters += translated(fromQt(parts[i])) + QStringLiteral(" (") + patterns.join(u' ') + u')';
  }
  return filters;
}

bool QtImgXDialog::ShowOpen() { return show(false); }

bool QtImgXDialog::ShowSave() { return show(true); }

bool QtImgXDialog::show(bool save) {
  const BusyPause pause;
  FileDialogWindow dialog(dialogParent(owner_));
  dialog.setAcceptMode(save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
  dialog.setWindowTitle(translated(save ? "Save As" : "Open"));
  dialog.setFileMode(save || !(flags_ & kDialogFileMustExist) ? QFileDialog::AnyFile
                     : maxFiles_ > 1                          ? QFileDialog::ExistingFiles
                                                              : QFileDialog::ExistingFile);
  dialog.setOption(QFileDialog::DontConfirmOverwrite, !(flags_ & kDialogOverwritePrompt));
  dialog.setPathMustExist((flags_ & kDialogPathMustExist) != 0);
  dialog.setDefaultSuffix(toQt(defaultExt_));
  setUpFilters(dialog);
  setUpStart(dialog);

  dialog.ensurePolished();
  dialog.adjustSize();
  const QSize room = dialog.screen()->availableSize() * kShareOfScreen;
  dialog.resize(dialog.size().expandedTo(kDefaultSize).boundedTo(room));
  std::int32_t width = dialog.width();
  std::int32_t height = dialog.height();
  {
    initializing_ = &dialog;
    struct End {
      FileDialogWindow*& dialog;
      ~End() { dialog = nullptr; }
    } const end{initializing_};
    InitDialog(width, height);
  }
  dialog.growTo(QSize(width, height));
  if (centerOnOwner_ && dialog.parentWidget()) {
    const QRect frame = dialog.parentWidget()->window()->frameGeometry();
    dialog.move(frame.center() - dialog.rect().center());
  }

  const bool accepted = execModal(dialog, calls_) == QDialog::Accepted && !dialog.selectedFiles().isEmpty();
  if (accepted) {
    filename_ = fromQt(QDir::toNativeSeparators(dialog.selectedFiles().front()));
    folder_ = dialog.directory().absolutePath();
  }
  return accepted;
}

void QtImgXDialog::setUpFilters(QFileDialog& dialog) const {
  const QStringList filters = nameFilters(filter_);
  dialog.setNameFilters(filters);
  if (filterIndex_ >= 0 && filterIndex_ < filters.size()) dialog.selectNameFilter(filters[filterIndex_]);
}

void QtImgXDialog::setUpStart(QFileDialog& dialog) const {
  const QFileInfo file(toQt(filename_));
  if (!filename_.empty() && file.dir().exists()) {
    dialog.setDirectory(file.absolutePath());
    dialog.selectFile(file.fileName());
    return;
  }
  if (!folder_.isEmpty()) dialog.setDirectory(folder_);
  if (!filename_.empty()) dialog.selectFile(file.fileName());
}

FileDialogWindow& QtImgXDialog::shown() const {
  if (!initializing_) {
    throw RuntimeError(err::kInvalidCall, "The file dialog can be changed only before it shows.");
  }
  return *initializing_;
}

void QtImgXDialog::GetControlRect(std::int32_t controlId, std::int32_t& left, std::int32_t& top,
                                  std::int32_t& width, std::int32_t& height) {
  const FileDialogWindow& dialog = shown();
  if (controlId != kDialogFileTypeLabel) {
    throw RuntimeError(err::kInvalidCall,
                       "The file dialog has no control " + std::to_string(controlId) + ".");
  }
  const QRect label = dialog.fileTypeLabel();
  left = label.left();
  top = label.top();
  width = label.width();
  height = label.height();
}

void QtImgXDialog::MoveControl(WindowHandle window, std::int32_t x, std::int32_t y) {
  FileDialogWindow& dialog = shown();
  QWidget* const widget = widgetOf(window);
  if (!widget) throw RuntimeError(err::kInvalidCall, "The window to move into the dialog does not exist.");
  dialog.embedWidget(*widget, QPoint(x, y));
}

}  // namespace kestrel::qt
