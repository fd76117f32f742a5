#include "Measure.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <istream>
#include <ostream>
#include <sstream>
#include <stdexcept>

#include "Cores.h"

namespace kestrel::bench {
namespace {

using Clock = std::chrono::steady_clock;

/// Short operations run more often, until a row has taken this long.
constexpr std::chrono::seconds kShortest{1};

double figureOf(const Contender& contender) {
  if (contender.figure) return contender.figure();
  const auto start = Clock::now();
  contender.run();
  return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

double median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

}  // namespace

std::vector<Measured> measure(const Comparison& comparison, int runs) {
  runOnCores(comparison.cores);
  const std::vector<Contender> contenders = comparison.contenders();
  std::vector<std::vector<double>> figures(contenders.size());
  for (const Contender& contender : contenders) figureOf(contender);
  const auto start = Clock::now();
  for (int run = 0; run < runs || Clock::now() - start < kShortest; ++run)
    for (std::size_t i = 0; i < contenders.size(); ++i) figures[i].push_back(figureOf(contenders[i]));

  std::vector<Measured> results;
  for (std::size_t i = 0; i < contenders.size(); ++i)
    results.push_back({comparison.operation, comparison.bar, comparison.unit, contenders[i].name,
                       contenders[i].computes, i == 0, median(figures[i])});
  return results;
}

void write(std::ostream& out, const std::vector<Measured>& results) {
  for (const Measured& m : results)
    out << m.operation << '\t' << m.bar << '\t' << m.unit << '\t' << m.contender << '\t' << m.computes << '\t'
        << m.ours << '\t' << m.figure << '\n';
}

std::vector<Measured> read(std::istream& in) {
  std::vector<Measured> results;
  for (std::string line; std::getline(in, line);) {
    std::istringstream fields(line);
    std::array<std::string, 5> texts;
    for (std::string& text : texts) std::getline(fields, text, '\t');
    Measured m{texts[0], 0, texts[2], texts[3], texts[4]};
    if (!(fields >> m.ours >> m.figure) || !(std::istringstream(texts[1]) >> m.bar))
      throw std::runtime_error("Not a line of measurements: " + line);
    results.push_back(std::move(m));
  }
  return results;
}

}  // namespace kestrel::bench
