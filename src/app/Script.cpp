#include "app/Script.h"

#include <algorithm>
#include <optional>

#include "app/Moments.h"

namespace zemo {

namespace {
// The moment of a line in ms of UTC; nullopt when its time is none.
std::optional<int64_t> ReadTime(std::string_view text, int64_t previousUtcMs) {
  if (text.starts_with('+')) {
    const auto later = ParseSeconds(text.substr(1));
    if (!later) return std::nullopt;
    return previousUtcMs + *later;
  }
  const auto time = ParseTimeOfDay(text);
  if (!time) return std::nullopt;
  return FirstMomentOfDay(previousUtcMs, *time);
}
}  // namespace

std::vector<ScriptOrder> ParseScript(std::string_view text, const LocalDateTime& begin,
                                     const std::string& fileName, std::span<const Order> orders) {
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
  const int64_t beginUtcMs = UtcMs(begin);
  int64_t lineUtcMs = beginUtcMs;
  std::vector<ScriptOrder> script;
  for (int number = 1; !text.empty(); ++number) {
    std::string_view line = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(line.size() + 1, text.size()));
    if (line.ends_with('\r')) line.remove_suffix(1);
    const auto fail = [&](const std::string& why) {
      throw ScriptError(fileName + ":" + std::to_string(number) + ": " + why);
    };
    if (line.find('\0') != std::string_view::npos) fail("a zero character: this is no text");
    const OrderWords split = SplitWords(line);
    if (split.words.empty()) continue;

    const auto utcMs = ReadTime(split.words[0], lineUtcMs);
    if (!utcMs) fail("'" + split.words[0] + "' is no time");
    if (split.words.size() < 2) fail("no order behind the time");
    lineUtcMs = *utcMs;
    try {
      script.push_back({.atMs = lineUtcMs - beginUtcMs,
                        .line = number,
                        .given = ReadOrder(orders, line.substr(split.ends[0]))});
    } catch (const UnreadableOrder& error) {
      fail(error.what());
    }
  }
  return script;
}

}  // namespace zemo
