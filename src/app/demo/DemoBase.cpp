// Models and settings of a new station; cards, campaigns, pips and the stored list of the demo.
#include "app/demo/DemoBase.h"

#include <algorithm>
#include <functional>

#include "app/demo/Demo.h"
#include "app/demo/LocaleLanguage.h"
#include "settings/SideFiles.h"
#include "station/TextForms.h"
#include "station/TimeForms.h"
#include "store/StationBase.h"
#include "store/StoreError.h"

namespace zemo {
namespace {

constexpr int kDays = 7;
constexpr int kHours = 24;
const std::string kAllHours(kHours, '1');
const std::string kNoHour(kHours, '0');

// "TRANCHE" and the number in two digits, with the value that `of` gives for it.
template <typename Of>
void SetTranches(Recordset& table, int first, int last, const Of& of) {
  for (int i = first; i <= last; ++i) table.Set("TRANCHE" + TwoDigits(i), of(i));
}

// A library of one hour played around the clock: a title comes back after about an hour.
void AddTitles(Recordset& table, const std::vector<MadeTitle>& titles) {
  for (const MadeTitle& made : titles) {
    table.AddNew();
    table.Set("FILENAME", made.path);
    table.Set("DUREE", made.lengthMs);
    table.Set("INTRO", int64_t{made.introSec});
    table.Set("AUTEUR", made.title->artist);
    table.Set("TITRE", made.title->title);
    table.Set("GENRE", made.title->genre);
    table.Set("VARIETE", made.title->variety);
    table.Set("ANNEE", made.title->year);
    table.Set("NBPASSJOUR", int64_t{24});
    table.Set("ECARTMINUTES", int64_t{30});
    table.Set("ECARTJOURS", int64_t{0});
    table.Set("ECARTARTISTE", int64_t{0});
    SetTranches(table, 1, kDays, [](int) { return kAllHours; });
    for (int i = 1; i <= 8; ++i) table.Set("DIFFUSION" + TwoDigits(i), "");
    table.Set("COMMENTAIRE", "");
    table.Set("POINTSORTIE", int64_t{made.exitPointMs});
    table.Set("LABEL", "DEMO");
    table.Set("CD", "");
    table.Set("AUTEURCOMPOSITEUR", made.title->artist);
    table.Set("REFERENCE", "");
    table.Set("MMJJDebut", "");
    table.Set("MMJJFin", "");
    table.Update();
  }
}

void AddJingle(Recordset& table, const MadeShort& made) {
  const std::string& hours = made.element->kind == ShortKind::kJingle ? kAllHours : kNoHour;
  table.AddNew();
  table.Set("FILENAME", made.path);
  table.Set("DUREE", made.lengthMs);
  table.Set("LIBELLE", made.element->label);
  table.Set("SURIMPRESSION", int64_t{made.element->overlay ? 1 : 0});
  SetTranches(table, 1, kDays, [&](int) { return hours; });
  table.Set("CODEASSOCIE", int64_t{0});
  table.Set("POINTSORTIE", int64_t{500});
  table.Set("AUTEURCOMPOSITEUR", "Zemo Demo");
  table.Set("MMJJDebut", "");
  table.Set("MMJJFin", "");
  table.Update();
}

void AddOther(Recordset& table, const MadeShort& made, int key) {
  table.AddNew();
  table.Set("FILENAME", made.path);
  table.Set("DUREE", made.lengthMs);
  table.Set("LIBELLE", made.element->label);
  table.Set("TOUCHE", int64_t{key});
  table.Set("POINTSORTIE", int64_t{500});
  table.Set("JingleRacro", int64_t{made.element->link ? 1 : 0});
  table.Update();
}

void AddCampaign(Recordset& table, const CampaignForm& campaign) {
  table.AddNew();
  WriteCampaign(campaign, table);
  table.Update();
}

// By night the pip sounds over the music, by day it cuts it.
void SetPips(Recordset& table, const std::string& path) {
  for (table.MoveFirst(); !table.Eof(); table.MoveNext()) {
    table.Edit();
    table.Set("FICHIER", path);
    table.Set("SURIMPRESSION", int64_t{table.Int("HEURE") < 6 ? -1 : 0});
    table.Update();
  }
}

void AddShorts(StationBase& base, const std::vector<MadeShort>& shorts, int year) {
  const auto jingles = base.Table("DiscothequeJingle");
  const auto others = base.Table("DiscothequeVirgule");
  const auto campaigns = base.Table("GrillePub");
  int key = 0, priority = 0;
  for (const MadeShort& made : shorts) {
    switch (made.element->kind) {
      case ShortKind::kJingle:
      case ShortKind::kBreakJingle:
        AddJingle(*jingles, made);
        break;
      case ShortKind::kOther:
        AddOther(*others, made, ++key);
        break;
      case ShortKind::kSpot:
      case ShortKind::kNews:
        AddCampaign(*campaigns, DemoCampaign(made, priority += 10, year));
        break;
      case ShortKind::kPip:
        SetPips(*base.Table("Toph"), made.path);
        break;
    }
  }
}

void AddModels(Recordset& table) {
  for (int day = 1; day <= kDays; ++day) {
    for (size_t genre = 0; genre < DemoGenres().size(); ++genre) {
      table.AddNew();
      table.Set("JOUR", int64_t{day});
      table.Set("GENRE", DemoGenres()[genre]);
      SetTranches(table, 0, kHours - 1,
                  [&](int hour) { return int64_t{DemoShare(genre, day, hour)}; });
      table.Update();
    }
  }
}

std::string PathOf(const std::vector<MadeShort>& shorts, std::string_view label) {
  const auto found = std::find_if(shorts.begin(), shorts.end(), [&](const MadeShort& made) {
    return made.element->label == label;
  });
  return found == shorts.end() ? std::string() : found->path;
}

// What a library that begins needs: short requests, no shift of the hours, and no gap between the
// artists of a handful of titles.
void SetSettings(Recordset& table) {
  table.MoveFirst();
  table.Edit();
  table.Set("CycleMaxi", int64_t{2147483647});  // this output needs no restart
  table.Set("TempRequette", int64_t{15});
  table.Set("EcartArtiste", int64_t{0});
  table.Set("DecalDiff", int64_t{0});
  table.Set("Langue", int64_t{LanguageOfLocale()});
  table.Update();
}

void SetDemoSettings(Recordset& table, const std::vector<MadeShort>& shorts) {
  table.MoveFirst();
  table.Edit();
  table.Set("JingleAvantPubs", PathOf(shorts, "Zemo Demo - Avant pubs"));
  table.Set("JingleApresPubs", PathOf(shorts, "Zemo Demo - Après pubs"));
  table.Set("OffsetTopH", int64_t{52});   // see MakePips
  table.Set("MiniFinHeure", int64_t{0});  // the pip is always on time
  table.Set("EcartArtiste", int64_t{5});
  table.Update();
}

// CODEs of a table in its order, of campaigns those of one kind.
std::vector<int64_t> Codes(Recordset& table, int wantedPub = -1) {
  std::vector<int64_t> codes;
  for (table.MoveFirst(); !table.Eof(); table.MoveNext()) {
    if (wantedPub < 0 || table.Bool("PUB") == (wantedPub == 1)) codes.push_back(table.Int("CODE"));
  }
  return codes;
}

// The stored list "Demo", number 1: an hour with all the kinds of elements that a list can hold,
// due every day at noon.
void AddStoredList(StationBase& base) {
  const auto playlist = base.Table("Playlist");
  const auto pls = base.Table("Pls");
  playlist->AddNew();
  playlist->Set("LADATE", "JOURNALIER");
  playlist->Set("LHEURE", "00:00");
  playlist->Set("LIBELLE", "Demo");
  playlist->Set("NOJINGLE", int64_t{0});
  playlist->Update();
  const int64_t list = playlist->Int("CODE");

  const auto add = [&](int64_t discotheque, int64_t fiche) {
    pls->AddNew();
    pls->Set("NUMPLS", list);
    pls->Set("DISCOTHEQUE", discotheque);
    pls->Set("FICHE", fiche);
    pls->Update();
  };
  const std::vector<int64_t> titles = Codes(*base.Table("Discotheque"));
  const std::vector<int64_t> jingles = Codes(*base.Table("DiscothequeJingle"));
  const std::vector<int64_t> others = Codes(*base.Table("DiscothequeVirgule"));
  const std::vector<int64_t> spots = Codes(*base.Table("GrillePub"), 1);
  const std::vector<int64_t> news = Codes(*base.Table("GrillePub"), 0);
  const auto addFrom = [&](int64_t kind, const std::vector<int64_t>& codes, size_t i) {
    if (!codes.empty()) add(kind, codes[i % codes.size()]);
  };
  addFrom(-1, jingles, 0);
  for (size_t i = 0; i < titles.size(); ++i) {
    add(titles[i], titles[i]);
    if (i % 12 == 3) addFrom(-1, jingles, (1 + i / 12) % 3);
    if (i % 12 == 7) addFrom(-5, others, i / 12);
    if (i % 20 == 9) {
      addFrom(-2, spots, i / 10);
      addFrom(-2, spots, i / 10 + 1);
    }
    if (i % 20 == 5) addFrom(-4, news, i / 20);
  }
}

}  // namespace

CampaignForm DemoCampaign(const MadeShort& made, int priority, int year) {
  const bool news = made.element->kind == ShortKind::kNews;
  CampaignForm form;
  form.LblDepartPub = form.LblFinPub = kDailyCampaign;
  if (!news && priority / 10 % 2 == 0) {
    form.LblDepartPub = DateText({year, 1, 1});
    form.LblFinPub = DateText({year, 12, 31});
  }
  form.HDepPub = news ? "06" : "07";
  form.HFinPub = news ? "21" : "20";
  form.DecoupagePub[0] = news ? "30" : "15";
  if (!news) form.DecoupagePub[1] = "45";
  form.FichierAudio = made.path;
  form.Longeur = std::to_string(made.lengthMs);
  form.ChAnnonceur = made.element->label;
  form.Categorie = made.element->category;
  form.FILENAMEGRILLE = SideFilePath(made.path, "GPB");
  form.ComboPriority = std::to_string(priority);
  form.OptPub = {!news, news};
  BuildCampaignGrid(form, 0, [] {});
  for (int row = kFirstMomentRow; row < form.GPub.RowCount(); ++row)
    for (int column = kFirstDayColumn; column < GridColumns(form.GPub); ++column)
      form.GPub.SetCell(row, column, std::string(kCross));
  return form;
}

void MakeBase(const std::string& path, const std::function<void(StationBase&)>& fill) {
  StationBase base(path);
  base.OpenOrCreateDatabase();
  base.CreateMissingTables([](const std::string& table, int number, const std::string& text) {
    throw StoreError(number, table + ": " + text);
  });
  base.OpenAllTables();
  base.SeedFixedRows();
  Transaction transaction(base.Db());
  AddModels(*base.Table("Models"));
  SetSettings(*base.Table("Cnf"));
  fill(base);
  transaction.Commit();
  base.Close();
}

void MakeDemoBase(const std::string& path, const std::vector<MadeTitle>& titles,
                  const std::vector<MadeShort>& shorts, int year) {
  MakeBase(path, [&](StationBase& base) {
    AddTitles(*base.Table("Discotheque"), titles);
    AddShorts(base, shorts, year);
    SetDemoSettings(*base.Table("Cnf"), shorts);
    AddStoredList(base);
  });
}

}  // namespace zemo
