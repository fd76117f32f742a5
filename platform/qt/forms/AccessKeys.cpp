#include "AccessKeys.h"

#include <QAbstractButton>
#include <QLabel>
#include <QList>
#include <QSet>

#include "platform/qt/site/SiteWidget.h"

namespace kestrel::qt {
namespace {

constexpr QChar kMark = u'&';

/// Whether the widget is, or is inside, a control of our own, which has no access keys.
bool isInSite(const QWidget* widget, const QWidget& form) {
  for (; widget && widget != &form; widget = widget->parentWidget()) {
    if (qobject_cast<const SiteWidget*>(widget)) return true;
  }
  return false;
}

/// The widget's text with an access key's mark; empty for a widget that has none.
QString textOf(const QWidget& widget) {
  if (const auto* const label = qobject_cast<const QLabel*>(&widget)) {
    return label->buddy() ? label->text() : QString();
  }
  const auto* const button = qobject_cast<const QAbstractButton*>(&widget);
  return button ? button->text() : QString();
}

void setText(QWidget& widget, const QString& text) {
  if (auto* const label = qobject_cast<QLabel*>(&widget)) label->setText(text);
  if (auto* const button = qobject_cast<QAbstractButton*>(&widget)) button->setText(text);
}

/// The upper-case letter after the mark; null without one. Two marks stand for an ampersand.
QChar keyOf(const QString& text) {
  for (qsizetype i = 0; i + 1 < text.size(); ++i) {
    if (text[i] != kMark) continue;
    if (text[i + 1] != kMark) return text[i + 1].toUpper();
    ++i;
  }
  return {};
}

/// The text with its mark at the first free initial, else at the first free letter, else without a mark.
QString withFreeKey(const QString& text, const QSet<QChar>& taken) {
  QString plain = text;
  for (qsizetype i = 0; i + 1 < plain.size(); ++i) {
    if (plain[i] != kMark) continue;
    if (plain[i + 1] != kMark) {
      plain.remove(i, 1);
      break;
    }
    ++i;
  }
  const auto isFree = [&](qsizetype i) {
    return plain[i].isLetterOrNumber() && !taken.contains(plain[i].toUpper());
  };
  for (const bool initialsOnly : {true, false}) {
    for (qsizetype i = 0; i < plain.size(); ++i) {
      const bool initial = i == 0 || plain[i - 1].isSpace();
      if (isFree(i) && (initial || !initialsOnly)) return plain.insert(i, kMark);
    }
  }
  return plain;
}

}  // namespace

void separateAccessKeys(QWidget& form) {
  QSet<QChar> taken;
  QList<QWidget*> colliding;
  for (QWidget* const widget : form.findChildren<QWidget*>()) {
    if (!widget->isVisibleTo(&form) || isInSite(widget, form)) continue;
    const QChar key = keyOf(textOf(*widget));
    if (key.isNull()) continue;
    if (taken.contains(key)) {
      colliding += widget;
    } else {
      taken.insert(key);
    }
  }
  for (QWidget* const widget : colliding) {
    setText(*widget, withFreeKey(textOf(*widget), taken));
    taken.insert(keyOf(textOf(*widget)));
  }
}

}  // namespace kestrel::qt
