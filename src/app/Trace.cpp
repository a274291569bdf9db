#include "app/Trace.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstring>
#include <stdexcept>
#include <utility>

#include "platform/Clock.h"

namespace zemo {

namespace {
constexpr size_t kBufferBytes = 64 * 1024;
constexpr size_t kLineBytes = 4096;  // room for most lines behind a nearly full buffer
constexpr std::string_view kReplacement = "\xEF\xBF\xBD";  // U+FFFD

// Bytes of the well-formed UTF-8 character at the head of the text; 0 when there is none. Overlong
// forms, surrogates and what lies above U+10FFFF are not well-formed.
size_t CharacterBytes(std::string_view text) {
  const auto byte = [&](size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned char first = byte(0);
  size_t size = 0;
  unsigned char low = 0x80;
  unsigned char high = 0xBF;
  if (first < 0x80) return 1;
  if (first >= 0xC2 && first <= 0xDF) size = 2;
  if (first >= 0xE0 && first <= 0xEF) size = 3;
  if (first >= 0xF0 && first <= 0xF4) size = 4;
  if (first == 0xE0) low = 0xA0;
  if (first == 0xED) high = 0x9F;
  if (first == 0xF0) low = 0x90;
  if (first == 0xF4) high = 0x8F;
  if (size == 0 || text.size() < size || byte(1) < low || byte(1) > high) return 0;
  for (size_t i = 2; i < size; ++i)
    if (byte(i) < 0x80 || byte(i) > 0xBF) return 0;
  return size;
}

void AppendControl(std::string& out, unsigned char byte) {
  constexpr char kHex[] = "0123456789abcdef";
  switch (byte) {
    case '\n':
      out += "\\n";
      return;
    case '\r':
      out += "\\r";
      return;
    case '\t':
      out += "\\t";
      return;
    default:
      out += "\\u00";
      out += kHex[byte >> 4];
      out += kHex[byte & 15];
  }
}

void AppendText(std::string& out, std::string_view text) {
  out += '"';
  while (!text.empty()) {
    const auto byte = static_cast<unsigned char>(text.front());
    size_t size = 1;
    if (byte == '"' || byte == '\\') {
      out += '\\';
      out += text.front();
    } else if (byte < 0x20 || byte == 0x7f) {
      AppendControl(out, byte);
    } else if ((size = CharacterBytes(text)) != 0) {
      out.append(text.data(), size);
    } else {
      out += kReplacement;
      size = 1;
    }
    text.remove_prefix(size);
  }
  out += '"';
}

template <typename Whole>
void AppendWhole(std::string& out, Whole number) {
  char digits[24];
  out.append(digits, std::to_chars(digits, digits + sizeof digits, number).ptr);
}

void Append(std::string& out, bool value) {
  out += value ? "true" : "false";
}
void Append(std::string& out, int32_t value) {
  AppendWhole(out, value);
}
void Append(std::string& out, int64_t value) {
  AppendWhole(out, value);
}
void Append(std::string& out, const std::string& value) {
  AppendText(out, value);
}

void Append(std::string& out, double value) {
  constexpr double kLargestWhole = 9007199254740992.0;  // 2^53: beyond it not every whole is exact
  if (!std::isfinite(value)) {
    out += "null";
  } else if (std::trunc(value) == value && std::fabs(value) <= kLargestWhole) {
    AppendWhole(out, static_cast<int64_t>(value));
  } else {
    char digits[32];
    out.append(digits, std::to_chars(digits, digits + sizeof digits, value).ptr);
  }
}

template <typename Item>
void Append(std::string& out, const std::vector<Item>& items) {
  out += '[';
  for (size_t i = 0; i < items.size(); ++i) {
    if (i > 0) out += ',';
    Append(out, items[i]);
  }
  out += ']';
}

template <typename... Kinds>
void Append(std::string& out, const std::variant<Kinds...>& value) {
  std::visit([&](const auto& kind) { Append(out, kind); }, value);
}

// Named values, an object of its own.
template <typename Value>
void Append(std::string& out, const std::vector<std::pair<std::string, Value>>& members) {
  out += '{';
  for (size_t i = 0; i < members.size(); ++i) {
    if (i > 0) out += ',';
    AppendText(out, members[i].first);
    out += ':';
    Append(out, members[i].second);
  }
  out += '}';
}

void AppendLine(std::string& out, const Event& event, std::string_view at) {
  out += "{\"at\":";
  AppendText(out, at);
  out += ",\"event\":";
  AppendText(out, event.name);
  for (const auto& [name, value] : event.members) {
    out += ',';
    AppendText(out, name);
    out += ':';
    std::visit([&](const auto& shown) { Append(out, shown); }, value);
  }
  out += '}';
}

// The text as it stands between its quotes.
std::string InsideText(std::string_view text) {
  std::string quoted;
  AppendText(quoted, text);
  return quoted.substr(1, quoted.size() - 2);
}

void PutDigits(char* at, int number, int count) {
  for (int i = count - 1; i >= 0; --i, number /= 10) at[i] = static_cast<char>('0' + number % 10);
}

// "YYYY-MM-DDThh:mm:ss.mmm"
std::string_view AtText(const LocalDateTime& moment, char (&text)[24]) {
  std::memcpy(text, "0000-00-00T00:00:00.000", sizeof text);
  PutDigits(text, moment.year, 4);
  PutDigits(text + 5, moment.month, 2);
  PutDigits(text + 8, moment.day, 2);
  PutDigits(text + 11, moment.hour, 2);
  PutDigits(text + 14, moment.minute, 2);
  PutDigits(text + 17, moment.second, 2);
  PutDigits(text + 20, moment.millisecond, 3);
  return {text, sizeof text - 1};
}
}  // namespace

std::string WithShownPaths(std::string text, const ShownPaths& paths) {
  for (const auto& [path, shown] : paths)
    for (size_t at = text.find(path); at != std::string::npos; at = text.find(path, at)) {
      text.replace(at, path.size(), shown);
      at += shown.size();
    }
  return text;
}

std::string TraceLine(const Event& event, std::string_view at) {
  std::string line;
  AppendLine(line, event, at);
  return line;
}

std::string TraceMoment(const LocalDateTime& moment) {
  char text[24];
  return std::string(AtText(moment, text));
}

Trace::Trace(const std::string& path, const Clock& clock) : path_(path), clock_(clock) {
  file_ = path == "-" ? STDOUT_FILENO
                      : open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
  if (file_ < 0)
    throw std::runtime_error("cannot write the trace " + path_ + ": " + std::strerror(errno));
  buffer_.reserve(kBufferBytes + kLineBytes);
}

Trace::~Trace() {
  WriteOut();
  if (file_ != STDOUT_FILENO) close(file_);
}

void Trace::ShowPathsAs(ShownPaths paths) {
  paths_ = std::move(paths);
  for (auto& [path, shown] : paths_) {
    path = InsideText(path);
    shown = InsideText(shown);
  }
}

void Trace::OnEvent(const Event& event) {
  char at[24];
  if (paths_.empty()) {
    AppendLine(buffer_, event, AtText(clock_.LocalNow(), at));
  } else {
    std::string line;
    AppendLine(line, event, AtText(clock_.LocalNow(), at));
    buffer_ += WithShownPaths(std::move(line), paths_);
  }
  buffer_ += '\n';
  if (buffer_.size() >= kBufferBytes) WriteOut();
}

void Trace::Flush() {
  WriteOut();
  if (!error_.empty()) throw std::runtime_error("cannot write the trace " + path_ + ": " + error_);
}

void Trace::WriteOut() {
  std::string_view left = buffer_;
  while (!left.empty() && error_.empty() && hasReader_) {
    const ssize_t count = write(file_, left.data(), left.size());
    if (count >= 0)
      left.remove_prefix(static_cast<size_t>(count));
    else if (errno == EPIPE)
      hasReader_ = false;
    else if (errno != EINTR)
      error_ = std::strerror(errno);
  }
  if (!left.empty() && !hasReader_) std::exchange(readerLeft, [] {})();
  buffer_.clear();
}

}  // namespace zemo
