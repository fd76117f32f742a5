#include "ImageProcessing.h"

#include <utility>

#include "base/Required.h"
#include "diagnostics/ErrorListener.h"
#include "diagnostics/Trailer.h"
#include "frmImageEditor.h"
#include "host/interface/IImageEvents.h"
#include "imaging/modImgX.h"
#include "settings/RootKey.h"
#include "settings/modProcessing.h"

namespace kestrel {

/// The part that outlives its calls of the host, in which the host may end the object. It is the sink of the
/// control, which holds it weakly.
class ImageProcessing::Inside final : public IImageEvents,
                                      public std::enable_shared_from_this<ImageProcessing::Inside> {
 public:
  explicit Inside(ImageProcessing& events) : IImageEvents(NotCounted()), iEvents(&events) {}

  std::string TypeName() const override { return "ImageProcessing"; }

  void Start();
  void End();
  /// From now on no event is raised.
  void Silence();

  frmImageEditor& Window() const { return Required(mWindow); }
  std::string ThumbnailName(const std::string& Filename) const;
  const std::string& Title() const { return mTitle; }
  void Title(const std::string& Value);
  void Show(bool Modal);

  void RequestSaveFilename(std::string& Filename, bool& CancelDefault) override;
  void RequestOpenFilename(std::string& Filename, bool& CancelDefault) override;
  void ImageSave(const std::string& Filename) override;
  void ImageOpen(const std::string& Filename) override;

 private:
  void mForm_QueryUnload();
  /// Raises an event of the host's object, if that still exists.
  template <typename Raised, typename... Arguments>
  void zRaise(Raised ImageProcessing::*Member, Arguments&... Values) {
    CallHost(modProcessing::Platform().Calls, [&] {
      if (iEvents) (iEvents->*Member)(Values...);
    });
  }

  std::string qdkDumpModuleVariables() const { return QDK_FIELDS(mWindow, mForm, mTitle); }

  std::shared_ptr<frmImageEditor> mWindow;
  Form* mForm = nullptr;
  std::string mTitle;
  ImageProcessing* iEvents;
  Connection iQueryUnload;
  bool iEnding = false;
};

// -- Life -------------------------------------------------------------------------------------------------

void ImageProcessing::Inside::Start() {
  modProcessing::RegistryStore().RootKey(kRootKey);
  modProcessing::RegistryStore().RootHive(HKEY_CURRENT_USER);
  mWindow = std::make_shared<frmImageEditor>();
  mForm = &mWindow->Form();
  iQueryUnload = mWindow->QueryUnload.Connect([weak = weak_from_this()] {
    if (const auto self = weak.lock()) self->mForm_QueryUnload();
  });
  mWindow->Processing().EventSink(shared_from_this());
}

void ImageProcessing::Inside::End() {
  if (!mWindow || iEnding) return;
  iEnding = true;
  mWindow->End();
  mForm = nullptr;
  modProcessing::Platform().Retire(std::exchange(mWindow, nullptr));
}

void ImageProcessing::Inside::Silence() {
  ImageProcessing* const events = std::exchange(iEvents, nullptr);
  if (!events) return;
  events->ImageOpen.DisconnectAll();
  events->ImageSave.DisconnectAll();
  events->RequestOpenFilename.DisconnectAll();
  events->RequestSaveFilename.DisconnectAll();
  events->WindowClosed.DisconnectAll();
}

ImageProcessing::ImageProcessing()
    : iCount(modTollgarthSupport::Counted::kImageProcessing), iInside(std::make_shared<Inside>(*this)) {
  iInside->Start();
}

ImageProcessing::~ImageProcessing() {
  iInside->Silence();
  QDK_RESUME_NEXT(iInside->End());
}

void ImageProcessing::Initialize() { Control().Initialize(); }

void ImageProcessing::Terminate() {
  const auto inside = iInside;  // a handler of `WindowClosed` may destroy this object
  QDK_RESUME_NEXT(inside->End());
  inside->Silence();
}

// -- The window -------------------------------------------------------------------------------------------

void ImageProcessing::Inside::mForm_QueryUnload() {
  try {
    zRaise(&ImageProcessing::WindowClosed);
  } catch (...) {
    QDK_TRAILER(mForm_QueryUnload, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void ImageProcessing::Inside::Title(const std::string& Value) {
  if (Value == mTitle) return;
  frmImageEditor& window = Window();
  mTitle = Value;
  modProcessing::SetWindowCaption(window.Form(), mTitle, window.Processing().Filename());
}

void ImageProcessing::Inside::Show(bool Modal) {
  try {
    const auto shown = mWindow;  // the host may end the object in a modal window
    Required(shown).Form().Show(Modal);
  } catch (...) {
    QDK_TRAILER(Show, QDK_PARAMETERS(Modal), QDK_LOCALS());
  }
}

std::string ImageProcessing::Title() const { return iInside->Title(); }
void ImageProcessing::Title(const std::string& Value) { iInside->Title(Value); }
bool ImageProcessing::Visible() const { return iInside->Window().Form().Visible(); }

void ImageProcessing::Show(bool Modal) {
  const auto inside = iInside;
  inside->Show(Modal);
}

// -- The sink ---------------------------------------------------------------------------------------------

void ImageProcessing::Inside::ImageOpen(const std::string& Filename) {
  try {
    modProcessing::SetWindowCaption(Window().Form(), mTitle, Filename);
    zRaise(&ImageProcessing::ImageOpen, Filename);
  } catch (...) {
    QDK_TRAILER(ImageOpen, QDK_PARAMETERS(Filename), QDK_LOCALS());
  }
}

void ImageProcessing::Inside::ImageSave(const std::string& Filename) {
  try {
    modProcessing::SetWindowCaption(Window().Form(), mTitle, Filename);
    zRaise(&ImageProcessing::ImageSave, Filename);
  } catch (...) {
    QDK_TRAILER(ImageSave, QDK_PARAMETERS(Filename), QDK_LOCALS());
  }
}

void ImageProcessing::Inside::RequestOpenFilename(std::string& Filename, bool& CancelDefault) {
  try {
    zRaise(&ImageProcessing::RequestOpenFilename, Filename, CancelDefault);
  } catch (...) {
    QDK_TRAILER(RequestOpenFilename, QDK_PARAMETERS(Filename, CancelDefault), QDK_LOCALS());
  }
}

void ImageProcessing::Inside::RequestSaveFilename(std::string& Filename, bool& CancelDefault) {
  try {
    zRaise(&ImageProcessing::RequestSaveFilename, Filename, CancelDefault);
  } catch (...) {
    QDK_TRAILER(RequestSaveFilename, QDK_PARAMETERS(Filename, CancelDefault), QDK_LOCALS());
  }
}

// -- Members with logic of their own ------------------------------------------------------------------------

IImageProcessingCtl& ImageProcessing::Control() const { return iInside->Window().Processing(); }

std::shared_ptr<kestrel::Options> ImageProcessing::Options() const { return modProcessing::GetOptions(); }

bool ImageProcessing::ShowOptions() {
  Control().ShowOptions();
  return false;
}

/// A name that the host did not give is made from that of the picture, which may be empty too.
std::string ImageProcessing::Inside::ThumbnailName(const std::string& Filename) const {
  if (!Filename.empty()) return Filename;
  const std::string picture = Window().Processing().Filename();
  FileHelpers& files = modProcessing::FileHelpers();
  return files.PathWithoutExtension(picture) + "_thumb." + files.GetExtension(picture);
}

std::string ImageProcessing::SaveThumbnail(const std::string& Filename, std::int32_t Size) {
  IImageProcessingCtl& control = Control();
  const std::string name = iInside->ThumbnailName(Filename);
  const bool shadow = Required(Options()).ThumbnailAddDropShadow();
  const PicturePtr thumbnail = control.GetThumbnail(Size, ipUseDefault, shadow);
  const std::int32_t format = modImgX::GetSaveFormatFromFilename(name, modProcessing::FileHelpers());
  const std::int32_t quality = Required(Options()).JPEGQuality();
  const std::shared_ptr<kestrel::ImgX> work = modProcessing::Platform().CreateImgX();
  try {
    return modImgX::SavePictureToFile(Required(work), Required(thumbnail), name, format, quality) ? name : "";
  } catch (const std::exception&) {
    return {};
  }
}

bool ImageProcessing::SaveImageThumbnailEx(const std::string& Filename) {
  return Control().SaveImageThumbnailEx(iInside->ThumbnailName(Filename));
}

// -- Forwarded members --------------------------------------------------------------------------------------

std::int32_t ImageProcessing::Format() const { return Control().Format(); }
void ImageProcessing::Format(std::int32_t Value) { Control().Format(Value); }
ImageProcessingToolConstants ImageProcessing::Tool() const { return Control().Tool(); }
void ImageProcessing::Tool(ImageProcessingToolConstants Value) { Control().Tool(Value); }
bool ImageProcessing::ShowClose() const { return Control().ShowClose(); }
void ImageProcessing::ShowClose(bool Value) { Control().ShowClose(Value); }
kestrel::Image* ImageProcessing::Image() const { return Control().Image(); }
std::shared_ptr<kestrel::ImgX> ImageProcessing::ImgX() const { return Control().ImgX(); }
kestrel::Commands& ImageProcessing::Commands() const { return Control().Commands(); }
kestrel::CommandBars& ImageProcessing::CommandBars() const { return Control().CommandBars(); }

bool ImageProcessing::OpenImage(const std::string& Filename) { return Control().OpenImage(Filename); }
bool ImageProcessing::SaveImage() { return Control().SaveImage(); }
bool ImageProcessing::SaveImageAs(const std::string& Filename) { return Control().SaveImageAs(Filename); }
std::string ImageProcessing::Filename() const { return Control().Filename(); }

void ImageProcessing::SetSelection(std::int32_t Left, std::int32_t Top, std::int32_t Width,
                                   std::int32_t Height) {
  Control().SetSelection(Left, Top, Width, Height);
}
void ImageProcessing::SelectAll() { Control().SelectAll(); }
void ImageProcessing::Copy(bool UseSelection) { Control().Copy(UseSelection); }
void ImageProcessing::Cut(bool UseSelection) { Control().Cut(UseSelection); }

void ImageProcessing::Resize(std::int32_t Width, std::int32_t Height, std::int32_t ResampleMethod) {
  Control().Resize(Width, Height, ResampleMethod);
}
void ImageProcessing::ResizeCanvas(std::int32_t Width, std::int32_t Height, std::int32_t OffsetX,
                                   std::int32_t OffsetY, OLE_COLOR BackColor) {
  Control().ResizeCanvas(Width, Height, OffsetX, OffsetY, BackColor);
}
void ImageProcessing::Rotate(float Angle, OLE_COLOR BackColor, bool ApplyToSelection) {
  Control().Rotate(Angle, BackColor, ApplyToSelection);
}
void ImageProcessing::FlipHorizontally(bool ApplyToSelection) {
  Control().FlipHorizontally(ApplyToSelection);
}
void ImageProcessing::FlipVertically(bool ApplyToSelection) { Control().FlipVertically(ApplyToSelection); }
void ImageProcessing::ApplyGrayScale(bool ApplyToSelection) { Control().ApplyGrayScale(ApplyToSelection); }
void ImageProcessing::FlattenAlpha(OLE_COLOR Color) { Control().FlattenAlpha(Color); }
void ImageProcessing::ApplyDropShadow(std::int32_t OffsetX, std::int32_t OffsetY, OLE_COLOR ShadowColor,
                                      std::int32_t Opactity, std::int32_t BlurLevel, bool ApplyToSelection) {
  Control().ApplyDropShadow(OffsetX, OffsetY, ShadowColor, Opactity, BlurLevel, ApplyToSelection);
}
void ImageProcessing::ApplyMaskedDropShadow(std::int32_t OffsetX, std::int32_t OffsetY, OLE_COLOR ShadowColor,
                                            std::int32_t Opactity, std::int32_t BlurLevel,
                                            OLE_COLOR MaskColor, bool AutomaticMask, bool ApplyToSelection) {
  Control().ApplyMaskedDropShadow(OffsetX, OffsetY, ShadowColor, Opactity, BlurLevel, MaskColor,
                                  AutomaticMask, ApplyToSelection);
}
void ImageProcessing::CropToSelection() { Control().CropToSelection(); }

void ImageProcessing::Undo() { Control().Undo(); }
void ImageProcessing::Redo() { Control().Redo(); }
void ImageProcessing::ZoomIn() { Control().ZoomIn(); }
void ImageProcessing::ZoomOut() { Control().ZoomOut(); }
void ImageProcessing::ZoomActualSize() { Control().ZoomActualSize(); }

bool ImageProcessing::ShowFlattenAlphaDialog() { return Control().ShowFlattenAlphaDialog(); }
std::int32_t ImageProcessing::ShowRotateDialog() { return Control().ShowRotateDialog(); }
bool ImageProcessing::ShowMaskedDropShadowDialog() { return Control().ShowMaskedDropShadowDialog(); }
bool ImageProcessing::ShowDropShadowDialog() { return Control().ShowDropShadowDialog(); }
bool ImageProcessing::ShowResizeCanvasDialog() { return Control().ShowResizeCanvasDialog(); }
bool ImageProcessing::ShowResizeDialog() { return Control().ShowResizeDialog(); }
PicturePtr ImageProcessing::ShowGetThumnailDialog() { return Control().ShowGetThumnailDialog(); }

PicturePtr ImageProcessing::GetThumbnail(std::int32_t Size, OLE_COLOR BackColor, bool AddDropShadow,
                                         std::int32_t OffsetX, std::int32_t OffsetY, OLE_COLOR ShadowColor,
                                         std::int32_t Opacity, std::int32_t BlurLevel) {
  return Control().GetThumbnail(Size, BackColor, AddDropShadow, OffsetX, OffsetY, ShadowColor, Opacity,
                                BlurLevel);
}

}  // namespace kestrel
