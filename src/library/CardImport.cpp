#include "library/CardImport.h"

#include <algorithm>
#include <exception>

#include "library/CardAdding.h"
#include "platform/Folder.h"
#include "platform/NameValueLines.h"
#include "settings/GenreList.h"
#include "settings/SideFileIo.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "store/RowView.h"

namespace zemo {

namespace {

constexpr int kSliceCards = 500;
constexpr const char* kNoGenre = "NOGENRE";
constexpr int kNameCharacters = 40, kComposerCharacters = 60, kReferenceCharacters = 20,
              kGenreText = 22, kYearCharacters = 4;

std::string_view CardsQuery(LibraryTab kind) {
  switch (kind) {
    case LibraryTab::kJingles:
      return "SELECT TOP ? CODE, FILENAME FROM DiscothequeJingle WHERE CODE > ? ORDER BY CODE";
    case LibraryTab::kShortElements:
      return "SELECT TOP ? CODE, FILENAME FROM DiscothequeVirgule WHERE CODE > ? ORDER BY CODE";
    default:
      return "SELECT TOP ? CODE, FILENAME FROM Discotheque WHERE CODE > ? ORDER BY CODE";
  }
}

// The text fitted to its field; `name` is told where it was too long.
void Fit(std::string& text, int characters, const char* name, std::vector<const char*>& cut) {
  std::string fitting = CutAtWord(text, characters);
  if (fitting == text) return;
  text = std::move(fitting);
  cut.emplace_back(name);
}

void TakeText(const std::string& tag, std::string& field) {
  if (!tag.empty()) field = tag;
}

// Of a file: without its folder and its ending, of whatever length that is.
std::string NameOf(const std::string& file) {
  const std::string name = file.substr(file.find_last_of('/') + 1);
  const size_t point = name.find_last_of('.');
  return Trim(point == std::string::npos || point == 0 ? name : name.substr(0, point));
}

// "Artist - Title", which is how files without tags are called; else all of it is the artist.
void TakeName(const std::string& file, MusicCard& card) {
  constexpr std::string_view kBetween = " - ";
  card.ChAuteur = NameOf(file);
  const size_t between = card.ChAuteur.find(kBetween);
  if (between == std::string::npos) return;
  card.ChTitre = Trim(card.ChAuteur.substr(between + kBetween.size()));
  card.ChAuteur = Trim(card.ChAuteur.substr(0, between));
}

}  // namespace

std::string CutAtWord(const std::string& text, int n) {
  if (CharacterCount(text) <= n) return text;
  const std::string cut = FirstCharacters(text, n);
  const bool wordEnds = text[cut.size()] == ' ';
  const size_t blank = wordEnds ? cut.size() : cut.find_last_of(' ');
  return Trim(blank == std::string::npos || blank < cut.size() / 2 ? cut : cut.substr(0, blank));
}

CardImport::CardImport(Station& station, LibraryTab kind, bool dryRun)
    : station_(station), kind_(kind), dryRun_(dryRun) {
  station.base.CheckCnf();
  if (station.platform.stationFolder.Exists(station.files.Genre) || !dryRun)
    LoadSaveGenres(station, "Load", genres_);
  const auto map = ReadSideFile(station.platform.stationFolder, kGenreMapFile);
  if (!map) return;
  for (const NameValueLine& line : NameValueLines(*map))
    genreMap_[UpperLatin(line.name)] = std::string(line.value);
}

bool CardImport::ReadCardsSlice() {
  int read = 0;
  station_.base.Db().ReadRows(CardsQuery(kind_), {kSliceCards, lastCode_}, [&](const RowView& row) {
    lastCode_ = row.Int(0);
    cards_.emplace(Trim(row.Text(1)), static_cast<int32_t>(lastCode_));
    ++read;
  });
  return read == kSliceCards;
}

std::vector<std::string> CardImport::Known() const {
  std::vector<std::string> paths;
  paths.reserve(cards_.size());
  for (const auto& [path, code] : cards_) paths.push_back(path);
  return paths;
}

template <typename Insert>
int32_t CardImport::Try(Insert insert) {
  const Transaction takenBack(station_.base.Db());
  return insert() + tried_++;
}

std::string CardImport::StationGenre(const std::string& foreign) const {
  if (foreign.empty()) return kNoGenre;
  const auto mapped = genreMap_.find(UpperLatin(foreign));
  const std::string wanted = mapped == genreMap_.end() ? foreign : mapped->second;
  for (const std::string& genre : genres_)
    if (UpperLatin(Trim(genre)) == UpperLatin(wanted)) return Trim(genre);
  return kNoGenre;
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

int32_t CardImport::AddMusic(const SoundFileReading& file, ImportedFile& imported) {
  MusicCard card;
  HourMasks masks;
  imported.exitIsBare = !FillMusicCard(station_, file.path, file.lengthMs, card, masks);
  if (imported.exitIsBare) {
    const TagTexts tags = file.tags.value_or(TagTexts());
    if (tags.artist.empty() && tags.title.empty())
      TakeName(file.path, card);
    else
      card.ChAuteur = NameOf(file.path);
    TakeTags(tags, card);
    if (card.ChGenre == kNoGenre) imported.foreignGenre = tags.genre;
  }
  Fit(card.ChAuteur, kNameCharacters, "artist", imported.cut);
  Fit(card.ChTitre, kNameCharacters, "title", imported.cut);
  Fit(card.ChGenre, kGenreText, "genre", imported.cut);
  Fit(card.ChVariete, kGenreText, "variety", imported.cut);
  Fit(card.ChAnne, kYearCharacters, "year", imported.cut);
  Fit(card.ChCD, kNameCharacters, "CD", imported.cut);
  Fit(card.ChLabel, kNameCharacters, "label", imported.cut);
  Fit(card.ChAuteurCompositeur, kComposerCharacters, "composer", imported.cut);
  Fit(card.ChRefAlbum, kReferenceCharacters, "album", imported.cut);
  return dryRun_ ? Try([&] { return InsertMusicCard(station_, card, masks); })
                 : AddMusicCard(station_, card, masks);
}

int32_t CardImport::Add(const SoundFileReading& file, ImportedFile& imported) {
  if (kind_ == LibraryTab::kMusic) return AddMusic(file, imported);
  if (kind_ == LibraryTab::kJingles) {
    JingleCard card;
    HourMasks masks;
    if (!FillJingle(station_, file.path, file.lengthMs, card, masks))
      card.ChLibJingle = NameOf(file.path);
    Fit(card.ChLibJingle, kNameCharacters, "description", imported.cut);
    Fit(card.GenreAssocie, kGenreText, "genre", imported.cut);
    Fit(card.ChAuteurJingle, kComposerCharacters, "author", imported.cut);
    return dryRun_ ? Try([&] { return InsertJingle(station_, card, masks); })
                   : AddJingle(station_, card, masks);
  }
  ShortElementCard card;
  if (!FillShortElement(station_, file.path, file.lengthMs, card))
    card.ChLibVirgule = NameOf(file.path);
  Fit(card.ChLibVirgule, kNameCharacters, "description", imported.cut);
  return dryRun_ ? Try([&] { return InsertShortElement(station_, card); })
                 : AddShortElement(station_, card);
}

ImportedFile CardImport::Enter(const SoundFileReading& file) {
  ImportedFile imported;
  const auto refuse = [&](const std::string& reason) {
    imported.result = ImportedFile::Result::kRefused;
    imported.reason = reason;
    return imported;
  };
  if (!file.error.empty()) return refuse(file.error);
  if (const auto known = cards_.find(file.path); known != cards_.end()) {
    imported.result = ImportedFile::Result::kKnown;
    imported.code = known->second;
    return imported;
  }
  try {
    if (const auto same = cards_.find(file.sameSoundAs); same != cards_.end())
      imported.sameSoundAs = same->second;
    imported.code = Add(file, imported);
    cards_.emplace(file.path, imported.code);
    return imported;
  } catch (const StoreError& error) {
    if (error.Number() == kErrLocked || !station_.base.IsOpen()) throw;
    return refuse(error.what());
  } catch (const std::exception& error) {
    return refuse(error.what());
  }
}

}  // namespace zemo
