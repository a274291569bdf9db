// The table of the commands: name, help, uses, options, what it does. README.md has the uses, too,
// and a test holds the one against the other.
#include "app/Commands.h"

namespace zemo {

std::span<const Command> Commands() {
  static const Command commands[] = {
      MakeCommand<AirOptions>("", "Zemo Radio: a station's air, automated",
                              {{"[--station DIR] [--machine DIR] [--output SPEC] [--for DURATION | "
                                "--for-exactly DURATION]",
                                "opens the on-air screen; without a display as `run`"}},
                              DeclareAir, OpenScreen),
      MakeCommand<AirOptions>("run", "Go on air without a screen, until interrupted",
                              {{"run [--station DIR] [--machine DIR] [--output SPEC] [--for "
                                "DURATION | --for-exactly DURATION]",
                                "goes on air without a screen, until interrupted"}},
                              DeclareAir, RunOnAir),
      MakeCommand<SimulateOptions>(
          "simulate", "The air on a virtual clock",
          {{"simulate [--station DIR] [--machine DIR] [--from T] [--for DURATION] [--script FILE] "
            "[--trace FILE] [--choices FILE] [--in-place] [--no-start]",
            "the same air on a virtual clock, a day in seconds; every event goes to the trace, a "
            "JSON line each"}},
          DeclareSimulate, RunSimulate),
      MakeCommand<RenderOptions>(
          "render", "As simulate, with the sound in a file",
          {{"render ... --audio FILE",
            "as `simulate`, and the sound that would have left the output in a WAV or FLAC file"}},
          DeclareRender, RunRender),
      MakeCommand<NewStationOptions>("demo", "Make a demo station",
                                     {{"demo DIR", "makes a demo station"}}, DeclareNewStation,
                                     RunDemoCommand),
      MakeCommand<NewStationOptions>(
          "new", "Make an empty station",
          {{"new DIR",
            "makes a station without music, in a folder that is missing or empty: genres, models "
            "of a week, settings; no pips, no campaigns"}},
          DeclareNewStation, RunNewCommand),
      MakeCommand<StationOptions>(
          "check", "Say what is missing or broken in a station",
          {{"check [DIR | --station DIR] [--machine DIR]",
            "says what is missing or broken in a station, a line each: lost or damaged files, "
            "empty models, breaks of the coming week that run into each other, genres that the "
            "library cannot fill at its gaps, titles that can never play, voice tracks that do not "
            "stand between the elements that they were made for, tables of an older "
            "version; changes nothing"}},
          DeclareCheck, RunCheckCommand),
      MakeCommand<ImportOptions>(
          "import", "Add sound files to the library",
          {{"import [--station DIR] [--machine DIR] [--kind music|jingle|other] [--dry-run] "
            "[--json] PATH...",
            "adds sound files, and folders with all that is in them, as cards: from their exchange "
            "files, else from their tags; says of each whether it was added, known already or "
            "refused and why, then finds the exit points of the new titles by ear"}},
          DeclareImport, RunImportCommand),
      MakeCommand<WhyOptions>(
          "why", "Say why a title may not play, or why it did",
          {{"why [--station DIR] [--machine DIR] --code N [--at T] [--json]",
            "may this music title play at that moment, and if not, every reason, each with the "
            "moment from which it may; changes nothing"},
           {"why [--station DIR] [--machine DIR] --report CODE [--json]",
            "what the request that brought this row of the report saw: candidates, refusals, the "
            "budget that took the title"},
           {"why --choices FILE --report CODE [--json]",
            "the same for a row of a simulation, out of the file that its `--choices` made"}},
          DeclareWhy, RunWhyCommand),
      MakeCommand<ModelsOptions>("models", "The week's models, out of the station",
                                 {{"models list [--station DIR] [--machine DIR]",
                                   "the week's models, percentages or skeleton as the station uses "
                                   "them, cells between tabs"},
                                  {"models export [--station DIR] [--machine DIR] FILE.xlsx",
                                   "the same as a spreadsheet"}},
                                 DeclareModels, RunModelsCommand),
      MakeCommand<GridOptions>("grid", "The spot and news breaks of a day",
                               {{"grid [--station DIR] [--machine DIR] [--day YYYY-MM-DD] [--json]",
                                 "the spot and news breaks of a day, with what will go wrong with "
                                 "them; changes nothing"}},
                               DeclareGrid, RunGridCommand),
      MakeCommand<AffidavitOptions>("affidavit", "What became of every cross of an advertiser",
                                    {{"affidavit [--station DIR] [--machine DIR] --advertiser NAME "
                                      "--from DAY --to DAY [--csv FILE] [--xlsx FILE] [--json]",
                                      "every cross of an advertiser: when it was due, when it "
                                      "aired by the report, or why it did not"}},
                                    DeclareAffidavit, RunAffidavitCommand),
      MakeCommand<ReportOptions>(
          "report", "What went on air, and how often",
          {{"report [--station DIR] [--machine DIR] --from DAY --to DAY [--artist T] [--genre T] "
            "[--variety T] [--stats] [--json] [--txt FILE] [--xlsx FILE]",
            "the rows of the broadcast report that begin as the filters say, each with the time up "
            "to the next; with `--stats` how often each title ran and the shares of the "
            "varieties; changes nothing"}},
          DeclareReport, RunReportCommand),
      MakeCommand<SettingsOptions>(
          "settings", "Show and change the settings",
          {{"settings [--station DIR] [--machine DIR] [list [--json] | get NAME [--json] | set "
            "NAME VALUE]",
            "the settings with their meaning, unit, range and default; one value; a new value"}},
          DeclareSettings, RunSettingsCommand),
      MakeCommand<DevicesOptions>(
          "devices", "The sound devices of this machine",
          {{"devices [--machine DIR] [--json]",
            "the sound devices of this machine: name, sound system, rates, channels, which is the "
            "default, which is used for the air and which for prelistening"}},
          DeclareDevices, RunDevicesCommand),
      MakeCommand<CtlOptions>(
          "ctl", "Ask a program on air, or give it an order",
          {{"ctl [--machine DIR] [--json] [status]",
            "what the program on air with that machine's folder plays, and what comes next"},
           {"ctl [--machine DIR] [--json] ORDER [ARGS]",
            "gives it an order of the operator, as a script gives it: `start`, `stop`, `next`, "
            "`mode`, `request`, `insert`, `move`, `delete`, `overlay` and the others"},
           {"ctl [--machine DIR] watch",
            "its events as they happen, as the lines of a trace, until interrupted"},
           {"ctl [--machine DIR] watch status",
            "its status as JSON whenever it has changed, until interrupted"},
           {"ctl [--machine DIR] [--json] metrics",
            "its figures, in the text form that Prometheus reads"}},
          DeclareCtl, RunCtlCommand),
      MakeCommand<CampaignOptions>(
          "campaign", "List, show, add or remove advertisers' campaigns",
          {{"campaign list [--station DIR] [--machine DIR] [--json]", "the advertisers' campaigns"},
           {"campaign show [--station DIR] [--machine DIR] CODE [--json]",
            "one of them with its grid"},
           {"campaign add [--station DIR] [--machine DIR] --file FILE ...",
            "a new campaign with its grid"},
           {"campaign remove [--station DIR] [--machine DIR] CODE",
            "takes one away with its grid file"}},
          DeclareCampaign, RunCampaignCommand),
      MakeCommand<StationOptions>("compact", "Repair and compact a station's base",
                                  {{"compact [--station DIR] [--machine DIR]",
                                    "repairs and compacts the base as the first start of a month "
                                    "does; refused while anything else has it open"}},
                                  DeclareCompact, RunCompactCommand),
      MakeCommand<MoveOptions>(
          "move", "Carry a station's base to a server, or back into its file",
          {{"move [--station DIR] [--machine DIR] --to URL|file",
            "carries the whole base to the PostgreSQL server of that URL, or from there into a "
            "file, says of each table its rows and checksum, which it has compared on both sides, "
            "and keeps the base as it was; refused while anything else has it open"}},
          DeclareMove, RunMoveCommand),
      MakeCommand<RightsOptions>(
          "rights", "Say what a role of the server may do with a station's base",
          {{"rights [--station DIR] [--machine DIR] read|work|own ROLE",
            "gives a role of the server on which the base stands the right to read it, to work in "
            "it, or to own it, with all tables that it will have, and takes what it might beyond "
            "that; for who owns the base"}},
          DeclareRights, RunRightsCommand),
  };
  return commands;
}

}  // namespace zemo
