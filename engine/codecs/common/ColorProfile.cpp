#include "ColorProfile.h"

#include <lcms2.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <string>

#include "engine/parallel/Cancellation.h"
#include "engine/parallel/Parallel.h"

namespace kestrel::engine {
namespace {

struct CloseProfile {
  void operator()(void* profile) const { cmsCloseProfile(profile); }
};
struct DeleteTransform {
  void operator()(void* transform) const { cmsDeleteTransform(transform); }
};
using Profile = std::unique_ptr<void, CloseProfile>;
using Transform = std::unique_ptr<void, DeleteTransform>;

constexpr std::int32_t kRowsPerTask = 32;

/// A coarse grid over the RGB cube, to sample a transform.
std::vector<Pixel> sampleColors() {
  std::vector<Pixel> samples;
  for (int r = 0; r <= 255; r += 51) {
    for (int g = 0; g <= 255; g += 51) {
      for (int b = 0; b <= 255; b += 51) {
        samples.push_back(
            {static_cast<std::uint8_t>(r), static_cast<std::uint8_t>(g), static_cast<std::uint8_t>(b), 255});
      }
    }
  }
  return samples;
}

bool differsByAtMostOne(std::uint8_t a, std::uint8_t b) { return std::abs(int{a} - int{b}) <= 1; }

/// Many files carry one of the dozen profiles equivalent to sRGB. Converting from those would only add
/// rounding errors, so a transform that changes no sample by more than one level counts as the identity.
bool isIdentity(cmsHTRANSFORM transform) {
  const std::vector<Pixel> before = sampleColors();
  std::vector<Pixel> after = before;
  cmsDoTransform(transform, before.data(), after.data(), static_cast<cmsUInt32Number>(before.size()));
  return std::ranges::equal(before, after, [](const Pixel& x, const Pixel& y) {
    return differsByAtMostOne(x.r, y.r) && differsByAtMostOne(x.g, y.g) && differsByAtMostOne(x.b, y.b);
  });
}

std::string descriptionOf(cmsHPROFILE profile) {
  std::array<char, 256> text{};
  cmsGetProfileInfoASCII(profile, cmsInfoDescription, "en", "US", text.data(),
                         static_cast<cmsUInt32Number>(text.size() - 1));
  return text.data();
}

Transform makeTransform(cmsHPROFILE from, cmsUInt32Number layout, cmsUInt32Number flags) {
  const Profile srgb(cmsCreate_sRGBProfile());
  if (!srgb) return nullptr;
  return Transform(cmsCreateTransform(from, layout, srgb.get(), TYPE_RGBA_8, INTENT_RELATIVE_COLORIMETRIC,
                                      cmsFLAGS_NOCACHE | cmsFLAGS_BLACKPOINTCOMPENSATION | flags));
}

void transformRows(Bitmap& bitmap, cmsHTRANSFORM transform) {
  const Pixels pixels = bitmap.writable();
  forRows(pixels.height, kRowsPerTask, [&](std::int32_t first, std::int32_t last) {
    for (std::int32_t y = first; y < last; ++y) {
      checkCanceled();
      cmsDoTransform(transform, pixels.row(y), pixels.row(y), static_cast<cmsUInt32Number>(pixels.width));
    }
  });
}

void setOpaque(Bitmap& bitmap) {
  const Pixels pixels = bitmap.writable();
  for (std::int32_t y = 0; y < pixels.height; ++y) {
    std::uint8_t* const row = pixels.row(y);
    for (std::int32_t x = 0; x < pixels.width; ++x) row[4 * x + 3] = 255;
  }
}

/// CMYK by plain subtraction: without a profile the actual inks are unknown.
void convertPlainCmyk(Bitmap& bitmap) {
  const Pixels pixels = bitmap.writable();
  forRows(pixels.height, kRowsPerTask, [&](std::int32_t first, std::int32_t last) {
    for (std::int32_t y = first; y < last; ++y) {
      std::uint8_t* p = pixels.row(y);
      for (std::int32_t x = 0; x < pixels.width; ++x, p += 4) {
        const int light = 255 - p[3];
        for (int i = 0; i < 3; ++i) p[i] = static_cast<std::uint8_t>(((255 - p[i]) * light + 127) / 255);
        p[3] = 255;
      }
    }
  });
}

/// Returns true if the profile was applicable and the pixels are now sRGB.
bool convertRgb(Decoded& decoded, cmsHPROFILE profile) {
  const Transform transform = makeTransform(profile, TYPE_RGBA_8, cmsFLAGS_COPY_ALPHA);
  if (!transform) return false;
  if (isIdentity(transform.get())) return true;
  transformRows(decoded.bitmap, transform.get());
  const auto srgb = srgbProfile();
  decoded.metadata.iccProfile.assign(srgb.begin(), srgb.end());
  return true;
}

bool convertGray(Decoded& decoded, cmsHPROFILE profile) {
  const Transform transform = makeTransform(profile, TYPE_GRAY_8, 0);
  if (!transform) return false;
  std::array<std::uint8_t, 256> levels{};
  std::array<Pixel, 256> colors{};
  for (std::size_t i = 0; i < levels.size(); ++i) levels[i] = static_cast<std::uint8_t>(i);
  cmsDoTransform(transform.get(), levels.data(), colors.data(), 256);

  const Pixels pixels = decoded.bitmap.writable();
  for (std::int32_t y = 0; y < pixels.height; ++y) {
    std::uint8_t* p = pixels.row(y);
    for (std::int32_t x = 0; x < pixels.width; ++x, p += 4) {
      const std::uint8_t level = colors[p[0]].g;
      p[0] = p[1] = p[2] = level;
    }
  }
  const auto srgb = srgbProfile();
  decoded.metadata.iccProfile.assign(srgb.begin(), srgb.end());
  return true;
}

bool convertCmyk(Decoded& decoded, cmsHPROFILE profile) {
  const Transform transform = makeTransform(profile, TYPE_CMYK_8, 0);
  if (!transform) return false;
  transformRows(decoded.bitmap, transform.get());
  setOpaque(decoded.bitmap);
  const auto srgb = srgbProfile();
  decoded.metadata.iccProfile.assign(srgb.begin(), srgb.end());
  return true;
}

void convertLab(Decoded& decoded) {
  const Profile lab(cmsCreateLab4Profile(nullptr));
  constexpr cmsUInt32Number kLabWithAlpha =
      COLORSPACE_SH(PT_Lab) | CHANNELS_SH(3) | BYTES_SH(1) | EXTRA_SH(1);
  const Transform transform = makeTransform(lab.get(), kLabWithAlpha, cmsFLAGS_COPY_ALPHA);
  if (transform) transformRows(decoded.bitmap, transform.get());
}

bool convertByProfile(Decoded& decoded, PixelKind kind) {
  const auto& icc = decoded.metadata.iccProfile;
  if (icc.empty()) return false;
  const Profile profile(cmsOpenProfileFromMem(icc.data(), static_cast<cmsUInt32Number>(icc.size())));
  if (!profile) return false;
  const cmsColorSpaceSignature space = cmsGetColorSpace(profile.get());
  const bool done = [&] {
    switch (kind) {
      case PixelKind::rgb:
        return space == cmsSigRgbData && convertRgb(decoded, profile.get());
      case PixelKind::gray:
        return space == cmsSigGrayData ? convertGray(decoded, profile.get())
                                       : space == cmsSigRgbData && convertRgb(decoded, profile.get());
      case PixelKind::lab:
        return false;
      case PixelKind::cmyk:
        return space == cmsSigCmykData && convertCmyk(decoded, profile.get());
    }
    return false;
  }();
  if (done) decoded.stored.profile = descriptionOf(profile.get());
  return done;
}

std::vector<std::uint8_t> makeSrgbProfile() {
  const Profile profile(cmsCreate_sRGBProfile());
  cmsUInt32Number size = 0;
  cmsSaveProfileToMem(profile.get(), nullptr, &size);
  std::vector<std::uint8_t> bytes(size);
  cmsSaveProfileToMem(profile.get(), bytes.data(), &size);
  // The library writes the present time; a fixed date makes the encoder deterministic.
  constexpr std::size_t kDateInHeader = 24;
  constexpr std::array<std::uint8_t, 12> kDate{0x07, 0xCF, 0, 10, 0, 18, 0, 0, 0, 0, 0, 0};
  if (bytes.size() >= kDateInHeader + kDate.size()) std::ranges::copy(kDate, bytes.begin() + kDateInHeader);
  return bytes;
}

}  // namespace

void convertToSrgb(Decoded& decoded, PixelKind kind) {
  if (convertByProfile(decoded, kind)) return;
  decoded.metadata.iccProfile.clear();
  if (kind == PixelKind::cmyk) convertPlainCmyk(decoded.bitmap);
  if (kind == PixelKind::lab) convertLab(decoded);
}

void convertToSrgb(Decoded& decoded, const Colorimetry& colorimetry) {
  decoded.metadata.iccProfile.clear();
  const Colorimetry srgb;
  const auto near = [](double a, double b) { return std::abs(a - b) < 0.005; };
  // Gamma 2.2 means sRGB in such files: it is the power function nearest to the sRGB curve.
  if (std::abs(colorimetry.gamma - srgb.gamma) < 0.05 && near(colorimetry.redX, srgb.redX) &&
      near(colorimetry.redY, srgb.redY) && near(colorimetry.greenX, srgb.greenX) &&
      near(colorimetry.greenY, srgb.greenY) && near(colorimetry.blueX, srgb.blueX) &&
      near(colorimetry.blueY, srgb.blueY) && near(colorimetry.whiteX, srgb.whiteX) &&
      near(colorimetry.whiteY, srgb.whiteY)) {
    return;
  }
  const cmsCIExyY white{colorimetry.whiteX, colorimetry.whiteY, 1.0};
  const cmsCIExyYTRIPLE primaries{{colorimetry.redX, colorimetry.redY, 1.0},
                                  {colorimetry.greenX, colorimetry.greenY, 1.0},
                                  {colorimetry.blueX, colorimetry.blueY, 1.0}};
  cmsToneCurve* const curve = cmsBuildGamma(nullptr, colorimetry.gamma);
  if (curve == nullptr) return;
  cmsToneCurve* const curves[3] = {curve, curve, curve};
  const Profile profile(cmsCreateRGBProfile(&white, &primaries, curves));
  cmsFreeToneCurve(curve);
  if (profile && convertRgb(decoded, profile.get())) decoded.stored.profile = "gamma and primaries";
}

std::span<const std::uint8_t> srgbProfile() {
  static const std::vector<std::uint8_t> profile = makeSrgbProfile();
  return profile;
}

}  // namespace kestrel::engine
