#include "NoticeStrip.h"

#include <QAccessible>
#include <QKeyEvent>
#include <QPainter>
#include <QStyle>
#include <QToolButton>
#include <algorithm>

#include "platform/qt/core/Language.h"
#include "platform/qt/core/SvgIcon.h"
#include "platform/qt/core/Text.h"
#include "platform/qt/site/SiteWidget.h"

namespace kestrel::qt {
namespace {

constexpr int kMargin = 6;
constexpr int kGap = 8;
/// Minimum text width, in characters, next to the button; with less, the button goes below the text.
constexpr int kMinimumTextCharacters = 48;

QColor mixed(const QColor& front, const QColor& back, float share) {
  const auto mix = [share](float a, float b) { return a * share + b * (1.0F - share); };
  return QColor::fromRgbF(mix(front.redF(), back.redF()), mix(front.greenF(), back.greenF()),
                          mix(front.blueF(), back.blueF()));
}

/// An SVG icon at the style's small icon size; follows the theme.
class NoticeIcon final : public QWidget {
 public:
  explicit NoticeIcon(QWidget* parent) : QWidget(parent) {
    const int side = style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, this);
    setFixedSize(side, side);
  }

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    QPainter painter(this);
    svgIcon("Info-2").paint(&painter, rect());
  }
};

}  // namespace

NoticeStrip::NoticeStrip(QWidget* parent)
    : QWidget(parent),
      layout_(new QGridLayout(this)),
      text_(new NoticeText(this)),
      button_(new QPushButton(this)) {
  hide();
  setObjectName(QStringLiteral("notice"));
  setCursor(Qt::ArrowCursor);
  setContextMenuPolicy(Qt::NoContextMenu);

  button_->setAutoDefault(false);  // Return in the picture must not press it
  auto* const cross = new QToolButton(this);
  cross->setObjectName(QStringLiteral("noticeClose"));
  cross->setIcon(svgIcon("Close"));
  cross->setAutoRaise(true);
  cross->setFocusPolicy(Qt::TabFocus);
  keepTranslated(*cross, *cross, [cross] {
    cross->setAccessibleName(translated("Close this notice"));
    cross->setToolTip(cross->accessibleName());
  });
  text_->setObjectName(QStringLiteral("noticeText"));
  button_->setObjectName(QStringLiteral("noticeButton"));
  button_->setFocusPolicy(Qt::TabFocus);
  setTabOrder(button_, cross);
  connect(cross, &QAbstractButton::clicked, this, &NoticeStrip::closed);
  connect(button_, &QAbstractButton::clicked, this, &NoticeStrip::buttonPressed);

  layout_->setContentsMargins(kGap, kMargin, kMargin, kMargin);
  layout_->setHorizontalSpacing(kGap);
  layout_->setVerticalSpacing(kMargin);
  layout_->setColumnStretch(1, 1);
  layout_->addWidget(new NoticeIcon(this), 0, 0, Qt::AlignVCenter);
  layout_->addWidget(text_, 0, 1);
  layout_->addWidget(button_, 0, 2, Qt::AlignVCenter);
  layout_->addWidget(cross, 0, 3, Qt::AlignVCenter);
}

void NoticeStrip::showText(const QString& text, const QString& button) {
  text_->setText(text);
  setAccessibleName(text);
  button_->setText(button);
  button_->setVisible(!button.isEmpty());
  setVisible(!text.isEmpty());
  if (text.isEmpty()) return;
  QAccessibleEvent alert(this, QAccessible::Alert);
  QAccessible::updateAccessibility(&alert);
}

int NoticeStrip::heightAt(int width, int most) {
  arrangeFor(width);
  return std::min(layout_->totalHeightForWidth(width), most);
}

void NoticeStrip::arrangeFor(int width) {
  const int letters = (width - button_->sizeHint().width()) / fontMetrics().averageCharWidth();
  const bool below = letters < kMinimumTextCharacters;
  if (below == buttonBelow_) return;
  buttonBelow_ = below;
  layout_->removeWidget(button_);
  if (below) {
    layout_->addWidget(button_, 1, 1, Qt::AlignLeft);
  } else {
    layout_->addWidget(button_, 0, 2, Qt::AlignVCenter);
  }
}

void NoticeStrip::paintEvent(QPaintEvent* /*event*/) {
  const QColor accent = palette().color(QPalette::Highlight);
  const QColor face = palette().color(QPalette::Window);
  QPainter painter(this);
  painter.fillRect(rect(), mixed(accent, face, 0.16F));
  painter.fillRect(0, height() - 1, width(), 1, mixed(accent, face, 0.5F));
}

void NoticeStrip::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape) {
    Q_EMIT closed();
    SiteWidget::forwardKey(*this, *event);
  } else if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    if (auto* const focused = qobject_cast<QAbstractButton*>(focusWidget())) focused->click();
  } else {
    event->ignore();
  }
}

}  // namespace kestrel::qt
