#pragma once

#include <cstdint>
#include <span>

namespace kestrel::engine {

/// The shortest prefix code for symbols that occur so often (Huffman's), with no code longer than `longest`
/// bits: where one would be, frequent symbols lend it room, which costs next to nothing. Symbols that do not
/// occur get length 0. At least two symbols get a code, since not all decoders take a code of one.
/// `counts` has at most 288 entries, of a sum below 2^32.
void makeCodeLengths(std::span<const std::uint32_t> counts, int longest, std::span<std::uint8_t> lengths);

/// The canonical codes of these lengths (RFC 1951, 3.2.2), with the bits in the order of the stream: the
/// first lowest.
void makeCodes(std::span<const std::uint8_t> lengths, std::span<std::uint16_t> codes);

}  // namespace kestrel::engine
