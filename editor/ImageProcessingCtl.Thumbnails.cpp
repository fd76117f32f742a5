#include "ImageProcessingCtl.h"
#include "base/Numbers.h"
#include "base/Required.h"
#include "imaging/modImgX.h"

// Thumbnails are made in the scratch object, so that the picture and its undo steps are unchanged. Engine
// errors propagate to the caller.

namespace kestrel {

PicturePtr ImageProcessingCtl::GetThumbnail(std::int32_t Size, OLE_COLOR BackColor, bool AddDropShadow,
                                            std::int32_t OffsetX, std::int32_t OffsetY, OLE_COLOR ShadowColor,
                                            std::int32_t Opacity, std::int32_t BlurLevel) {
  ThumbnailSizeTypeEnum sizeType = tstPercentage;
  return GetThumbnailEx(sizeType, Size, BackColor, AddDropShadow, OffsetX, OffsetY, ShadowColor, Opacity,
                        BlurLevel);
}

PicturePtr ImageProcessingCtl::GetThumbnailEx(ThumbnailSizeTypeEnum& SizeType, std::int32_t Size,
                                              OLE_COLOR BackColor, bool AddDropShadow, std::int32_t OffsetX,
                                              std::int32_t OffsetY, OLE_COLOR ShadowColor,
                                              std::int32_t Opactity, std::int32_t BlurLevel) {
  ShadowArguments shadow{OffsetX, OffsetY, ShadowColor, Opactity, BlurLevel};
  zTakeShadowDefaults(shadow);
  if (BackColor == ipUseDefault) BackColor = Required(Options()).ThumbnailBackgroundColor();
  if (Size == ipUseDefault) Size = Required(Options()).ThumbnailSize();

  kestrel::ImgX& scratch = Required(pImage);
  scratch.Document().CopyFrom(*igxImage.ImgX(), 0, "");
  std::int32_t width = Size;
  if (SizeType == tstPercentage) width = IntPart(Required(scratch.Image()).Width() / 100.0 * Size);
  // Resize first: the shadow's offset and blur are in pixels of the thumbnail.
  scratch.Effects().Resize(width, 0, kResampleLanczos, "");
  if (AddDropShadow) zDropShadow(scratch, zShadowColor(scratch.Colors(), shadow), shadow, "");
  scratch.Alpha().Flatten(scratch.Colors().Create(BackColor, 255), "");
  return scratch.Writer().ToPicture();
}

bool ImageProcessingCtl::SaveImageThumbnail(std::string Filename) {
  const bool exists = iPlatform.FormUtility().FileExists(Filename);
  Status(exists ? "Updating thumbnail..." : "Saving thumbnail...", true, false);
  bool Result = false;
  try {
    FileHelpers& files = iPlatform.FileHelpers();
    if (Filename.empty()) {
      Filename = files.PathWithoutExtension(Filename) + "_thumb." + files.GetExtension(Filename, 0);
    }
    const PicturePtr thumbnail =
        GetThumbnail(ipUseDefault, ipUseDefault, Required(Options()).ThumbnailAddDropShadow(), ipUseDefault,
                     ipUseDefault, ipUseDefault, ipUseDefault, ipUseDefault);
    Result = zSaveThumbnail(Required(thumbnail), Filename);
  } catch (...) {
    Status("", true, false);
    throw;
  }
  Status("", true, false);
  return Result;
}

bool ImageProcessingCtl::SaveImageThumbnailEx(std::string Filename) {
  const PicturePtr thumbnail = ShowGetThumnailDialog();
  if (!thumbnail || iRetired) return false;
  const bool exists = iPlatform.FormUtility().FileExists(Filename);
  Status(exists ? "Updating thumbnail..." : "Saving thumbnail...", true, false);
  const bool Result = zSaveThumbnail(*thumbnail, Filename);
  Status("", true, false);
  return Result;
}

bool ImageProcessingCtl::zSaveThumbnail(const kestrel::Picture& Thumbnail, const std::string& Filename) {
  try {
    return modImgX::SavePictureToFile(*iPlatform.CreateImgX(), Thumbnail, Filename,
                                      modImgX::GetSaveFormatFromFilename(Filename, iPlatform.FileHelpers()),
                                      Required(Options()).JPEGQuality());
  } catch (const std::exception&) {
    return false;
  }
}

}  // namespace kestrel
