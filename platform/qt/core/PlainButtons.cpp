#include "PlainButtons.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QEvent>
#include <QPushButton>

namespace kestrel::qt {
namespace {

constexpr QLatin1String kName("plainButtons");

class IconRemover final : public QObject {
 public:
  explicit IconRemover(QWidget& dialog) : QObject(&dialog), dialog_(dialog) {
    setObjectName(kName);
    dialog.installEventFilter(this);
  }

  bool eventFilter(QObject* /*watched*/, QEvent* event) override {
    if (event->type() == QEvent::Polish || event->type() == QEvent::Show) removeIcons();
    if (event->type() == QEvent::ChildPolished) {
      auto* const child = qobject_cast<QDialog*>(static_cast<QChildEvent*>(event)->child());
      if (child && !child->findChild<QObject*>(kName, Qt::FindDirectChildrenOnly)) {
        usePlainButtons(*child);
      }
    }
    return false;
  }

  void removeIcons() {
    for (const QDialogButtonBox* box : dialog_.findChildren<QDialogButtonBox*>()) {
      for (QAbstractButton* button : box->buttons()) button->setIcon({});
    }
  }

 private:
  QWidget& dialog_;
};

}  // namespace

void usePlainButtons(QWidget& dialog) { (new IconRemover(dialog))->removeIcons(); }

}  // namespace kestrel::qt
