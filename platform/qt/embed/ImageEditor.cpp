#include "ImageEditor.h"

#include <QCloseEvent>
#include <QPointer>
#include <QVBoxLayout>
#include <algorithm>
#include <chrono>
#include <utility>
#include <vector>

#include "ImageConversion.h"
#include "base/Required.h"
#include "diagnostics/Trailer.h"
#include "editor/ImageProcessingCtl.h"
#include "engine/imgx/EncodedPicture.h"
#include "engine/imgx/PictureObject.h"
#include "platform/qt/core/Guard.h"
#include "platform/qt/core/NeededTimer.h"
#include "platform/qt/core/Pictures.h"
#include "platform/qt/core/Text.h"
#include "platform/qt/dialogs/Modal.h"
#include "platform/qt/docking/QtMoorage.h"
#include "platform/qt/forms/EditorWidget.h"
#include "platform/qt/site/QtSite.h"
#include "recovery/Recovery.h"
#include "settings/StoredQuality.h"

namespace kestrel::qt {

/// The part that outlives calls of the control in progress when the host destroys the widget.
struct ImageEditor::Inside final {
  Inside(const SiteServices& services, Mode mode)
      : widget(std::make_unique<EditorWidget>()),
        site(*widget, "Processing", mode == Mode::kRunning, services),
        control(site),
        ticks(
            Recovery::kInterval, [this] { return recovery && recovery->NeedsTicks(); },
            [this] { recovery->Tick(std::chrono::steady_clock::now()); }) {}

  /// Detaches from the host: ends the control's events and closes its windows.
  void retire() {
    keepChanges(nullptr);
    site.propertyChanged = nullptr;
    events.clear();
    control.Retire();
    closeWindowsOf(*widget);
    widget->setParent(nullptr);
  }

  /// Null: no longer.
  void keepChanges(RecoveryStore* store) {
    changes = {};
    if (recovery) recovery->End();
    keepsChanges = store != nullptr;
    if (!keepsChanges) return;
    recovery = std::make_unique<Recovery>(control, *widget->moorage(), *store);
    changes = control.ImageControl().Changed.Connect([this] { ticks.look(); });
    recovery->Offer();
  }

  std::unique_ptr<EditorWidget> widget;
  QtSite site;
  ImageProcessingCtl control;
  std::vector<Connection> events;
  /// Kept after its end: it may be asking the user.
  std::unique_ptr<Recovery> recovery;
  bool keepsChanges = false;
  NeededTimer ticks;
  Connection changes;
};

ImageEditor::ImageEditor(Component& component, const PropertyBag* stored, QWidget* parent)
    : QWidget(parent),
      component_(component),
      inside_(std::make_unique<Inside>(component.siteServices(), Mode::kRunning)) {
  start(stored);
}

ImageEditor::ImageEditor(QWidget* parent, Mode mode)
    : QWidget(parent),
      own_(std::in_place),
      component_(*own_),
      inside_(std::make_unique<Inside>(component_.siteServices(), mode)) {
  start(nullptr);
}

void ImageEditor::start(const PropertyBag* stored) {
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(inside_->widget.get());
  setFocusProxy(inside_->widget.get());
  setFocusPolicy(Qt::TabFocus);  // an MDI sub-window gives the focus to a widget that takes it

  inside_->site.propertyChanged = [this](const std::string& name) { Q_EMIT propertyChanged(toQt(name)); };
  connectEvents();
  if (stored != nullptr) {
    inside_->site.ReadProperties(*stored);
  } else {
    inside_->site.InitProperties();
  }
}

void ImageEditor::connectEvents() {
  ImageProcessingCtl& control = inside_->control;
  const auto keep = [this](Connection connection) { inside_->events.push_back(std::move(connection)); };
  const auto request = [](std::string& filename, auto emitSignal) {
    QString name = toQt(filename);
    emitSignal(name);
    filename = fromQt(name);
  };
  keep(control.ExitRequest.Connect([this] { Q_EMIT exitRequested(); }));
  keep(control.ImageOpen.Connect([this](const std::string& file) { Q_EMIT imageOpened(toQt(file)); }));
  keep(control.ImageSave.Connect([this](const std::string& file) { Q_EMIT imageSaved(toQt(file)); }));
  keep(control.RequestOpenFilename.Connect([this, request](std::string& file, bool& cancel) {
    request(file, [&](QString& name) { Q_EMIT openFilenameRequested(name, cancel); });
  }));
  keep(control.RequestSaveFilename.Connect([this, request](std::string& file, bool& cancel) {
    request(file, [&](QString& name) { Q_EMIT saveFilenameRequested(name, cancel); });
  }));
  keep(control.ForeColorChange.Connect([this](OLE_COLOR color) { Q_EMIT foreColorChanged(toColor(color)); }));
  keep(control.BackColorChange.Connect([this](OLE_COLOR color) { Q_EMIT backColorChanged(toColor(color)); }));
  keep(control.ToolChange.Connect([this](ImageProcessingToolConstants tool) { Q_EMIT toolChanged(tool); }));
  keep(control.PictureSet.Connect([this] { Q_EMIT pictureSet(); }));
  keep(control.SimpleSaveRequest.Connect([this](bool& saved) { Q_EMIT simpleSaveRequested(saved); }));
  keep(control.Change.Connect([this] { Q_EMIT changed(); }));
}

ImageEditor::~ImageEditor() {
  inside_->retire();
  component_.platform().Retire(std::move(inside_));
}

IImageProcessingCtl& ImageEditor::control() { return inside_->control; }

bool ImageEditor::allowUnmodifiedHotKeys() const { return inside_->control.AllowUnmodifiedHotKeys(); }

void ImageEditor::setAllowUnmodifiedHotKeys(bool value) { inside_->control.AllowUnmodifiedHotKeys(value); }

bool ImageEditor::useSimpleTools() const { return inside_->control.UseSimpleTools(); }

void ImageEditor::setUseSimpleTools(bool value) { inside_->control.UseSimpleTools(value); }

bool ImageEditor::showDrawingTools() const { return inside_->control.ShowDrawingTools(); }

void ImageEditor::setShowDrawingTools(bool value) { inside_->control.ShowDrawingTools(value); }

bool ImageEditor::useSimpleSave() const { return inside_->control.UseSimpleSave(); }

void ImageEditor::setUseSimpleSave(bool value) { inside_->control.UseSimpleSave(value); }

bool ImageEditor::showClose() const { return inside_->control.ShowClose(); }

void ImageEditor::setShowClose(bool value) { inside_->control.ShowClose(value); }

bool ImageEditor::showOpen() const { return inside_->control.ShowOpen(); }

void ImageEditor::setShowOpen(bool value) { inside_->control.ShowOpen(value); }

bool ImageEditor::showMRU() const { return inside_->control.ShowMRU(); }

void ImageEditor::setShowMRU(bool value) { inside_->control.ShowMRU(value); }

bool ImageEditor::showMenuBar() const { return inside_->control.ShowMenuBar(); }

void ImageEditor::setShowMenuBar(bool value) { inside_->control.ShowMenuBar(value); }

bool ImageEditor::autoUpdateGlobal() const { return inside_->control.AutoUpdateGlobal(); }

void ImageEditor::setAutoUpdateGlobal(bool value) { inside_->control.AutoUpdateGlobal(value); }

bool ImageEditor::acceptFiles() const { return inside_->widget->acceptDrops(); }

void ImageEditor::setAcceptFiles(bool value) { inside_->widget->acceptFiles(value); }

bool ImageEditor::keepsChanges() const { return inside_->keepsChanges; }

void ImageEditor::setKeepsChanges(bool value) {
  if (value != keepsChanges()) inside_->keepChanges(value ? component_.recoveryStore() : nullptr);
}

QImage ImageEditor::picture() {
  if (control().Image() == nullptr) return {};
  return imageOf(engine::stateOf(Required(control().ImgX())));
}

void ImageEditor::setPicture(const QImage& picture) {
  control().Picture(picture.isNull() ? nullptr : std::make_shared<engine::PictureObject>(pictureOf(picture)));
}

QByteArray ImageEditor::encodedPicture(std::int32_t format, int jpegQuality) {
  engine::EncodeOptions options;
  if (jpegQuality != -1) {
    options.jpegQuality = jpegQuality;
  } else {
    // As a save does: a damaged setting is ignored.
    QDK_RESUME_NEXT(options.jpegQuality = std::clamp(StoredJPEGQuality(), 1, 100));
  }
  const auto file = engine::encodedPicture(Required(control().ImgX()), format, options);
  return {reinterpret_cast<const char*>(file.data()), static_cast<qsizetype>(file.size())};
}

void ImageEditor::setEncodedPicture(const QByteArray& file) {
  const auto* const bytes = reinterpret_cast<const std::uint8_t*>(file.constData());
  control().Picture(engine::decodedPicture({bytes, static_cast<std::size_t>(file.size())}));
}

void ImageEditor::closeEvent(QCloseEvent* event) {
  if (!asksOnClose_) return QWidget::closeEvent(event);
  const QPointer<ImageEditor> self(this);  // the host may destroy the editor while the user is asked
  event->setAccepted(inside_->control.SaveChanges() || !self);
}

void ImageEditor::showEvent(QShowEvent* event) {
  // Without a host that does it. The file dialog is made by Initialize.
  if (own_ && control().BrowseDialog() == nullptr) control().Initialize();
  QWidget::showEvent(event);
}

void ImageEditor::save(PropertyBag& bag) { inside_->site.WriteProperties(bag); }

}  // namespace kestrel::qt
