#include "DeflatePeers.h"

#include <isa-l/igzip_lib.h>
#include <libdeflate.h>
#include <zlib.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>

#include "engine/codecs/png/Deflate.h"
#include "engine/codecs/png/PngChunks.h"

namespace kestrel::bench {
namespace {

struct Packer {
  std::string name;
  /// The deflate blocks (RFC 1951) of the rows.
  std::function<Bytes(const Bytes&)> pack;
};

/// Inflates a stream, of zlib's format or of bare blocks, of a known size.
Bytes inflated(const Bytes& stream, bool zlibFormat, std::size_t size) {
  Bytes data(size);
  z_stream state{};
  inflateInit2(&state, zlibFormat ? 15 : -15);
  state.next_in = const_cast<std::uint8_t*>(stream.data());
  state.avail_in = static_cast<unsigned>(stream.size());
  state.next_out = data.data();
  state.avail_out = static_cast<unsigned>(data.size());
  const int result = inflate(&state, Z_FINISH);
  inflateEnd(&state);
  if (result != Z_STREAM_END || state.total_out != size)
    throw std::runtime_error("A stream does not inflate.");
  return data;
}

Bytes filteredRowsOf(const Bytes& file) {
  const auto chunks = engine::png::findChunks(file);
  if (!chunks) throw std::runtime_error("Our own file is damaged.");
  Bytes stream;
  for (const auto& piece : chunks->packed) stream.insert(stream.end(), piece.begin(), piece.end());
  constexpr std::size_t kHeader = 16;
  const auto number = [&](std::size_t at) {
    return std::size_t{file[at]} << 24 | std::size_t{file[at + 1]} << 16 | std::size_t{file[at + 2]} << 8 |
           file[at + 3];
  };
  constexpr std::uint8_t kWithAlpha = 6;
  const std::size_t samples = file[kHeader + 9] == kWithAlpha ? 4 : 3;
  return inflated(stream, true, number(kHeader + 4) * (number(kHeader) * samples + 1));
}

/// In bands as PngWriter packs them, one after the other.
Bytes packWithOurs(const Bytes& rows) {
  constexpr std::size_t kBand = std::size_t{1} << 20, kWindow = std::size_t{1} << 15;
  Bytes stream;
  engine::Deflate deflate;
  for (std::size_t at = 0; at < rows.size(); at += kBand) {
    const std::size_t history = std::min(at, kWindow), end = std::min(rows.size(), at + kBand);
    const engine::Bytes band(rows.data() + at - history, end - at + history);
    const Bytes blocks = deflate.pack(band, history, end == rows.size());
    stream.insert(stream.end(), blocks.begin(), blocks.end());
  }
  return stream;
}

Bytes packWithIsal(const Bytes& rows, unsigned level) {
  constexpr std::array<std::uint32_t, 4> kBuffers{ISAL_DEF_LVL0_DEFAULT, ISAL_DEF_LVL1_DEFAULT,
                                                  ISAL_DEF_LVL2_DEFAULT, ISAL_DEF_LVL3_DEFAULT};
  Bytes buffer(kBuffers[level]), stream(rows.size() + rows.size() / 8 + 4096);
  const auto state = std::make_unique<isal_zstream>();
  isal_deflate_init(state.get());
  state->level = level;
  state->level_buf = buffer.data();
  state->level_buf_size = static_cast<std::uint32_t>(buffer.size());
  state->end_of_stream = 1;
  state->next_in = const_cast<std::uint8_t*>(rows.data());
  state->avail_in = static_cast<std::uint32_t>(rows.size());
  state->next_out = stream.data();
  state->avail_out = static_cast<std::uint32_t>(stream.size());
  if (isal_deflate(state.get()) != COMP_OK || state->avail_in != 0)
    throw std::runtime_error("ISA-L has failed.");
  stream.resize(state->total_out);
  return stream;
}

Bytes packWithLibdeflate(const Bytes& rows, int level) {
  const std::unique_ptr<libdeflate_compressor, decltype(&libdeflate_free_compressor)> compressor(
      libdeflate_alloc_compressor(level), libdeflate_free_compressor);
  Bytes stream(libdeflate_deflate_compress_bound(compressor.get(), rows.size()));
  stream.resize(
      libdeflate_deflate_compress(compressor.get(), rows.data(), rows.size(), stream.data(), stream.size()));
  return stream;
}

std::vector<Packer> allPackers() {
  std::vector<Packer> packers{{"KestrelLib2", packWithOurs}};
  for (const unsigned level : {0U, 1U, 2U, 3U})
    packers.push_back({"ISA-L level " + std::to_string(level),
                       [=](const Bytes& rows) { return packWithIsal(rows, level); }});
  for (const int level : {1, 2, 3, 6})
    packers.push_back({"libdeflate level " + std::to_string(level),
                       [=](const Bytes& rows) { return packWithLibdeflate(rows, level); }});
  return packers;
}

}  // namespace

std::vector<Contender> packers(const Bytes& file) {
  const auto rows = std::make_shared<const Bytes>(filteredRowsOf(file));
  std::vector<Contender> contenders;
  std::size_t ours = 0;
  std::string smaller;
  for (const Packer& packer : allPackers()) {
    const auto start = std::chrono::steady_clock::now();
    const Bytes stream = packer.pack(*rows);
    const auto time = std::chrono::steady_clock::now() - start;
    if (inflated(stream, false, rows->size()) != *rows)
      throw std::runtime_error(packer.name + " gave other rows.");
    if (contenders.empty()) ours = stream.size();
    if (static_cast<double>(ours) > 1.05 * static_cast<double>(stream.size())) {
      smaller += "; not compared, for a smaller stream: " + packer.name + ", " + megabytes(stream.size()) +
                 " in " + milliseconds(time);
    } else {
      contenders.push_back(
          {packer.name, megabytes(stream.size()), [rows, pack = packer.pack] { pack(*rows); }});
    }
  }
  contenders.front().computes += smaller;
  return contenders;
}

}  // namespace kestrel::bench
