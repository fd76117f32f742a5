#include "JpegMarkers.h"

#include <algorithm>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "PhotoshopResources.h"
#include "TiffTags.h"
#include "Xmp.h"
#include "engine/codecs/common/ByteReader.h"
#include "engine/codecs/common/ByteWriter.h"

namespace kestrel::engine::jpeg {
namespace {

using namespace std::string_view_literals;

// Identifiers of application segments, each with its terminating zero.
constexpr std::string_view kExifName = "Exif\0\0"sv;
constexpr std::string_view kXmpName = "http://ns.adobe.com/xap/1.0/\0"sv;
constexpr std::string_view kExtendedXmpName = "http://ns.adobe.com/xmp/extension/\0"sv;
constexpr std::string_view kIccName = "ICC_PROFILE\0"sv;
constexpr std::string_view kPhotoshopName = "Photoshop 3.0\0"sv;

constexpr std::size_t kMarkerLimit = 65533;
/// Largest part of a packet in the standard segment, and in each segment of extended XMP.
constexpr std::size_t kStandardXmpLimit = 65502;
constexpr std::size_t kExtendedXmpPiece = 65400;
/// Each piece of extended XMP begins with the packet's digest, its total length and the piece's offset.
constexpr std::size_t kDigestLength = 32;

bool startsWith(Bytes data, std::string_view name) {
  return data.size() >= name.size() && std::equal(name.begin(), name.end(), data.begin());
}

Marker namedMarker(int number, std::string_view name, Bytes content) {
  ByteWriter writer;
  writer.text(name);
  writer.bytes(content);
  return {number, writer.finish()};
}

/// Joins the numbered pieces of a profile; empty if the set is incomplete.
std::vector<std::uint8_t> joinProfile(const std::map<int, Bytes>& pieces, int count) {
  std::vector<std::uint8_t> profile;
  if (static_cast<int>(pieces.size()) != count) return profile;
  for (const auto& [number, piece] : pieces) profile.insert(profile.end(), piece.begin(), piece.end());
  return profile;
}

/// Pieces of extended XMP packets, by digest and offset.
class ExtendedXmp {
 public:
  void add(Bytes content) {
    if (content.size() <= kDigestLength + 8) return;
    const std::string name(content.begin(), content.begin() + kDigestLength);
    ByteReader reader(content, ByteOrder::big);
    reader.skip(kDigestLength);
    Packet& packet = packets_[name];
    packet.length = reader.u32();
    const std::size_t offset = reader.u32();
    packet.pieces[offset] = reader.take(reader.remaining());
  }

  /// The packet with this digest; empty if incomplete.
  std::vector<std::uint8_t> find(const std::string& name) const {
    const auto found = packets_.find(name);
    if (found == packets_.end()) return {};
    std::vector<std::uint8_t> packet;
    for (const auto& [offset, piece] : found->second.pieces) {
      if (offset != packet.size()) return {};
      packet.insert(packet.end(), piece.begin(), piece.end());
    }
    if (packet.size() != found->second.length) packet.clear();
    return packet;
  }

 private:
  struct Packet {
    std::size_t length = 0;
    std::map<std::size_t, Bytes> pieces;
  };
  std::map<std::string, Packet> packets_;
};

/// Splits content over several segments with the same identifier.
void writePieces(std::vector<Marker>& markers, int number, std::string_view name, Bytes content) {
  const std::size_t room = kMarkerLimit - name.size();
  for (; !content.empty(); content = content.subspan(std::min(room, content.size()))) {
    markers.push_back(namedMarker(number, name, content.first(std::min(room, content.size()))));
  }
}

void writeXmp(std::vector<Marker>& markers, const std::vector<std::uint8_t>& packet) {
  if (packet.empty()) return;
  const std::optional<xmp::Parts> parts = xmp::split(packet, kStandardXmpLimit);
  if (!parts) return;
  markers.push_back(namedMarker(1, kXmpName, parts->standard));
  const Bytes extended = parts->extended;
  for (std::size_t offset = 0; offset < extended.size(); offset += kExtendedXmpPiece) {
    ByteWriter writer(ByteOrder::big);
    writer.text(kExtendedXmpName);
    writer.text(parts->name);
    writer.u32(extended.size());
    writer.u32(offset);
    writer.bytes(extended.subspan(offset, std::min(kExtendedXmpPiece, extended.size() - offset)));
    markers.push_back({1, writer.finish()});
  }
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
  ExtendedXmp extendedXmp;
  std::vector<std::uint8_t> resources;
  for (const auto& [number, data] : markers) {
    const auto content = [&, whole = data](std::string_view name) { return whole.subspan(name.size()); };
    if (number == 1 && startsWith(data, kExifName) && metadata.exif.empty()) {
      const Bytes exif = content(kExifName);
      metadata.exif.assign(exif.begin(), exif.end());
    } else if (number == 1 && startsWith(data, kXmpName) && metadata.xmp.empty()) {
      const Bytes xmp = content(kXmpName);
      metadata.xmp.assign(xmp.begin(), xmp.end());
    } else if (number == 1 && startsWith(data, kExtendedXmpName)) {
      extendedXmp.add(content(kExtendedXmpName));
    } else if (number == 2 && startsWith(data, kIccName) && data.size() > kIccName.size() + 2) {
      const Bytes piece = content(kIccName);
      profileCount = piece[1];
      profilePieces[piece[0]] = piece.subspan(2);
    } else if (number == 13 && startsWith(data, kPhotoshopName)) {
      const Bytes piece = content(kPhotoshopName);
      resources.insert(resources.end(), piece.begin(), piece.end());
    } else if (number == kCommentMarker) {
      const bool continued = metadata.comment.empty() || metadata.comment.size() % kMarkerLimit == 0;
      if (!continued) metadata.comment += '\n';
      metadata.comment.append(data.begin(), data.end());
    }
  }
  metadata.iptc = iptcOfResources(resources);
  metadata.iccProfile = joinProfile(profilePieces, profileCount);
  if (const std::string name = xmp::extendedName(metadata.xmp); !name.empty()) {
    metadata.xmp = xmp::join(metadata.xmp, extendedXmp.find(name));
  }
  return metadata;
}

std::vector<Marker> writeMarkers(const Metadata& metadata) {
  std::vector<Marker> markers;
  if (!metadata.exif.empty()) {
    const std::size_t room = kMarkerLimit - kExifName.size();
    const bool fits = metadata.exif.size() <= room;
    const std::vector<std::uint8_t> exif = fits ? metadata.exif : tiff::shortenExif(metadata.exif, room);
    if (!exif.empty()) markers.push_back(namedMarker(1, kExifName, exif));
  }
  writeXmp(markers, metadata.xmp);
  if (!metadata.iptc.empty()) writePieces(markers, 13, kPhotoshopName, resourcesOfIptc(metadata.iptc));
  writeProfile(markers, metadata.iccProfile);
  if (!metadata.comment.empty()) {
    const Bytes comment(reinterpret_cast<const std::uint8_t*>(metadata.comment.data()),
                        metadata.comment.size());
    writePieces(markers, kCommentMarker, {}, comment);
  }
  return markers;
}

}  // namespace kestrel::engine::jpeg
