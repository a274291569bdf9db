#include "languages/SharedWords.h"

#include <algorithm>

namespace zemo::test {

namespace {

// clang-format off
constexpr std::string_view kSharedWords[] = {
    // in all
    "Zemo Radio Pro", "ZEMO RADIO PRO", "OK", "Intro", "Intro (s)", "Total", "Total %", "Jingle", "Jingles", "Joystick",
    "Voice track", "Voice Track", "CD", "PDF...", "ms", "Com 1", "Com 2", "Com 3", "Com 4", "Excel *.xlsx", "zoom", "info", " LUFS", "-18 LUFS",
    "Didot (DD)", "Playlists",
    // the languages, each in its own
    "Français", "English", "Português", "Español",
    // as they are told by name: options, a button, titles, a message
    "OFF", "OFF-P", "Cut Off", "Cut On", "File", "Model en %", "Edit Squelette", "Edit", "Mode Direct Live",
    "Mise à jour de la table des discotheque music effectuée avec succès",
    // genres, as the report has them and is filtered by
    "INSTRUMENTAL", "PUB", "Rubrique", "JINGLE", "TOP-H", "AUTRES",
    // in French and English
    "SILENCE", "Genre", "Genres", "Minutes", "minutes", "minute", "Options", "Label", "Pause", "Code", "Stop", "Contact",
    "Messages", "Page %1", "Positions", "Date", "dates", "Rotations", "Communication", "Production", "Cycle", "moment",
    "second", "passage", "action", "programme", "Type", "place",
    // in French and Portuguese or Spanish
    "Pub", "pub", "Pubs", "Base", "Fin", "de", "Entre %1", "Fin de playlist", "nombre", "série",
    // in English and Portuguese or Spanish
    "No", "no", "Error", "bytes", "hh:mm", "Playlist", "segue",
};
// clang-format on

}  // namespace

std::span<const std::string_view> SharedWords() {
  return kSharedWords;
}

bool IsShared(const QString& text) {
  QString plain = text;
  plain.remove(u'&');
  return std::any_of(std::begin(kSharedWords), std::end(kSharedWords), [&](std::string_view word) {
    return plain == QString::fromUtf8(word.data(), static_cast<qsizetype>(word.size()));
  });
}

}  // namespace zemo::test
