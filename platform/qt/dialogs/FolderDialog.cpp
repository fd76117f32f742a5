#include "FolderDialog.h"

#include <QDir>
#include <QGridLayout>
#include <QHeaderView>
#include <QLabel>
#include <QScreen>
#include <QTreeView>
#include <vector>

#include "Modal.h"
#include "platform/qt/core/PlainButtons.h"
#include "platform/qt/core/Text.h"
#include "platform/qt/services/BusyPointer.h"

namespace kestrel::qt {
namespace {

enum Column { kName, kSize, kType, kDate };

constexpr QSize kDefaultSize(720, 480);
constexpr double kShareOfScreen = 0.9;

struct Cell {
  QLayoutItem* item;
  int row, column, rows, columns;
};

/// Moves all items of the grid down by one row.
void freeFirstRow(QGridLayout& grid) {
  std::vector<Cell> cells;
  while (grid.count() > 0) {
    Cell cell{};
    grid.getItemPosition(0, &cell.row, &cell.column, &cell.rows, &cell.columns);
    cell.item = grid.takeAt(0);
    cells.push_back(cell);
  }
  for (const Cell& cell : cells) {
    grid.addItem(cell.item, cell.row + 1, cell.column, cell.rows, cell.columns, cell.item->alignment());
  }
}

}  // namespace

FolderDialog::FolderDialog(const QString& prompt, const QString& title, QWidget* parent)
    : QFileDialog(parent) {
  setOption(QFileDialog::DontUseNativeDialog);
  setOption(QFileDialog::ShowDirsOnly);
  setFileMode(QFileDialog::Directory);
  setAcceptMode(QFileDialog::AcceptOpen);
  setWindowTitle(title);
  setLabelText(QFileDialog::LookIn, translated("Look in:"));
  setLabelText(QFileDialog::FileName, translated("Folder:"));
  setLabelText(QFileDialog::Accept, translated("&Choose"));
  // There is one type of folder.
  for (const char* name : {"fileTypeLabel", "fileTypeCombo"}) {
    if (auto* const widget = findChild<QWidget*>(QLatin1String(name))) widget->hide();
  }
  arrangeColumns();
  addPrompt(prompt);
  usePlainButtons(*this);
}

FolderDialog::~FolderDialog() {
  if (!list_) return;
  // The toolkit stores the state of the columns, for the dialogs of all its programs.
  list_->showColumn(kSize);
  list_->showColumn(kType);
  list_->header()->setSectionResizeMode(QHeaderView::Interactive);
}

/// A folder has no size, and its type is always the same.
void FolderDialog::arrangeColumns() {
  list_ = findChild<QTreeView*>(QStringLiteral("treeView"));
  if (!list_) return;
  list_->hideColumn(kSize);
  list_->hideColumn(kType);
  list_->header()->setStretchLastSection(false);
  list_->header()->setSectionResizeMode(kName, QHeaderView::Stretch);
  list_->header()->setSectionResizeMode(kDate, QHeaderView::ResizeToContents);
}

void FolderDialog::addPrompt(const QString& prompt) {
  auto* const grid = qobject_cast<QGridLayout*>(layout());
  if (!grid || prompt.isEmpty()) return;
  const int columns = grid->columnCount();
  freeFirstRow(*grid);
  auto* const label = new QLabel(prompt, this);
  label->setObjectName(QStringLiteral("prompt"));
  label->setWordWrap(true);
  label->setTextFormat(Qt::PlainText);
  grid->addWidget(label, 0, 0, 1, columns);
  setAccessibleDescription(prompt);
}

QString FolderDialog::folder() const {
  const QStringList chosen = selectedFiles();
  return chosen.isEmpty() ? directory().absolutePath() : chosen.front();
}

std::string askForFolder(WindowHandle owner, const std::string& prompt, const std::string& title,
                         const std::string& start, OpenCalls& calls) {
  const BusyPause pause;
  FolderDialog dialog(translated(prompt), translated(title), dialogParent(owner));
  if (!start.empty() && QDir(toQt(start)).exists()) dialog.setDirectory(toQt(start));
  dialog.ensurePolished();
  const QSize room = dialog.screen()->availableSize() * kShareOfScreen;
  dialog.resize(dialog.sizeHint().expandedTo(kDefaultSize).boundedTo(room));
  if (execModal(dialog, calls) != QDialog::Accepted) return {};
  return fromQt(QDir::toNativeSeparators(dialog.folder()));
}

}  // namespace kestrel::qt
