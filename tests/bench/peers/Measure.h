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

/// Runs the contenders of a row in turn, so that whatever else the machine does meanwhile falls on all of
/// them alike: at least `runs` times round, and for a second at least, after one round unmeasured.
std::vector<Measured> measure(const Comparison& comparison, int runs);

/// One line a contender, with tabs between its fields.
void write(std::ostream& out, const std::vector<Measured>& results);
/// Reads what `write` wrote. Raises std::runtime_error for anything else.
std::vector<Measured> read(std::istream& in);

}  // namespace kestrel::bench
