#include "DesignerWidgets.h"

#include <QIcon>
#include <QWidget>
#include <exception>
#include <utility>

#include <kestrel/ImageBrowser.h>
#include <kestrel/ImageEditor.h>

namespace kestrel::qt {
namespace {

/// What the designer shows of a class, and writes into forms.
struct Description {
  QString className;
  QString header;
  QString objectName;
  QString toolTip;
  QString whatsThis;
};

const Description kEditor{
    QStringLiteral("kestrel::qt::ImageEditor"), QStringLiteral("kestrel/ImageEditor.h"),
    QStringLiteral("imageEditor"), QStringLiteral("Image editor"),
    QStringLiteral("Opens, edits and saves a picture, with menus, tool bars and a status bar.")};

const Description kBrowser{QStringLiteral("kestrel::qt::ImageBrowser"),
                           QStringLiteral("kestrel/ImageBrowser.h"), QStringLiteral("imageBrowser"),
                           QStringLiteral("Image browser"),
                           QStringLiteral("Shows a folder tree and the thumbnails of the selected folder.")};

/// A class of widgets for forms. The designer announces itself by `initialize` before it makes widgets; a
/// loader of forms, which runs them, does not.
template <typename Widget>
class CustomWidget final : public QDesignerCustomWidgetInterface {
 public:
  explicit CustomWidget(Description description) : description_(std::move(description)) {}

  QString name() const override { return description_.className; }
  QString group() const override { return QStringLiteral("Kestrel"); }
  QString toolTip() const override { return description_.toolTip; }
  QString whatsThis() const override { return description_.whatsThis; }
  QString includeFile() const override { return description_.header; }
  QIcon icon() const override { return QIcon(QStringLiteral(":/kestrel/application.svg")); }
  bool isContainer() const override { return false; }

  bool isInitialized() const override { return mode_ == Widget::Mode::kDesigning; }
  void initialize(QDesignerFormEditorInterface* /*core*/) override { mode_ = Widget::Mode::kDesigning; }

  /// Null if the widget cannot be made: an error must not pass through the designer.
  QWidget* createWidget(QWidget* parent) override {
    try {
      return new Widget(parent, mode_);
    } catch (const std::exception&) {
      return nullptr;
    }
  }

  QString domXml() const override {
    return QStringLiteral(
               R"(<ui language="c++"><widget class="%1" name="%2"><property name="geometry"><rect>)"
               R"(<x>0</x><y>0</y><width>640</width><height>480</height></rect></property></widget></ui>)")
        .arg(description_.className, description_.objectName);
  }

 private:
  Description description_;
  typename Widget::Mode mode_ = Widget::Mode::kRunning;
};

}  // namespace

DesignerWidgets::DesignerWidgets()
    : editor_(std::make_unique<CustomWidget<ImageEditor>>(kEditor)),
      browser_(std::make_unique<CustomWidget<ImageBrowser>>(kBrowser)) {}

QList<QDesignerCustomWidgetInterface*> DesignerWidgets::customWidgets() const {
  return {editor_.get(), browser_.get()};
}

}  // namespace kestrel::qt
