#include "ColorPickerWidget.h"

#include <QColorDialog>
#include <QPainter>
#include <QStyleOptionToolButton>
#include <QStylePainter>

#include "ColorPalette.h"
#include "platform/qt/core/PlainButtons.h"
#include "platform/qt/core/Text.h"

namespace kestrel::qt {
namespace {

constexpr int kEdge = 4;

}  // namespace

ColorPickerWidget::ColorPickerWidget(QWidget* parent)
    : QToolButton(parent), enhancedCaption_(translated("Automatic")) {
  setFocusPolicy(Qt::StrongFocus);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  setMinimumHeight(fontMetrics().height() + 4 * kEdge);
  connect(this, &QToolButton::clicked, this, &ColorPickerWidget::dropDown);
}

void ColorPickerWidget::show(const QColor& color, bool enhanced) {
  color_ = color;
  enhancedSelected_ = enhanced;
  setAccessibleDescription(enhanced ? enhancedCaption_ : color.name());
  update();
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
  const QRect face = rect().adjusted(kEdge, kEdge, -kEdge - 1, -kEdge - 1);
  if (enhancedSelected_) {
    painter.drawItemText(face, Qt::AlignCenter, palette(), isEnabled(), enhancedCaption_,
                         QPalette::ButtonText);
    return;
  }
  painter.setPen(palette().color(QPalette::Mid));
  painter.setBrush(isEnabled() ? color_ : palette().color(QPalette::Button));
  painter.drawRect(face);
}

}  // namespace kestrel::qt
