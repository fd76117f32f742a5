#include "PanelField.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QStyle>
#include <algorithm>

#include "platform/qt/core/Text.h"

namespace kestrel::qt {
namespace {

constexpr int kSteps = 1000;
constexpr int kGap = 5;

}  // namespace

PanelField::PanelField(docking::CommandModel& command, const QIcon& icon)
    : command_(command), icon_(icon), picture_(new QLabel), text_(new QLabel) {
  setObjectName(toQt(command_.Name()));
  auto* const row = new QHBoxLayout(this);
  row->setContentsMargins(kGap, 1, kGap, 1);
  row->setSpacing(kGap);
  row->addWidget(picture_);
  picture_->setVisible(!icon_.isNull());
  text_->setTextFormat(Qt::PlainText);
  row->addWidget(text_, 1);
  if (command_.showsProgress()) {
    progress_ = new QProgressBar;
    progress_->setRange(0, kSteps);
    progress_->setTextVisible(false);
    row->addWidget(progress_, 1);
    text_->hide();
  }
  if (command_.spring()) {
    // A long message is clipped and does not widen the window.
    text_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  }
  const QString name =
      translated(command_.ShortCaption().empty() ? command_.Description() : command_.ShortCaption());
  setToolTip(name);
  text_->setAccessibleName(name);
  showIcon();
  refresh();
}

void PanelField::refresh() {
  setVisible(command_.Visible());
  if (progress_) progress_->setValue(static_cast<int>(command_.panel().progress() * kSteps));
  const QString text = translated(command_.panel().Caption());
  const bool changed = text != text_->text();
  text_->setText(text);
  text_->setAccessibleDescription(text);
  if (command_.spring()) {
    if (changed && isVisible()) repaint();
    return;
  }
  // The layout's width is the minimum. A panel that had to grow keeps its width, so that its neighbors do not
  // move when its text changes.
  const int needed = layout()->sizeHint().width();
  setFixedWidth(std::max({command_.width(), needed, minimumWidth()}));
}

void PanelField::changeEvent(QEvent* event) {
  if (event->type() == QEvent::PaletteChange || event->type() == QEvent::StyleChange) showIcon();
  QWidget::changeEvent(event);
}

void PanelField::showIcon() {
  const int size = style()->pixelMetric(QStyle::PM_SmallIconSize);
  picture_->setPixmap(icon_.pixmap(QSize(size, size), devicePixelRatioF()));
}

}  // namespace kestrel::qt
