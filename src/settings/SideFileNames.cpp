// Names of the side files: the one table of those of the two folders, and the files beside a sound
// file.
#include "settings/SideFiles.h"
#include "station/Station.h"
#include "station/TextForms.h"

namespace zemo {

void SetSideFileNames(Station& station) {
  SideFileNames& files = station.files;
  files.Tranche = "Tranche.Txt";  // named, but no routine reads it
  files.Genre = "Genre.Txt";
  files.Decoupe = "Decoupe.Ini";
  files.Categori = "Categori.Ini";
  files.ZemoAudio = "ZemoAudio.Ini";
  files.ZemoPlay = "ZemoPlay.Ini";
  files.Messages = "Messages.Txt";
  files.ZemoPasseWord = "ZemoPasseWord.Ini";
  files.Labels = "Labels.Txt";
  files.Internet = "Internet.Txt";
  files.Exclusion = "Exclusion.Txt";
  files.DonneesAssociees = "Donnees_Associees.Txt";
  files.ArtisteTitre = "Artiste-Titre.Txt";
  files.ExportPubs = "ExportPubs.Txt";
  files.LectureBase = "LectureBase.Txt";
  files.Instrumental = "Instrumental.Txt";
  files.ZemoOnOff = "ZemoOnOff.Dat";
  files.CheckTopage = "CheckTopage.Dat";
  files.CD = "CD.Txt";
  files.MajGrillePub = "MajGrillePub.txt";
  files.Days = {"Lundi.Txt",    "Mardi.Txt",  "Mercredi.Txt", "Jeudi.Txt",
                "Vendredi.Txt", "Samedi.Txt", "Dimanche.Txt"};
  for (size_t day = 0; day < files.Days.size(); ++day)
    files.SkeletonDays[day] = "Sq-" + files.Days[day];
}

std::string SideFilePath(std::string_view soundFile, std::string_view ending) {
  // Only in the file's name: a folder can bear such an ending too.
  const size_t slash = soundFile.find_last_of("/\\");
  const size_t nameBegin = slash == std::string_view::npos ? 0 : slash + 1;
  const std::string name = UpperAscii(soundFile.substr(nameBegin));
  for (const std::string_view kind : {".WAV", ".MP3"}) {
    const size_t point = name.rfind(kind);
    if (point != std::string::npos)
      return std::string(soundFile.substr(0, nameBegin + point + 1)) + std::string(ending);
  }
  return std::string(soundFile) + std::string(ending);
}

}  // namespace zemo
