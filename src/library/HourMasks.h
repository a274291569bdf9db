// The hours in which a card may play, by weekday, as the library screen edits them: 24 boxes of the
// weekday that is chosen, and the masks of all seven.
#pragma once

#include <array>
#include <string>
#include <string_view>

namespace zemo {

class Recordset;

class HourMasks {
 public:
  static constexpr int kDays = 7, kHours = 24;

  HourMasks() { AllowAll(); }

  std::array<bool, kHours> Tranche{};  // boxes of the chosen weekday, from 00 h

  int JourSem() const { return day_; }  // 1 for Monday to 7
  // The boxes go into the mask of the day left, then show that of the day chosen.
  void Choose(int day);

  void AllowAll();  // every hour of every day
  // 24 characters a day, '1' for an allowed hour; what is no '1' is barred, what lacks too.
  void Take(int day, std::string_view mask);
  std::string Mask(int day) const;               // 24 characters, the boxes counted in
  bool SameHours(const HourMasks& other) const;  // whichever day is chosen

  void TakeFrom(const Recordset& card);  // TRANCHE01 to TRANCHE07
  void PutInto(Recordset& card) const;   // of the row in edit or insertion state

  // The chosen day's mask as it goes over the clipboard. A text of fewer than 24 characters is none
  // and changes nothing.
  std::string Copied() const { return Mask(day_); }
  void Paste(std::string_view mask);

 private:
  void ShowChosen();  // the chosen day's mask in the boxes

  std::array<std::string, kDays> masks_;  // the chosen day's stands in Tranche
  int day_ = 1;
};

}  // namespace zemo
