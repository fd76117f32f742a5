#include "DialogLooks.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFont>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMap>
#include <QSlider>
#include <QStyle>
#include <QTabBar>
#include <QTranslator>
#include <algorithm>
#include <memory>

#include "../EditorBench.h"
#include "../Themes.h"

namespace kestrel::desktop {
namespace {

constexpr double kLonger = 0.4;

/// Lengthens the texts of our forms and messages. Access keys and final punctuation keep their places.
class LongTexts final : public QTranslator {
 public:
  LongTexts() { QApplication::installTranslator(this); }
  ~LongTexts() override { QApplication::removeTranslator(this); }

  bool isEmpty() const override { return false; }
  QString translate(const char* context, const char* source, const char* /*disambiguation*/,
                    int /*n*/) const override {
    const QString english = QString::fromUtf8(source);
    const bool ours = QByteArray(context).startsWith("frm") || QByteArray(context) == "kestrel";
    if (!ours || english.isEmpty()) return english;
    const QString filling = QStringLiteral("\u00fcberm\u00e4\u00dfigenlangtext");
    const auto count = static_cast<qsizetype>(static_cast<double>(english.size()) * kLonger) + 1;
    qsizetype end = english.size();
    while (end > 0 && english[end - 1].isPunct()) --end;
    return english.left(end) + filling.repeated(2).left(count) + english.mid(end);
  }
};

class DoubleFont {
 public:
  DoubleFont() : before_(QApplication::font()) {
    QFont twice = before_;
    twice.setPointSizeF(2 * before_.pointSizeF());
    QApplication::setFont(twice);
  }
  DoubleFont(const DoubleFont&) = delete;
  DoubleFont& operator=(const DoubleFont&) = delete;
  ~DoubleFont() { QApplication::setFont(before_); }

 private:
  QFont before_;
};

std::string describe(const QWidget& widget) {
  return widget.objectName().toStdString() + " (" + std::to_string(widget.width()) + " x " +
         std::to_string(widget.height()) + ")";
}

bool isPartOfComposite(const QWidget& widget) {
  return qobject_cast<const QComboBox*>(widget.parentWidget()) ||
         widget.objectName().startsWith(QStringLiteral("qt_")) || widget.objectName().isEmpty();
}

/// The controls that a user sees or operates, without their containers and their internal parts.
QList<QWidget*> controlsOf(const QWidget& window) {
  QList<QWidget*> controls;
  for (QWidget* const widget : window.findChildren<QWidget*>()) {
    const bool known = qobject_cast<QLabel*>(widget) || qobject_cast<QAbstractButton*>(widget) ||
                       qobject_cast<QLineEdit*>(widget) || qobject_cast<QComboBox*>(widget) ||
                       qobject_cast<QSlider*>(widget) || qobject_cast<QTabBar*>(widget);
    if (known && widget->isVisible() && !isPartOfComposite(*widget)) controls += widget;
  }
  return controls;
}

void expectTextFits(const QWidget& widget) {
  QSize needed = widget.sizeHint();
  if (const auto* const edit = qobject_cast<const QLineEdit*>(&widget)) {
    needed = edit->minimumSizeHint();
    const int text = edit->fontMetrics().horizontalAdvance(edit->text());
    EXPECT_GE(edit->width(), text + 2 * edit->style()->pixelMetric(QStyle::PM_DefaultFrameWidth))
        << describe(widget) << " cuts off \"" << edit->text().toStdString() << '"';
  } else if (const auto* const label = qobject_cast<const QLabel*>(&widget); label && label->wordWrap()) {
    needed = {0, label->heightForWidth(label->width())};
  } else if (qobject_cast<const QCheckBox*>(&widget)) {
    // The style's space above and below may be missing.
    needed.setHeight(std::min(needed.height(), widget.fontMetrics().height()));
  } else if (qobject_cast<const QSlider*>(&widget)) {
    needed = widget.minimumSizeHint();
  }
  EXPECT_GE(widget.width(), needed.width()) << describe(widget);
  EXPECT_GE(widget.height(), needed.height()) << describe(widget);
}

QRect placeIn(const QWidget& window, const QWidget& widget) {
  return {widget.mapTo(&window, QPoint()), widget.size()};
}

}  // namespace

std::string Look::name() const {
  return std::string(dark ? "dark" : "light") + (doubleFont ? "-double" : "") + (longTexts ? "-long" : "");
}

void expectGoodLooks(const std::string& name, const std::function<void()>& open,
                     const std::function<void(QWidget&)>& prepare) {
  const QPalette light = QApplication::palette();
  for (int bits = 0; bits < 8; ++bits) {
    const Look look{(bits & 1) != 0, (bits & 2) != 0, (bits & 4) != 0};
    SCOPED_TRACE(look.name());
    const Theme theme(look.dark ? darkPalette() : light);
    const auto font = look.doubleFont ? std::make_unique<DoubleFont>() : nullptr;
    const auto texts = look.longTexts ? std::make_unique<LongTexts>() : nullptr;
    bool opened = false;
    whenModalOpens([&](QWidget& window) {
      opened = true;
      settle();
      if (prepare) prepare(window);
      settle();
      expectNothingCutOff(window);
      expectAccessibleNames(window);
      writeScreenshot(window, name + "-" + look.name());
      if (!look.doubleFont) {
        SCOPED_TRACE("the font changes while the dialog is open");
        const DoubleFont later;
        for (int round = 0; round < 3; ++round) settle();
        expectNothingCutOff(window);
      }
      window.close();
    });
    open();
    EXPECT_TRUE(opened);
  }
}

void expectNothingCutOff(QWidget& window) {
  const QList<QWidget*> controls = controlsOf(window);
  EXPECT_FALSE(controls.isEmpty());
  for (qsizetype i = 0; i < controls.size(); ++i) {
    const QWidget& control = *controls[i];
    expectTextFits(control);
    EXPECT_TRUE(control.parentWidget()->rect().contains(control.geometry()))
        << describe(control) << " leaves its container";
    const QRect place = placeIn(window, control);
    EXPECT_TRUE(window.rect().contains(place)) << describe(control) << " leaves the window";
    for (qsizetype j = 0; j < i; ++j) {
      EXPECT_FALSE(place.intersects(placeIn(window, *controls[j])))
          << describe(control) << " overlaps " << describe(*controls[j]);
    }
  }
  for (const QGroupBox* const group : window.findChildren<QGroupBox*>()) {
    if (!group->isVisible()) continue;
    EXPECT_GE(group->width(), group->fontMetrics().horizontalAdvance(group->title())) << describe(*group);
    EXPECT_GE(group->width(), group->minimumSizeHint().width()) << describe(*group);
  }
}

void expectAccessibleNames(QWidget& window) {
  for (QWidget* const control : controlsOf(window)) {
    if (control->focusPolicy() == Qt::NoFocus) continue;
    QAccessibleInterface* const face = QAccessible::queryAccessibleInterface(control);
    ASSERT_NE(face, nullptr) << describe(*control);
    EXPECT_FALSE(face->text(QAccessible::Name).isEmpty()) << describe(*control);
    if (qobject_cast<QSlider*>(control)) {
      ASSERT_NE(face->valueInterface(), nullptr) << describe(*control);
      EXPECT_EQ(face->valueInterface()->currentValue().toInt(), static_cast<QSlider*>(control)->value());
    }
  }
}

void expectAccessKeys(QWidget& window, const QString& shared) {
  QMap<QString, std::string> owners;
  const auto add = [&](const QString& text, const QWidget& widget) {
    const QString key = QKeySequence::mnemonic(text).toString().right(1);
    if (key.isEmpty() || shared.contains(key)) return;
    EXPECT_FALSE(owners.contains(key))
        << key.toStdString() << " of " << describe(widget) << " is also that of " << owners[key];
    owners[key] = describe(widget);
  };
  for (QWidget* const control : controlsOf(window)) {
    if (const auto* const label = qobject_cast<QLabel*>(control); label && label->buddy()) {
      add(label->text(), *label);
    } else if (const auto* const button = qobject_cast<QAbstractButton*>(control)) {
      add(button->text(), *button);
    }
  }
  EXPECT_FALSE(owners.isEmpty());
}

}  // namespace kestrel::desktop
