#include "app/CampaignOptions.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <memory>

#include "app/Moments.h"
#include "station/TextForms.h"
#include "station/TimeForms.h"

namespace zemo {

namespace {

// Option texts as they were typed, before they are read.
struct TypedCampaign {
  std::string from, to, hours, marks, kind = "spot";
  bool weekly = false;
  std::vector<std::string> patterns, crosses;
};

[[noreturn]] void Refuse(const char* option, const std::string& text, const char* form) {
  throw UsageError(std::string(option) + ": '" + text + "' is no " + form);
}

std::optional<int> ReadNumber(std::string_view text, int low, int high) {
  const bool digits = !text.empty() && text.size() <= 3 &&
                      text.find_first_not_of("0123456789") == std::string_view::npos;
  const int number = digits ? ValInt(text) : -1;
  return number < low || number > high ? std::nullopt : std::optional(number);
}

// "7" or "7-9", each between low and high and in order.
std::optional<std::pair<int, int>> ReadRange(std::string_view text, int low, int high) {
  const size_t dash = text.find('-');
  const auto first = ReadNumber(text.substr(0, dash), low, high);
  const auto last =
      dash == std::string_view::npos ? first : ReadNumber(text.substr(dash + 1), low, high);
  if (!first || !last || *last < *first) return std::nullopt;
  return std::pair(*first, *last);
}

std::vector<std::string> CutAt(const std::string& text, char mark) {
  std::vector<std::string> parts(1);
  for (const char c : text) {
    if (c == mark)
      parts.emplace_back();
    else
      parts.back() += c;
  }
  return parts;
}

// "*", or ranges between commas, as marks in `set`, whose first stands for `low`.
template <size_t N>
bool ReadSet(const std::string& text, int low, std::array<bool, N>& set) {
  if (text == "*") {
    set.fill(true);
    return true;
  }
  for (const std::string& part : CutAt(text, ',')) {
    const auto range = ReadRange(part, low, low + static_cast<int>(N) - 1);
    if (!range) return false;
    for (int i = range->first; i <= range->second; ++i) set[static_cast<size_t>(i - low)] = true;
  }
  return true;
}

CrossPattern ReadPattern(const std::string& text) {
  CrossPattern pattern;
  const std::vector<std::string> parts = CutAt(text == "all" ? "*/*" : text, '/');
  if (parts.size() != 2 || !ReadSet(parts[0], 1, pattern.weekdays) ||
      !ReadSet(parts[1], 0, pattern.hours))
    Refuse("--crosses", text, "pattern (all, or WEEKDAYS/HOURS as in 1-5/7-9,17)");
  return pattern;
}

std::string ReadDay(const char* option, const std::string& text) {
  const auto day = ParseDay(text);
  if (!day) Refuse(option, text, "day YYYY-MM-DD");
  return DateText(*day);
}

SingleCross ReadCross(const std::string& text, bool weekly) {
  const std::vector<std::string> parts = CutAt(text, ' ');
  SingleCross cross;
  const auto time =
      parts.size() == 2 && parts[1].size() == 5 ? ParseTimeOfDay(parts[1] + ":00") : std::nullopt;
  if (!time) Refuse("--cross", text, weekly ? "'WEEKDAY hh:mm'" : "'YYYY-MM-DD hh:mm'");
  cross.moment = parts[1];
  if (weekly) {
    const auto weekday = ReadNumber(parts[0], 1, 7);
    if (!weekday) Refuse("--cross", text, "'WEEKDAY hh:mm' with 1 for Monday to 7");
    cross.weekday = *weekday;
  } else {
    cross.day = ReadDay("--cross", parts[0]);
  }
  return cross;
}

void ReadDates(const TypedCampaign& typed, CampaignOptions& options) {
  if (typed.weekly != (typed.from.empty() && typed.to.empty()))
    throw UsageError("a campaign is either --weekly or has --from and --to");
  if (typed.weekly) return;
  if (typed.from.empty() || typed.to.empty()) throw UsageError("--from and --to go together");
  options.from = ReadDay("--from", typed.from);
  options.to = ReadDay("--to", typed.to);
  const auto from = ParseDay(typed.from), to = ParseDay(typed.to);
  if (DateKey(*to) < DateKey(*from)) throw UsageError("--to lies before --from");
  if (DateSerial(*to) - DateSerial(*from) > 364)
    throw UsageError("--to: a campaign has 365 days at most");
}

void ReadMarks(const std::string& text, CampaignOptions& options) {
  std::vector<int> marks;
  for (const std::string& part : CutAt(text, ',')) {
    const auto mark = ReadNumber(part, 0, 59);
    if (!mark) Refuse("--marks", text, "list of minutes (0,15,30,45)");
    marks.push_back(*mark);
  }
  if (marks.size() > 8) throw UsageError("--marks: an hour has eight marks at most");
  options.marks = std::move(marks);
}

void ReadAdd(const TypedCampaign& typed, CampaignOptions& options) {
  if (typed.kind != "spot" && typed.kind != "news")
    throw UsageError("--kind: '" + typed.kind + "' is neither spot nor news");
  options.news = typed.kind == "news";
  if (options.file.empty()) throw UsageError("--file needs a name");
  if (options.priority < 10 || options.priority > 300 || options.priority % 10 != 0)
    throw UsageError("--priority: 10 to 300 in steps of 10");
  ReadDates(typed, options);
  if (!typed.hours.empty()) {
    options.hours = ReadRange(typed.hours, 0, 23);
    if (!options.hours) Refuse("--hours", typed.hours, "span of hours (7-20)");
  }
  if (!typed.marks.empty()) ReadMarks(typed.marks, options);
  for (const std::string& text : typed.patterns) options.patterns.push_back(ReadPattern(text));
  for (const std::string& text : typed.crosses)
    options.crosses.push_back(ReadCross(text, options.Weekly()));
  if (options.patterns.empty() && options.crosses.empty())
    options.patterns.push_back(ReadPattern("all"));
}

void AddAddOptions(CLI::App& add, CampaignOptions& options, TypedCampaign& typed) {
  add.add_option("--file", options.file, "Sound file")->type_name("FILE")->required();
  add.add_option("--advertiser", options.advertiser, "Label in every list (the file's name)");
  add.add_option("--from", typed.from, "First day")->type_name("YYYY-MM-DD");
  add.add_option("--to", typed.to, "Last day, at most 365 days in all")->type_name("YYYY-MM-DD");
  add.add_flag("--weekly", typed.weekly, "No dates: every week");
  add.add_option("--hours", typed.hours, "First and last hour, as in 7-20 (the last campaign's)")
      ->type_name("H-H");
  add.add_option("--marks", typed.marks, "Minutes of each hour, up to eight (the last campaign's)")
      ->type_name("M,M,...");
  add.add_option("--crosses", typed.patterns,
                 "all, or WEEKDAYS/HOURS as in 1-5/7-9,17 (1 is Monday); may be given again (all)")
      ->type_name("PATTERN")
      ->take_all();
  add.add_option("--cross", typed.crosses, "One moment; may be given again")
      ->type_name("\"DAY hh:mm\"")
      ->take_all();
  add.add_option("--priority", options.priority, "10 to 300; the lower goes first (100)");
  add.add_option("--category", options.category, "Category, in capitals");
  add.add_option("--contact", options.contact, "Free text");
  add.add_option("--kind", typed.kind, "spot or news (spot)");
  add.add_option("--genre", options.genre, "A music title of this genre follows the spot");
}

}  // namespace

ReadTyped DeclareCampaign(CLI::App& app, CommonOptions& common, CampaignOptions& options) {
  const auto typed = std::make_shared<TypedCampaign>();
  app.require_subcommand(1);
  const auto sub = [&](const char* name, const char* what) {
    CLI::App& its = *app.add_subcommand(name, what);
    AddFolders(its, common);
    return &its;
  };
  CLI::App* list = sub("list", "All campaigns, in order of passage");
  list->add_flag("--json", options.json, "One JSON array");
  CLI::App* show = sub("show", "A campaign's record and grid");
  show->add_option("CODE", options.code, "Number of the campaign")->required();
  show->add_flag("--json", options.json, "One JSON object");
  CLI::App* add = sub("add", "A new campaign with its grid");
  AddAddOptions(*add, options, *typed);
  CLI::App* remove = sub("remove", "Removes a campaign with its grid file");
  remove->add_option("CODE", options.code, "Number of the campaign")->required();
  return [&common, &options, typed, show, add, remove] {
    TakeFolders(common, options);
    if (show->parsed()) options.action = CampaignAction::kShow;
    if (remove->parsed()) options.action = CampaignAction::kRemove;
    if (!add->parsed()) return;
    options.action = CampaignAction::kAdd;
    ReadAdd(*typed, options);
  };
}

}  // namespace zemo
