// Lists as lines of capitals, and field files.
#include "app/demo/DemoSideFiles.h"

#include <algorithm>

#include "station/SideFileText.h"
#include "traffic/CampaignFiles.h"
#include "traffic/CampaignGrid.h"

namespace zemo {
namespace {

std::string Lines(const std::vector<std::string>& lines) {
  return EncodeSideFile(JoinLines(lines));
}

std::vector<std::string> Categories() {
  std::vector<std::string> categories;
  for (const DemoShort& element : DemoShorts()) {
    const std::string category = element.category;
    if (!category.empty() &&
        std::find(categories.begin(), categories.end(), category) == categories.end()) {
      categories.push_back(category);
    }
  }
  return categories;
}

// The template of the next campaign: hours, then the eight marks.
std::string DivisionTemplate() {
  CampaignForm form;
  form.HDepPub = "07";
  form.HFinPub = "20";
  form.DecoupagePub[0] = "15";
  form.DecoupagePub[1] = "45";
  return EncodeSideFile(MarksText(form));
}

// A weekday's model as the editor keeps it: a line a genre, its hours behind tabs, totals last.
std::string ModelFile(int day) {
  std::vector<std::string> lines;
  std::vector<int> totals(24);
  for (size_t genre = 0; genre < DemoGenres().size(); ++genre) {
    std::string line = DemoGenres()[genre];
    for (int hour = 0; hour < 24; ++hour) {
      const int share = DemoShare(genre, day, hour);
      totals[static_cast<size_t>(hour)] += share;
      line += '\t' + std::to_string(share);
    }
    lines.push_back(line);
  }
  std::string line = "Total %";
  for (const int total : totals) line += '\t' + std::to_string(total) + " %";
  lines.push_back(line);
  return Lines(lines);
}

}  // namespace

std::vector<SideFile> NewSideFiles() {
  const char* const rule =
      "/*----------------------------------------------------------------------------------------"
      "------------*/";
  std::vector<SideFile> files = {
      {"Genre.Txt", Lines({DemoGenres().begin(), DemoGenres().end()})},
      {"Langue.Txt", Lines({"0"})},
      {"Instrumental.Txt", Lines(std::vector<std::string>(24, BoolField(true)))},
      {"LectureBase.Txt",
       Lines({"0", QuotedField(rule),
              QuotedField(
                  "/* Paramètre pour calculer le nombre de fiches dans la discothèque musique"),
              QuotedField("/* à analyser dans un requête ex: 0 = lecture total de la disothèque "
                          "15 = 15x30 minutes = 450 titres"),
              QuotedField(rule)})},
  };
  const char* const days[] = {"Lundi",    "Mardi",  "Mercredi", "Jeudi",
                              "Vendredi", "Samedi", "Dimanche"};
  for (int day = 1; day <= 7; ++day)
    files.push_back({std::string(days[day - 1]) + ".Txt", ModelFile(day)});
  return files;
}

std::vector<SideFile> DemoSideFiles() {
  std::vector<SideFile> files = NewSideFiles();
  files.push_back({"Categori.Ini", Lines(Categories())});
  files.push_back({"Labels.Txt", Lines({"DEMO"})});
  files.push_back({"CD.Txt", Lines({"DEMO"})});
  files.push_back({"Decoupe.Ini", DivisionTemplate()});
  return files;
}

}  // namespace zemo
