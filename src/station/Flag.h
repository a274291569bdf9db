// An engine variable whose changes are told to an observer (the trace), and nothing else: it reads
// and assigns like the plain value.
#pragma once

#include <type_traits>

namespace zemo {

class FlagObserver {
 public:
  virtual ~FlagObserver() = default;
  virtual void OnFlag(const char* name, double value, bool boolean) = 0;
};

template <typename T>
class Flag {
 public:
  Flag(const char* name, T value, FlagObserver*& observer)
      : name_(name), value_(value), observer_(observer) {}
  Flag(const Flag&) = delete;

  operator T() const { return value_; }  // NOLINT(google-explicit-constructor): its purpose
  Flag& operator=(T value) {
    if (value == value_) return *this;
    value_ = value;
    if (observer_) observer_->OnFlag(name_, static_cast<double>(value), isBool);
    return *this;
  }
  Flag& operator=(const Flag&) = delete;
  const char* Name() const { return name_; }

 private:
  static constexpr bool isBool = std::is_same_v<T, bool>;
  const char* name_;
  T value_;
  FlagObserver*& observer_;  // of the state that holds the flag
};

}  // namespace zemo
