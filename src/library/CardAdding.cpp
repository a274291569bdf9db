#include "library/CardAdding.h"

#include <exception>

#include "library/HotKeys.h"
#include "platform/Folder.h"
#include "settings/SideFiles.h"
#include "station/SideFileText.h"
#include "station/Station.h"
#include "station/TextForms.h"

namespace zemo {

namespace {

constexpr int64_t kLargestCardBytes = 1 << 16;  // of an exchange file; a comment is a few lines

// Decoded text of the file beside a sound file; nothing where there is none. One that cannot be
// read or is no such file by its size is logged.
std::optional<std::string> TextBeside(Station& station, const std::string& file,
                                      const char* ending) {
  const std::string path = SideFilePath(file, ending);
  try {
    const SoundFiles& files = station.platform.soundFiles;
    if (!files.Exists(path)) return std::nullopt;
    if (files.SizeBytes(path) > kLargestCardBytes) throw FileError(path + ": too large for a card");
    const auto bytes = files.Read(path);
    return bytes ? std::optional(DecodeSideFile(*bytes)) : std::nullopt;
  } catch (const std::exception&) {
    LogCurrentException(station, "LoadFiche");
    return std::nullopt;
  }
}

void WriteBeside(Station& station, const std::string& file, const char* ending,
                 const std::string& text) {
  if (Trim(file).empty()) return;
  station.platform.soundFiles.Write(SideFilePath(Trim(file), ending), EncodeSideFile(text));
}

// The row is stored whatever becomes of what follows it.
template <typename Write>
void WriteOrLog(Station& station, const char* routine, Write write) {
  try {
    write();
  } catch (const std::exception&) {
    LogCurrentException(station, routine);
  }
}

int32_t StoreNew(Recordset& row) {
  row.Update();
  return static_cast<int32_t>(row.Int("CODE"));
}

}  // namespace

bool FillMusicCard(Station& station, const std::string& file, int32_t lengthMs, MusicCard& card,
                   HourMasks& masks) {
  card.ChFileName = file;
  card.Longeur = std::to_string(lengthMs);
  SetBareMusicCard(card, masks, static_cast<int32_t>(station.base.CnfInt(Cnf::kPmixDef)));
  const auto mus = TextBeside(station, file, "Mus");
  if (mus && TakeMus(*mus, card, masks)) return true;
  const auto older = TextBeside(station, file, "Txt");
  return older && TakeOlderTxt(*older, card, masks);
}

bool FillJingle(Station& station, const std::string& file, int32_t lengthMs, JingleCard& card,
                HourMasks& masks) {
  card.ChFileJingle = file;
  card.longeurJingle = std::to_string(lengthMs);
  SetBareJingle(card, masks, static_cast<int32_t>(station.base.CnfInt(Cnf::kPmixJingles)));
  const auto jin = TextBeside(station, file, "Jin");
  return jin && TakeJin(*jin, card, masks);
}

bool FillShortElement(Station& station, const std::string& file, int32_t lengthMs,
                      ShortElementCard& card) {
  card.ChFileVirgule = file;
  card.LongeurVirgule = std::to_string(lengthMs);
  SetBareShortElement(card, static_cast<int32_t>(station.base.CnfInt(Cnf::kPmixJingles)));
  const auto label = TextBeside(station, file, "Tx2");
  if (label) TakeTx2(*label, card);
  return label.has_value();
}

std::optional<int32_t> MusicCardOfFile(Station& station, const std::string& file) {
  const auto table = station.base.Table("Discotheque");
  table->SetIndex("FILENAME");
  table->Seek("=", Trim(file));
  if (table->NoMatch()) return std::nullopt;
  return static_cast<int32_t>(table->Int("CODE"));
}

int32_t InsertMusicCard(Station& station, const MusicCard& card, const HourMasks& masks) {
  const auto row = station.base.Table("Discotheque");
  row->AddNew();
  PutMusicCard(card, masks, *row);
  PutPlays(card, nullptr, *row);
  return StoreNew(*row);
}

int32_t AddMusicCard(Station& station, const MusicCard& card, const HourMasks& masks) {
  const int32_t code = InsertMusicCard(station, card, masks);
  WriteOrLog(station, "ReplaceChampsMusique", [&] { WriteMus(station, card, masks); });
  return code;
}

int32_t InsertJingle(Station& station, const JingleCard& card, const HourMasks& masks) {
  const auto row = station.base.Table("DiscothequeJingle");
  row->AddNew();
  PutJingle(card, masks, *row);
  return StoreNew(*row);
}

int32_t AddJingle(Station& station, const JingleCard& card, const HourMasks& masks) {
  const int32_t code = InsertJingle(station, card, masks);
  WriteOrLog(station, "ReplaceJingle", [&] { WriteJin(station, card, masks); });
  return code;
}

int32_t InsertShortElement(Station& station, const ShortElementCard& card) {
  const auto row = station.base.Table("DiscothequeVirgule");
  row->AddNew();
  PutShortElement(card, *row);
  return StoreNew(*row);
}

int32_t AddShortElement(Station& station, const ShortElementCard& card) {
  const int32_t code = InsertShortElement(station, card);
  WriteOrLog(station, "Touches", [&] { LoadHotKeys(station); });
  WriteOrLog(station, "ReplaceVirgule", [&] { WriteTx2(station, card); });
  return code;
}

void WriteMus(Station& station, const MusicCard& card, const HourMasks& masks) {
  station.platform.soundFiles.ClearReadOnly(SideFilePath(Trim(card.ChFileName), "Mus"));
  WriteBeside(station, card.ChFileName, "Mus", MusText(card, masks));
}

void WriteJin(Station& station, const JingleCard& card, const HourMasks& masks) {
  WriteBeside(station, card.ChFileJingle, "Jin", JinText(card, masks));
}

void WriteTx2(Station& station, const ShortElementCard& card) {
  WriteBeside(station, card.ChFileVirgule, "Tx2", Tx2Text(card));
}

}  // namespace zemo
