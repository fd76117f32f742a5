#include "ColorPalette.h"

#include <QButtonGroup>
#include <QGridLayout>
#include <QKeyEvent>
#include <QStyleOptionToolButton>
#include <QStylePainter>
#include <QToolButton>
#include <QWidgetAction>
#include <array>

#include "ButtonAccessibility.h"
#include "platform/qt/core/FramedFill.h"
#include "platform/qt/core/Text.h"

namespace kestrel::qt {
namespace {

constexpr int kColumns = 8;
constexpr int kSwatch = 18;
/// Width of the frame around the color that has the focus.
constexpr int kFocus = 2;
constexpr qsizetype kRecent = kColumns;

// Grays, then eight hues in four strengths.
constexpr std::array<QRgb, 40> kPalette = {
    0x000000, 0x404040, 0x606060, 0x808080, 0xa0a0a0, 0xc0c0c0, 0xe0e0e0, 0xffffff,  //
    0x7f1d1d, 0x7c3a0b, 0x78610f, 0x1c5c2e, 0x0f5a5e, 0x1b3f86, 0x4a2a86, 0x7d1f62,  //
    0xc81e1e, 0xe06a10, 0xe0b000, 0x2e9e4a, 0x12a0a6, 0x2a6fdb, 0x7a48d2, 0xcc3a9e,  //
    0xff3b30, 0xff9020, 0xffd60a, 0x4cd964, 0x30d0d8, 0x5aa0ff, 0xa67cff, 0xff6fcb,  //
    0xffc2be, 0xffdcb8, 0xfff3b0, 0xc4f2cc, 0xbdeff1, 0xcfe2ff, 0xe1d4ff, 0xffd3ee};

QList<QColor>& recentColors() {
  static QList<QColor> colors;
  return colors;
}

/// A color of the menu. Return chooses it; the toolkit's buttons know only Space. The focus is shown by a
/// frame that can be seen on any color, which that of some styles cannot.
class Swatch final : public QToolButton {
 public:
  explicit Swatch(const QColor& color) : color_(color) {
    setFocusPolicy(Qt::StrongFocus);
    setAutoRaise(true);
    setIconSize(QSize(kSwatch, kSwatch));
    setToolTip(color.name());
    setAccessibleName(color.name());
    presentAsChoice(*this);
  }

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    QStylePainter painter(this);
    QStyleOptionToolButton option;
    initStyleOption(&option);
    option.state.setFlag(QStyle::State_HasFocus, false);
    painter.drawComplexControl(QStyle::CC_ToolButton, option);
    if (hasFocus()) {
      constexpr double kHalf = kFocus / 2.0;
      painter.setPen(
          QPen(palette().color(QPalette::Highlight), kFocus, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
      painter.drawRect(QRectF(rect()).adjusted(kHalf, kHalf, -kHalf, -kHalf));
    }
    QRect face(QPoint(), iconSize());
    face.moveCenter(rect().center());
    fillFramed(painter, face, color_, palette().color(QPalette::Mid));
  }

  void keyPressEvent(QKeyEvent* event) override {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
      click();
    } else {
      QToolButton::keyPressEvent(event);
    }
  }

 private:
  QColor color_;
};

}  // namespace

void ColorPalette::remember(const QColor& color) {
  QList<QColor>& colors = recentColors();
  colors.removeAll(color);
  colors.prepend(color);
  if (colors.size() > kRecent) colors.resize(kRecent);
}

void ColorPalette::fill(const QColor& chosen, const QString& enhancedCaption) {
  if (!enhancedCaption.isEmpty()) {
    QAction* const extra = addAction(enhancedCaption);
    extra->setCheckable(true);
    extra->setChecked(!chosen.isValid());
    if (!chosen.isValid()) start_ = extra;
    connect(extra, &QAction::triggered, this, &ColorPalette::enhancedChosen);
    addSeparator();
  }
  QList<QColor> colors;
  for (const QRgb color : kPalette) colors += QColor(color);
  addSwatches(colors, chosen);
  if (!recentColors().isEmpty()) {
    addSection(translated("Recent colors"));
    addSwatches(recentColors(), chosen);
  }
  addSeparator();
  connect(addAction(translated("&More Colors...")), &QAction::triggered, this, &ColorPalette::moreWanted);
}

void ColorPalette::addSwatches(const QList<QColor>& colors, const QColor& chosen) {
  auto* const field = new QWidget;
  field->setFocusPolicy(Qt::StrongFocus);
  auto* const grid = new QGridLayout(field);
  // The arrow keys move the focus within a group.
  auto* const group = new QButtonGroup(field);
  group->setExclusive(false);
  auto* const action = new QWidgetAction(this);
  grid->setContentsMargins(6, 4, 6, 4);
  grid->setSpacing(2);
  grid->setColumnStretch(kColumns, 1);  // keeps a short row at the left, below the columns of the palette
  for (qsizetype i = 0; i < colors.size(); ++i) {
    const QColor color = colors[i];
    auto* const swatch = new Swatch(color);
    swatch->setCheckable(color.rgb() == chosen.rgb() && chosen.isValid());
    swatch->setChecked(swatch->isCheckable());
    connect(swatch, &QToolButton::clicked, this, [this, color] {
      remember(color);
      close();
      Q_EMIT colorChosen(color);
    });
    grid->addWidget(swatch, static_cast<int>(i) / kColumns, static_cast<int>(i) % kColumns);
    group->addButton(swatch);
    if (i == 0 || swatch->isChecked()) field->setFocusProxy(swatch);
    if (!start_ && swatch->isChecked()) start_ = action;
  }
  action->setDefaultWidget(field);
  addAction(action);
}

void ColorPalette::focusChosen() {
  if (!start_) return;
  setActiveAction(start_);
  // The menu itself moves the focus into a widget only for a key.
  const auto* const field = qobject_cast<QWidgetAction*>(start_);
  if (field) field->defaultWidget()->setFocus(Qt::TabFocusReason);
}

}  // namespace kestrel::qt
