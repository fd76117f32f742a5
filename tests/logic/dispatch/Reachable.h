#pragma once

#include <set>
#include <vector>

#include "base/RuntimeError.h"
#include "host/dispatch/Invoke.h"

namespace kestrel::dispatch {

enum class Owned : bool {
  kLeftOut,  ///< objects with a life of their own, and all that they hand out
  kIncluded,
};

/// The objects of the list and what their properties hand out, one of each class; of a collection the first
/// element.
inline std::vector<Variant> Reachable(std::vector<Variant> left, Owned owned) {
  std::set<const ClassDescription*> seen;
  std::vector<Variant> found;
  while (!left.empty()) {
    const Variant object = left.back();
    left.pop_back();
    const Reference& reference = ReferenceIn(object);
    if (owned == Owned::kLeftOut && reference.Owned()) continue;
    if (!seen.insert(&reference.Class()).second) continue;
    found.push_back(object);
    for (const Member& member : reference.Class().members) {
      if (member.isMethod || !member.call || member.result.kind != Kind::kObject) continue;
      std::vector<Variant> first(member.parameters.size(), Variant(1));
      try {
        const Variant part = Invoke(reference, member, Use::kGet, first);
        if (part.AsObject()) left.push_back(part);
      } catch (const RuntimeError&) {
        // Such as the bar of a command that is no menu.
      }
    }
  }
  return found;
}

}  // namespace kestrel::dispatch
