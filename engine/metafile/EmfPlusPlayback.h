#pragma once

#include <array>
#include <cstdint>
#include <utility>
#include <vector>

#include "EmfPlusObjects.h"
#include "EmfPlusPainter.h"
#include "engine/codecs/common/ByteReader.h"

namespace kestrel::engine::emf {

/// Whether a comment record holds EMF+ commands.
bool isPlusComment(Bytes comment);

/// Whether the EMF+ commands must be played. Most files with EMF+ hold the same drawing in plain records,
/// too, which are preferred.
bool plusIsTheDrawing(Bytes file);

/// Plays EMF+ commands. Invalid commands are skipped.
class PlusPlayback {
 public:
  PlusPlayback(metafile::Canvas& canvas, const cairo_matrix_t& device) : painter_(canvas, device) {}

  /// Plays the commands of a comment. Returns true if the last one hands over to plain records.
  bool play(Bytes commands);

 private:
  struct Command {
    std::uint16_t type = 0, flags = 0;
    Bytes data;
  };

  void play(const Command& command);
  bool playState(const Command& command, ByteReader& r);
  bool playTransform(const Command& command, ByteReader& r);
  bool playClip(const Command& command, ByteReader& r);
  bool playFill(const Command& command, ByteReader& r);
  bool playStroke(const Command& command, ByteReader& r);
  void playPictureOrText(const Command& command, ByteReader& r);

  void object(const Command& command, ByteReader& r);
  void keepObject(std::uint32_t id, std::uint32_t type, Bytes data);
  void save(std::uint32_t index);
  void restore(std::uint32_t index);
  void beginContainer(const Command& command, ByteReader& r);
  void drawImage(const Command& command, ByteReader& r, bool corners);
  void drawString(const Command& command, ByteReader& r);
  void drawDriverString(const Command& command, ByteReader& r);

  /// The object in a slot; a default one if it is not of this type.
  template <typename Kind>
  const Kind& objectOf(std::uint32_t id) const {
    static const Kind kNone{};
    const auto* const found = std::get_if<Kind>(&objects_[id % objects_.size()]);
    return found != nullptr ? *found : kNone;
  }
  plus::Brush brushOf(const Command& command, std::uint32_t id) const;

  plus::Painter painter_;
  std::array<plus::Object, 64> objects_;
  std::vector<std::pair<std::uint32_t, plus::State>> saved_;
  // An object continued in the next commands.
  std::uint32_t pendingType_ = 0, pendingId_ = 0;
  std::size_t pendingSize_ = 0;
  std::vector<std::uint8_t> pending_;
};

}  // namespace kestrel::engine::emf
