#pragma once

#include <QString>
#include <functional>

class QObject;
class QWidget;

namespace kestrel::qt {

/// Sets the language of the component's texts, for the whole application: a locale such as "de" or "ar_EG";
/// an empty one means that of the toolkit (`QLocale()`). A language without a catalog shows the English
/// texts. Open windows change their texts when their events are processed next. With a language that is
/// written from right to left, the application's layout direction follows, unless the host has set one.
void useLanguage(const QString& locale);
/// The language of the texts, "en" without a catalog.
QString language();

/// Sets the toolkit's own texts, such as those of standard buttons, to the language, if its catalog is
/// installed. For programs: a host does so itself.
void useToolkitTexts(const QString& locale);

/// Calls `apply`, which sets texts of the widget, now and whenever the language has changed, while the widget
/// and `context` exist.
void keepTranslated(QWidget& widget, const QObject& context, std::function<void()> apply);

}  // namespace kestrel::qt
