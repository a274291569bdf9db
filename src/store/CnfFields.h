// Ordinals of the settings row, under the names of its fields (ReadCnfField(Cnf::kFadeOut)).
#pragma once

namespace zemo::Cnf {

enum Field : int {
  kNoField,
#define SETTING(field, ...) k##field,
#define KEPT(field, ...) k##field,
#include "store/SettingRows.inc"
  kBehindLastField
};
inline constexpr int kFields = kBehindLastField - 1;

}  // namespace zemo::Cnf
