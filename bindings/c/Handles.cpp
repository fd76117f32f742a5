#include "Handles.h"

#include <new>
#include <utility>

namespace kestrel::c {
namespace {

static_assert(sizeof(Handles::Number) == 8, "a handle has a place and a generation");
constexpr int kGenerationShift = 32;

}  // namespace

Handles& Handles::All() {
  // Never destroyed: a host may release its handles while the program ends.
  static auto& all = *new Handles;
  return all;
}

Handles::Slot* Handles::SlotOf(HandleKind kind, Number number) {
  const std::size_t at = number & 0xFFFF'FFFFu;  // counted from 1
  if (at == 0 || at > slots_.size()) return nullptr;
  Slot& slot = slots_[at - 1];
  const bool same = slot.count > 0 && slot.kind == kind && slot.generation == number >> kGenerationShift;
  return same ? &slot : nullptr;
}

Handles::Number Handles::Add(HandleKind kind, std::shared_ptr<Item> item) {
  const std::lock_guard lock(mutex_);
  if (free_.empty()) {
    if (slots_.size() == 0xFFFF'FFFFu) throw std::bad_alloc();
    // A release needs no memory then.
    if (free_.capacity() <= slots_.size()) free_.reserve(2 * slots_.size() + 1);
    slots_.emplace_back();
    free_.push_back(static_cast<std::uint32_t>(slots_.size() - 1));
  }
  const std::uint32_t at = free_.back();
  free_.pop_back();
  Slot& slot = slots_[at];
  slot.item = std::move(item);
  ++slot.generation;
  slot.count = 1;
  slot.kind = kind;
  return Number{slot.generation} << kGenerationShift | (Number{at} + 1);
}

std::shared_ptr<Item> Handles::Find(HandleKind kind, Number number) const {
  const std::lock_guard lock(mutex_);
  const Slot* const slot = const_cast<Handles*>(this)->SlotOf(kind, number);
  return slot ? slot->item : nullptr;
}

bool Handles::Retain(HandleKind kind, Number number) {
  const std::lock_guard lock(mutex_);
  Slot* const slot = SlotOf(kind, number);
  if (slot) ++slot->count;
  return slot != nullptr;
}

bool Handles::Release(HandleKind kind, Number number, std::shared_ptr<Item>& last) {
  const std::lock_guard lock(mutex_);
  Slot* const slot = SlotOf(kind, number);
  if (!slot) return false;
  if (--slot->count == 0) {
    last = std::move(slot->item);
    free_.push_back(static_cast<std::uint32_t>(slot - slots_.data()));
  }
  return true;
}

std::vector<std::shared_ptr<Item>> Handles::Of(const Apartment& apartment, HandleKind kind) const {
  const std::lock_guard lock(mutex_);
  std::vector<std::shared_ptr<Item>> found;
  for (const Slot& slot : slots_) {
    if (slot.count > 0 && slot.kind == kind && slot.item->Owner().get() == &apartment)
      found.push_back(slot.item);
  }
  return found;
}

}  // namespace kestrel::c
