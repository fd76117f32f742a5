#include "FormHeaderWidget.h"

#include <QEvent>
#include <QStyle>
#include <algorithm>

#include "FrameWidget.h"
#include "platform/qt/core/Language.h"
#include "platform/qt/core/Text.h"

namespace kestrel::qt {
namespace {

/// The height at the bottom, on the left, that the window may use for controls of its own.
constexpr int kOwnRow = 32;
/// The least distance of the buttons from the lower edge.
constexpr int kLeastMargin = 3;

/// Gives the widgets their natural widths and the height of the tallest. Returns the size of a row of them,
/// with a gap before each.
QSize sizeFrames(const QList<FrameWidget*>& frames, int gap) {
  QSize needed(0, 0);
  for (const FrameWidget* frame : frames) {
    const QSize natural = frame->sizeHint();
    needed = QSize(needed.width() + gap + natural.width(), std::max(needed.height(), natural.height()));
  }
  for (FrameWidget* frame : frames) frame->resize(frame->sizeHint().width(), needed.height());
  return needed;
}

/// Gives the widgets their natural sizes and places them from left to right. Returns the size of the row,
/// with a gap before each widget.
QSize placeInRow(QList<QWidget*> widgets, int gap) {
  std::sort(widgets.begin(), widgets.end(),
            [](const QWidget* a, const QWidget* b) { return a->x() < b->x(); });
  QSize needed(0, 0);
  for (QWidget* widget : widgets) {
    const QSize natural = widget->sizeHint().boundedTo(QSize(QWIDGETSIZE_MAX, kOwnRow));
    widget->setGeometry(QRect(QPoint(needed.width() + gap, widget->y()), natural));
    needed = QSize(needed.width() + gap + natural.width(), std::max(needed.height(), natural.height()));
  }
  return needed;
}

}  // namespace

FormHeaderWidget::FormHeaderWidget(QWidget* parent)
    : QWidget(parent), title_(new QLabel(this)), ok_(new QPushButton(this)), cancel_(new QPushButton(this)) {
  keepTranslated(*this, *this, [this] {
    ok_->setText(translated("OK"));
    cancel_->setText(translated("Cancel"));
  });
  title_->setObjectName(QStringLiteral("headerTitle"));
  ok_->setObjectName(QStringLiteral("headerOK"));
  cancel_->setObjectName(QStringLiteral("headerCancel"));
  title_->setTextFormat(Qt::PlainText);
  QFont bold;
  bold.setBold(true);
  title_->setFont(bold);
  ok_->setDefault(true);
  setFocusProxy(ok_);
  connect(ok_, &QPushButton::clicked, this, &FormHeaderWidget::okClicked);
  connect(cancel_, &QPushButton::clicked, this, &FormHeaderWidget::cancelClicked);
  if (parent) parent->installEventFilter(this);
}

bool FormHeaderWidget::eventFilter(QObject* /*watched*/, QEvent* event) {
  switch (event->type()) {
    case QEvent::Show:
    case QEvent::Resize:
    case QEvent::LayoutRequest:
    case QEvent::WindowTitleChange:
      layOut();
      break;
    default:
      break;
  }
  return false;
}

bool FormHeaderWidget::event(QEvent* event) {
  // From a button with another text or font.
  if (event->type() == QEvent::LayoutRequest) layOut();
  return QWidget::event(event);
}

FormHeaderWidget::Needs FormHeaderWidget::sizeSiblings(int gap) const {
  QList<FrameWidget*> frames;
  QList<QWidget*> row;
  QSize rest(0, 0);
  for (QWidget* widget : parentWidget()->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly)) {
    if (widget == this || widget->isWindow() || widget->isHidden()) continue;
    if (auto* const frame = qobject_cast<FrameWidget*>(widget)) {
      frames += frame;
    } else if (widget->sizePolicy().verticalPolicy() == QSizePolicy::Fixed) {
      row += widget;
    } else {
      rest = rest.expandedTo(widget->minimumSizeHint());
    }
  }
  return {sizeFrames(frames, gap), placeInRow(row, gap), rest};
}

void FormHeaderWidget::layOut() {
  QWidget* const window = parentWidget();
  if (!window || !window->isVisible()) return;
  title_->setText(window->windowTitle());

  const int margin = style()->pixelMetric(QStyle::PM_LayoutLeftMargin, nullptr, this);
  const QSize title = title_->sizeHint();
  const int top = margin + title.height() + margin / 2;
  const QSize button = ok_->sizeHint().expandedTo(cancel_->sizeHint());
  const Needs needs = sizeSiblings(margin);
  // Centered on the window's own row if there is room below.
  const int rise =
      std::max(kOwnRow - needs.row.height() / 2 + button.height() / 2, kLeastMargin + button.height());
  const int foot = std::max(kOwnRow, rise) + margin / 2;
  const int buttons = 2 * (button.width() + margin);
  // Above the frames a gap of the strip's height.
  window->setMinimumSize(std::max({needs.frames.width() + margin, needs.row.width() + margin + buttons,
                                   needs.rest.width() + 2 * margin}),
                         top + needs.rest.height() + top + needs.frames.height() + foot);

  setGeometry(window->rect());
  title_->setGeometry(QRect(QPoint(margin, margin), QSize(width() - 2 * margin, title.height())));
  cancel_->setGeometry(QRect(QPoint(width() - margin - button.width(), height() - rise), button));
  ok_->setGeometry(cancel_->geometry().translated(-margin - button.width(), 0));
  Q_EMIT laidOut(QRect(margin, top, width() - 2 * margin, height() - foot - top));
}

}  // namespace kestrel::qt
