#include "Description.h"

#include <algorithm>

namespace kestrel::dispatch {
namespace {

template <typename Row>
const Row* FindByName(std::span<const Row> rows, Order order, std::string_view name) {
  const auto found = std::lower_bound(
      order.begin(), order.end(), name,
      [&](std::uint8_t at, std::string_view wanted) { return CompareNames(rows[at].name, wanted) < 0; });
  if (found == order.end() || CompareNames(rows[*found].name, name) != 0) return nullptr;
  return &rows[*found];
}

template <typename Row>
const Row* FindByNumber(std::span<const Row> rows, Order order, std::int32_t number) {
  const auto found =
      std::lower_bound(order.begin(), order.end(), number,
                       [&](std::uint8_t at, std::int32_t wanted) { return rows[at].number < wanted; });
  if (found == order.end() || rows[*found].number != number) return nullptr;
  return &rows[*found];
}

}  // namespace

const Member* ClassDescription::FindMember(std::string_view memberName) const {
  return FindByName(members, membersByName, memberName);
}
const Member* ClassDescription::FindMember(std::int32_t number) const {
  return FindByNumber(members, membersByNumber, number);
}
const EventDescription* ClassDescription::FindEvent(std::string_view eventName) const {
  return FindByName(events, eventsByName, eventName);
}
const EventDescription* ClassDescription::FindEvent(std::int32_t number) const {
  return FindByNumber(events, eventsByNumber, number);
}

bool ClassDescription::IsCollection() const {
  const Member* item = FindMember(0);
  return item != nullptr && item->parameters.size() == 1 && FindMember("Count") != nullptr;
}

std::ptrdiff_t FindParameter(std::span<const Parameter> parameters, std::string_view name) {
  for (std::size_t i = 0; i < parameters.size(); ++i) {
    if (CompareNames(parameters[i].name, name) == 0) return static_cast<std::ptrdiff_t>(i);
  }
  return -1;
}

}  // namespace kestrel::dispatch
