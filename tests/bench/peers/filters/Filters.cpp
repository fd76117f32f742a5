#include "Filters.h"

#include <iterator>
#include <opencv2/core/utility.hpp>

#include "engine/parallel/Parallel.h"

namespace kestrel::bench {

std::vector<Comparison> comparisons() {
  cv::setNumThreads(engine::threadCount());
  std::vector<Comparison> rows;
  for (std::vector<Comparison> some : {rotateRows(), blurRows(), shadowRows()})
    rows.insert(rows.end(), std::make_move_iterator(some.begin()), std::make_move_iterator(some.end()));
  return rows;
}

}  // namespace kestrel::bench
