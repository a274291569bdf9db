#include "library/CardImport.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <exception>

#include "library/CardAdding.h"
#include "platform/Folder.h"
#include "platform/NameValueLines.h"
#include "platform/SoundSource.h"
#include "settings/GenreList.h"
#include "settings/SideFileIo.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "store/RowView.h"

namespace zemo {

namespace {

constexpr int kComparedFrames = 2 * kSampleRate;  // of the begin of a sound
constexpr int kBlockFrames = 4096;
constexpr int kNameCharacters = 40, kComposerCharacters = 60, kReferenceCharacters = 20,
              kGenreCharacters = 22, kYearCharacters = 4;

std::string_view PathsQuery(LibraryTab kind) {
  switch (kind) {
    case LibraryTab::kJingles:
      return "SELECT CODE, FILENAME FROM DiscothequeJingle";
    case LibraryTab::kShortElements:
      return "SELECT CODE, FILENAME FROM DiscothequeVirgule";
    default:
      return "SELECT CODE, FILENAME FROM Discotheque";
  }
}

uint64_t HashOn(uint64_t hash, const float* samples, size_t count) {
  constexpr uint64_t kPrime = 1099511628211U;
  for (size_t i = 0; i < count; ++i) {
    uint32_t bits = 0;
    std::memcpy(&bits, samples + i, sizeof bits);
    hash = (hash ^ bits) * kPrime;
  }
  return hash;
}

// The text fitted to its field; `name` is told where it was too long.
void Fit(std::string& text, int characters, const char* name, std::vector<std::string>& cut) {
  std::string fitting = CutAtWord(text, characters);
  if (fitting == text) return;
  text = std::move(fitting);
  cut.emplace_back(name);
}

void TakeText(const std::string& tag, std::string& field) {
  if (!tag.empty()) field = tag;
}

}  // namespace

std::string CutAtWord(const std::string& text, int n) {
  if (CharacterCount(text) <= n) return text;
  const std::string cut = FirstCharacters(text, n);
  const bool wordEnds = text[cut.size()] == ' ';
  const size_t blank = wordEnds ? cut.size() : cut.find_last_of(' ');
  return Trim(blank == std::string::npos || blank < cut.size() / 2 ? cut : cut.substr(0, blank));
}

CardImport::CardImport(Station& station, SoundOpener& opener, SoundTags& tags, LibraryTab kind,
                       bool dryRun)
    : station_(station), opener_(opener), tags_(tags), kind_(kind), dryRun_(dryRun) {
  station.base.CheckCnf();
  ReadKnown();
  if (station.platform.stationFolder.Exists(station.files.Genre) || !dryRun)
    LoadSaveGenres(station, "Load", genres_);
  const auto map = ReadSideFile(station.platform.stationFolder, kGenreMapFile);
  if (!map) return;
  for (const NameValueLine& line : NameValueLines(*map))
    genreMap_[UpperLatin(line.name)] = std::string(line.value);
}

void CardImport::ReadKnown() {
  station_.base.Db().ReadRows(PathsQuery(kind_), [&](const RowView& row) {
    cards_.emplace(Trim(row.Text(1)), static_cast<int32_t>(row.Int(0)));
  });
  for (const auto& [path, code] : cards_)
    sizes_.emplace(station_.platform.soundFiles.SizeBytes(path), std::pair(path, code));
}

CardImport::Sound CardImport::SoundOf(const std::string& file) {
  const SoundFiles& files = station_.platform.soundFiles;
  const auto source = opener_.Open(files.Resolve(file));
  std::array<float, size_t{kBlockFrames} * kChannels> block;
  uint64_t hash = 14695981039346656037U;
  int frames = 0;
  while (frames < kComparedFrames) {
    const int read = source->Read(block.data(), std::min(kBlockFrames, kComparedFrames - frames));
    if (read == 0) break;
    hash = HashOn(hash, block.data(), static_cast<size_t>(read) * kChannels);
    frames += read;
  }
  if (frames == 0) throw SoundError(file + ": holds no sound");
  return {files.SizeBytes(file), hash};
}

int32_t CardImport::CardOfSameSound(const Sound& sound) {
  const auto [begin, end] = sizes_.equal_range(sound.first);
  for (auto card = begin; card != end; ++card) {
    try {
      sounds_.emplace(SoundOf(card->second.first), card->second.second);
    } catch (const std::exception&) {
      continue;  // a card whose file is lost or damaged has no sound to compare
    }
  }
  sizes_.erase(begin, end);
  const auto same = sounds_.find(sound);
  return same == sounds_.end() ? 0 : same->second;
}

template <typename Insert>
int32_t CardImport::Try(Insert insert) {
  const Transaction takenBack(station_.base.Db());
  return insert() + tried_++;
}

std::string CardImport::StationGenre(const std::string& foreign) const {
  if (foreign.empty()) return "NOGENRE";
  const auto mapped = genreMap_.find(UpperLatin(foreign));
  const std::string wanted = mapped == genreMap_.end() ? foreign : mapped->second;
  for (const std::string& genre : genres_)
    if (UpperLatin(Trim(genre)) == UpperLatin(wanted)) return Trim(genre);
  return "NOGENRE";
}

void CardImport::TakeTags(const TagTexts& tags, MusicCard& card) const {
  TakeText(tags.artist, card.ChAuteur);
  TakeText(tags.title, card.ChTitre);
  TakeText(tags.year, card.ChAnne);
  TakeText(tags.album, card.ChRefAlbum);
  TakeText(tags.composer, card.ChAuteurCompositeur);
  TakeText(tags.label, card.ChLabel);
  card.ChGenre = StationGenre(tags.genre);
}

int32_t CardImport::AddMusic(const std::string& file, ImportedFile& imported) {
  MusicCard card;
  HourMasks masks;
  imported.exitIsBare = !FillMusicCard(station_, file, card, masks);
  if (imported.exitIsBare)
    if (const auto tags = tags_.Read(station_.platform.soundFiles.Resolve(file)))
      TakeTags(*tags, card);
  Fit(card.ChAuteur, kNameCharacters, "artist", imported.cut);
  Fit(card.ChTitre, kNameCharacters, "title", imported.cut);
  Fit(card.ChGenre, kGenreCharacters, "genre", imported.cut);
  Fit(card.ChVariete, kGenreCharacters, "variety", imported.cut);
  Fit(card.ChAnne, kYearCharacters, "year", imported.cut);
  Fit(card.ChCD, kNameCharacters, "CD", imported.cut);
  Fit(card.ChLabel, kNameCharacters, "label", imported.cut);
  Fit(card.ChAuteurCompositeur, kComposerCharacters, "composer", imported.cut);
  Fit(card.ChRefAlbum, kReferenceCharacters, "album", imported.cut);
  return dryRun_ ? Try([&] { return InsertMusicCard(station_, card, masks); })
                 : AddMusicCard(station_, card, masks);
}

int32_t CardImport::AddOther(const std::string& file, ImportedFile& imported) {
  if (kind_ == LibraryTab::kJingles) {
    JingleCard card;
    HourMasks masks;
    FillJingle(station_, file, card, masks);
    Fit(card.ChLibJingle, kNameCharacters, "description", imported.cut);
    Fit(card.GenreAssocie, kGenreCharacters, "genre", imported.cut);
    Fit(card.ChAuteurJingle, kComposerCharacters, "author", imported.cut);
    return dryRun_ ? Try([&] { return InsertJingle(station_, card, masks); })
                   : AddJingle(station_, card, masks);
  }
  ShortElementCard card;
  FillShortElement(station_, file, card);
  Fit(card.ChLibVirgule, kNameCharacters, "description", imported.cut);
  return dryRun_ ? Try([&] { return InsertShortElement(station_, card); })
                 : AddShortElement(station_, card);
}

ImportedFile CardImport::Take(const std::string& file) {
  ImportedFile imported;
  const auto refuse = [&](const std::string& reason) {
    imported.result = ImportedFile::Result::kRefused;
    imported.reason = reason;
    return imported;
  };
  if (!station_.platform.soundFiles.Exists(file)) return refuse("there is no such file");
  if (const auto known = cards_.find(file); known != cards_.end()) {
    imported.result = ImportedFile::Result::kKnown;
    imported.code = known->second;
    return imported;
  }
  try {
    const Sound sound = SoundOf(file);
    imported.sameSoundAs = CardOfSameSound(sound);
    imported.code =
        kind_ == LibraryTab::kMusic ? AddMusic(file, imported) : AddOther(file, imported);
    cards_.emplace(file, imported.code);
    sounds_.emplace(sound, imported.code);
    return imported;
  } catch (const StoreError& error) {
    if (error.Number() == kErrLocked || !station_.base.IsOpen()) throw;
    return refuse(error.what());
  } catch (const std::exception& error) {
    return refuse(error.what());
  }
}

}  // namespace zemo
