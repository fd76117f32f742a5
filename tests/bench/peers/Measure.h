#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "Comparison.h"

namespace kestrel::bench {

/// The figure of one contender in one row.
struct Measured {
  std::string operation;
  double bar = 1;
  std::string unit;
  std::string contender;
  std::string computes;
  bool ours = false;
  double figure = 0;  ///< the median
};

/// Runs the contenders of a row alternately, so that other load on the machine affects all of them equally:
/// at least `runs` rounds and at least a second, after one unmeasured round.
std::vector<Measured> measure(const Comparison& comparison, int runs);

/// Writes one line per contender with tab-separated fields.
void write(std::ostream& out, const std::vector<Measured>& results);
/// Reads what `write` wrote. Raises std::runtime_error for anything else.
std::vector<Measured> read(std::istream& in);

}  // namespace kestrel::bench
