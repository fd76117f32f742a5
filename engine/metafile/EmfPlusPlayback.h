#pragma once

#include <array>
#include <cstdint>
#include <utility>
#include <vector>

#include "EmfPlusObjects.h"
#include "EmfPlusPainter.h"
#include "engine/codecs/common/ByteReader.h"

namespace kestrel::engine::emf {

/// Whether what a comment holds are commands of GDI+.
bool isPlusComment(Bytes comment);

/// Whether those commands are the drawing of the file. Most files that have them hold the same drawing a
/// second time in plain records, which need no more than what every reader has.
bool plusIsTheDrawing(Bytes file);

/// Plays commands of GDI+. One that makes no sense is passed over.
class PlusPlayback {
 public:
  PlusPlayback(metafile::Canvas& canvas, const cairo_matrix_t& device) : painter_(canvas, device) {}

  /// Plays the commands of a comment. True if the last says that plain records go on with the drawing.
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

  /// The object of a slot; an empty one where there is none of that kind.
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
  // An object that goes on in the next records.
  std::uint32_t pendingType_ = 0, pendingId_ = 0;
  std::size_t pendingSize_ = 0;
  std::vector<std::uint8_t> pending_;
};

}  // namespace kestrel::engine::emf
