#include "ColorPickerWidget.h"

#include <QColorDialog>
#include <QKeyEvent>
#include <QPainter>
#include <QStyleOptionComboBox>
#include <QStyleOptionToolButton>
#include <QStylePainter>
#include <algorithm>
#include <utility>

#include "ButtonAccessibility.h"
#include "ColorPalette.h"
#include "platform/qt/core/FramedFill.h"
#include "platform/qt/core/PlainButtons.h"
#include "platform/qt/core/Text.h"

namespace kestrel::qt {
namespace {

constexpr int kEdge = 4;
constexpr int kArrow = 8;
/// Width of the color, in average characters.
constexpr int kColorCharacters = 8;

}  // namespace

ColorPickerWidget::ColorPickerWidget(QWidget* parent)
    : QToolButton(parent), automatic_(translated("Automatic")), enhancedCaption_(automatic_) {
  setFocusPolicy(Qt::StrongFocus);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  presentAsList(*this);
  setAccessibleDescription(color_.name());
  connect(this, &QToolButton::clicked, this, &ColorPickerWidget::dropDown);
}

void ColorPickerWidget::show(const QColor& color, bool enhanced) {
  color_ = color;
  enhancedSelected_ = enhanced;
  setAccessibleDescription(enhanced ? enhancedCaption_ : color.name());
  update();
}

void ColorPickerWidget::setEnhancedVisible(bool value) {
  enhancedVisible_ = value;
  updateGeometry();
}

void ColorPickerWidget::setEnhancedCaption(const QString& value) {
  enhancedCaption_ = value;
  updateGeometry();
  update();
}

void ColorPickerWidget::changeEvent(QEvent* event) {
  if (event->type() == QEvent::LanguageChange) {
    const QString before = std::exchange(automatic_, translated("Automatic"));
    if (enhancedCaption_ == before) setEnhancedCaption(automatic_);
  }
  QToolButton::changeEvent(event);
}

QSize ColorPickerWidget::sizeHint() const {
  const QFontMetrics metrics = fontMetrics();
  const int caption = enhancedVisible_ ? metrics.horizontalAdvance(enhancedCaption_) : 0;
  const int inside = std::max(caption, kColorCharacters * metrics.averageCharWidth());
  // As high as a drop-down list, next to which it may be.
  const int height =
      style()->sizeFromContents(QStyle::CT_ComboBox, nullptr, QSize(inside, metrics.height()), this).height();
  return {inside + 4 * kEdge + kArrow, std::max(height, metrics.height() + 2 * kEdge)};
}

void ColorPickerWidget::dropDown() {
  auto* const palette = new ColorPalette(parentWidget());
  palette->setAttribute(Qt::WA_DeleteOnClose);
  palette->fill(enhancedSelected_ ? QColor() : color_, enhancedVisible_ ? enhancedCaption_ : QString());
  connect(palette, &ColorPalette::colorChosen, this, &ColorPickerWidget::colorChosen);
  connect(palette, &ColorPalette::enhancedChosen, this, &ColorPickerWidget::enhancedChosen);
  connect(palette, &ColorPalette::moreWanted, this, &ColorPickerWidget::chooseFromDialog);
  const QPoint below = geometry().bottomLeft() + QPoint(0, 1);
  palette->popup(parentWidget() ? parentWidget()->mapToGlobal(below) : below);
  palette->focusChosen();
}

void ColorPickerWidget::keyPressEvent(QKeyEvent* event) {
  // As on a drop-down list.
  if (event->key() == Qt::Key_Down || event->key() == Qt::Key_F4) {
    dropDown();
  } else {
    QToolButton::keyPressEvent(event);
  }
}

void ColorPickerWidget::chooseFromDialog() {
  // Non-modal and a child of this widget, so it closes with it.
  auto* const dialog = new QColorDialog(color_, this);
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setWindowTitle(translated("Choose a Color"));
  dialog->setModal(true);
  usePlainButtons(*dialog);
  connect(dialog, &QColorDialog::colorSelected, this, [this](const QColor& chosen) {
    ColorPalette::remember(chosen);
    Q_EMIT colorChosen(chosen);
  });
  dialog->show();
}

void ColorPickerWidget::paintEvent(QPaintEvent* /*event*/) {
  QStylePainter painter(this);
  QStyleOptionToolButton option;
  initStyleOption(&option);
  option.text.clear();
  painter.drawComplexControl(QStyle::CC_ToolButton, option);
  const QRect inside = rect().adjusted(kEdge, kEdge, -kEdge, -kEdge);
  const QRect face = QStyle::visualRect(layoutDirection(), rect(), inside.adjusted(0, 0, -kArrow - kEdge, 0));
  QStyleOption arrow;
  arrow.initFrom(this);
  arrow.rect = QStyle::visualRect(
      layoutDirection(), rect(),
      QRect(inside.right() - kArrow + 1, inside.center().y() - kArrow / 2 + 1, kArrow, kArrow));
  painter.drawPrimitive(QStyle::PE_IndicatorArrowDown, arrow);
  if (enhancedSelected_) {
    painter.drawItemText(face, Qt::AlignCenter, palette(), isEnabled(), enhancedCaption_,
                         QPalette::ButtonText);
    return;
  }
  fillFramed(painter, face, isEnabled() ? color_ : palette().color(QPalette::Button),
             palette().color(QPalette::Mid));
}

}  // namespace kestrel::qt
