#include "PlacementButton.h"

#include <QKeyEvent>
#include <QPainterPath>
#include <QStyleOptionToolButton>
#include <QStylePainter>
#include <QVariant>

#include "ButtonAccessibility.h"

namespace kestrel::qt {
namespace {

constexpr int kSide = 3;
/// Distance of the mark of the focus from the edge, in logical pixels.
constexpr int kFocusInset = 4;

/// An arrow to the right around the origin, in a square of side 1.
QPainterPath arrow() {
  constexpr double kTip = 0.32, kBarb = 0.24, kNeck = 0.04, kStem = 0.07;
  QPainterPath path(QPointF(kTip, 0));
  for (const QPointF point : {QPointF(kNeck, -kBarb), QPointF(kNeck, -kStem), QPointF(-kTip, -kStem),
                              QPointF(-kTip, kStem), QPointF(kNeck, kStem), QPointF(kNeck, kBarb)}) {
    path.lineTo(point);
  }
  path.closeSubpath();
  return path;
}

QPainterPath dot() {
  constexpr double kRadius = 0.14;
  QPainterPath path;
  path.addEllipse(QPointF(0, 0), kRadius, kRadius);
  return path;
}

/// The step of an arrow key; none for other keys.
QPoint stepOf(int key) {
  switch (key) {
    case Qt::Key_Left:
      return {-1, 0};
    case Qt::Key_Right:
      return {1, 0};
    case Qt::Key_Up:
      return {0, -1};
    case Qt::Key_Down:
      return {0, 1};
    default:
      return {};
  }
}

}  // namespace

PlacementButton::PlacementButton(QWidget* parent) : QToolButton(parent) {
  setFocusPolicy(Qt::ClickFocus);
  presentAsChoice(*this);
}

QSize PlacementButton::sizeHint() const {
  const int side = 2 * fontMetrics().height();
  return {side, side};
}

void PlacementButton::checkStateSet() {
  setFocusPolicy(isChecked() ? Qt::StrongFocus : Qt::ClickFocus);
  QToolButton::checkStateSet();
}

PlacementButton* PlacementButton::neighbor(int columns, int rows) const {
  const int column = place() % kSide + columns, row = place() / kSide + rows;
  if (column < 0 || column >= kSide || row < 0 || row >= kSide) return nullptr;
  for (auto* const button : parentWidget()->findChildren<PlacementButton*>()) {
    if (button->place() == row * kSide + column) return button;
  }
  return nullptr;
}

void PlacementButton::keyPressEvent(QKeyEvent* event) {
  const QPoint step = stepOf(event->key());
  if (step.isNull()) return QToolButton::keyPressEvent(event);
  if (PlacementButton* const next = neighbor(step.x(), step.y())) {
    next->setFocus(Qt::TabFocusReason);
    next->click();
  }
}

void PlacementButton::paintEvent(QPaintEvent* /*event*/) {
  QStylePainter painter(this);
  QStyleOptionToolButton option;
  initStyleOption(&option);
  option.state.setFlag(QStyle::State_HasFocus, false);  // drawn below, on top of the highlight
  painter.drawComplexControl(QStyle::CC_ToolButton, option);
  const QPalette::ColorGroup group = isEnabled() ? QPalette::Active : QPalette::Disabled;
  const QRectF face = QRectF(rect()).adjusted(2, 2, -2, -2);
  if (isChecked()) painter.fillRect(face, palette().color(group, QPalette::Highlight));
  const QColor ink = palette().color(group, isChecked() ? QPalette::HighlightedText : QPalette::ButtonText);

  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.translate(face.center());
  painter.scale(face.width(), face.height());
  const int column = place() % kSide, row = place() / kSide;
  const QPointF direction(column - 1, row - 1);
  if (!direction.isNull()) painter.rotate(-QLineF(QPointF(), direction).angle());
  painter.fillPath(direction.isNull() ? dot() : arrow(), ink);
  painter.restore();

  if (!hasFocus()) return;
  // Not by the style, some of which draw it in the color of the highlight.
  painter.setPen(QPen(ink, 1, Qt::DotLine));
  painter.drawRect(rect().adjusted(kFocusInset, kFocusInset, -kFocusInset - 1, -kFocusInset - 1));
}

}  // namespace kestrel::qt
