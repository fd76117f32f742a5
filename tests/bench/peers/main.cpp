// Measures this program's rows and prints them, one line per contender: PROGRAM [--runs N] [--only TEXT]

#include <CLI/CLI.hpp>

#include <iostream>

#include "Cores.h"
#include "Measure.h"

int main(int argc, char** argv) {
  int runs = 9;
  std::string only;
  CLI::App app{"Compares our operations with those of other libraries."};
  app.add_option("--runs", runs, "minimum number of runs per contender")->check(CLI::Range(1, 1000));
  app.add_option("--only", only, "measure only operations whose name contains TEXT");
  CLI11_PARSE(app, argc, argv);

  kestrel::bench::runOnCores(1);
  for (const kestrel::bench::Comparison& comparison : kestrel::bench::comparisons())
    if (comparison.operation.find(only) != std::string::npos) {
      kestrel::bench::write(std::cout, kestrel::bench::measure(comparison, runs));
      std::cout.flush();
    }
}
