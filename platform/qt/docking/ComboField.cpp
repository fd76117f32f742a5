#include "ComboField.h"

#include <QApplication>
#include <QCursor>
#include <QKeyEvent>
#include <QLineEdit>
#include <QSignalBlocker>
#include <QStyle>
#include <QStyleOptionComboBox>
#include <algorithm>

#include "platform/qt/core/Guard.h"
#include "platform/qt/core/Language.h"
#include "platform/qt/core/Text.h"
#include "platform/qt/site/SiteWidget.h"

namespace kestrel::qt {

ComboField::ComboField(docking::MoorageModel& suite, docking::CommandModel& command)
    : suite_(suite), command_(command) {
  setObjectName(toQt(command_.Name()));
  setEditable(true);
  lineEdit()->setAcceptDrops(false);  // a dropped file is for the editor; here it would become text
  setInsertPolicy(QComboBox::NoInsert);
  setCompleter(nullptr);
  setFocusPolicy(Qt::StrongFocus);
  setMaxVisibleItems(25);
  keepTranslated(*this, *this, [this] {
    setAccessibleName(withoutAccessKey(translated(command_.Caption())));
    lineEdit()->setAccessibleName(accessibleName());  // it has the focus
    setAccessibleDescription(translated(command_.Description()));
    setToolTip(accessibleName());
  });
  connect(this, &QComboBox::activated, this, [this](int index) {
    guarded([&] { suite_.chooseItem(command_, index + 1); });
    refresh();
    leave();
  });
  connect(qApp, &QApplication::focusChanged, this, [this](QWidget* old, QWidget* now) {
    if (now == this && old && !isOwn(*old)) before_ = old;
  });
  refresh();
}

void ComboField::refresh() {
  const QSignalBlocker silent(this);
  const CommandItems& lines = command_.Items();
  bool same = count() == lines.Count();
  for (std::int32_t i = 0; same && i < lines.Count(); ++i) same = itemText(i) == toQt(lines.Item(i + 1).Text);
  if (!same) {
    clear();
    for (std::int32_t i = 1; i <= lines.Count(); ++i) addItem(toQt(lines.Item(i).Text));
  }
  const QString text = toQt(command_.comboText());
  setCurrentIndex(findText(text, Qt::MatchFixedString));
  setEditText(text);
  setEnabled(command_.Enabled());
  fitTexts();
}

/// The layout's width is the minimum; a large font or wide arrow may need more.
void ComboField::fitTexts() {
  int widest = fontMetrics().horizontalAdvance(QStringLiteral("00.0:1"));
  for (int i = 0; i < count(); ++i) widest = std::max(widest, fontMetrics().horizontalAdvance(itemText(i)));
  QStyleOptionComboBox option;
  initStyleOption(&option);
  const QSize needed =
      style()->sizeFromContents(QStyle::CT_ComboBox, &option, QSize(widest, fontMetrics().height()), this);
  setFixedWidth(std::max(command_.width(), needed.width()));
}

void ComboField::changeEvent(QEvent* event) {
  QComboBox::changeEvent(event);
  if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) fitTexts();
}

bool ComboField::event(QEvent* event) {
  if (event->type() == QEvent::Enter) guarded([this] { suite_.highlight(&command_); });
  if (event->type() == QEvent::Leave) guarded([this] { suite_.highlight(nullptr); });
  return QComboBox::event(event);
}

void ComboField::hidePopup() {
  const QWidget* const list = QApplication::activePopupWidget();
  const bool wasOpen = list && isOwn(*list);
  QComboBox::hidePopup();
  // The toolkit reports no Leave when the pointer left the field for the list.
  if (wasOpen && !rect().contains(mapFromGlobal(QCursor::pos())))
    guarded([this] { suite_.highlight(nullptr); });
}

void ComboField::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
      confirm();
      break;
    case Qt::Key_Escape:
      refresh();
      leave();
      SiteWidget::forwardKey(*this, *event);
      break;
    default:
      QComboBox::keyPressEvent(event);
  }
}

void ComboField::focusOutEvent(QFocusEvent* event) {
  QComboBox::focusOutEvent(event);
  if (event->reason() != Qt::PopupFocusReason) refresh();
}

bool ComboField::isOwn(const QWidget& widget) const {
  const QWidget* ancestor = &widget;
  while (ancestor && ancestor != this) ancestor = ancestor->parentWidget();
  return ancestor;
}

void ComboField::confirm() {
  const std::string typed = fromQt(currentText());
  guarded([&] { suite_.typeComboText(command_, typed); });
  refresh();
  leave();
}

void ComboField::leave() {
  if (before_) {
    before_->setFocus(Qt::OtherFocusReason);
  } else {
    lineEdit()->deselect();
    clearFocus();
  }
}

}  // namespace kestrel::qt
