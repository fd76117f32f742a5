// Makes the table from the output of the comparison programs: peers_table HEAP=FILE...
//
// Each file has the same rows, measured with another heap. Ours counts with the first heap, the default of
// programs; a peer counts with the heap that is fastest for it.

#include <algorithm>
#include <cstdio>
#include <exception>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <string>
#include <vector>

#include "Measure.h"

namespace kestrel::bench {
namespace {

struct Heap {
  std::string name;
  std::vector<Measured> measured;
};

/// A contender of a row, with its figure under each heap in turn.
struct Entry {
  Measured measured;
  std::vector<double> figures;

  std::size_t bestHeap() const {
    return static_cast<std::size_t>(std::min_element(figures.begin(), figures.end()) - figures.begin());
  }
  double best() const { return figures[bestHeap()]; }
};

struct Row {
  Entry ours;
  std::vector<Entry> peers;
};

Heap load(const std::string& argument) {
  const std::size_t equals = argument.find('=');
  if (equals == std::string::npos) throw std::runtime_error("Not HEAP=FILE: " + argument);
  std::ifstream file(argument.substr(equals + 1));
  if (!file) throw std::runtime_error("Cannot be read: " + argument.substr(equals + 1));
  return {argument.substr(0, equals), read(file)};
}

std::vector<Entry> merge(const std::vector<Heap>& heaps) {
  std::vector<Entry> entries;
  for (const Measured& m : heaps.front().measured) entries.push_back({m, {m.figure}});
  for (std::size_t h = 1; h < heaps.size(); ++h) {
    const std::vector<Measured>& measured = heaps[h].measured;
    if (measured.size() != entries.size()) throw std::runtime_error("The heaps differ in their rows.");
    for (std::size_t i = 0; i < entries.size(); ++i) {
      if (measured[i].operation != entries[i].measured.operation ||
          measured[i].contender != entries[i].measured.contender)
        throw std::runtime_error("The heaps differ in their rows: " + measured[i].operation);
      entries[i].figures.push_back(measured[i].figure);
    }
  }
  return entries;
}

std::vector<Row> rowsOf(const std::vector<Entry>& entries) {
  std::vector<Row> rows;
  for (const Entry& entry : entries) {
    if (entry.measured.ours) {
      rows.push_back({entry, {}});
    } else {
      if (rows.empty() || rows.back().ours.measured.operation != entry.measured.operation)
        throw std::runtime_error("A row does not begin with ours: " + entry.measured.operation);
      rows.back().peers.push_back(entry);
    }
  }
  for (const Row& row : rows)
    if (row.peers.empty()) throw std::runtime_error("A row has no peer: " + row.ours.measured.operation);
  return rows;
}

std::string number(double value, int decimals) {
  char text[64];
  std::snprintf(text, sizeof text, "%.*f", decimals, value);
  return text;
}

std::string figure(double value, const std::string& unit) {
  return number(value, value < 10 ? 2 : value < 1000 ? 1 : 0) + ' ' + unit;
}

void printSummary(const std::vector<Row>& rows, const std::vector<Heap>& heaps) {
  std::cout << "| operation | ours | best peer | its heap | its figure | ratio | bar | |\n"
               "|---|---:|---|---|---:|---:|---:|---|\n";
  std::size_t won = 0;
  for (const Row& row : rows) {
    const Entry& best = *std::min_element(row.peers.begin(), row.peers.end(),
                                          [](const Entry& a, const Entry& b) { return a.best() < b.best(); });
    const Measured& ours = row.ours.measured;
    const double ratio = ours.figure / best.best();
    const bool holds = ratio <= ours.bar;
    won += holds;
    std::cout << "| " << ours.operation << " | " << figure(ours.figure, ours.unit) << " | "
              << best.measured.contender << " | " << heaps[best.bestHeap()].name << " | "
              << figure(best.best(), ours.unit) << " | " << number(ratio, 2) << " | " << number(ours.bar, 2)
              << " | " << (holds ? "won" : "**lost**") << " |\n";
  }
  std::cout << "\nWon: " << won << " of " << rows.size() << ".\n";
}

void printContenders(const std::vector<Row>& rows, const std::vector<Heap>& heaps) {
  std::cout << "| operation | contender |";
  for (const Heap& heap : heaps) std::cout << ' ' << heap.name << " |";
  std::cout << " computes |\n|---|---|";
  for (std::size_t i = 0; i < heaps.size(); ++i) std::cout << "---:|";
  std::cout << "---|\n";
  const auto print = [](const std::string& operation, const Entry& entry) {
    std::cout << "| " << operation << " | " << (entry.measured.ours ? "ours" : entry.measured.contender)
              << " |";
    for (const double value : entry.figures) std::cout << ' ' << figure(value, entry.measured.unit) << " |";
    std::cout << ' ' << entry.measured.computes << " |\n";
  };
  for (const Row& row : rows) {
    print(row.ours.measured.operation, row.ours);
    for (const Entry& peer : row.peers) print("", peer);
  }
}

}  // namespace
}  // namespace kestrel::bench

int main(int argc, char** argv) {
  using namespace kestrel::bench;
  try {
    if (argc < 2) throw std::runtime_error("peers_table HEAP=FILE...");
    std::vector<Heap> heaps;
    for (int i = 1; i < argc; ++i) heaps.push_back(load(argv[i]));
    const std::vector<Row> rows = rowsOf(merge(heaps));
    printSummary(rows, heaps);
    std::cout << "\nEvery contender, its figure under each heap, and what it computes:\n\n";
    printContenders(rows, heaps);
  } catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return 1;
  }
}
