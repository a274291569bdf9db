// The frame of the report screen: opening, the days and filters of the span, the sorting of its
// lists.
#include <utility>

#include "library/LibraryHandler.h"
#include "platform/EventLoop.h"
#include "reports/ReportScreen.h"
#include "reports/ReportSorting.h"
#include "station/Station.h"
#include "station/TimeForms.h"

namespace zemo {

namespace {

void PutFilter(Station& station, ReportEditor& editor, std::string& filter,
               const std::string& text) {
  if (std::exchange(filter, text) != text) Report::VoirRapport(station, editor);
}

// What is still at work on the former rows must not take others for them.
void Empty(ReportEditor& editor) {
  ReportEditor empty;
  empty.working = editor.working;
  empty.readings = editor.readings;
  empty.reading = editor.reading;
  empty.readAnew = editor.readAnew;
  empty.listed = editor.listed;
  empty.ListRap.generation = editor.ListRap.generation;
  empty.ListStat.generation = editor.ListStat.generation;
  editor = std::move(empty);
}

bool TurnsAround(const ListSorting& sorting, int column) {
  return sorting.byHead && sorting.column == column;
}

}  // namespace

void Report::MnuRapport_Click(Station& station, ReportEditor& editor) {
  HandleControl(station, "MnuRapport", [&] {
    if (station.engine.ScreenLocked || editor.open) return;
    Empty(editor);
    editor.open = true;
    editor.LblDate = DateText(station.Now());
    VoirRapport(station, editor);
  });
}

void Report::Form_Unload(ReportEditor& editor) {
  editor.open = false;
  ++editor.readings;
  editor.readAnew = false;
}

void Report::CmdCalend_Click(Station& station, ReportEditor& editor, const LocalDateTime& day) {
  editor.LblDate = DateText(day);
  VoirRapport(station, editor);
}

void Report::BtnDateFin_Click(Station& station, ReportEditor& editor, const LocalDateTime& day) {
  editor.LblDateFin = DateText(day);
  VoirRapport(station, editor);
}

void Report::BtnDateFin_RightClick(Station& station, ReportEditor& editor) {
  editor.LblDateFin.clear();
  VoirRapport(station, editor);
}

void Report::FiltreArtiste_Change(Station& station, ReportEditor& editor, const std::string& text) {
  PutFilter(station, editor, editor.FiltreArtiste, text);
}

void Report::FiltreGenre_Change(Station& station, ReportEditor& editor, const std::string& text) {
  PutFilter(station, editor, editor.FiltreGenre, text);
}

void Report::FiltreVariete_Change(Station& station, ReportEditor& editor, const std::string& text) {
  PutFilter(station, editor, editor.FiltreVariete, text);
}

void Report::ListRap_ColumnClick(Station& station, ReportEditor& editor, int column) {
  HandleControl(station, "ListRap", [&] {
    const ReportWork work(editor);
    if (column < 0 || column >= RapCol::kCount) return;
    if (TurnsAround(editor.ListRap.sorting, column))
      TurnReport(editor);
    else if (SortReport(station, editor, column))
      editor.ListRap.sorting.byHead = true;
  });
}

void Report::ListStat_ColumnClick(Station& station, ReportEditor& editor, int column) {
  HandleControl(station, "ListStat", [&] {
    const ReportWork work(editor);
    if (column < 0 || column >= StatCol::kCount) return;
    if (TurnsAround(editor.ListStat.sorting, column))
      TurnRotations(editor);
    else if (SortRotations(station, editor, column))
      editor.ListStat.sorting.byHead = true;
  });
}

}  // namespace zemo
