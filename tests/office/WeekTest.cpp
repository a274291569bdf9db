// A week's work through the windows. On Sunday evening a new station is set up: settings, library,
// Monday's model, a campaign with its grid, a stored list. Then Monday airs, and behind it the
// report and the affidavit tell what became of the campaign. All by mouse and keys.
//
// Crosses of BAKERY on Monday: 07:10 to 09:40 twice an hour but for 08:40, 12:40 and 17:10; on each
// other day of the week 12:40. ZOO has one, Monday at 07:10, behind it.
#include <QListWidget>
#include <QMenu>
#include <QPushButton>
#include <QTimer>
#include <algorithm>

#include "office/OperatorsHand.h"
#include "office/StationWithWindows.h"
#include "reports/ReportRows.h"
#include "scheduling/screens/ModelGridView.h"
#include "support/PdfText.h"
#include "traffic/AffidavitTable.h"
#include "traffic/screens/CampaignGridView.h"

namespace zemo::test {
namespace {

using Texts = std::vector<std::string>;

constexpr const char* kMain = "FrmZemo";
constexpr const char* kMorningGenre = "GOLD N-1";
constexpr const char* kEveningGenre = "GOLD N-2";
constexpr int kTitlesOfGenre = 160;  // of six minutes and more: each airs once a day at most
constexpr int64_t kHourMs = 3600 * 1000;
constexpr int64_t kTuesdayMs = 26 * kHourMs + 630000;  // 00:10:30, since Sunday 22:00
constexpr int kSpotsTab = 4;

const Texts kMomentsOfBakery = {"07:10", "07:40", "08:10", "09:10", "09:40", "12:40", "17:10"};

// Row of a moment in a grid from 07 h with the marks 10 and 40.
int RowOf(int hour, int minute) {
  return 3 + 2 * (hour - 7) + (minute == 40 ? 1 : 0);
}

class Week : public testing::Test {
 protected:
  void SetUp() override { s.OpenMainScreen(); }

  // --- the steps ---
  void SetTheStationUp();
  void FillTheLibrary();
  void DrawTheModels();
  void EnterTheCampaigns();
  void MakeAStoredList();
  void MondayAired();
  void TheReportHasTheSpotsAtTheirMoments();
  void TheReportHasTheListInItsOrder();
  void TheReportHasTheModelsGenres();
  void TheAffidavitSaysWhatTheReportSays();
  void IsWorked();  // up to the first step that fails

  // --- gestures ---
  void SelectFile(const std::string& name);
  void ClickModelCell(int row, int column);
  void TakeEntry(const char* menu, const std::string& entry);
  void EnterCampaign(const std::string& name, int64_t lengthMs, int priority, int days);
  QPoint InGrid(int row, int column) {
    return hand.Find<CampaignGridView>("GPub")->Cell({row, column}).center();
  }
  void Cross(int row, int column, Qt::KeyboardModifiers keys = {}) {
    hand.ClickAt(*hand.Find<CampaignGridView>("GPub")->viewport(), InGrid(row, column), keys);
  }

  StationWithWindows s{"2026-11-22 22:00:00"};
  OperatorsHand hand;
  Texts airedOfBakery;  // "dd/mm/yyyy hh:mm:ss", as the report has them
};

// In the open selector, from the folder of the made sounds.
void Week::SelectFile(const std::string& name) {
  hand.GoTo("FileSelector");
  hand.Type("Dir1", s.on.stationDir.Path() + "/sounds");
  hand.Key("Dir1", Qt::Key_Return);
  auto* files = hand.Find<QListWidget>("File1");
  const auto found = files->findItems(QString::fromStdString(name), Qt::MatchExactly);
  ASSERT_EQ(found.size(), 1) << name;
  hand.ClickAt(*files->viewport(), files->visualItemRect(found[0]).center());
  hand.Click("BtnOk");
}

void Week::SetTheStationUp() {
  s.MakeSound("sounds/before.wav", 4000);
  hand.GoTo(kMain);
  hand.Menu({"Options", "MnuParametrage"});
  hand.GoTo("FrmConfig");
  hand.Choose("Langue", 1);
  hand.Tab("Config", kSpotsTab);
  hand.Click("CheckPub");
  hand.Click("CmdFileAvant");
  SelectFile("before.wav");
  hand.GoTo("FrmConfig");
  EXPECT_EQ(hand.Text("FileAvantPub"), s.on.stationDir.Path() + "/sounds/before.wav");
  hand.Close(kMain);
}

void Week::FillTheLibrary() {
  for (int title = 1; title <= 2 * kTitlesOfGenre; ++title) {
    const bool morning = title <= kTitlesOfGenre;
    const std::string number = std::to_string(1000 + title).substr(1);
    const std::string path = s.MakeSound("music/" + number + ".wav", 360000 + 100 * title);
    s.importFiles.tags.texts[path] = {.artist = (morning ? "Morning " : "Evening ") + number,
                                      .title = "Title " + number,
                                      .genre = morning ? kMorningGenre : kEveningGenre,
                                      .year = {},
                                      .album = {},
                                      .composer = {},
                                      .label = {}};
  }
  hand.Menu({"MnuEdit", "Discotheque"});
  hand.GoTo("FrmDiscotheque");
  EXPECT_EQ(hand.Window().windowTitle(), "Library");
  hand.Drop(s.on.stationDir.Path() + "/music");
  hand.GoTo("FrmImport");
  hand.Key("ImportReport", Qt::Key_Escape);
  hand.GoTo("FrmDiscotheque");
  EXPECT_EQ(hand.Text("LblInfoMus"), "Card 1 of 320");
  hand.Close(kMain);
}

void Week::ClickModelCell(int row, int column) {
  auto* grid = hand.Find<ModelGridView>("Models");
  const QModelIndex cell = grid->IndexOf({row, column});
  grid->scrollTo(cell);
  hand.ClickAt(*grid->viewport(), grid->visualRect(cell).center());
}

// Of a pop-up that opens, also one that holds the hand meanwhile.
void Week::TakeEntry(const char* name, const std::string& entry) {
  auto* menu = hand.Find<QMenu>(name);
  hand.WaitUntil(name, [menu] { return menu->isVisible(); });
  for (QAction* action : menu->actions())
    if (action->text().toStdString() == entry)
      return hand.ClickAt(*menu, menu->actionGeometry(action).center());
  ADD_FAILURE() << name << " has no " << entry;
}

void Week::DrawTheModels() {
  hand.Menu({"MnuEdit", "MnuModels", "MnuModel"});
  hand.GoTo("FrmModels");
  hand.Click("JourSemaine_1");
  hand.Key("Models", Qt::Key_Home, Qt::ControlModifier);
  for (int genre = 0; genre < 7; ++genre) hand.Key("Models", Qt::Key_Delete);
  ClickModelCell(1, 0);
  TakeEntry("MasterGenre", kMorningGenre);
  ClickModelCell(2, 0);
  TakeEntry("MasterGenre", kEveningGenre);
  for (int hour = 0; hour < 24; ++hour) {
    ClickModelCell(hour < 12 ? 1 : 2, hour + 1);
    TakeEntry("MasterPourCent", "100");
  }
  EXPECT_TRUE(hand.Find("LblNotSaved")->isVisible());
  hand.KeepPicture("week-models");
  hand.Click("BtnSave");
  EXPECT_FALSE(hand.Find("LblNotSaved")->isVisible());
  hand.Click("JourSemaine_7");
  QTimer::singleShot(0, [this] {
    auto* days = hand.Find<QPushButton>("MnuCopierJour")->menu();
    hand.ClickAt(*days, days->actionGeometry(days->actions()[0]).center());
  });
  hand.Click("MnuCopierJour");
  hand.WaitUntil("Monday's model", [this] {
    auto* grid = hand.Find<ModelGridView>("Models");
    return grid->IndexOf({2, 24}).data().toString() == "100";
  });
  hand.Click("BtnSave");
  hand.Close(kMain);
}

// From Monday on, so many days behind it, from 07 to 18 h at 10 and 40.
void Week::EnterCampaign(const std::string& name, int64_t lengthMs, int priority, int days) {
  s.MakeSound("sounds/" + name + ".wav", lengthMs);
  hand.Click("BtnNew");
  hand.Type("HDepPub", "07");
  hand.Type("HFinPub", "18");
  hand.Type("DecoupagePub_0", "10");
  hand.Type("DecoupagePub_1", "40");
  hand.Click("LblDepartPub");
  hand.PickDay(1);  // today is Sunday
  hand.Click("LblFinPub");
  hand.PickDay(1 + days);
  hand.Click("CmdLoadFile");
  SelectFile(name + ".wav");
  hand.GoTo("FrmPub");
  hand.Choose("ComboPriority", priority);
}

void Week::EnterTheCampaigns() {
  hand.Menu({"MnuEdit", "MnuHPubs"});
  hand.GoTo("FrmPub");
  EnterCampaign("BAKERY", 20000, 1, 6);
  EXPECT_EQ(hand.Text("ChAnnonceur"), "BAKERY");
  EXPECT_EQ(hand.Text("LblTotalJours"), "7 days");
  hand.Drag(*hand.Find<CampaignGridView>("GPub")->viewport(), InGrid(RowOf(7, 10), 1),
            InGrid(RowOf(9, 40), 1));
  EXPECT_EQ(hand.Text("LblTotalMsg"), "6");
  Cross(RowOf(8, 40), 1);
  Cross(RowOf(12, 40), 4, Qt::ShiftModifier);
  Cross(RowOf(17, 10), 1);
  EXPECT_EQ(hand.Text("LblTotalMsg"), "13");  // 5, 7 and 1
  hand.KeepPicture("week-campaign");
  hand.Click("BtnAjouter");
  EnterCampaign("ZOO", 30000, 2, 0);
  Cross(RowOf(7, 10), 1);
  EXPECT_EQ(hand.Text("LblTotalMsg"), "1");
  hand.Click("BtnAjouter");
  EXPECT_EQ(hand.Text("LblInfoPub").substr(2), "/2");
  hand.Close(kMain);
}

// Three titles of the morning, for Monday at 15:00.
void Week::MakeAStoredList() {
  hand.Click("Toolbar1_2");
  for (const char* artist : {"Morning 030", "Morning 010", "Morning 020"}) {
    hand.Type("Rech", artist);
    hand.WaitUntil(artist, [&] { return hand.Column("ListRech", 0) == Texts{artist}; });
    hand.ClickRow("ListRech", 0);
    hand.Key("ListRech", Qt::Key_Insert);
  }
  hand.Type("ComboPLS", "Three of the morning");
  hand.Click("LblDate");
  hand.PickDay(1);
  hand.Type("ChHeure", "15:00");
  hand.KeepPicture("week-list");
  hand.Click("BtnSauve");
  hand.Click("BtnNew");
  hand.Click("Toolbar1_1");
}

void Week::MondayAired() {
  s.on.seen.clear();
  hand.Click("Toolbar1_5");
  s.Run(kTuesdayMs);
  int jingles = 0;
  for (const Seen& start : s.on.Starts()) jingles += start["file"].ends_with("/before.wav");
  EXPECT_EQ(jingles, 7);  // one a break; at 07:10 it is that of both
  EXPECT_TRUE(s.on.Events("error").empty()) << s.on.Events("error")[0]["text"];
  EXPECT_TRUE(s.on.Events("message").empty()) << s.on.Events("message")[0]["text"];
}

void Week::TheReportHasTheSpotsAtTheirMoments() {
  hand.Menu({"Options", "MnuRapport"});
  hand.GoTo("FrmRapport");
  EXPECT_EQ(hand.Text("LblDate"), "24/11/2026");
  hand.Click("CmdCalend");
  hand.PickDay(-1);
  hand.Type("FiltreGenre", "PUB");
  hand.KeepPicture("week-report");
  Texts moments = kMomentsOfBakery, artists(kMomentsOfBakery.size(), "BAKERY");
  moments.insert(moments.begin() + 1, "07:10");
  artists.insert(artists.begin() + 1, "ZOO");
  EXPECT_EQ(hand.Column("ListRap", RapCol::kArtist), artists);
  const Texts days = hand.Column("ListRap", RapCol::kDate);
  const Texts times = hand.Column("ListRap", RapCol::kTime);
  Texts minutes;
  for (size_t row = 0; row < times.size(); ++row) {
    minutes.push_back(times[row].substr(0, 5));
    if (row < artists.size() && artists[row] == "BAKERY")
      airedOfBakery.push_back(days[row] + " " + times[row].substr(0, 8));
  }
  EXPECT_EQ(minutes, moments);
}

// Between its markers, from its hour on: the title on air before it is not cut.
void Week::TheReportHasTheListInItsOrder() {
  hand.Type("FiltreGenre", "");
  const Texts artists = hand.Column("ListRap", RapCol::kArtist);
  const Texts times = hand.Column("ListRap", RapCol::kTime);
  const auto begin = std::find(artists.begin(), artists.end(), "Start Playlist");
  ASSERT_GE(artists.end() - begin, 5);
  EXPECT_EQ(Texts(begin, begin + 5),
            (Texts{"Start Playlist", "Morning 030", "Morning 010", "Morning 020", "End Playlist"}));
  const std::string began = times[static_cast<size_t>(begin - artists.begin())];
  EXPECT_GE(began, "15:00:00");
  EXPECT_LT(began, "15:07:00");  // the longest title takes 6:32
}

// Titles of the hour before may go on into the next one, and a request is made ahead of its end.
void Week::TheReportHasTheModelsGenres() {
  const Texts genres = hand.Column("ListRap", RapCol::kGenre);
  const Texts times = hand.Column("ListRap", RapCol::kTime);
  int morning = 0, evening = 0;
  for (size_t row = 0; row < genres.size(); ++row) {
    if (times[row] < "11:30") {
      EXPECT_NE(genres[row], kEveningGenre) << times[row];
      morning += genres[row] == kMorningGenre;
    } else if (times[row] > "12:30" && (times[row] < "15:00" || times[row] > "15:30")) {
      EXPECT_NE(genres[row], kMorningGenre) << times[row];
      evening += genres[row] == kEveningGenre;
    }
  }
  // 690 and 660 minutes of titles of 6:00 to 6:32, joined some seconds before their ends.
  EXPECT_GE(morning, 690 / 7);
  EXPECT_GE(evening, 660 / 7);
}

// The moments that were entered, beside those at which the report has them.
void Week::TheAffidavitSaysWhatTheReportSays() {
  hand.Click("BtnAttestation");
  hand.GoTo("FrmAttestation");
  hand.Type("Annonceur", "BAKERY");
  hand.Key("Annonceur", Qt::Key_Return);
  hand.WaitUntil("the affidavit", [this] { return hand.Text("LblTotaux") != ""; });
  const std::string totals = "8 crosses, 7 aired, 0 missed, 1 to come";
  EXPECT_EQ(hand.Text("LblTotaux"), "BAKERY - " + totals);
  EXPECT_EQ(hand.Column("ListDiff", DiffCol::kAired).size(), 8U);
  Texts paper = {"Affidavit of broadcast - BAKERY from 01/11/2026 to 24/11/2026 Page 1",
                 "Due Aired Late Status Reason Type Campaign File"};
  for (size_t cross = 0; cross < kMomentsOfBakery.size(); ++cross) {
    const std::string& aired = airedOfBakery[cross];
    paper.push_back("23/11/2026 " + kMomentsOfBakery[cross] + ":00 " + aired +
                    " +00:" + aired.substr(aired.size() - 2) + " aired spot 1 BAKERY.wav");
  }
  paper.push_back("24/11/2026 12:40:00 to come spot 1 BAKERY.wav");
  paper.push_back(totals);
  hand.KeepPicture("week-affidavit");
  const std::string pdf = s.Path("bakery.pdf");
  hand.Click("BtnPdf");
  hand.SaveAs(pdf);
  hand.WaitUntil("the PDF", [&] { return !PagesOfPdf(pdf).empty(); });
  EXPECT_EQ(PagesOfPdf(pdf), std::vector<Texts>{paper});
}

void Week::IsWorked() {
  for (const auto step :
       {&Week::SetTheStationUp, &Week::FillTheLibrary, &Week::DrawTheModels,
        &Week::EnterTheCampaigns, &Week::MakeAStoredList, &Week::MondayAired,
        &Week::TheReportHasTheSpotsAtTheirMoments, &Week::TheReportHasTheListInItsOrder,
        &Week::TheReportHasTheModelsGenres, &Week::TheAffidavitSaysWhatTheReportSays}) {
    (this->*step)();
    if (HasFailure()) return;
  }
}

TEST_F(Week, IsWorkedThroughTheWindowsAndAirsAsItWasEntered) {
  IsWorked();
}

}  // namespace
}  // namespace zemo::test
