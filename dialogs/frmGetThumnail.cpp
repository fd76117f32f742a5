#include "frmGetThumnail.h"

#include <cmath>

#include "OptionsShadow.h"
#include "base/Numbers.h"
#include "base/Required.h"
#include "base/RuntimeError.h"
#include "diagnostics/Trailer.h"
#include "frmDropShadow.h"
#include "imaging/contract/PictureLimits.h"
#include "settings/StoreTogether.h"
#include "settings/modProcessing.h"

namespace kestrel {
namespace {

// Indices of `optSizeType` and `txtField`.
constexpr std::size_t kPercentage = 0;
constexpr std::size_t kWidth = 1;

/// Index of the background color's label in `lblHdr`.
constexpr std::int32_t kColorLabel = 5;

constexpr const char* kPositionKey = "Software\\Brindlewick\\ImageProcessing2";
constexpr const char* kPositionName = "GetThumbnail";

/// The distance of the check boxes at the bottom from the lower edge of the window, in pixels.
constexpr std::int32_t kCheckBoxRise = 32;

/// The largest preview, in pixels. A picture of some hundred megapixels would take seconds at each key.
constexpr double kPreviewPixels = 32e6;
constexpr double kBytesPerPixel = 4;

/// Whether the engine may refuse a picture of that size. It takes at most a quarter of the machine's memory,
/// as the undo steps do.
bool MayBeRefused(const ImageView& view, double width, double height) {
  const double pixels = width * height;
  return width > kLongestSide || height > kLongestSide || pixels > static_cast<double>(kMostPixels) ||
         pixels * kBytesPerPixel > static_cast<double>(view.UndoMemoryLimit());
}

}  // namespace

frmGetThumnail::frmGetThumnail()
    : PreviewDialog("frmGetThumnail", DialogButtons::kHeader),
      FormHeader(Bind<kestrel::FormHeader>(Form(), "FormHeader")),
      fraPreview(Bind<Control>(Form(), "Preview")),
      fraGeneral(Bind<Frame>(Form(), "fraGeneral")),
      optSizeType{&Bind<OptionButton>(Form(), "optSizeType", 0),
                  &Bind<OptionButton>(Form(), "optSizeType", 1)},
      txtField{&Bind<TextBox>(Form(), "txtField", 0), &Bind<TextBox>(Form(), "txtField", 1)},
      fraShadow(Bind<Frame>(Form(), "fraShadow")),
      chkAddDropShadow(Bind<CheckBox>(Form(), "chkAddDropShadow")),
      cmdOptions(Bind<CommandButton>(Form(), "cmdOptions")),
      lblColor(Bind<Label>(Form(), "lblHdr", kColorLabel)),
      cpkColor{&Bind<ColorPicker>(Form(), "cpkColor", 0)},
      chkSaveAsDefault(Bind<CheckBox>(Form(), "chkSaveAsDefault")) {
  Keep(FormHeader.OKClick.Connect([this] { FormHeader_OKClick(); }));
  Keep(FormHeader.CancelClick.Connect([this] { FormHeader_CancelClick(); }));
  Keep(FormHeader.Resize.Connect(
      [this](std::int32_t left, std::int32_t top, std::int32_t width, std::int32_t height) {
        FormHeader_Resize(left, top, width, height);
      }));
  for (OptionButton* option : optSizeType) {
    Keep(option->Click.Connect([this, index = option->Index()] { optSizeType_Click(index); }));
  }
  for (TextBox* box : txtField) {
    Keep(box->Change.Connect([this, index = box->Index()] { txtField_Change(index); }));
    Keep(box->GotFocus.Connect([this, index = box->Index()] { txtField_GotFocus(index); }));
  }
  Keep(chkAddDropShadow.Click.Connect([this] { chkAddDropShadow_Click(); }));
  Keep(cmdOptions.Click.Connect([this] { cmdOptions_Click(); }));
  for (ColorPicker* picker : cpkColor) {
    const std::int32_t index = picker->Index();
    Keep(picker->Change.Connect([this, index](OLE_COLOR color) { cpkColor_Change(index, color); }));
    Keep(picker->EnhancedButtonClicked.Connect([this, index] { cpkColor_EnhancedButtonClicked(index); }));
  }
}

/// Unloads here, since the base's destructor can no longer store the position.
frmGetThumnail::~frmGetThumnail() {
  SafeToUnload = true;
  QDK_RESUME_NEXT(Unload());
}

void frmGetThumnail::Form_Load() {
  std::size_t Type = 0;
  try {
    Form().ClearIcon();
    for (TextBox* box : txtField) MakeNumberBox(*box);
    kestrel::WindowPositions& WindowPositions = modProcessing::WindowPositions();
    WindowPositions.RegistryKey(kPositionKey);
    WindowPositions.LoadPosition(Form(), kPositionName, kPlaceOnScreenCenter, 0);
    // The panes show pictures of different sizes.
    Preview().LinkedScrolling(false);
    const auto shared = modProcessing::GetOptions();
    Options& Options = Required(shared);
    mLoading = true;
    chkAddDropShadow.Value(Options.ThumbnailAddDropShadow() ? 1 : 0);
    Type = Options.ThumbnailSizeType() == tstPercentage ? kPercentage : kWidth;
    txtField.at(Type)->Text(ToText(Options.ThumbnailSize()));
    optSizeType.at(Type)->Value(true);
    cpkColor[0]->Value(Options.ThumbnailBackgroundColor());
    mLoading = false;
    ApplyLook();
  } catch (...) {
    QDK_TRAILER(Form_Load, QDK_PARAMETERS(), QDK_LOCALS(Type));
  }
}

void frmGetThumnail::Form_FirstActivate() {
  Preview().UseOriginal(true);
  UpdatePreview();
  QDK_RESUME_NEXT(modProcessing::FormUtility().SetFocusTo(*txtField.at(zSizeType())));
}

void frmGetThumnail::Form_UnloadForGood() {
  try {
    modProcessing::WindowPositions().SavePosition(Form(), kPositionName);
  } catch (const RuntimeError& error) {
    // The owner has destroyed the window with itself: there is no position to store.
    if (error.Number() != err::kObjectNotSet) throw;
  }
}

std::size_t frmGetThumnail::zSizeType() const {
  return optSizeType[kPercentage]->Value() ? kPercentage : kWidth;
}

void frmGetThumnail::zResize(ImageView& Pane, std::int32_t Width) {
  const kestrel::Image& picture = Required(Pane.Image());
  const double height = 1.0 * Width * picture.Height() / picture.Width();
  const double pixels = Width * height;
  // What the engine refuses it refuses at once.
  const bool asItIs = pixels <= kPreviewPixels || MayBeRefused(Pane, Width, height);
  const std::int32_t shown = asItIs ? Width : Floor(Width * std::sqrt(kPreviewPixels / pixels));
  Pane.Effects().Resize(shown, 0, kResampleLanczos);
  if (asItIs) return;
  Pane.Notice("The thumbnail will have " + ToText(Width) + " x " + ToText(ToInt32(height)) +
              " pixels. The preview is smaller.");
}

void frmGetThumnail::UpdatePreview() {
  bool bError = false, visible = false;
  std::int32_t newWidth = 0;
  double width = 0;
  ImageView& image = Preview().PreviewPane();
  // Runs one statement. If it fails, the next one follows.
  const auto attempt = [&bError](auto statement) {
    try {
      statement();
    } catch (...) {
      bError = true;
    }
  };
  const auto makeThumbnail = [&] {
    attempt([&] { image.Notice({}); });
    attempt([&] { Preview().Reset(); });
    if (zSizeType() == kPercentage) {
      attempt([&] {
        newWidth = Floor(Required(image.Image()).Width() / 100.0 * Val(txtField[kPercentage]->Text()));
      });
      attempt([&] { zResize(image, newWidth); });
    } else {
      attempt([&] { width = Val(txtField[kWidth]->Text()); });
      if (width > 0) attempt([&] { zResize(image, ToInt32(width)); });
    }
    if (chkAddDropShadow.Value() == 1) attempt([&] { AddShadowOfOptions(image); });
    attempt([&] { image.Alpha().Flatten(image.Colors().Create(cpkColor[0]->Value(), 255)); });
  };
  attempt([&] { visible = IsWindowVisible(); });
  if (visible) {
    attempt([] { modProcessing::FormUtility().SetPointer(kBusyArrowHourglass); });
    attempt([&] { Preview().KeepScrollPosition(image, makeThumbnail); });
    attempt([] { modProcessing::FormUtility().SetPointer(kBusyDefault); });
  }
  FormHeader.OKEnabled(!bError);
}

void frmGetThumnail::FormHeader_OKClick() {
  std::size_t Type = 0;
  try {
    Success = true;
    Type = zSizeType();
    if (chkSaveAsDefault.Value() == 1) zSaveAsDefault(Type);
    ResultData = ToText(chkAddDropShadow.Value()) + '|' + ToText(static_cast<std::int32_t>(Type)) + '|' +
                 txtField.at(Type)->Text() + '|' + ToText(cpkColor[0]->Value());
    Unload();
  } catch (...) {
    QDK_TRAILER(FormHeader_OKClick, QDK_PARAMETERS(), QDK_LOCALS(Type));
  }
}

void frmGetThumnail::zSaveAsDefault(std::size_t Type) {
  const auto shared = modProcessing::GetOptions();
  Options& Options = Required(shared);
  StoreTogether([&] {
    Options.ThumbnailAddDropShadow(chkAddDropShadow.Value() == 1);
    Options.ThumbnailSizeType(Type == kPercentage ? tstPercentage : tstWidthInPixels);
    Options.ThumbnailSize(ToInt32(Val(txtField.at(Type)->Text())));
    Options.ThumbnailBackgroundColor(cpkColor[0]->Value());
  });
}

void frmGetThumnail::FormHeader_CancelClick() {
  try {
    Unload();
  } catch (...) {
    QDK_TRAILER(FormHeader_CancelClick, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void frmGetThumnail::FormHeader_Resize(std::int32_t ClientLeft, std::int32_t ClientTop,
                                       std::int32_t ClientWidth, std::int32_t ClientHeight) {
  const std::int32_t bottom = ClientTop + ClientHeight;
  const std::int32_t previewHeight = ClientHeight - fraShadow.Height() - ClientTop;
  // In a window too small for it the preview stays as it is.
  if (ClientWidth >= 0 && previewHeight >= 0) {
    QDK_RESUME_NEXT(fraPreview.Move(ClientLeft, ClientTop, ClientWidth, previewHeight));
  }
  QDK_RESUME_NEXT(fraGeneral.Left(ClientLeft); fraGeneral.Top(bottom - fraGeneral.Height()));
  QDK_RESUME_NEXT(fraShadow.Left(fraGeneral.Width() + 2 * ClientLeft);
                  fraShadow.Top(bottom - fraShadow.Height()));
  QDK_RESUME_NEXT(const std::int32_t top = (Form().ScaleHeight() - kCheckBoxRise) *
                                           modProcessing::Platform().Screen().TwipsPerPixelY();
                  chkSaveAsDefault.Top(top); UseOriginalBox().Top(top));
  QDK_RESUME_NEXT(UseOriginalBox().ZOrder());
}

void frmGetThumnail::optSizeType_Click(std::int32_t Index) {
  try {
    UpdatePreview();
  } catch (...) {
    QDK_TRAILER(optSizeType_Click, QDK_PARAMETERS(Index), QDK_LOCALS());
  }
}

void frmGetThumnail::txtField_Change(std::int32_t Index) {
  try {
    if (!mLoading) optSizeType.at(static_cast<std::size_t>(Index))->Value(true);
    UpdatePreview();
  } catch (...) {
    QDK_TRAILER(txtField_Change, QDK_PARAMETERS(Index), QDK_LOCALS());
  }
}

void frmGetThumnail::txtField_GotFocus(std::int32_t Index) {
  try {
    modProcessing::FormUtility().SelectAllText(*txtField.at(static_cast<std::size_t>(Index)));
  } catch (...) {
    QDK_TRAILER(txtField_GotFocus, QDK_PARAMETERS(Index), QDK_LOCALS());
  }
}

void frmGetThumnail::chkAddDropShadow_Click() {
  bool on = false;
  try {
    on = chkAddDropShadow.Value() == 1;
    lblColor.Enabled(on);
    cmdOptions.Enabled(on);
    cpkColor[0]->Enabled(on);
    UpdatePreview();
  } catch (...) {
    QDK_TRAILER(chkAddDropShadow_Click, QDK_PARAMETERS(), QDK_LOCALS(on));
  }
}

void frmGetThumnail::cmdOptions_Click() {
  try {
    frmDropShadow Dialog;
    Dialog.AllowMaskSelection = false;
    Dialog.Preview().OriginalPicture(Preview().OriginalPicture());
    if (Dialog.ShowModal(&Form())) UpdatePreview();
  } catch (...) {
    QDK_TRAILER(cmdOptions_Click, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void frmGetThumnail::cpkColor_Change(std::int32_t Index, OLE_COLOR NewColor) {
  try {
    UpdatePreview();
  } catch (...) {
    QDK_TRAILER(cpkColor_Change, QDK_PARAMETERS(Index, NewColor), QDK_LOCALS());
  }
}

void frmGetThumnail::cpkColor_EnhancedButtonClicked(std::int32_t Index) {
  try {
    UpdatePreview();
  } catch (...) {
    QDK_TRAILER(cpkColor_EnhancedButtonClicked, QDK_PARAMETERS(Index), QDK_LOCALS());
  }
}

std::string frmGetThumnail::qdkDumpModuleVariables() const {
  return QDK_FIELDS(mLoading, Success, SafeToUnload, ResultData);
}

}  // namespace kestrel
