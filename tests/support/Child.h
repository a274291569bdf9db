// Another process that a test starts and talks to: words in on its standard input, lines out of its
// standard output. Every wait has a bound.
#pragma once

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace zemo::test {

inline constexpr std::chrono::seconds kBound{60};  // longer than any loaded machine takes

class Child {
 public:
  // Found along the search path. Its standard error is ours.
  explicit Child(std::vector<std::string> words) {
    int in[2];
    int out[2];
    if (pipe2(in, O_CLOEXEC) != 0 || pipe2(out, O_CLOEXEC) != 0) throw std::runtime_error("pipe");
    std::vector<char*> arguments;
    for (std::string& word : words) arguments.push_back(word.data());
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_adddup2(&files, in[0], STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&files, out[1], STDOUT_FILENO);
    const int error = posix_spawnp(&pid_, arguments[0], &files, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&files);
    close(in[0]);
    close(out[1]);
    in_ = in[1];
    out_ = out[0];
    if (error != 0) pid_ = 0;
    if (error != 0) throw std::runtime_error("cannot start " + words[0]);
  }
  ~Child() {
    Kill();
    CloseInput();
    close(out_);
  }
  Child(const Child&) = delete;

  void Tell(const std::string& text) const {
    if (write(in_, text.data(), text.size()) < 0) throw std::runtime_error("the child is gone");
  }
  void CloseInput() {
    if (in_ >= 0) close(in_);
    in_ = -1;
  }

  // The next line without its end; nothing when it does not come. `meanwhile` runs at least every
  // 10 ms.
  std::optional<std::string> Line(const std::function<void()>& meanwhile = nullptr) {
    const auto latest = std::chrono::steady_clock::now() + kBound;
    while (text_.find('\n') == std::string::npos && !ended_ &&
           std::chrono::steady_clock::now() < latest) {
      Take(meanwhile ? 0 : 10);
      if (meanwhile) meanwhile();
    }
    const size_t end = text_.find('\n');
    if (end == std::string::npos) return std::nullopt;
    std::string line = text_.substr(0, end);
    text_.erase(0, end + 1);
    return line;
  }

  // All that it says until its end.
  std::string All(const std::function<void()>& meanwhile = nullptr) {
    const auto latest = std::chrono::steady_clock::now() + kBound;
    while (!ended_ && std::chrono::steady_clock::now() < latest) {
      Take(meanwhile ? 0 : 10);
      if (meanwhile) meanwhile();
    }
    return std::exchange(text_, {});
  }

  // True once it is gone, by itself or killed.
  bool Ended() {
    if (pid_ > 0 && waitpid(pid_, nullptr, WNOHANG) == pid_) pid_ = 0;
    return pid_ == 0;
  }

  // Its exit status once this signal has ended it.
  int EndBy(int signal) {
    int status = -1;
    kill(pid_, signal);
    waitpid(std::exchange(pid_, 0), &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  }

  void Kill() {
    if (pid_ <= 0) return;
    kill(pid_, SIGKILL);
    waitpid(pid_, nullptr, 0);
    pid_ = 0;
  }

 private:
  void Take(int waitMs) {
    pollfd ready{out_, POLLIN, 0};
    if (poll(&ready, 1, waitMs) <= 0) return;
    char buffer[4096];
    const ssize_t size = read(out_, buffer, sizeof buffer);
    if (size > 0) text_.append(buffer, static_cast<size_t>(size));
    ended_ = size <= 0;
  }

  pid_t pid_ = 0;
  int in_ = -1;
  int out_ = -1;
  std::string text_;
  bool ended_ = false;
};

// True as soon as the condition holds; `meanwhile` runs before each look and has to take a moment.
inline bool WaitFor(const std::function<bool()>& condition,
                    const std::function<void()>& meanwhile) {
  const auto latest = std::chrono::steady_clock::now() + kBound;
  while (!condition() && std::chrono::steady_clock::now() < latest) meanwhile();
  return condition();
}

}  // namespace zemo::test
