#pragma once

#include <cstdint>
#include <span>

namespace kestrel::engine {

/// Code lengths of a Huffman code for these symbol counts, limited to `longest` bits: longer codes are
/// shortened at the expense of frequent symbols, with negligible loss. Symbols with count 0 get length 0. At
/// least two symbols get a code, since not all decoders accept a code with one symbol. `counts` has at most
/// 288 entries with a sum below 2^32.
void makeCodeLengths(std::span<const std::uint32_t> counts, int longest, std::span<std::uint8_t> lengths);

/// Canonical codes of these lengths (RFC 1951, 3.2.2), in stream order: the first bit lowest.
void makeCodes(std::span<const std::uint8_t> lengths, std::span<std::uint16_t> codes);

}  // namespace kestrel::engine
