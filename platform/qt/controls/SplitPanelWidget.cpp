#include "SplitPanelWidget.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QStyle>
#include <QStyleOption>
#include <QStylePainter>
#include <algorithm>

#include "imaging/contract/controls/SplitPanel.h"
#include "platform/qt/core/Language.h"
#include "platform/qt/core/Text.h"

namespace kestrel::qt {
namespace {

constexpr int kLongStep = 16;
/// Narrower ones are hard to hit.
constexpr int kSmallestDivider = 5;

}  // namespace

/// The strip between the panes.
class SplitDivider final : public QWidget {
 public:
  explicit SplitDivider(SplitPanelWidget& panel) : QWidget(&panel), panel_(panel) {
    setObjectName(QStringLiteral("divider"));
    setCursor(Qt::SplitHCursor);
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_Hover);
    keepTranslated(*this, *this, [this] {
      setAccessibleName(translated("Divider"));
      setAccessibleDescription(translated("Changes the width of the left part by the keys Left and Right"));
    });
  }

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    QStylePainter painter(this);
    QStyleOption option;
    option.initFrom(this);
    option.state |= QStyle::State_Horizontal;
    if (grip_ >= 0) option.state |= QStyle::State_Sunken;
    if (hasFocus()) painter.fillRect(rect(), palette().highlight());
    painter.drawControl(QStyle::CE_Splitter, option);
  }

  void mousePressEvent(QMouseEvent* event) override {
    if (event->button() == Qt::LeftButton) grip_ = event->position().toPoint().x();
    update();
  }

  void mouseMoveEvent(QMouseEvent* event) override {
    if (grip_ < 0 || !(event->buttons() & Qt::LeftButton)) return;
    const int left = mapToParent(event->position().toPoint()).x() - grip_;
    panel_.movePosition(isRightToLeft() ? panel_.width() - left - width() : left);
  }

  void mouseReleaseEvent(QMouseEvent* event) override {
    if (event->button() == Qt::LeftButton) grip_ = -1;
    update();
  }

  void mouseDoubleClickEvent(QMouseEvent* event) override {
    if (event->button() == Qt::LeftButton) panel_.movePosition(kSplitPosition);
  }

  void keyPressEvent(QKeyEvent* event) override {
    const int length = event->modifiers() & Qt::ControlModifier ? 1 : kLongStep;
    const int step = isRightToLeft() ? -length : length;
    switch (event->key()) {
      case Qt::Key_Left:
        return panel_.movePosition(panel_.shownPosition() - step);
      case Qt::Key_Right:
        return panel_.movePosition(panel_.shownPosition() + step);
      case Qt::Key_Home:
        return panel_.movePosition(0);
      case Qt::Key_End:
        return panel_.movePosition(panel_.width());
      default:
        QWidget::keyPressEvent(event);
    }
  }

  void focusInEvent(QFocusEvent* /*event*/) override { update(); }
  void focusOutEvent(QFocusEvent* /*event*/) override { update(); }

 private:
  SplitPanelWidget& panel_;
  int grip_ = -1;  ///< where the mouse holds the divider, -1 while it does not
};

SplitPanelWidget::SplitPanelWidget(QWidget* parent)
    : QWidget(parent), position_(kSplitPosition), divider_(new SplitDivider(*this)) {}

void SplitPanelWidget::setPanes(QWidget& first, QWidget& second) {
  for (QWidget* pane : {&first, &second}) {
    const bool hidden = pane->isHidden() && pane->testAttribute(Qt::WA_WState_ExplicitShowHide);
    pane->setParent(this);
    pane->setVisible(!hidden);
  }
  first_ = &first;
  second_ = &second;
  arrange();
  updateGeometry();
}

void SplitPanelWidget::setPosition(int position) {
  position = std::max(position, 0);
  if (position == position_) return;
  position_ = position;
  arrange();
  updateGeometry();
  Q_EMIT positionChanged();
}

void SplitPanelWidget::movePosition(int position) { setPosition(std::clamp(position, 0, largest())); }

int SplitPanelWidget::dividerWidth() const {
  return std::max(style()->pixelMetric(QStyle::PM_SplitterWidth, nullptr, this), kSmallestDivider);
}

int SplitPanelWidget::largest() const { return std::max(width() - dividerWidth(), 0); }

int SplitPanelWidget::shownPosition() const { return std::min(position_, largest()); }

QSize SplitPanelWidget::minimumSizeHint() const {
  const QSize first = first_ ? first_->minimumSizeHint() : QSize(0, 0);
  const QSize second = second_ ? second_->minimumSizeHint() : QSize(0, 0);
  // A user who makes the first pane wider covers the second, and does not ask for a larger window.
  return {std::min(position_, kSplitPosition) + dividerWidth() + second.width(),
          std::max(first.height(), second.height())};
}

void SplitPanelWidget::resizeEvent(QResizeEvent* /*event*/) { arrange(); }

void SplitPanelWidget::changeEvent(QEvent* event) {
  if (event->type() == QEvent::StyleChange || event->type() == QEvent::LayoutDirectionChange) arrange();
  QWidget::changeEvent(event);
}

void SplitPanelWidget::arrange() {
  const int shown = shownPosition();
  const int second = std::min(shown + dividerWidth(), width());
  // From right to left the first pane is on the right.
  const auto place = [this](QWidget& widget, int left, int width) {
    widget.setGeometry(QStyle::visualRect(layoutDirection(), rect(), QRect(left, 0, width, height())));
  };
  if (first_) place(*first_, 0, shown);
  place(*divider_, shown, second - shown);
  if (second_) place(*second_, second, width() - second);
}

}  // namespace kestrel::qt
