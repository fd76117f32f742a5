#include "PanelField.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QStyle>
#include <algorithm>

#include "PanelAccessibility.h"
#include "platform/qt/core/Language.h"
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
  useAccessiblePanels();
  showIcon();
  keepTranslated(*this, *this, [this] {
    const QString name =
        translated(command_.ShortCaption().empty() ? command_.Description() : command_.ShortCaption());
    setToolTip(name);
    if (progress_) progress_->setAccessibleName(name);
    refresh();
  });
}

void PanelField::refresh() {
  setVisible(command_.Visible());
  if (progress_) progress_->setValue(static_cast<int>(command_.panel().progress() * kSteps));
  const QString text = translated(command_.panel().Caption());
  const bool changed = text != text_->text();
  text_->setText(text);
  if (changed) reportValue(*this);
  fitText();
  if (command_.spring() && changed && isVisible()) repaint();
}

/// The layout's width is the minimum. A panel that had to grow keeps its width, so that its neighbors do not
/// move when its text changes.
void PanelField::fitText() {
  if (command_.spring()) return;
  const int needed = layout()->sizeHint().width();
  setFixedWidth(std::max({command_.width(), needed, minimumWidth()}));
}

bool PanelField::event(QEvent* event) {
  const bool handled = QWidget::event(event);
  // The text, the icon or the style has other measures now.
  if (event->type() == QEvent::LayoutRequest) fitText();
  return handled;
}

void PanelField::changeEvent(QEvent* event) {
  const bool isStyle = event->type() == QEvent::StyleChange;
  if (event->type() == QEvent::PaletteChange || isStyle) showIcon();
  if (event->type() == QEvent::FontChange || isStyle) {
    // The kept width was that of the other font.
    setMinimumWidth(0);
    fitText();
  }
  QWidget::changeEvent(event);
}

void PanelField::showIcon() {
  const int size = style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, this);
  picture_->setPixmap(icon_.pixmap(QSize(size, size), devicePixelRatioF()));
}

}  // namespace kestrel::qt
