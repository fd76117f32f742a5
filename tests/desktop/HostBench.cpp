#include "HostBench.h"

#include <QApplication>
#include <QHBoxLayout>

#include "platform/qt/core/Pictures.h"
#include "settings/modProcessing.h"

namespace kestrel::desktop {

HostedEditor::HostedEditor(qt::QtPlatform& platform, QWidget& parent)
    : widget_(std::make_unique<qt::EditorWidget>(&parent)) {
  widget_->setProperty("AllowUnmodifiedHotKeys", true);
  site_ = std::make_unique<qt::QtSite>(*widget_, "Processing", true, platform.siteServices());
  control_ = std::make_unique<ImageProcessingCtl>(*site_);
  site_->initialize();
  control_->Initialize();
  control_->Picture(std::make_shared<qt::ImagePicture>(noise(400, 300)));
  clicks_ = moorage().CommandClick.Connect([this](Command& command) { clicked_ += command.Name() + ' '; });
}

HostedEditor::~HostedEditor() { control_->Terminate(); }

HostBench::HostBench() : platform_(testPlatform()), window_(std::make_unique<QWidget>()) {
  modProcessing::Attach(*platform_);
  modProcessing::Main();
  auto* const row = new QHBoxLayout(window_.get());
  row->setContentsMargins(0, 0, 0, 0);
}

HostBench::~HostBench() {
  editors_.clear();
  window_.reset();
  modProcessing::Detach();
}

void HostBench::add(QWidget& widget) { window_->layout()->addWidget(&widget); }

HostedEditor& HostBench::addEditor() {
  editors_.push_back(std::make_unique<HostedEditor>(*platform_, *window_));
  add(editors_.back()->widget());
  return *editors_.back();
}

void HostBench::show() {
  window_->resize(1400, 600);
  window_->show();
  QApplication::setActiveWindow(window_.get());
  settle();
}

}  // namespace kestrel::desktop
