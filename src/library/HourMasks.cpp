#include "library/HourMasks.h"

#include <algorithm>

#include "station/TextForms.h"
#include "store/Recordset.h"

namespace zemo {

namespace {

std::string FieldOf(int day) {
  return "TRANCHE" + TwoDigits(day);
}

}  // namespace

void HourMasks::Choose(int day) {
  if (day < 1 || day > kDays) return;
  masks_[static_cast<size_t>(day_ - 1)] = Mask(day_);
  day_ = day;
  ShowChosen();
}

void HourMasks::AllowAll() {
  masks_.fill(std::string(kHours, '1'));
  Tranche.fill(true);
}

void HourMasks::Take(int day, std::string_view mask) {
  std::string& own = masks_[static_cast<size_t>(day - 1)];
  own.assign(kHours, '0');
  for (size_t hour = 0; hour < std::min<size_t>(mask.size(), kHours); ++hour)
    if (mask[hour] == '1') own[hour] = '1';
  if (day == day_) ShowChosen();
}

void HourMasks::ShowChosen() {
  const std::string& mask = masks_[static_cast<size_t>(day_ - 1)];
  for (size_t hour = 0; hour < kHours; ++hour) Tranche[hour] = mask[hour] == '1';
}

std::string HourMasks::Mask(int day) const {
  if (day != day_) return masks_[static_cast<size_t>(day - 1)];
  std::string mask;
  for (const bool allowed : Tranche) mask += allowed ? '1' : '0';
  return mask;
}

bool HourMasks::SameHours(const HourMasks& other) const {
  for (int day = 1; day <= kDays; ++day)
    if (Mask(day) != other.Mask(day)) return false;
  return true;
}

void HourMasks::TakeFrom(const Recordset& card) {
  for (int day = 1; day <= kDays; ++day) Take(day, card.Text(FieldOf(day)));
}

void HourMasks::PutInto(Recordset& card) const {
  for (int day = 1; day <= kDays; ++day) card.Set(FieldOf(day), Mask(day));
}

void HourMasks::Paste(std::string_view mask) {
  if (mask.size() >= kHours) Take(day_, mask);
}

}  // namespace zemo
