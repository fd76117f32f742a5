#include "FileDialogWindow.h"

#include <QComboBox>
#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QMessageBox>
#include <QResizeEvent>
#include <algorithm>

#include "platform/qt/core/Text.h"

namespace kestrel::qt {
namespace {

constexpr int kShortestTypeLine = 30;

}  // namespace

FileDialogWindow::FileDialogWindow(QWidget* parent) : QFileDialog(parent) {
  setOption(QFileDialog::DontUseNativeDialog);
  setOption(QFileDialog::HideNameFilterDetails);
  // The longest description must not determine the width of the dialog.
  if (auto* const types = findChild<QComboBox*>(QStringLiteral("fileTypeCombo"))) {
    types->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    types->setMinimumContentsLength(kShortestTypeLine);
  }
}

FileDialogWindow::~FileDialogWindow() {
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
  if (isVisible()) {
    for (Guest& guest : guests_) guest.position.ry() += grown;
  }
  placeGuests();
}

void FileDialogWindow::showEvent(QShowEvent* event) {
  QFileDialog::showEvent(event);
  placeGuests();
}

void FileDialogWindow::accept() {
  if (pathMustExist_ && acceptMode() == QFileDialog::AcceptSave) {
    const QStringList chosen = selectedFiles();
    const QDir folder = chosen.isEmpty() ? directory() : QFileInfo(chosen.front()).dir();
    if (!folder.exists()) {
      QMessageBox::warning(
          this, windowTitle(),
          translated("The folder \"%1\" does not exist. Please check the path that was given.")
              .arg(QDir::toNativeSeparators(folder.path())));
      return;
    }
  }
  QFileDialog::accept();
}

}  // namespace kestrel::qt
