#pragma once

#include <functional>
#include <string>
#include <vector>

namespace kestrel::bench {

/// One implementation of an operation, with its own input and output.
struct Contender {
  std::string name;
  std::string computes;  ///< its work, and the parts of the others' work that it omits
  std::function<void()> run;
  /// For rows that measure no time, in place of `run`: returns the figure in the row's unit.
  std::function<double()> figure = {};
};

/// One row of the table: an operation, its implementations by us and our peers, and the required ratio.
struct Comparison {
  std::string operation;
  double bar = 1;  ///< our figure divided by the best peer's shall not be more
  /// Makes the contenders, ours first. Called when the row is measured; they are destroyed after it.
  std::function<std::vector<Contender>()> contenders;
  std::string unit = "ms";
  /// Number of cores for all contenders. More than one only for rows of whole processes, since libraries
  /// count the cores only once.
  int cores = 1;
};

/// The rows of one program; each program defines it once.
std::vector<Comparison> comparisons();

}  // namespace kestrel::bench
