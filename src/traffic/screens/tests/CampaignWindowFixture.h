// A station with campaigns and their window over it: QTest gives the keys and the mouse.
#pragma once

#include <QPushButton>
#include <QTest>
#include <memory>
#include <string>
#include <vector>

#include "support/Campaigns.h"
#include "traffic/screens/CampaignGridView.h"
#include "traffic/screens/CampaignOverview.h"
#include "traffic/screens/CampaignWindow.h"
#include "traffic/tests/CampaignFixture.h"
#include "ui/tests/WindowHands.h"

namespace zemo::test {

class CampaignScreenTest : public testing::Test {
 protected:
  void SetUp() override;
  void TearDown() override { window.reset(); }

  // The window at this size, shown and active, as the menu opens it.
  void Open(int width = 1280, int height = 800);
  // Bakery, weekly (1, priority 10), and Zoo from 21 to 25 November (2, priority 20); both from 07
  // to 08 h at 00 and 30, with sound files.
  void AddCampaigns();

  template <typename Control = QWidget>
  Control* Find(const char* name) {
    auto* control = window->findChild<Control*>(QString::fromUtf8(name));
    if (!control) ADD_FAILURE() << "the window has no " << name;
    return control;
  }
  void Click(const char* name, Qt::MouseButton button = Qt::LeftButton);
  void Type(const char* box, const std::string& text);  // in place of what stands there
  std::string Text(const char* name);                   // of a label, a button or a box
  bool On(const char* name) { return Find(name)->isEnabled(); }

  // --- the grid ---
  CampaignGridView& Grid() { return *Find<CampaignGridView>("GPub"); }
  QPoint At(int row, int column) { return Grid().Cell({row, column}).center(); }
  void ClickCell(int row, int column, Qt::MouseButton button = Qt::LeftButton,
                 Qt::KeyboardModifiers keys = Qt::NoModifier);
  void Drag(const std::vector<QPoint>& way, Qt::MouseButton button = Qt::LeftButton);
  void Key(Qt::Key key, Qt::KeyboardModifiers keys = Qt::NoModifier);  // in the grid
  void ReadLoads();                                                    // to their end
  QColor ColourAt(const QPoint& point);
  std::string TipAt(const QPoint& point);
  std::string Row(int row) { return RowText(window->Editor().GPub, row); }

  CampaignOverview& Overview() { return *Find<CampaignOverview>("PLPub"); }
  std::vector<std::string> OverviewColumn(int column);

  CampaignStation on;
  CampaignSources sources;
  std::unique_ptr<CampaignWindow> window;
};

}  // namespace zemo::test
