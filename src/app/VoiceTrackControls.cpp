// The voice track editor as a script drives it.
#include <functional>
#include <limits>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "app/OfficeDesk.h"
#include "app/Orders.h"
#include "engine/OperatorControls.h"
#include "station/Station.h"
#include "voicetrack/JoinPlan.h"
#include "voicetrack/TrackJoins.h"
#include "voicetrack/VoiceTrackScreen.h"
#include "voicetrack/VoiceTrackTexts.h"

namespace zemo {

namespace {

constexpr int32_t kMostMs = std::numeric_limits<int32_t>::max();
constexpr int32_t kMostDevice = 255;

// Puts the controls of the screen together.
class VoiceTrackTable {
 public:
  explicit VoiceTrackTable(OfficeDesk& desk)
      : desk_(desk), station_(desk.station), editor_(desk.voiceTrack) {}

  OfficeScreen Made() {
    screen_.name = "voicetrack";
    screen_.title = CaptionOf("title");
    screen_.open = [] { throw OrderError("the voice track editor is opened on a row"); };
    screen_.isOpen = [&editor = editor_] { return editor.open; };
    screen_.close = [&station = station_, &editor = editor_] {
      VoiceTracks::Form_Unload(station, editor);
    };
    AddNeighbours();
    AddTrack();
    AddPlace();
    AddJoin();
    AddSitting();
    AddMachine();
    return std::move(screen_);
  }

 private:
  std::function<std::string()> CaptionOf(std::string name) const {
    return CaptionIn(screen_, VoiceTrackCaptions(), std::move(name));
  }
  OfficeControl& Add(OfficeControl control) {
    return screen_.controls.emplace_back(std::move(control));
  }
  OfficeControl& AddLabel(const char* name, const std::string& text) {
    return Add(Label(name, [&text] { return text; }));
  }
  OfficeControl& AddLabel(const char* name, const int32_t& number) {
    return Add(Label(name, [&number] { return std::to_string(number); }));
  }
  template <typename Routine>
  OfficeControl& AddButton(const char* name, Routine routine) {
    return Add(Button(name, CaptionOf(name), [&station = station_, &editor = editor_, routine] {
      routine(station, editor);
    }));
  }
  // One that is off at times.
  template <typename Routine>
  void AddButton(const char* name, const bool& enabled, Routine routine) {
    AddButton(name, routine).on = [&enabled] { return enabled; };
  }

  void AddNeighbours();
  void AddTrack();
  void AddPlace();
  void AddBoxes();
  void AddJoin();
  void AddSitting();
  void AddFigure(const char* name, std::function<std::optional<int32_t>()> ms);
  void AddMachine();

  OfficeDesk& desk_;
  Station& station_;
  VoiceTrackEditor& editor_;
  OfficeScreen screen_;
};

void VoiceTrackTable::AddNeighbours() {
  AddLabel("FileAvant", editor_.FileAvant);
  AddLabel("Avant", editor_.Avant);
  AddLabel("PS1", editor_.PS1);
  AddLabel("InfoPS", editor_.InfoPS);
  AddLabel("FileApres", editor_.FileApres);
  AddLabel("Apres", editor_.Apres);
  AddLabel("Intro", editor_.Intro);
  AddLabel("LblIntro", editor_.LblIntro);
  AddLabel("Diffusion", editor_.Diffusion);
}

void VoiceTrackTable::AddTrack() {
  AddLabel("FileVoiceTrack", editor_.FileVoiceTrack);
  AddLabel("LblCodeVT", editor_.LblCodeVT);
  AddLabel("LblTimeVT", editor_.LblTimeVT);
  AddButton("BtnRecord", editor_.BtnRecordEnabled, VoiceTracks::BtnRecord_Click);
  AddButton("BtnStop", editor_.BtnStopEnabled, VoiceTracks::BtnStop_Click);
  AddButton("BtnPlay1", editor_.BtnPlay1Enabled, VoiceTracks::BtnPlay1_Click);
  AddButton("BntLoadVT", editor_.BntLoadVTEnabled,
            [&desk = desk_](Station& station, VoiceTrackEditor& editor) {
              if (const auto path = desk.PickPath())
                VoiceTracks::BntLoadVT_Click(station, editor, *path);
            });
  AddButton("BtnEditVT", editor_.BtnEditVTEnabled, VoiceTracks::BtnEditVT_Click);
  AddButton("BtnNormalize", editor_.BtnNormalizeEnabled, VoiceTracks::BtnNormalize_Click);
  AddButton("BtnUndoNormalize", editor_.BtnUndoNormalizeEnabled,
            VoiceTracks::BtnUndoNormalize_Click);
  Add(Label("Gauge", [] { return std::string(); })).on = [&editor = editor_] {
    return editor.GaugeVisible;
  };
  Add(Label("LblMicro", CaptionOf("LblMicro"))).on = [&editor = editor_] {
    return editor.LblMicroVisible;
  };
}

void VoiceTrackTable::AddPlace() {
  const auto cut = [&editor = editor_] { return editor.CheckCut; };
  AddLabel("LblPositionVT", editor_.LblPositionVT).put = [&editor = editor_](
                                                             int, const std::string& text) {
    VoiceTracks::LblPositionVT_Change(editor, NumberBetween(text, 0, kMostMs));
  };
  OfficeControl& exit = Add(Slider("PointSortie", editor_.PointSortie, 0, kMostMs));
  exit.on = cut;
  exit.put = [&editor = editor_](int, const std::string& text) {
    VoiceTracks::PointSortie_Change(editor, NumberBetween(text, 0, kMostMs));
  };
  AddLabel("LblPS", editor_.LblPS).on = cut;
  AddBoxes();
  AddButton("CmdVTToIntro", VoiceTracks::CmdVTToIntro_Click).on = [&editor = editor_] {
    return !editor.CheckCut;
  };
  AddButton("BtnSave", VoiceTracks::BtnSave_Click);
}

void VoiceTrackTable::AddBoxes() {
  const auto box = [&](const char* name, bool& ticked, auto click) -> OfficeControl& {
    OfficeControl& control = Add(CheckBox(name, ticked));
    control.put = [click](int, const std::string& text) { click(OnOrOff(text)); };
    control.press = [click, &ticked](int, bool) { click(!ticked); };
    return control;
  };
  box("CheckCut", editor_.CheckCut,
      [&editor = editor_](bool ticked) { VoiceTracks::CheckCut_Click(editor, ticked); });
  box("CheckTest", editor_.CheckTest, [&station = station_, &editor = editor_](bool ticked) {
    VoiceTracks::CheckTest_Click(station, editor, ticked);
  }).on = [&editor = editor_] { return editor.CheckTestEnabled; };
}

void VoiceTrackTable::AddJoin() {
  AddButton("BtnPplay2", VoiceTracks::BtnPplay2_Click);
  AddButton("BtnStop2", VoiceTracks::BtnStop2_Click);
  AddLabel("PoAvant", editor_.PoAvant);
  AddLabel("PoApres", editor_.PoApres);
  AddLabel("PoVT", editor_.PoVT);
}

// Empty where there is nothing to count.
void VoiceTrackTable::AddFigure(const char* name, std::function<std::optional<int32_t>()> ms) {
  Add(Label(name, [ms = std::move(ms)] {
    const auto shown = ms();
    return shown ? ShownFigure(*shown) : std::string();
  }));
}

void VoiceTrackTable::AddSitting() {
  AddButton("BtnReprise", VoiceTracks::BtnReprise_Click);
  AddButton("BtnPrecedent", VoiceTracks::BtnPrecedent_Click);
  AddButton("BtnSuivant", VoiceTracks::BtnSuivant_Click);
  AddFigure("LblARemplir", [&editor = editor_] { return TimeToFillMs(editor); });
  AddFigure("LblDecompte", [&station = station_, &editor = editor_] {
    return VoiceTracks::CountdownMs(station, editor);
  });

  OfficeList joins;
  joins.name = "ListJoins";
  joins.rows = [&station = station_, &editor = editor_, langue = screen_.langue] {
    Rows rows;
    for (const TrackJoin& join : JoinsOf(station.PL, editor))
      rows.push_back({join.titleBefore, join.titleAfter, ShownState(join, *langue)});
    return rows;
  };
  joins.choose = [&station = station_, &editor = editor_](const std::vector<std::string>& values) {
    const std::vector<TrackJoin> all = JoinsOf(station.PL, editor);
    const auto most = static_cast<int32_t>(all.size());
    for (const std::string& value : values)
      VoiceTracks::OpenJoin(station, editor,
                            all[static_cast<size_t>(NumberBetween(value, 1, most) - 1)]);
  };
  screen_.lists.push_back(std::move(joins));
}

void VoiceTrackTable::AddMachine() {
  Add(Slider("SpinPreRoll", editor_.SpinPreRoll, 0, VoiceTracks::kMostPreRollSec));
  Add(Slider("LevelNormalize", editor_.LevelNormalize, VoiceTracks::kLeastLufs,
             VoiceTracks::kMostLufs));
  Add(Slider("VoiceTrackInputID", editor_.VoiceTrackInputID, 0, kMostDevice)).put =
      [&station = station_, &editor = editor_](int, const std::string& text) {
        VoiceTracks::VoiceTrackInputID_Change(station, editor, NumberBetween(text, 0, kMostDevice));
      };
  Add(Slider("VoiceTrackOututID", editor_.VoiceTrackOututID, 0, kMostDevice)).put =
      [&station = station_, &editor = editor_](int, const std::string& text) {
        VoiceTracks::VoiceTrackOututID_Change(station, editor, NumberBetween(text, 0, kMostDevice));
      };
  AddButton("BtnLatence", VoiceTracks::BtnLatence_Click);
  Add(Label("LblLatence", [&editor = editor_] {
    return editor.LblLatence < 0 ? std::string() : std::to_string(editor.LblLatence);
  }));
  OfficeControl& measured = Add(CheckBox("CheckLatence", editor_.CheckLatence));
  measured.put = [&editor = editor_](int, const std::string& text) {
    VoiceTracks::CheckLatence_Click(editor, OnOrOff(text));
  };
  measured.press = [&editor = editor_](int, bool) {
    VoiceTracks::CheckLatence_Click(editor, !editor.CheckLatence);
  };
  measured.on = [&editor = editor_] { return editor.LblLatence >= 0; };
  AddLabel("LblEditeur", editor_.LblEditeur);
  AddButton("BtnChoseEditeur", [&desk = desk_](Station&, VoiceTrackEditor& editor) {
    if (const auto path = desk.PickPath()) VoiceTracks::BtnChoseEditeur_Click(editor, *path);
  });
  AddButton("BtnTableMixage", [](Station& station, VoiceTrackEditor&) {
    VoiceTracks::BtnTableMixage_Click(station);
  });
}

}  // namespace

OfficeScreen VoiceTrackScreenOf(OfficeDesk& desk) {
  return VoiceTrackTable(desk).Made();
}

void OfficeDesk::OpenVoiceTrack(int row) {
  if (row < 1 || row > station.PL.Count())
    throw OrderError("there is no row " + std::to_string(row));
  OnAir::BntVoiceTrack_Click(station, voiceTrack, row);
  Settle();
}

}  // namespace zemo
