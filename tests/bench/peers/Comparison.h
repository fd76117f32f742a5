#pragma once

#include <functional>
#include <string>
#include <vector>

namespace kestrel::bench {

/// One way to do an operation's work, on pictures that it holds.
struct Contender {
  std::string name;
  std::string computes;  ///< what it does, and what of the others' work it leaves out
  std::function<void()> run;
  /// For rows of something else than times, in the place of `run`: gives the figure, in the row's unit.
  std::function<double()> figure = {};
};

/// One row of the table: an operation, ours and others' ways to do it, and how they shall compare.
struct Comparison {
  std::string operation;
  double bar = 1;  ///< our figure divided by the best peer's shall not be more
  /// Makes the contenders, ours first. Called when the row is measured; what they hold is freed after it.
  std::function<std::vector<Contender>()> contenders;
  std::string unit = "ms";
  /// How many cores all contenders may use. More than one is for rows whose contenders are whole processes:
  /// libraries count the cores once and go on with that number.
  int cores = 1;
};

/// The rows of one program; each program defines it once.
std::vector<Comparison> comparisons();

}  // namespace kestrel::bench
