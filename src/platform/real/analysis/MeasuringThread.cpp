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
    std::erase_if(wishes_, [](const Waiting& wish) { return wish.taken; });
    if (path == current_) return true;
    const auto waiting = std::find_if(wishes_.begin(), wishes_.end(),
                                      [&](const Waiting& wish) { return wish.path == path; });
    if (waiting != wishes_.end()) {
      std::rotate(waiting, std::next(waiting), wishes_.end());
      return true;
    }
    const size_t measured = measured_.size() - copied_;
    if (wishes_.size() + measured + (current_.empty() ? 0 : 1) >= kMostWishes) return false;
    wishes_.push_back({path});
  }
  signals_.fetch_add(1);
  signals_.notify_one();
  return true;
}

std::optional<MeasuredSound> MeasuringThread::TakeMeasured() {
  const std::unique_lock lock(mutex_, std::try_to_lock);
  if (!lock || copied_ == measured_.size()) return std::nullopt;
  return measured_[copied_++];
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
    Give(Measure(*path, stop));
  }
}

void MeasuringThread::Give(MeasuredSound sound) {
  const std::lock_guard lock(mutex_);
  current_.clear();
  for (; copied_ > 0; --copied_) measured_.pop_front();
  measured_.push_back(std::move(sound));
}

std::optional<std::string> MeasuringThread::NextWish() {
  const std::lock_guard lock(mutex_);
  const auto newest = std::find_if(wishes_.rbegin(), wishes_.rend(),
                                   [](const Waiting& wish) { return !wish.taken; });
  if (newest == wishes_.rend()) return std::nullopt;
  newest->taken = true;
  current_ = newest->path;
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
