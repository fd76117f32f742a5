#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

namespace kestrel::c {

class Apartment;

/// What a handle of the interface refers to.
class Item {
 public:
  explicit Item(std::shared_ptr<Apartment> owner) : owner_(std::move(owner)) {}
  virtual ~Item() = default;
  Item(const Item&) = delete;
  Item& operator=(const Item&) = delete;

  /// Whose thread alone uses the item; null for one that any thread uses.
  const std::shared_ptr<Apartment>& Owner() const { return owner_; }
  /// Gives up what the item holds of its apartment, which ends. On the apartment's thread.
  virtual void End() {}

 private:
  const std::shared_ptr<Apartment> owner_;
};

enum class HandleKind : std::uint8_t { kObject, kConnection, kPixelLock };

/// The handles of the process. A handle is a number and never used as a pointer, so that one that was
/// released, and any other pointer, is found to be none. Thread-safe.
class Handles {
 public:
  using Number = std::uintptr_t;

  static Handles& All();

  /// A new handle, to be released once.
  Number Add(HandleKind kind, std::shared_ptr<Item> item);
  /// Null for a number that is no handle of that kind.
  std::shared_ptr<Item> Find(HandleKind kind, Number number) const;
  /// One release more is needed. False for a number that is no handle of that kind.
  bool Retain(HandleKind kind, Number number);
  /// False for a number that is no handle of that kind. `last` receives the item of the last release, to be
  /// destroyed by the caller.
  bool Release(HandleKind kind, Number number, std::shared_ptr<Item>& last);

  /// The items of an apartment.
  std::vector<std::shared_ptr<Item>> Of(const Apartment& apartment, HandleKind kind) const;

 private:
  /// A place in the table. Its generation is a part of the number, which is so not given twice.
  struct Slot {
    std::shared_ptr<Item> item;
    std::uint32_t generation = 0;
    std::int64_t count = 0;
    HandleKind kind = HandleKind::kObject;
  };
  Slot* SlotOf(HandleKind kind, Number number);

  mutable std::mutex mutex_;
  std::vector<Slot> slots_;
  std::vector<std::uint32_t> free_;
};

}  // namespace kestrel::c
