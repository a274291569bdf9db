#include "library/HotKeys.h"

#include "station/Station.h"
#include "station/TextForms.h"

namespace zemo {

namespace {
constexpr size_t kMostHotKeys = 100;
}  // namespace

void LoadHotKeys(Station& station) {
  auto& keys = station.lists.Touches;
  keys.clear();
  const auto rows =
      station.base.Db().OpenRecordset("SELECT Touche ,FileName FROM DiscothequeVirgule WHERE '*'");
  for (; !rows->Eof() && keys.size() < kMostHotKeys; rows->MoveNext())
    if (rows->Int("Touche") > 0)
      keys.push_back({rows->Text("Touche"), Trim(rows->Text("FileName"))});
}

}  // namespace zemo
