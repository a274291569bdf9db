#include "library/CardBroadcasts.h"

#include "station/TextForms.h"
#include "station/TimeForms.h"

namespace zemo {

namespace {

constexpr std::string_view kForm = "00/00/0000 à 00:00";
static_assert(kForm.size() == std::tuple_size_v<DiffusionText>);
constexpr int kFirstYear = 1900, kLastYear = 2899;

// Two digits at that place, known to be digits.
int PairAt(std::string_view text, size_t at) {
  return (text[at] - '0') * 10 + (text[at + 1] - '0');
}

bool HasForm(std::string_view text) {
  if (text.size() != kForm.size()) return false;
  for (size_t i = 0; i < kForm.size(); ++i) {
    const bool digit = text[i] >= '0' && text[i] <= '9';
    if (kForm[i] == '0' ? !digit : text[i] != kForm[i]) return false;
  }
  return true;
}

}  // namespace

int32_t BroadcastDay(int year, int month, int day) {
  return static_cast<int32_t>(DaySerial(year, month, day) - DaySerial(kFirstYear, 1, 1));
}

std::optional<BroadcastMinute> BroadcastMinuteOf(std::string_view text) {
  if (!HasForm(text)) return std::nullopt;
  const int day = PairAt(text, 0), month = PairAt(text, 3),
            year = PairAt(text, 6) * 100 + PairAt(text, 8);
  const int hour = PairAt(text, 14), minute = PairAt(text, 17);
  if (year < kFirstYear || year > kLastYear || !ValidDate(year, month, day)) return std::nullopt;
  if (hour > 23 || minute > 59) return std::nullopt;
  return static_cast<uint32_t>(BroadcastDay(year, month, day)) * kBroadcastDayMinutes +
         static_cast<uint32_t>(hour * 60 + minute);
}

void WriteBroadcast(BroadcastMinute minute, DiffusionText& text) {
  kForm.copy(text.data(), kForm.size());
  const double firstDay = DaySerial(kFirstYear, 1, 1);
  const BroadcastMinute days = minute / kBroadcastDayMinutes;
  const LocalDateTime date = FromDateSerial(firstDay + days);
  const int ofDay = static_cast<int>(minute % kBroadcastDayMinutes);
  PutTwoDigits(date.day, &text[0]);
  PutTwoDigits(date.month, &text[3]);
  PutTwoDigits(date.year / 100, &text[6]);
  PutTwoDigits(date.year, &text[8]);
  PutTwoDigits(ofDay / 60, &text[14]);
  PutTwoDigits(ofDay % 60, &text[17]);
}

}  // namespace zemo
