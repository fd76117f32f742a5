#include <lcms2.h>

#include "../TestPictures.h"
#include "engine/codecs/CodecTable.h"

namespace kestrel::engine {
namespace {

std::vector<std::uint8_t> bytesOf(cmsHPROFILE profile) {
  cmsUInt32Number size = 0;
  cmsSaveProfileToMem(profile, nullptr, &size);
  std::vector<std::uint8_t> bytes(size);
  cmsSaveProfileToMem(profile, bytes.data(), &size);
  cmsCloseProfile(profile);
  return bytes;
}

/// An RGB profile with these primaries and this gamma.
std::vector<std::uint8_t> rgbProfile(const cmsCIExyYTRIPLE& primaries, double gamma) {
  const cmsCIExyY white{0.3127, 0.3290, 1};
  cmsToneCurve* const curve = cmsBuildGamma(nullptr, gamma);
  cmsToneCurve* const curves[3] = {curve, curve, curve};
  const cmsHPROFILE profile = cmsCreateRGBProfile(&white, &primaries, curves);
  cmsFreeToneCurve(curve);
  return bytesOf(profile);
}

const cmsCIExyYTRIPLE kSwapped{{0.30, 0.60, 1}, {0.64, 0.33, 1}, {0.15, 0.06, 1}};

class ColorProfileTest : public testing::TestWithParam<std::int32_t> {};

TEST_P(ColorProfileTest, PixelsAreConvertedToSrgbAndTaggedSo) {
  // A profile with the red and green primaries of sRGB swapped, so that ignoring it is obvious.
  Metadata metadata;
  metadata.iccProfile = rgbProfile(kSwapped, 2.2);
  const Bitmap red = Bitmap::filled(32, 32, {255, 0, 0, 255});
  const Decoded decoded = decode(encode(red, metadata, GetParam(), {100}));
  const Pixel p = decoded.bitmap.at(16, 16);
  EXPECT_NEAR(p.r, 0, 3);
  EXPECT_NEAR(p.g, 255, 3);
  EXPECT_NEAR(p.b, 0, 3);
  EXPECT_EQ(p.a, 255);
  EXPECT_FALSE(decoded.stored.profile.empty());

  ASSERT_FALSE(decoded.metadata.iccProfile.empty());
  EXPECT_NE(decoded.metadata.iccProfile, metadata.iccProfile);
  const Decoded again = decode(encode(decoded.bitmap, decoded.metadata, GetParam(), {100}));
  EXPECT_TRUE(test::isPicture(again.bitmap, decoded.bitmap, 2));
  EXPECT_EQ(again.metadata.iccProfile, decoded.metadata.iccProfile);
}

TEST_P(ColorProfileTest, AnSrgbProfileChangesNothingAndIsKept) {
  Metadata metadata;
  metadata.iccProfile = bytesOf(cmsCreate_sRGBProfile());
  const Bitmap picture = test::gradient(32, 32);
  const Decoded tagged = decode(encode(picture, metadata, GetParam(), {100}));
  const Decoded plain = decode(encode(picture, {}, GetParam(), {100}));
  EXPECT_TRUE(test::isPicture(tagged.bitmap, plain.bitmap));
  EXPECT_EQ(tagged.metadata.iccProfile, metadata.iccProfile);
  EXPECT_TRUE(plain.metadata.iccProfile.empty());
}

TEST_P(ColorProfileTest, ADamagedProfileIsDropped) {
  Metadata metadata;
  metadata.iccProfile = rgbProfile(kSwapped, 2.2);
  std::fill(metadata.iccProfile.begin() + 128, metadata.iccProfile.end(), std::uint8_t{0xEE});
  const Decoded decoded = decode(encode(test::gradient(32, 32), metadata, GetParam(), {100}));
  EXPECT_TRUE(test::isPicture(decoded.bitmap, test::gradient(32, 32), 6));
  EXPECT_TRUE(decoded.metadata.iccProfile.empty());
}

TEST_P(ColorProfileTest, LongProfilesSurvive) {
  // Larger than one JPEG marker can hold.
  const cmsHPROFILE profile = cmsCreate_sRGBProfile();
  const std::vector<std::uint8_t> filler(150'000, 'x');
  cmsWriteRawTag(profile, static_cast<cmsTagSignature>(0x6B657374), filler.data(),
                 static_cast<cmsUInt32Number>(filler.size()));
  Metadata metadata;
  metadata.iccProfile = bytesOf(profile);
  ASSERT_GT(metadata.iccProfile.size(), 150'000U);
  EXPECT_EQ(decode(encode(test::gradient(9, 9), metadata, GetParam())).metadata.iccProfile,
            metadata.iccProfile);
}

INSTANTIATE_TEST_SUITE_P(Formats, ColorProfileTest,
                         testing::Values(format::kJpg, format::kPng, format::kTif, format::kPsd,
                                         format::kTla),
                         [](const auto& format) { return std::string(codecOf(format.param)->name); });

}  // namespace
}  // namespace kestrel::engine
