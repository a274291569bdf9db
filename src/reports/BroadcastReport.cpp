#include "reports/BroadcastReport.h"

#include "station/Station.h"
#include "station/TimeForms.h"
#include "store/RowView.h"

namespace zemo {

ReportRow NewReportRow(const Station& station) {
  ReportRow row;
  SetMoment(row, station);
  return row;
}

void SetMoment(ReportRow& row, const Station& station) {
  const LocalDateTime now = WholeSeconds(station.Now());
  row.LADATE = DateText(now);
  row.HEURE = TimeText(now);
  row.DATENUM = DateSerial(now);
}

std::optional<int64_t> NewestReportCode(Database& db) {
  std::optional<int64_t> code;
  db.ReadRows("SELECT TOP 1 CODE FROM Rapport ORDER BY CODE DESC",
              [&](const RowView& row) { code = row.Int(0); });
  return code;
}

ReportRow ReportOfCard(const Recordset& card) {
  ReportRow row;
  row.AUTEURCOMPOSITEUR = card.Text("AUTEURCOMPOSITEUR");
  row.AUTEUR = card.Text("AUTEUR");
  row.TITRE = card.Text("TITRE");
  row.GENRE = card.Text("GENRE");
  row.VARIETE = card.Text("VARIETE");
  row.LABEL = card.Text("LABEL");
  row.REFERENCE = card.Text("REFERENCE");
  return row;
}

ReportRow AppendReportRow(Station& station, ReportRow row) {
  const auto rapport = station.base.Table("Rapport");
  rapport->AddNew();
  rapport->Set("LADATE", row.LADATE);
  rapport->Set("HEURE", row.HEURE);
  rapport->Set("AUTEURCOMPOSITEUR", row.AUTEURCOMPOSITEUR);
  rapport->Set("AUTEUR", row.AUTEUR);
  rapport->Set("TITRE", row.TITRE);
  rapport->Set("GENRE", row.GENRE);
  rapport->Set("VARIETE", row.VARIETE);
  rapport->Set("DATENUM", row.DATENUM);
  rapport->Set("REFERENCE", row.REFERENCE);
  rapport->Set("LABEL", row.LABEL);
  rapport->Update();
  row.CODE = station.base.Db().LastInsertCode();
  return row;
}

ReportRow InsertReportRow(Station& station, ReportRow row) {
  Database& db = station.base.Db();
  db.Execute(
      "INSERT INTO Rapport (LADATE, HEURE, AUTEURCOMPOSITEUR, AUTEUR, TITRE, GENRE, VARIETE, "
      "LABEL, REFERENCE, DATENUM) VALUES (?,?,?,?,?,?,?,?,?, ?)",
      {row.LADATE, row.HEURE, row.AUTEURCOMPOSITEUR, row.AUTEUR, row.TITRE, row.GENRE, row.VARIETE,
       row.LABEL, row.REFERENCE, row.DATENUM});
  row.CODE = db.LastInsertCode();
  return row;
}

}  // namespace zemo
