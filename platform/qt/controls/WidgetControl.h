#pragma once

#include <QObject>
#include <QWidget>
#include <string>
#include <utility>

#include "platform/qt/core/Handles.h"

namespace kestrel::qt {

/// The name of a control and its index in its control array, -1 outside one.
struct ControlId {
  std::string name;
  std::int32_t index = -1;
};

/// Implements the common members of contract controls on a widget. `Face` is the contract class, or a class
/// derived from it. Positions are logical pixels relative to the widget's parent. The widget is not owned.
template <typename Face>
class WidgetControl : public Face {
 public:
  template <typename... FaceArguments>
  WidgetControl(QWidget& widget, ControlId id, FaceArguments&&... arguments)
      : Face(std::forward<FaceArguments>(arguments)...), widget_(widget), id_(std::move(id)) {}

  const std::string& Name() const override { return id_.name; }
  std::int32_t Index() const override { return id_.index; }

  std::int32_t Left() const override { return widget_.x(); }
  void Left(std::int32_t value) override { widget_.move(value, widget_.y()); }
  std::int32_t Top() const override { return widget_.y(); }
  void Top(std::int32_t value) override { widget_.move(widget_.x(), value); }
  std::int32_t Width() const override { return widget_.width(); }
  void Width(std::int32_t value) override { widget_.resize(value, widget_.height()); }
  std::int32_t Height() const override { return widget_.height(); }
  void Height(std::int32_t value) override { widget_.resize(widget_.width(), value); }
  void Move(std::int32_t left, std::int32_t top, std::int32_t width, std::int32_t height) override {
    widget_.setGeometry(left, top, width, height);
  }

  bool Visible() const override { return !widget_.isHidden(); }
  void Visible(bool value) override { widget_.setVisible(value); }
  bool Enabled() const override { return widget_.isEnabledTo(widget_.parentWidget()); }
  void Enabled(bool value) override { widget_.setEnabled(value); }

  void ZOrder() override { widget_.raise(); }
  WindowHandle hWnd() const override { return handleOf(&widget_); }

 protected:
  QWidget& widget() const { return widget_; }
  /// The context object of signal connections: they end with this object, which may be destroyed before the
  /// widget.
  const QObject* receiver() const { return &receiver_; }

 private:
  QWidget& widget_;
  ControlId id_;
  QObject receiver_;
};

}  // namespace kestrel::qt
