#include "ImageProcessingCtl.h"
#include "base/Numbers.h"
#include "base/Required.h"
#include "diagnostics/Trailer.h"
#include "imaging/modImgX.h"

// Engine errors propagate from the operations: the caller reports them to the user or the host.

namespace kestrel {

ImagingFace& ImageProcessingCtl::zBeginOperation(bool OnSection) {
  if (!OnSection) return igxImage;
  modImgX::CreateSection(igxImage, Required(pImage));
  return *pImage;
}

void ImageProcessingCtl::zEndOperation(bool OnSection, const std::string& UndoName) {
  if (!OnSection) return;
  modImgX::ApplySection(*pImage, igxImage, UndoName);
  zShowSize();
}

void ImageProcessingCtl::Resize(std::int32_t Width, std::int32_t Height, std::int32_t ResampleMethod) {
  igxImage.Effects().Resize(Width, Height, ResampleMethod, "");
}

void ImageProcessingCtl::ResizeCanvas(std::int32_t Width, std::int32_t Height, std::int32_t OffsetX,
                                      std::int32_t OffsetY, OLE_COLOR BackColor) {
  if (BackColor == ipUseDefault) BackColor = Required(Options()).ResizeCanvasColor();
  igxImage.Effects().ResizeCanvas(Width, Height, igxImage.Colors().Create(BackColor, 255), OffsetX, OffsetY,
                                  "");
}

void ImageProcessingCtl::Rotate(float Angle, OLE_COLOR BackColor, bool ApplyToSelection) {
  if (BackColor == ipUseDefault) {
    BackColor = Required(Options()).MaterialBackColor();
    // If a background material is set, the foreground material fills the corners.
    if (BackColor != kNoColor) BackColor = Required(Options()).MaterialForeColor();
  }
  const bool onSection = ApplyToSelection && zHasSelection();
  const Colour corners = igxImage.Colors().Create(BackColor, 255);
  zBeginOperation(onSection).Effects().Rotate(Angle, &corners, 0, "");
  zEndOperation(onSection);
}

void ImageProcessingCtl::FlipHorizontally(bool ApplyToSelection) {
  zFlip(kFlipLeftToRight, ApplyToSelection);
}

void ImageProcessingCtl::FlipVertically(bool ApplyToSelection) { zFlip(kFlipTopToBottom, ApplyToSelection); }

void ImageProcessingCtl::zFlip(std::int32_t Direction, bool ApplyToSelection) {
  const bool onSection = ApplyToSelection && zHasSelection();
  zBeginOperation(onSection).Effects().Flip(Direction, "");
  zEndOperation(onSection);
}

void ImageProcessingCtl::ApplyGrayScale(bool ApplyToSelection) {
  const bool onSection = ApplyToSelection && zHasSelection();
  if (onSection) modImgX::CreateSection(igxImage, Required(pImage));
  modImgX::ApplyPalette(onSection ? *pImage : *igxImage.ImgX(), kPaletteGrayScale);
  zEndOperation(onSection);
}

void ImageProcessingCtl::FlattenAlpha(OLE_COLOR Color) {
  if (Color == ipUseDefault) Color = Required(Options()).FlattenAlphaColor();
  igxImage.Alpha().Flatten(igxImage.Colors().Create(Color, 255), "");
}

void ImageProcessingCtl::zTakeShadowDefaults(ShadowArguments& Shadow) {
  const std::shared_ptr<kestrel::Options> shared = Options();
  kestrel::Options& options = Required(shared);
  if (Shadow.OffsetX == ipUseDefault) Shadow.OffsetX = options.DropShadowHorizontalOffset();
  if (Shadow.OffsetY == ipUseDefault) Shadow.OffsetY = options.DropShadowVerticalOffset();
  if (Shadow.Color == ipUseDefault) Shadow.Color = options.DropShadowColor();
  if (Shadow.Opacity == ipUseDefault) Shadow.Opacity = options.DropShadowOpacity();
  if (Shadow.BlurLevel == ipUseDefault) Shadow.BlurLevel = options.DropShadowBlur();
}

Colour ImageProcessingCtl::zShadowColor(const Colors& Palette, const ShadowArguments& Shadow) const {
  return Palette.Create(Shadow.Color, ToByte(Shadow.Opacity));
}

void ImageProcessingCtl::zDropShadow(ImagingFace& Target, const Colour& Color, const ShadowArguments& Shadow,
                                     const std::string& UndoName) {
  Target.Effects().DropShadow(Shadow.OffsetX, Shadow.OffsetY, Color, Shadow.BlurLevel, true, UndoName);
}

void ImageProcessingCtl::ApplyDropShadow(std::int32_t OffsetX, std::int32_t OffsetY, OLE_COLOR ShadowColor,
                                         std::int32_t Opactity, std::int32_t BlurLevel,
                                         bool ApplyToSelection) {
  ShadowArguments shadow{OffsetX, OffsetY, ShadowColor, Opactity, BlurLevel};
  zTakeShadowDefaults(shadow);
  const bool onSection = ApplyToSelection && zHasSelection();
  const Colour color = zShadowColor(igxImage.Colors(), shadow);
  zDropShadow(zBeginOperation(onSection), color, shadow, "");
  zEndOperation(onSection);
}

void ImageProcessingCtl::ApplyMaskedDropShadow(std::int32_t OffsetX, std::int32_t OffsetY,
                                               OLE_COLOR ShadowColor, std::int32_t Opactity,
                                               std::int32_t BlurLevel, OLE_COLOR MaskColor,
                                               bool AutomaticMask, bool /*ApplyToSelection*/) {
  constexpr double kMaskTolerance = 1.0;
  ShadowArguments shadow{OffsetX, OffsetY, ShadowColor, Opactity, BlurLevel};
  zTakeShadowDefaults(shadow);
  if (MaskColor == ipUseDefault) MaskColor = Required(Options()).DropShadowMaskColor();

  // Any valid selection is used, regardless of the argument.
  const bool onSection = zHasSelection();
  // Validate opacity and mask before anything is changed.
  const Colour shadowColor = zShadowColor(igxImage.Colors(), shadow);
  if (AutomaticMask) {
    const Point corner = onSection ? Point{igxImage.SelectionLeft(), igxImage.SelectionTop()} : Point{0, 0};
    MaskColor = Required(igxImage.Image()).GetPixel(corner.X, corner.Y).Value();
  }

  const auto point = igxImage.CreateUndoPoint("Contoured Drop Shadow");
  iHeldChange = false;
  iHoldsChange = true;
  try {
    ImagingFace& target = zBeginOperation(onSection);
    const Colour from = target.Colors().Create(MaskColor, 255);
    const Colour to = target.Colors().Create(0, 0);
    target.Effects().ReplaceColor(from, to, kMaskTolerance, 0, kNoUndo);
    zDropShadow(target, shadowColor, shadow, kNoUndo);
    // The composite is part of the undo point.
    zEndOperation(onSection, kNoUndo);
  } catch (...) {
    // If the shadow fails, restore the background too.
    QDK_RESUME_NEXT(point->TakeBack());
    iHoldsChange = false;
    throw;
  }
  iHoldsChange = false;
  if (iHeldChange) Changed(true);
}

}  // namespace kestrel
