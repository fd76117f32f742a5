#include "QtImgXDialog.h"

#include <QDir>
#include <QFileInfo>
#include <QScreen>
#include <QStringList>
#include <utility>

#include "FileDialogWindow.h"
#include "Modal.h"
#include "base/RuntimeError.h"
#include "engine/thumbnails/ThumbnailReader.h"
#include "imaging/contract/Formats.h"
#include "platform/qt/core/Guard.h"
#include "platform/qt/core/Handles.h"
#include "platform/qt/core/Text.h"
#include "platform/qt/services/BusyPointer.h"

namespace kestrel::qt {
namespace {

/// Default size, enough for about a dozen files with their dates and the preview, if the screen is large
/// enough.
constexpr QSize kDefaultSize(1000, 560);
constexpr double kShareOfScreen = 0.9;

/// In the key store, below the window positions.
constexpr char kStoredKey[] = "\\FileDialog";
constexpr char kStoredFolder[] = "Folder";

/// The extensions of the format that has this one, or this one alone.
QStringList spellingsOf(const QString& extension) {
  for (const FileFormat& format : kFileFormats) {
    if (!format.HasExtension(fromQt(extension.toLower()))) continue;
    QStringList spellings;
    for (const std::string_view spelling : format.Extensions) {
      if (!spelling.empty()) spellings += toQt(spelling);
    }
    return spellings;
  }
  return {extension};
}

QStringList withAllSpellings(const QStringList& patterns) {
  static const QString kAnyName = QStringLiteral("*.");
  QStringList all;
  for (const QString& pattern : patterns) {
    all += pattern;
    if (!pattern.startsWith(kAnyName)) continue;
    for (const QString& spelling : spellingsOf(pattern.mid(kAnyName.size()))) all += kAnyName + spelling;
  }
  all.removeDuplicates();
  return all;
}

}  // namespace

QtImgXDialog::QtImgXDialog(OpenCalls& calls, RegistryStore& store, const WindowPositions& positions)
    : calls_(calls),
      store_(store),
      positions_(positions),
      reader_(std::make_unique<engine::ThumbnailReader>()) {}

QtImgXDialog::~QtImgXDialog() = default;

QStringList nameFilters(const std::string& filter) {
  const QStringList parts = toQt(filter).split(u'|');
  QStringList filters;
  for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
    QStringList patterns = parts[i + 1].split(u';', Qt::SkipEmptyParts);
    // On this system "*.*" must also match names without a point.
    patterns.replaceInStrings(QStringLiteral("*.*"), QStringLiteral("*"));
    filters +=
        translated(fromQt(parts[i])) + QStringLiteral(" (") + withAllSpellings(patterns).join(u' ') + u')';
  }
  return filters;
}

bool QtImgXDialog::ShowOpen() { return show(false); }

bool QtImgXDialog::ShowSave() { return show(true); }

bool QtImgXDialog::show(bool save) {
  const BusyPause pause;
  FileDialogWindow dialog(*reader_, dialogParent(owner_));
  dialog.setAcceptMode(save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
  dialog.setWindowTitle(translated(save ? "Save As" : "Open"));
  dialog.setLabelText(QFileDialog::LookIn, translated(save ? "Save in:" : "Look in:"));
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
    rememberFolder(dialog.directory().absolutePath());
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
  // An empty name would be the current folder, but in the dialog it is the list of drives.
  const QString last = lastFolder();
  if (!last.isEmpty() && QDir(last).exists()) dialog.setDirectory(last);
  if (!filename_.empty()) dialog.selectFile(file.fileName());
}

QString QtImgXDialog::lastFolder() const {
  if (positions_.RegistryKey().empty()) return folder_;
  const std::string key = positions_.RegistryKey() + kStoredKey;
  const Variant stored = store_.ReadValue(HKEY_CURRENT_USER, key, kStoredFolder);
  return stored.TypeCode() == static_cast<std::int32_t>(Variant::Type::kString) ? toQt(stored.ToString())
                                                                                : folder_;
}

void QtImgXDialog::rememberFolder(const QString& folder) {
  if (folder == lastFolder()) return;
  folder_ = folder;
  if (positions_.RegistryKey().empty()) return;
  // A store that cannot be written must not take the chosen name from the user.
  guarded([&] {
    store_.WriteValue(HKEY_CURRENT_USER, positions_.RegistryKey() + kStoredKey, kStoredFolder, fromQt(folder),
                      kStoreString);
  });
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
