#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "MetafilePlayer.h"
#include "engine/codecs/common/ByteReader.h"
#include "engine/codecs/common/Decoded.h"

namespace kestrel::engine::emf {

class PlusPlayback;

/// Plays the records of an enhanced metafile. Invalid records are skipped.
///
/// A file may hold its drawing as EMF+ commands in comment records, in addition to plain records or instead
/// of them. EMF+ is played only if there is no plain drawing.
class Playback {
 public:
  Playback(metafile::Player& player, Bytes file);
  ~Playback();
  Playback(const Playback&) = delete;
  Playback& operator=(const Playback&) = delete;

  /// Returns true if the end record was reached or the work limit is exhausted.
  bool run();

 private:
  void play(std::uint32_t type, ByteReader& r);
  bool playState(std::uint32_t type, ByteReader& r);
  bool playMapping(std::uint32_t type, ByteReader& r);
  bool playClip(std::uint32_t type, ByteReader& r);
  bool playObject(std::uint32_t type, ByteReader& r);
  bool playPath(std::uint32_t type, ByteReader& r);
  bool playShape(std::uint32_t type, ByteReader& r);
  bool playText(std::uint32_t type, ByteReader& r);
  bool playRegion(std::uint32_t type, ByteReader& r);
  void playPicture(std::uint32_t type, ByteReader& r);

  void comment(ByteReader& r);
  void clipToRegion(ByteReader& r);
  void select(std::uint32_t number);
  void selectStock(std::uint32_t number);
  metafile::Pen extendedPen(ByteReader& r) const;
  metafile::Brush brushOf(std::uint32_t number) const;

  void angleArc(ByteReader& r);
  void polyDraw(ByteReader& r, bool narrow);
  void text(ByteReader& r, bool wide);
  void smallText(ByteReader& r);
  void drawText(metafile::Point at, Bytes stored, bool wide, std::uint32_t options, const metafile::Rect& box,
                const std::vector<double>& advances);

  void stretchDib(ByteReader& r);
  void setDibToDevice(ByteReader& r);
  void blit(std::uint32_t type, ByteReader& r);
  void maskBlit(std::uint32_t type, ByteReader& r);
  void gradientFill(ByteReader& r);

  /// A part of the record by offset and size; empty if out of range.
  Bytes part(std::size_t offset, std::size_t size) const;
  /// Header and pixels of a bitmap, located by offsets and sizes in the record.
  struct Dib {
    Bytes header, pixels;
    bool exists() const { return header.size() >= 12 && !pixels.empty(); }
    Bitmap picture(std::uint32_t colors) const;
  };
  Dib dib(ByteReader& r) const;

  metafile::Player& player_;
  Bytes file_;
  Bytes record_;
  std::map<std::uint32_t, metafile::Object> objects_;
  std::unique_ptr<PlusPlayback> plus_;
  bool plainPlays_ = true;
};

}  // namespace kestrel::engine::emf
