#include "platform/real/analysis/MeasuringThread.h"

#include <algorithm>
#include <exception>
#include <utility>

#include "platform/real/analysis/SoundAnalyser.h"
#include "platform/real/files/LowestPriority.h"

namespace zemo {

MeasuringThread::MeasuringThread(std::unique_ptr<SoundOpener> opener)
    : opener_(std::move(opener)), thread_([this](const std::stop_token& stop) { Run(stop); }) {}

MeasuringThread::~MeasuringThread() {
  thread_.request_stop();
  signals_.fetch_add(1);
  signals_.notify_one();
  thread_.join();
}

bool MeasuringThread::Wish(const std::string& path) {
  {
    const std::unique_lock lock(mutex_, std::try_to_lock);
    if (!lock) return false;
    if (path == current_) return true;
    const auto waiting = std::find(wishes_.begin(), wishes_.end(), path);
    if (waiting != wishes_.end()) {
      std::rotate(waiting, std::next(waiting), wishes_.end());
      return true;
    }
    if (wishes_.size() + measured_.size() + (current_.empty() ? 0 : 1) >= kMostWishes) return false;
    wishes_.push_back(path);
  }
  signals_.fetch_add(1);
  signals_.notify_one();
  return true;
}

std::optional<MeasuredSound> MeasuringThread::TakeMeasured() {
  const std::unique_lock lock(mutex_, std::try_to_lock);
  if (!lock || measured_.empty()) return std::nullopt;
  std::optional<MeasuredSound> oldest(std::move(measured_.front()));
  measured_.pop_front();
  return oldest;
}

void MeasuringThread::Run(const std::stop_token& stop) {
  TakeLowestPriority();
  while (!stop.stop_requested()) {
    const uint32_t seen = signals_.load();
    const auto path = NextWish();
    if (!path) {
      // A wish, or the end, that came since has counted up: no waiting then.
      if (!stop.stop_requested()) signals_.wait(seen);
      continue;
    }
    MeasuredSound sound = Measure(*path, stop);
    const std::lock_guard lock(mutex_);
    current_.clear();
    measured_.push_back(std::move(sound));
  }
}

std::optional<std::string> MeasuringThread::NextWish() {
  const std::lock_guard lock(mutex_);
  if (wishes_.empty()) return std::nullopt;
  current_ = std::move(wishes_.back());
  wishes_.pop_back();
  return current_;
}

MeasuredSound MeasuringThread::Measure(const std::string& path, const std::stop_token& stop) {
  MeasuredSound sound{path, std::nullopt, {}};
  try {
    sound.measures = MeasureSound(*opener_, path, stop);
  } catch (const std::exception& error) {
    sound.error = error.what();
  }
  return sound;
}

}  // namespace zemo
