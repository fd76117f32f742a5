#include "Measure.h"

#include <algorithm>
#include <chrono>
#include <istream>
#include <ostream>
#include <sstream>
#include <stdexcept>

namespace kestrel::bench {
namespace {

double millisecondsOf(const std::function<void()>& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

double median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

}  // namespace

std::vector<Measured> measure(const Comparison& comparison, int runs) {
  const std::vector<Contender> contenders = comparison.contenders();
  std::vector<std::vector<double>> times(contenders.size());
  for (const Contender& contender : contenders) contender.run();
  for (int run = 0; run < runs; ++run)
    for (std::size_t i = 0; i < contenders.size(); ++i) times[i].push_back(millisecondsOf(contenders[i].run));

  std::vector<Measured> results;
  for (std::size_t i = 0; i < contenders.size(); ++i)
    results.push_back({comparison.operation, comparison.bar, contenders[i].name, contenders[i].computes,
                       i == 0, median(times[i])});
  return results;
}

void write(std::ostream& out, const std::vector<Measured>& results) {
  for (const Measured& m : results)
    out << m.operation << '\t' << m.bar << '\t' << m.contender << '\t' << m.computes << '\t' << m.ours << '\t'
        << m.milliseconds << '\n';
}

std::vector<Measured> read(std::istream& in) {
  std::vector<Measured> results;
  for (std::string line; std::getline(in, line);) {
    std::istringstream fields(line);
    Measured m;
    std::string bar;
    std::getline(fields, m.operation, '\t');
    std::getline(fields, bar, '\t');
    std::getline(fields, m.contender, '\t');
    std::getline(fields, m.computes, '\t');
    if (!(fields >> m.ours >> m.milliseconds)) throw std::runtime_error("No line of measurements: " + line);
    m.bar = std::stod(bar);
    results.push_back(std::move(m));
  }
  return results;
}

}  // namespace kestrel::bench
