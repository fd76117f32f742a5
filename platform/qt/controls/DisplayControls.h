#pragma once

#include <QLabel>
#include <optional>

#include "FrameWidget.h"
#include "PictureWidget.h"
#include "WidgetControl.h"
#include "imaging/contract/controls/Frame.h"
#include "imaging/contract/controls/Label.h"
#include "imaging/contract/controls/PictureBox.h"

namespace kestrel::qt {

class LabelControl final : public WidgetControl<Label> {
 public:
  LabelControl(QLabel& label, ControlId id);

  std::string Caption() const override;
  void Caption(const std::string& value) override;

 private:
  QLabel& label_;
  std::optional<std::string> caption_;  ///< English, if not that of the .ui file
};

class FrameControl final : public WidgetControl<Frame> {
 public:
  FrameControl(FrameWidget& frame, ControlId id) : WidgetControl(frame, std::move(id)), frame_(frame) {}

  std::string Caption() const override;
  void BackgroundPicture(const PicturePtr& value) override { frame_.setPicture(value); }
  PicturePtr BackgroundPicture() const override { return frame_.picture(); }

 private:
  FrameWidget& frame_;
};

class PictureBoxControl final : public WidgetControl<PictureBox> {
 public:
  PictureBoxControl(PictureWidget& box, ControlId id) : WidgetControl(box, std::move(id)), box_(box) {}

  PicturePtr Picture() const override { return box_.picture(); }
  void Picture(const PicturePtr& value) override { box_.setPicture(value); }

 private:
  PictureWidget& box_;
};

}  // namespace kestrel::qt
