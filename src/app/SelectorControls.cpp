// The sound file selector as a script drives it.
#include "app/OfficeDesk.h"
#include "app/Orders.h"
#include "library/LibraryTexts.h"
#include "station/Station.h"

namespace zemo {

OfficeScreen SelectorScreenOf(OfficeDesk& desk) {
  Station& station = desk.station;
  SoundFileSelector& selector = desk.selector;
  OfficeScreen screen;
  const auto caption = [&screen](const char* name) {
    return CaptionIn(screen, SelectorCaptions(), name);
  };
  const auto button = [&](const char* name, void (*pressed)(Station&, SoundFileSelector&)) {
    return Button(name, caption(name), [&, pressed] { pressed(station, selector); });
  };

  screen.name = "selector";
  screen.title = caption("title");
  screen.open = [] { throw OrderError("the selector is opened by the screen that needs a file"); };
  screen.isOpen = [&selector] { return selector.open; };
  screen.close = [&desk] { desk.EndSelection(false); };

  std::vector<OfficeControl>& controls = screen.controls;
  const auto folder = [&](const char* name, std::string& shown, auto change) {
    OfficeControl control = TextBox(name, shown);
    control.put = change;
    controls.push_back(control);
  };
  folder("Drive1", selector.Drive1, [&](int, const std::string& drive) {
    if (!Selector::Drive1_Change(station, selector, drive))
      throw OrderError("there is no drive " + drive);
  });
  folder("Dir1", selector.Dir1, [&](int, const std::string& path) {
    if (!Selector::Dir1_Change(station, selector, path))
      throw OrderError("there is no folder " + path);
  });
  folder("FileName", selector.FileName,
         [&](int, const std::string& path) { Selector::FileName_Change(station, selector, path); });
  OfficeControl all = CheckBox("SelectAll", selector.SelectAll);
  all.put = [&](int, const std::string& text) {
    Selector::SelectAll_Click(station, selector, OnOrOff(text));
  };
  all.press = [&](int, bool) { Selector::SelectAll_Click(station, selector, !selector.SelectAll); };
  controls.push_back(all);
  controls.push_back(Button("BtnSelectAll", caption("BtnSelectAll"),
                            [&] { Selector::SelectAll_Click(station, selector, true); }));
  OfficeControl play = button("btnPlay", Selector::btnPlay_Click);
  play.on = [&selector] { return selector.btnPlayEnabled; };
  controls.push_back(play);
  controls.push_back(button("btnPause", Selector::btnPause_Click));
  controls.push_back(button("btnRestart", Selector::btnRestart_Click));
  controls.push_back(button("BtnStop", Selector::BtnStop_Click));
  OfficeControl bar = Slider("TrackBar", selector.TrackBar, 0, 0);
  bar.put = [&](int, const std::string& text) {
    Selector::TrackBar_Change(station, selector, NumberBetween(text, 0, selector.TrackBarMax));
  };
  controls.push_back(bar);
  controls.push_back(Label("LblTemp", [&selector] { return selector.LblTemp; }));
  controls.push_back(Label("LblOut", [&selector] { return selector.LblOut; }));
  controls.push_back(Button("BtnOk", caption("BtnOk"), [&desk] { desk.EndSelection(true); }));
  controls.push_back(
      Button("BtnCancel", caption("BtnCancel"), [&desk] { desk.EndSelection(false); }));

  OfficeList files;
  files.name = "File1";
  files.rows = [&selector] {
    Rows rows;
    for (const SoundFileSelector::File& file : selector.File1)
      rows.push_back({file.name, file.selected ? "X" : ""});
    return rows;
  };
  files.choose = [&](const std::vector<std::string>& values) {
    std::vector<size_t> rows;
    for (const std::string& value : values)
      rows.push_back(static_cast<size_t>(
          NumberBetween(value, 1, static_cast<int32_t>(selector.File1.size())) - 1));
    Selector::File1_Click(station, selector, rows);
  };
  screen.lists.push_back(files);
  return screen;
}

}  // namespace zemo
