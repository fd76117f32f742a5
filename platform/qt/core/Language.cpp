#include "Language.h"

#include <QCoreApplication>
#include <QEvent>
#include <QLibraryInfo>
#include <QLocale>
#include <QPointer>
#include <QTranslator>
#include <QWidget>
#include <optional>
#include <utility>

#include "Text.h"
#include "translations/Catalogs.h"

namespace kestrel::qt {
namespace {

constexpr char kCatalog[] = "kestrelCatalog";
constexpr char kToolkitTexts[] = "kestrelToolkitTexts";

/// Answers the toolkit from our catalog, so that a host's translators can precede it. Its language can
/// change.
class CatalogTranslator final : public QTranslator {
 public:
  using QTranslator::QTranslator;

  void use(const CatalogTable* table) {
    catalog_.reset();
    if (table) catalog_.emplace(*table);
  }

  const std::optional<Catalog>& catalog() const { return catalog_; }

  bool isEmpty() const override { return false; }

  QString translate(const char* context, const char* source, const char* /*remark*/,
                    int /*count*/) const override {
    if (!catalog_) return {};
    if (qstrcmp(context, kTextContext) == 0) {
      const std::string text = catalog_->Translated(source);
      return text == source ? QString() : toQt(text);
    }
    const bool asksForDirection =
        qstrcmp(context, "QGuiApplication") == 0 && qstrcmp(source, "QT_LAYOUT_DIRECTION") == 0;
    return asksForDirection && catalog_->IsRightToLeft() ? QStringLiteral("RTL") : QString();
  }

 private:
  std::optional<Catalog> catalog_;
};

/// That of the present application object, which owns it; null before the first use.
CatalogTranslator* presentTranslator() {
  return static_cast<CatalogTranslator*>(qApp->findChild<QTranslator*>(QLatin1String(kCatalog)));
}

/// Applies the texts again when the language has changed.
class TextKeeper final : public QObject {
 public:
  TextKeeper(QWidget& widget, const QObject& context, std::function<void()> apply)
      : QObject(&widget), context_(&context), apply_(std::move(apply)) {
    widget.installEventFilter(this);
  }

  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::LanguageChange && watched == parent() && context_) apply_();
    return false;
  }

 private:
  const QPointer<const QObject> context_;
  const std::function<void()> apply_;
};

}  // namespace

void useLanguage(const QString& locale) {
  CatalogTranslator* translator = presentTranslator();
  if (!translator) {
    translator = new CatalogTranslator(qApp);
    translator->setObjectName(QLatin1String(kCatalog));
    QCoreApplication::installTranslator(translator);
  }
  const QString wanted = locale.isEmpty() ? QLocale().name() : locale;
  const CatalogTable* const table = translations::catalogTableOf(fromQt(wanted));
  const std::string_view before =
      translator->catalog() ? translator->catalog()->Language() : std::string_view();
  if (before == (table ? table->language : std::string_view())) return;
  translator->use(table);
  QEvent changed(QEvent::LanguageChange);
  QCoreApplication::sendEvent(qApp, &changed);
}

QString language() {
  const CatalogTranslator* const translator = presentTranslator();
  return translator && translator->catalog() ? toQt(translator->catalog()->Language()) : QStringLiteral("en");
}

void useToolkitTexts(const QString& locale) {
  delete qApp->findChild<QTranslator*>(QLatin1String(kToolkitTexts));  // removes itself
  auto* const translator = new QTranslator(qApp);
  translator->setObjectName(QLatin1String(kToolkitTexts));
  const bool found =
      translator->load(locale.isEmpty() ? QLocale() : QLocale(locale), QStringLiteral("qtbase"),
                       QStringLiteral("_"), QLibraryInfo::path(QLibraryInfo::TranslationsPath));
  if (found) QCoreApplication::installTranslator(translator);
}

void keepTranslated(QWidget& widget, const QObject& context, std::function<void()> apply) {
  apply();
  new TextKeeper(widget, context, std::move(apply));
}

}  // namespace kestrel::qt
