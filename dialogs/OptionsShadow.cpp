#include "OptionsShadow.h"

#include "base/Numbers.h"
#include "base/Required.h"
#include "settings/modProcessing.h"

namespace kestrel {

void AddShadowOfOptions(ImagingFace& image) {
  const auto shared = modProcessing::GetOptions();
  Options& Options = Required(shared);
  const std::int32_t horizontal = Options.DropShadowHorizontalOffset();
  const std::int32_t vertical = Options.DropShadowVerticalOffset();
  const OLE_COLOR color = Options.DropShadowColor();
  const Colour shadow = image.Colors().Create(color, ToByte(Options.DropShadowOpacity()));
  image.Effects().DropShadow(horizontal, vertical, shadow, Options.DropShadowBlur(), true);
}

}  // namespace kestrel
