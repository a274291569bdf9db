// The titles and short elements of the demo station. Names are made up.
#include "app/demo/DemoCatalogue.h"

#include <array>

namespace zemo {
namespace {

constexpr const char* kGenres[] = {"INSTRUMENTAL", "STARTER",  "PLAYLIST", "GOLD N-1",
                                   "GOLD N-2",     "GOLD N-3", "GOLD N-4"};
constexpr const char* kHere = "NATIONAL";
constexpr const char* kAbroad = "INTERNATIONAL";

// Tempo from and to, minor, drums, tune, fades out.
constexpr Manner kCalm{68, 84, false, 0, false, false};
constexpr Manner kCalmDark{66, 80, true, 0, false, false};
constexpr Manner kBright{116, 128, false, 2, true, false};
constexpr Manner kSong{96, 114, false, 2, true, false};
constexpr Manner kSongDark{94, 110, true, 2, true, false};
constexpr Manner kSongFading{98, 116, false, 2, true, true};
constexpr Manner kOld{84, 104, false, 1, true, false};
constexpr Manner kOldDark{82, 100, true, 1, true, false};
constexpr Manner kOldFading{86, 106, false, 1, true, true};

constexpr SoundForm kMp3 = SoundForm::kMp3;
constexpr SoundForm kWav = SoundForm::kWav;

constexpr DemoTitle kTitles[] = {
    {"Trio du Phare", "Aube claire", "PLAYLIST", kHere, "2024", 92, kMp3, kSong},
    {"Copper Lanes", "Second Sunrise", "STARTER", kAbroad, "2024", 84, kMp3, kBright},
    {"Les Quais de Brume", "Passerelle", "GOLD N-1", kHere, "1998", 96, kMp3, kOld},
    {"Velvet Tramway", "Northbound", "PLAYLIST", kAbroad, "2023", 88, kMp3, kSongDark},
    {"Marguerite Onze", "Rue des Tilleuls", "GOLD N-2", kHere, "1989", 78, kMp3, kOldFading},
    {"Paper Harbour", "Slow Lighthouse", "GOLD N-1", kAbroad, "1996", 104, kMp3, kOldDark},
    {"Orchestre des Dunes", "Marée basse", "INSTRUMENTAL", kHere, "2019", 90, kWav, kCalm},
    {"Ivory Signal", "Carry the Light", "PLAYLIST", kAbroad, "2024", 82, kMp3, kSongFading},
    {"Copper Lanes", "Glass Parade", "GOLD N-3", kAbroad, "1984", 86, kMp3, kOld},
    {"Saison Blanche", "L'été d'avant", "PLAYLIST", kHere, "2023", 98, kMp3, kSong},
    {"Nora Vallon", "Trois fois rien", "STARTER", kHere, "2024", 76, kMp3, kBright},
    {"The Quiet Engines", "Riverside Hours", "GOLD N-1", kAbroad, "1999", 94, kMp3, kOldFading},
    {"Tomás Ribalta", "Calle Sur", "PLAYLIST", kAbroad, "2023", 90, kMp3, kSongDark},
    {"Les Quais de Brume", "Au large", "GOLD N-4", kHere, "1978", 80, kMp3, kOldDark},
    {"Amber Static", "Half a Mile", "GOLD N-2", kAbroad, "1988", 88, kMp3, kOld},
    {"Velvet Tramway", "Terminus", "PLAYLIST", kAbroad, "2022", 86, kMp3, kSong},
    {"Hélène Sorbier", "Le grand détour", "GOLD N-1", kHere, "1997", 92, kMp3, kOldDark},
    {"Blue Meridian", "Open Window", "STARTER", kAbroad, "2024", 78, kMp3, kBright},
    {"Compagnie du Lac", "Petite suite", "INSTRUMENTAL", kHere, "2018", 100, kMp3, kCalmDark},
    {"Ivory Signal", "Ember and Ash", "PLAYLIST", kAbroad, "2023", 94, kMp3, kSongDark},
    {"Marguerite Onze", "Samedi soir", "GOLD N-3", kHere, "1983", 74, kMp3, kOldFading},
    {"Paper Harbour", "Evening Post", "GOLD N-2", kAbroad, "1987", 90, kMp3, kOld},
    {"Nora Vallon", "Cerf-volant", "PLAYLIST", kHere, "2024", 84, kMp3, kSongFading},
    {"Golden Ferry", "Seven Bridges", "GOLD N-4", kAbroad, "1976", 82, kMp3, kOld},
    {"Tomás Ribalta", "Luz de enero", "GOLD N-1", kAbroad, "1995", 96, kMp3, kOldDark},
    {"Trio du Phare", "Vent d'ouest", "PLAYLIST", kHere, "2023", 88, kMp3, kSong},
    {"Amber Static", "Weather Report", "STARTER", kAbroad, "2024", 80, kWav, kBright},
    {"Les Cousins Ferrand", "Bal du port", "GOLD N-3", kHere, "1985", 84, kMp3, kOld},
    {"The Quiet Engines", "Far Platform", "PLAYLIST", kAbroad, "2022", 102, kMp3, kSongDark},
    {"Hélène Sorbier", "Jardin d'hiver", "GOLD N-2", kHere, "1986", 86, kMp3, kOldFading},
    {"Blue Meridian", "Kite Season", "GOLD N-1", kAbroad, "1994", 90, kMp3, kOld},
    {"Station Onze", "Ligne directe", "PLAYLIST", kHere, "2024", 78, kMp3, kBright},
    {"Golden Ferry", "Old Timetable", "GOLD N-4", kAbroad, "1977", 88, kMp3, kOldDark},
    {"Orchestre des Dunes", "Sable et sel", "GOLD N-2", kHere, "1990", 94, kMp3, kOld},
    {"Lantern Club", "Midnight Ferry", "PLAYLIST", kAbroad, "2023", 92, kMp3, kSong},
    {"Saison Blanche", "Première neige", "GOLD N-1", kHere, "1998", 82, kMp3, kOldDark},
    {"Lantern Club", "Silver Road", "GOLD N-3", kAbroad, "1982", 118, kMp3, kOldFading},
    {"Les Cousins Ferrand", "Tour de piste", "PLAYLIST", kHere, "2022", 58, kMp3, kSongFading},
    {"Copper Lanes", "Tide Tables", "GOLD N-2", kAbroad, "1991", 96, kMp3, kOld},
    {"Compagnie du Lac", "Matin calme", "GOLD N-4", kHere, "1979", 90, kMp3, kOldDark},
};

// Label, length, form, category of a campaign, overlay.
constexpr DemoShort kShorts[] = {
    {ShortKind::kJingle, "Zemo Demo - Signature", 4.0, kWav, "", false},
    {ShortKind::kJingle, "Zemo Demo - Toute la journée", 5.0, kMp3, "", false},
    {ShortKind::kJingle, "Zemo Demo - Que de la musique", 4.5, kMp3, "", false},
    {ShortKind::kJingle, "Zemo Demo - Sur intro", 3.0, kWav, "", true},
    {ShortKind::kJingle, "Zemo Demo - Sur intro 2", 2.5, kMp3, "", true},
    {ShortKind::kBreakJingle, "Zemo Demo - Avant pubs", 2.0, kWav, "", false},
    {ShortKind::kBreakJingle, "Zemo Demo - Après pubs", 2.0, kWav, "", false},
    {ShortKind::kOther, "Virgule montante", 2.0, kWav, "", false},
    {ShortKind::kOther, "Virgule descendante", 2.0, kWav, "", false},
    {ShortKind::kOther, "Virgule retour antenne", 3.0, kMp3, "", false, true},
    {ShortKind::kOther, "Tapis court", 12.0, kMp3, "", false},
    {ShortKind::kSpot, "Garage des Tilleuls", 15.0, kMp3, "AUTOMOBILE", false},
    {ShortKind::kSpot, "Boulangerie du Port", 12.0, kMp3, "ALIMENTATION", false},
    {ShortKind::kSpot, "Librairie Onze", 18.0, kMp3, "CULTURE", false},
    {ShortKind::kSpot, "Marché couvert", 20.0, kWav, "ALIMENTATION", false},
    {ShortKind::kNews, "Flash infos", 24.0, kMp3, "INFORMATIONS", false},
    {ShortKind::kNews, "Météo marine", 16.0, kMp3, "METEO", false},
    {ShortKind::kPip, "Top horaire", 6.9, kWav, "", false},
};

}  // namespace

std::span<const DemoTitle> DemoTitles() {
  return kTitles;
}
std::span<const DemoShort> DemoShorts() {
  return kShorts;
}
std::span<const char* const> DemoGenres() {
  return kGenres;
}

int DemoShare(size_t genre, int weekday, int hour) {
  // One row a part of the day: night, morning, daytime, evening; each sums to 100.
  static constexpr int kShares[4][7] = {{10, 5, 25, 20, 20, 10, 10},
                                        {5, 15, 40, 20, 10, 5, 5},
                                        {5, 10, 35, 20, 15, 10, 5},
                                        {5, 10, 30, 25, 15, 10, 5}};
  const bool weekend = weekday >= 6;
  const int part = hour < 6 ? 0 : hour < (weekend ? 12 : 10) ? 1 : hour < 18 ? 2 : 3;
  return kShares[part][genre];
}

}  // namespace zemo
