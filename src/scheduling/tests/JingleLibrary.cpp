#include "JingleLibrary.h"

#include "station/TextForms.h"
#include "store/SqlText.h"
#include "store/Value.h"

namespace zemo::test {

namespace {
std::string NewFile(TestStation& on, const std::string& table, int64_t lengthMs) {
  return on.MakeSound(table + on.SqlText("SELECT COUNT(*) FROM " + table) + ".wav", lengthMs);
}

int32_t LastCode(TestStation& on, const std::string& table) {
  return ValInt(on.SqlText("SELECT MAX(CODE) FROM " + table));
}
}  // namespace

int32_t AddJingle(TestStation& on, const Jingle& jingle) {
  const std::string file =
      jingle.file.empty() ? NewFile(on, "DiscothequeJingle", jingle.lengthMs) : jingle.file;
  std::string fields =
      "LIBELLE, FILENAME, DUREE, SURIMPRESSION, CODEASSOCIE, GENREASSOCIE, ARTISTEASSOCIE, "
      "ENDOFTITRE, "
      "JingleExtraitYN, POINTSORTIE, MMJJDebut, MMJJFin, AUTEURCOMPOSITEUR, LASTDIFF";
  std::string values = Quoted(jingle.label) + "," + Quoted(file) + "," +
                       std::to_string(jingle.lengthMs) + "," + (jingle.overlay ? "1" : "0") + "," +
                       std::to_string(jingle.titleCode) + "," + Quoted(jingle.genre) + "," +
                       Quoted(jingle.artist) + "," + std::to_string(jingle.endOfTitle) + "," +
                       std::to_string(jingle.extract) + "," + std::to_string(jingle.exitMs) + "," +
                       Quoted(jingle.from) + "," + Quoted(jingle.to) + "," +
                       Quoted(jingle.composer) + "," + SqlNumber(jingle.lastPlayed);
  for (int day = 1; day <= 7; ++day) {
    fields += ", TRANCHE" + TwoDigits(day);
    values += "," + Quoted(jingle.hours);
  }
  on.Sql("INSERT INTO DiscothequeJingle (" + fields + ") VALUES (" + values + ")");
  return LastCode(on, "DiscothequeJingle");
}

int32_t AddLinkingElement(TestStation& on, const std::string& label, int racro, double lastPlayed,
                          int exitMs) {
  on.Sql(
      "INSERT INTO DiscothequeVirgule (LIBELLE, FILENAME, DUREE, JingleRacro, LASTDIFF, "
      "POINTSORTIE) "
      "VALUES (" +
      Quoted(label) + "," + Quoted(NewFile(on, "DiscothequeVirgule", 3000)) + ",3000," +
      std::to_string(racro) + "," + SqlNumber(lastPlayed) + "," + std::to_string(exitMs) + ")");
  return LastCode(on, "DiscothequeVirgule");
}

OnAirElement RowOf(int32_t code, const std::string& text, const std::string& kind) {
  OnAirElement element;
  element.title = text;
  element.genre = kind;
  element.code = code;
  return element;
}

std::string Texts(const OnAirList& list) {
  std::string texts;
  for (const OnAirRow& row : list) texts += (texts.empty() ? "" : ",") + row.title;
  return texts;
}

}  // namespace zemo::test
