#include "LoadOrder.h"

#include <algorithm>
#include <iterator>
#include <unordered_set>

namespace kestrel::thumbnails {
namespace {

std::deque<LoadRequest> queueOf(std::vector<LoadRequest> requests) {
  return {std::make_move_iterator(requests.begin()), std::make_move_iterator(requests.end())};
}

}  // namespace

void LoadOrder::want(std::vector<LoadRequest> first, std::vector<LoadRequest> later) {
  first_ = queueOf(std::move(first));
  later_ = queueOf(std::move(later));
  for (auto& [identity, work] : atWork_) {
    if (!work.ofFolder && !isWanted(identity)) work.canceled.request_stop();
  }
}

bool LoadOrder::isWanted(const Identity& identity) const {
  const auto isIt = [&](const LoadRequest& request) { return identityOf(request) == identity; };
  return std::any_of(first_.begin(), first_.end(), isIt) || std::any_of(later_.begin(), later_.end(), isIt);
}

void LoadOrder::add(std::vector<LoadRequest> requests) {
  for (LoadRequest& request : requests) {
    const Identity identity = identityOf(request);
    if (const auto work = atWork_.find(identity); work != atWork_.end()) work->second.ofFolder = true;
    if (waiting_.insert(identity).second) files_.push_back(std::move(request));
  }
}

void LoadOrder::remove(const std::vector<FileKey>& keys) {
  const std::unordered_set<FileKey> removed(keys.begin(), keys.end());
  const auto isRemoved = [&](const LoadRequest& request) { return removed.contains(request.key); };
  std::erase_if(first_, isRemoved);
  std::erase_if(later_, isRemoved);
  for (const FileKey key : keys) {
    waiting_.erase(waiting_.lower_bound({key, 0}), waiting_.lower_bound({key + 1, 0}));
    for (auto work = atWork_.lower_bound({key, 0}); work != atWork_.end() && work->first.first == key;
         ++work) {
      work->second.canceled.request_stop();
    }
  }
}

void LoadOrder::drop() {
  first_.clear();
  files_.clear();
  waiting_.clear();
  later_.clear();
  for (auto& [identity, work] : atWork_) work.canceled.request_stop();
}

void LoadOrder::clear() {
  drop();
  atWork_.clear();
}

bool LoadOrder::takeFrom(std::deque<LoadRequest>& list, std::optional<LoadRequest>& taken) {
  while (!list.empty()) {
    LoadRequest request = std::move(list.front());
    list.pop_front();
    const Identity identity = identityOf(request);
    if (&list == &files_ && !waiting_.contains(identity)) continue;
    const auto [work, isNew] = atWork_.try_emplace(identity);
    if (!isNew) {
      if (&list == &files_) waiting_.erase(identity);
      continue;
    }
    work->second.ofFolder = waiting_.erase(identity) > 0;
    request.canceled = work->second.canceled.get_token();
    taken = std::move(request);
    return true;
  }
  return false;
}

std::optional<LoadRequest> LoadOrder::take() {
  std::optional<LoadRequest> taken;
  if (!takeFrom(first_, taken) && !takeFrom(files_, taken)) takeFrom(later_, taken);
  return taken;
}

void LoadOrder::finish(FileKey key, std::int32_t side) { atWork_.erase({key, side}); }

bool LoadOrder::empty() const { return first_.empty() && waiting_.empty() && later_.empty(); }

}  // namespace kestrel::thumbnails
