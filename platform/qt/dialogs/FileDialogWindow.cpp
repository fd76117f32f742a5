#include "FileDialogWindow.h"

#include <QComboBox>
#include <QDateTime>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileInfo>
#include <QFileSystemModel>
#include <QHeaderView>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QLocale>
#include <QMessageBox>
#include <QPushButton>
#include <QResizeEvent>
#include <QSplitter>
#include <QTreeView>
#include <algorithm>
#include <array>

#include "PicturePane.h"
#include "platform/os/Paths.h"
#include "platform/qt/core/PlainButtons.h"
#include "platform/qt/core/Text.h"

namespace kestrel::qt {
namespace {

constexpr int kShortestTypeLine = 30;

/// Widths of the panes: the places and the preview. The files get the rest.
struct Widths {
  int places, preview;
};
constexpr Widths kWide{130, 230};
constexpr Widths kNarrow{100, 160};
/// A narrower dialog has no room for the types of the files, which their names say, too.
constexpr int kRoomForAll = 900;

/// The columns of the files after their name.
enum Column { kSizeColumn = 1, kTypeColumn, kDateColumn };

/// The name inside a pair of quotation marks, or the text.
QString withoutQuotes(const QString& text) {
  static constexpr std::array<std::pair<char16_t, char16_t>, 3> kPairs = {
      {{u'"', u'"'}, {u'\'', u'\''}, {u'\u201C', u'\u201D'}}};
  const QString trimmed = text.trimmed();
  if (trimmed.size() < 3) return text;
  const QString inside = trimmed.mid(1, trimmed.size() - 2);
  for (const auto& [left, right] : kPairs) {
    const bool quoted = trimmed.front() == left && trimmed.back() == right;
    // Several quoted names are several files.
    if (quoted && !inside.contains(left) && !inside.contains(right)) return inside;
  }
  return text;
}

}  // namespace

FileDialogWindow::FileDialogWindow(engine::ThumbnailReader& reader, QWidget* parent)
    : QFileDialog(parent),
      name_(findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))),
      files_(findChild<QTreeView*>(QStringLiteral("treeView"))),
      columns_(findChild<QSplitter*>(QStringLiteral("splitter"))) {
  setOption(QFileDialog::DontUseNativeDialog);
  setOption(QFileDialog::HideNameFilterDetails);
  // The longest description must not determine the width of the dialog.
  if (auto* const types = findChild<QComboBox*>(QStringLiteral("fileTypeCombo"))) {
    types->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    types->setMinimumContentsLength(kShortestTypeLine);
  }
  addPreview(reader);
  widenColumns();
  usePlainButtons(*this);
  // After the toolkit's own slot.
  connect(name_, &QLineEdit::textChanged, this, &FileDialogWindow::updateOpenButton);
}

void FileDialogWindow::addPreview(engine::ThumbnailReader& reader) {
  auto* const pane = new PicturePane(reader, columns_);
  columns_->addWidget(pane);
  columns_->setStretchFactor(1, 1);
  // The selection follows the keys, the mouse and a typed name. The toolkit may leave the one before
  // selected.
  const QItemSelectionModel* const selection = files_->selectionModel();
  connect(selection, &QItemSelectionModel::selectionChanged, pane,
          [pane, selection](const QItemSelection& added) {
            const QModelIndexList fresh = added.indexes();
            const QModelIndexList chosen = fresh.isEmpty() ? selection->selectedIndexes() : fresh;
            const QVariant file =
                chosen.isEmpty() ? QVariant() : chosen.front().data(QFileSystemModel::FilePathRole);
            pane->showFile(os::pathOf(fromQt(file.toString())));
          });
  connect(this, &QFileDialog::directoryEntered, pane, [pane] { pane->showFile({}); });
}

/// Wide enough for what they show; the name gets the rest.
void FileDialogWindow::widenColumns() {
  QHeaderView& header = *files_->header();
  header.setStretchLastSection(false);
  header.setSectionResizeMode(QHeaderView::Interactive);
  header.setSectionResizeMode(0, QHeaderView::Stretch);
  const QFontMetrics metrics = files_->fontMetrics();
  header.setMinimumSectionSize(metrics.horizontalAdvance(QStringLiteral("Size")) * 2);
  const QDateTime wideDate(QDate(2028, 12, 28), QTime(22, 58, 58));
  const std::pair<Column, QString> samples[] = {
      {kSizeColumn, QStringLiteral("8888.88 MiB")},
      {kTypeColumn, QStringLiteral("Windows BMP image")},
      {kDateColumn, QLocale::system().toString(wideDate, QLocale::ShortFormat)}};
  const int space = 2 * metrics.horizontalAdvance(u'm');
  for (const auto& [column, sample] : samples) {
    header.resizeSection(column, metrics.horizontalAdvance(sample) + space);
  }
}

void FileDialogWindow::updateOpenButton() {
  const QString name = withoutQuotes(name_->text());
  if (name == name_->text() || !QFileInfo(directory().filePath(name)).exists()) return;
  for (auto* const box : findChildren<QDialogButtonBox*>()) {
    if (QPushButton* const open = box->button(QDialogButtonBox::Open)) open->setEnabled(true);
  }
}

void FileDialogWindow::removeQuotes() {
  const QString typed = name_->text();
  if (QFileInfo::exists(directory().filePath(typed))) return;
  if (const QString name = withoutQuotes(typed); name != typed) name_->setText(name);
}

FileDialogWindow::~FileDialogWindow() {
  // The toolkit stores the state of the columns, for the dialogs of all its programs.
  files_->setColumnHidden(kTypeColumn, false);
  files_->header()->setSectionResizeMode(QHeaderView::Interactive);
  for (const Guest& guest : guests_) {
    if (!guest.widget) continue;
    guest.widget->setParent(guest.home);
    guest.widget->setGeometry(guest.place);
    guest.widget->setVisible(guest.shown);
    if (guest.home && guest.home->layout()) guest.home->layout()->addWidget(guest.widget);
  }
}

QRect FileDialogWindow::fileTypeLabel() const {
  const auto* const label = findChild<QLabel*>(QStringLiteral("fileTypeLabel"));
  if (!label) return {};
  // Before it is shown, the dialog has no layout for its size yet.
  if (!isVisible()) {
    layout()->activate();
    layout()->setGeometry(rect());
  }
  return QRect(label->mapTo(this, QPoint()), label->size());
}

void FileDialogWindow::embedWidget(QWidget& widget, const QPoint& position) {
  QWidget* const home = widget.parentWidget();
  guests_.push_back({&widget, home, widget.geometry(), !widget.isHidden(), position});
  if (home && home->layout()) home->layout()->removeWidget(&widget);
  widget.setParent(this);
  widget.resize(widget.sizeHint());
  widget.show();
  placeGuests();
}

void FileDialogWindow::growTo(const QSize& wanted) {
  roomBelow_ = std::max(0, wanted.height() - height());
  QMargins margins = layout()->contentsMargins();
  margins.setBottom(margins.bottom() + roomBelow_);
  layout()->setContentsMargins(margins);
  resize(wanted);
  const Widths widths = width() < kRoomForAll ? kNarrow : kWide;
  columns_->setSizes({widths.places, std::max(1, width() - widths.places - widths.preview), widths.preview});
  placeGuests();
}

void FileDialogWindow::placeGuests() {
  const QRect label = fileTypeLabel();
  const int margin = layout()->contentsMargins().bottom() - roomBelow_;
  QWidget* before = findChild<QComboBox*>(QStringLiteral("fileTypeCombo"));
  for (const Guest& guest : guests_) {
    if (!guest.widget) continue;
    const int lowest = height() - margin - guest.widget->height();
    guest.widget->move(std::max(guest.position.x(), label.left()), std::min(guest.position.y(), lowest));
    if (before) setTabOrder(before, guest.widget);
    before = guest.widget;
  }
}

void FileDialogWindow::resizeEvent(QResizeEvent* event) {
  const int grown = event->oldSize().isValid() ? event->size().height() - event->oldSize().height() : 0;
  QFileDialog::resizeEvent(event);
  files_->setColumnHidden(kTypeColumn, width() < kRoomForAll);
  if (isVisible()) {
    for (Guest& guest : guests_) guest.position.ry() += grown;
  }
  placeGuests();
}

void FileDialogWindow::showEvent(QShowEvent* event) {
  QFileDialog::showEvent(event);
  placeGuests();
}

bool FileDialogWindow::folderExists() {
  const QStringList chosen = selectedFiles();
  const QDir folder = chosen.isEmpty() ? directory() : QFileInfo(chosen.front()).dir();
  if (folder.exists()) return true;
  QMessageBox::warning(this, windowTitle(),
                       translated("The folder \"%1\" does not exist. Please check the path that was given.")
                           .arg(QDir::toNativeSeparators(folder.path())));
  return false;
}

void FileDialogWindow::accept() {
  removeQuotes();
  if (pathMustExist_ && acceptMode() == QFileDialog::AcceptSave && !folderExists()) return;
  QFileDialog::accept();
}

}  // namespace kestrel::qt
