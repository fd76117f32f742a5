#include "ThumbnailAccessibility.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QHash>
#include <QPointer>

#include "ThumbnailArea.h"
#include "ThumbnailTexts.h"
#include "platform/qt/core/Guard.h"
#include "platform/qt/core/Text.h"
#include "platform/thumbnailview/ThumbnailViewModel.h"

namespace kestrel::qt {
namespace {

/// One item of a view, known by its position.
class AccessibleThumbnail final : public QAccessibleInterface, public QAccessibleActionInterface {
 public:
  AccessibleThumbnail(ThumbnailArea& area, std::int32_t item) : area_(&area), item_(item) {}

  bool isValid() const override { return view() && item_ < view()->itemCount(); }
  QObject* object() const override { return nullptr; }
  QAccessibleInterface* parent() const override {
    return area_ ? QAccessible::queryAccessibleInterface(area_.data()) : nullptr;
  }
  QAccessibleInterface* child(int /*index*/) const override { return nullptr; }
  QAccessibleInterface* childAt(int /*x*/, int /*y*/) const override { return nullptr; }
  int childCount() const override { return 0; }
  int indexOfChild(const QAccessibleInterface* /*child*/) const override { return -1; }
  QAccessible::Role role() const override { return QAccessible::ListItem; }
  QWindow* window() const override { return area_ ? area_->window()->windowHandle() : nullptr; }

  QString text(QAccessible::Text which) const override {
    if (!isValid()) return {};
    switch (which) {
      case QAccessible::Name:
        return toQt(view()->factsOf(item_).label);
      case QAccessible::Description:
        return detailsOf(view()->factsOf(item_)).join(QStringLiteral(", "));
      default:
        return {};
    }
  }
  void setText(QAccessible::Text /*which*/, const QString& /*text*/) override {}

  QRect rect() const override {
    if (!isValid()) return {};
    const bool inGrid = view()->arrangement().view() == kViewThumbnail;
    const Rectangle place =
        inGrid || view()->largeItem() != item_ ? view()->placeOf(item_).cell : view()->arrangement().large();
    const QRect area = area_->fromView(place);
    return QRect(area_->viewport()->mapToGlobal(area.topLeft()), area.size());
  }

  QAccessible::State state() const override {
    QAccessible::State state;
    if (!isValid()) {
      state.invalid = true;
      return state;
    }
    const thumbnails::ItemFacts facts = view()->factsOf(item_);
    state.selectable = true;
    state.multiSelectable = true;
    state.extSelectable = true;
    state.selected = facts.selected;
    state.focusable = true;
    state.focused = facts.focused && area_->hasFocus();
    state.busy = facts.state == thumbnails::ItemState::kWaiting;
    state.offscreen =
        !rect().intersects(QRect(area_->viewport()->mapToGlobal(QPoint()), area_->viewport()->size()));
    return state;
  }

  void* interface_cast(QAccessible::InterfaceType type) override {
    return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this) : nullptr;
  }

  QStringList actionNames() const override { return {pressAction(), toggleAction(), setFocusAction()}; }
  QStringList keyBindingsForAction(const QString& /*action*/) const override { return {}; }
  void doAction(const QString& action) override {
    if (!isValid()) return;
    guarded([&] {
      if (action == setFocusAction()) {
        area_->setFocus();
        view()->focus(item_);
      } else if (action == toggleAction()) {
        view()->select(item_, !view()->isSelected(item_));
      } else if (action == pressAction()) {
        view()->selectOnly(item_);
        view()->key(thumbnails::Key::kEnter, 0);
      }
    });
  }

 private:
  thumbnails::ThumbnailViewModel* view() const { return area_ ? area_->view() : nullptr; }

  QPointer<ThumbnailArea> area_;
  std::int32_t item_;
};

/// The list. Its items are made when they are asked for.
class AccessibleThumbnails final : public QAccessibleWidget {
 public:
  explicit AccessibleThumbnails(ThumbnailArea& area) : QAccessibleWidget(&area, QAccessible::List) {}
  ~AccessibleThumbnails() override {
    for (const QAccessible::Id id : items_) QAccessible::deleteAccessibleInterface(id);
  }

  int childCount() const override { return view() ? view()->itemCount() : 0; }

  QAccessibleInterface* child(int index) const override {
    if (index < 0 || index >= childCount()) return nullptr;
    const auto known = items_.constFind(index);
    if (known != items_.constEnd()) return QAccessible::accessibleInterface(*known);
    auto* const item = new AccessibleThumbnail(area(), index);
    items_.insert(index, QAccessible::registerAccessibleInterface(item));
    return item;
  }

  QAccessibleInterface* childAt(int x, int y) const override {
    if (!view()) return nullptr;
    return child(view()->hitTest(area().toView(area().viewport()->mapFromGlobal(QPoint(x, y)))));
  }

  QAccessibleInterface* focusChild() const override {
    return view() && area().hasFocus() ? child(view()->focusItem()) : nullptr;
  }

  int indexOfChild(const QAccessibleInterface* child) const override {
    for (auto item = items_.constBegin(); item != items_.constEnd(); ++item) {
      if (QAccessible::accessibleInterface(item.value()) == child) return item.key();
    }
    return -1;
  }

  /// The description is what is shown in place of items.
  QString text(QAccessible::Text which) const override {
    const bool asksForMessage = which == QAccessible::Description && view();
    return asksForMessage ? translated(view()->message()) : QAccessibleWidget::text(which);
  }

  QAccessible::State state() const override {
    QAccessible::State state = QAccessibleWidget::state();
    state.multiSelectable = true;
    state.extSelectable = true;
    return state;
  }

 private:
  ThumbnailArea& area() const { return *static_cast<ThumbnailArea*>(widget()); }
  thumbnails::ThumbnailViewModel* view() const { return area().view(); }

  mutable QHash<int, QAccessible::Id> items_;
};

QAccessibleInterface* accessibleOf(const QString& /*className*/, QObject* object) {
  auto* const area = qobject_cast<ThumbnailArea*>(object);
  return area ? new AccessibleThumbnails(*area) : nullptr;
}

}  // namespace

void useAccessibleThumbnails() {
  // The toolkit keeps each factory once.
  QAccessible::installFactory(&accessibleOf);
}

void reportItems(ThumbnailArea& area) {
  if (!QAccessible::isActive()) return;
  for (const QAccessible::Event what : {QAccessible::ObjectReorder, QAccessible::DescriptionChanged}) {
    QAccessibleEvent event(&area, what);
    QAccessible::updateAccessibility(&event);
  }
}

void reportSelection(ThumbnailArea& area) {
  if (!QAccessible::isActive()) return;
  QAccessibleEvent event(&area, QAccessible::SelectionWithin);
  QAccessible::updateAccessibility(&event);
}

void reportFocus(ThumbnailArea& area, std::int32_t item) {
  if (!QAccessible::isActive() || item < 0 || !area.hasFocus()) return;
  QAccessibleEvent event(&area, QAccessible::Focus);
  event.setChild(item);
  QAccessible::updateAccessibility(&event);
}

}  // namespace kestrel::qt
