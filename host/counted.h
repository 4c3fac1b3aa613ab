// Shared objects: the root class, reference counting, and the handle with its three idioms
// (copy, release, make writable). Everything counted in the system goes through `KT_Handle`.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "host/global.h"

/// Takes `size` bytes from `heap` (null: the default heap). Returns null or throws
/// `std::bad_alloc` when there are none. The caller owns the block.
KORVEL_EXPORT void* KD_AllocateMemory(std::size_t size, KorvelHeap* heap);
/// Gives back a block of `KD_AllocateMemory`; null is allowed.
KORVEL_EXPORT void KD_ReleaseMemory(void* block);

/// Root of all framework objects. Its class-level allocation goes through `KD_AllocateMemory`,
/// and a null from there becomes `std::bad_alloc`.
class KORVEL_EXPORT KT_Object {
 public:
  virtual ~KT_Object();

  static void* operator new(std::size_t size);
  static void* operator new(std::size_t, void* place) noexcept { return place; }
  static void operator delete(void* block);
  static void operator delete(void*, void*) noexcept {}
};

namespace korvel {

/// Takes the next process-wide unique id.
inline std::uint32_t fresh_id() {
  return KORVEL.next_id.fetch_add(1, std::memory_order_relaxed) + 1;
}

}  // namespace korvel

/// A reference-counted record. It is made with count 0; the first handle takes the first reference.
class KORVEL_EXPORT KT_Counted : public KT_Object {
 public:
  std::atomic<std::uint32_t> reference_count{0};
  /// Changes with every change of content, so that caches may be keyed on it.
  std::uint32_t id;

  KT_Counted();
  KT_Counted(const KT_Counted&);
  KT_Counted& operator=(const KT_Counted&) = delete;
  ~KT_Counted() override;

  /// A new record with the same content and reference count 0; null where copies are not made.
  virtual KT_Counted* clone() const = 0;
};

/// One pointer word that owns a reference on a counted record, or null.
template <class Record>
class KT_Handle {
 public:
  KT_Handle() = default;
  /// Takes a reference on `record`, which may be null.
  explicit KT_Handle(Record* record) : record_(record) { take(record_); }
  KT_Handle(const KT_Handle& other) : KT_Handle(other.record_) {}
  KT_Handle(KT_Handle&& other) noexcept : record_(std::exchange(other.record_, nullptr)) {}
  ~KT_Handle() { release(); }

  // The new reference is taken before the old one goes, so that self-assignment is safe.
  KT_Handle& operator=(const KT_Handle& other) {
    reset(other.record_);
    return *this;
  }
  KT_Handle& operator=(KT_Handle&& other) noexcept {
    Record* taken = std::exchange(other.record_, nullptr);
    drop(std::exchange(record_, taken));
    return *this;
  }

  /// Holds `record` (may be null) instead of the present record.
  void reset(Record* record) {
    take(record);
    drop(std::exchange(record_, record));
  }

  /// Gives the reference up; the handle is null afterwards in every case.
  void release() { drop(std::exchange(record_, nullptr)); }

  /// Copy on write: a record owned alone gets a fresh id and is written in place, a shared one
  /// is replaced by its clone. The handle must not be null.
  Record& writable() {
    if (record_->reference_count.load(std::memory_order_acquire) < 2) {
      record_->id = korvel::fresh_id();
    } else {
      Record* copy = static_cast<Record*>(record_->clone());
      take(copy);
      drop(std::exchange(record_, copy));
    }
    return *record_;
  }

  Record* get() const { return record_; }
  Record* operator->() const { return record_; }
  Record& operator*() const { return *record_; }
  explicit operator bool() const { return record_ != nullptr; }
  friend bool operator==(const KT_Handle& a, const KT_Handle& b) { return a.record_ == b.record_; }

 private:
  static void take(Record* record) {
    if (record) record->reference_count.fetch_add(1, std::memory_order_relaxed);
  }
  static void drop(Record* record) {
    if (record && record->reference_count.fetch_sub(1, std::memory_order_acq_rel) == 1) {
      delete record;
    }
  }

  Record* record_ = nullptr;
};
