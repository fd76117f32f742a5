#include "JpegMarkers.h"

#include <algorithm>
#include <map>
#include <string_view>

#include "ByteWriter.h"
#include "Exif.h"
#include "PhotoshopResources.h"

namespace kestrel::engine::jpeg {
namespace {

using namespace std::string_view_literals;

// The names that tell what an application marker holds, each with its closing zero.
constexpr std::string_view kExifName = "Exif\0\0"sv;
constexpr std::string_view kXmpName = "http://ns.adobe.com/xap/1.0/\0"sv;
constexpr std::string_view kIccName = "ICC_PROFILE\0"sv;
constexpr std::string_view kPhotoshopName = "Photoshop 3.0\0"sv;

constexpr std::size_t kMarkerLimit = 65533;

bool startsWith(Bytes data, std::string_view name) {
  return data.size() >= name.size() && std::equal(name.begin(), name.end(), data.begin());
}

Marker namedMarker(int number, std::string_view name, Bytes content) {
  ByteWriter writer;
  writer.text(name);
  writer.bytes(content);
  return {number, writer.finish()};
}

/// A profile comes in numbered pieces. Pieces that do not fit together are no profile.
std::vector<std::uint8_t> joinProfile(const std::map<int, Bytes>& pieces, int count) {
  std::vector<std::uint8_t> profile;
  if (static_cast<int>(pieces.size()) != count) return profile;
  for (const auto& [number, piece] : pieces) profile.insert(profile.end(), piece.begin(), piece.end());
  return profile;
}

void writeProfile(std::vector<Marker>& markers, Bytes profile) {
  const std::size_t room = kMarkerLimit - kIccName.size() - 2;
  const std::size_t count = (profile.size() + room - 1) / room;
  if (count > 255) return;
  for (std::size_t i = 0; i < count; ++i) {
    ByteWriter writer;
    writer.text(kIccName);
    writer.u8(i + 1);
    writer.u8(count);
    writer.bytes(profile.subspan(i * room, std::min(room, profile.size() - i * room)));
    markers.push_back({2, writer.finish()});
  }
}

}  // namespace

Metadata readMarkers(std::span<const MarkerView> markers) {
  Metadata metadata;
  std::map<int, Bytes> profilePieces;
  int profileCount = 0;
  for (const auto& [number, data] : markers) {
    const auto content = [&, whole = data](std::string_view name) { return whole.subspan(name.size()); };
    if (number == 1 && startsWith(data, kExifName) && metadata.exif.empty()) {
      const Bytes exif = content(kExifName);
      metadata.exif.assign(exif.begin(), exif.end());
    } else if (number == 1 && startsWith(data, kXmpName) && metadata.xmp.empty()) {
      const Bytes xmp = content(kXmpName);
      metadata.xmp.assign(xmp.begin(), xmp.end());
    } else if (number == 2 && startsWith(data, kIccName) && data.size() > kIccName.size() + 2) {
      const Bytes piece = content(kIccName);
      profileCount = piece[1];
      profilePieces[piece[0]] = piece.subspan(2);
    } else if (number == 13 && startsWith(data, kPhotoshopName)) {
      if (metadata.iptc.empty()) metadata.iptc = iptcOfResources(content(kPhotoshopName));
    }
  }
  metadata.iccProfile = joinProfile(profilePieces, profileCount);
  return metadata;
}

std::vector<Marker> writeMarkers(const Metadata& metadata, std::int32_t width, std::int32_t height) {
  std::vector<Marker> markers;
  if (!metadata.exif.empty()) {
    std::vector<std::uint8_t> exif = metadata.exif;
    setExifSize(exif, width, height);
    markers.push_back(namedMarker(1, kExifName, exif));
  }
  if (!metadata.xmp.empty()) markers.push_back(namedMarker(1, kXmpName, metadata.xmp));
  if (!metadata.iptc.empty()) {
    markers.push_back(namedMarker(13, kPhotoshopName, resourcesOfIptc(metadata.iptc)));
  }
  std::erase_if(markers, [](const Marker& marker) { return marker.data.size() > kMarkerLimit; });
  writeProfile(markers, metadata.iccProfile);
  return markers;
}

}  // namespace kestrel::engine::jpeg
