// A ring between one writing and one reading thread, without a lock: samples between decoder and
// mixer, orders from the logic to the mixer, lines of text back.
#pragma once

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <memory>
#include <type_traits>

namespace zemo {

// The capacity is rounded up to a power of two. Allocates only when made.
template <class T>
class SpscRing {
  static_assert(std::is_trivially_copyable_v<T>);

 public:
  explicit SpscRing(uint64_t capacity) {
    uint64_t size = 1;
    while (size < capacity) size *= 2;
    mask_ = size - 1;
    items_ = std::make_unique_for_overwrite<T[]>(size);
  }

  uint64_t Capacity() const { return mask_ + 1; }

  // Items to be read, seen from either end: from its own, at least as many stay.
  uint64_t Filled() const {
    const uint64_t read = read_.load(std::memory_order_acquire);
    return written_.load(std::memory_order_acquire) - read;
  }
  uint64_t Free() const { return Capacity() - Filled(); }

  // Writing thread. As many of `count` items as there is room for; returns how many.
  uint64_t Write(const T* items, uint64_t count) {
    const uint64_t written = written_.load(std::memory_order_relaxed);
    count = std::min(count, Capacity() - (written - read_.load(std::memory_order_acquire)));
    const uint64_t first = std::min(count, Capacity() - (written & mask_));
    std::copy_n(items, first, items_.get() + (written & mask_));
    std::copy_n(items + first, count - first, items_.get());
    written_.store(written + count, std::memory_order_release);
    return count;
  }

  // Reading thread. Returns how many of `count` items were there.
  uint64_t Read(T* items, uint64_t count) {
    const uint64_t read = read_.load(std::memory_order_relaxed);
    count = std::min(count, written_.load(std::memory_order_acquire) - read);
    const uint64_t first = std::min(count, Capacity() - (read & mask_));
    std::copy_n(items_.get() + (read & mask_), first, items);
    std::copy_n(items_.get(), count - first, items + first);
    read_.store(read + count, std::memory_order_release);
    return count;
  }

  // Writing thread: one item; false without room.
  bool Push(const T& item) {
    const uint64_t written = written_.load(std::memory_order_relaxed);
    if (written - read_.load(std::memory_order_acquire) == Capacity()) return false;
    items_[written & mask_] = item;
    written_.store(written + 1, std::memory_order_release);
    return true;
  }

  // Reading thread: one item; false when there is none.
  bool Pop(T& item) {
    const uint64_t read = read_.load(std::memory_order_relaxed);
    if (written_.load(std::memory_order_acquire) == read) return false;
    item = items_[read & mask_];
    read_.store(read + 1, std::memory_order_release);
    return true;
  }

  // Reading thread. Passes over up to `count` items.
  uint64_t Skip(uint64_t count) {
    const uint64_t read = read_.load(std::memory_order_relaxed);
    count = std::min(count, written_.load(std::memory_order_acquire) - read);
    read_.store(read + count, std::memory_order_release);
    return count;
  }

 private:
  static constexpr int kCacheLine = 64;

  std::unique_ptr<T[]> items_;
  uint64_t mask_;
  alignas(kCacheLine) std::atomic<uint64_t> written_{0};  // items ever written
  alignas(kCacheLine) std::atomic<uint64_t> read_{0};     // items ever read
};

}  // namespace zemo
