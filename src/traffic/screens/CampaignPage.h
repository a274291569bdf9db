// The record of a campaign: its fields in the window.
#pragma once

#include <functional>

#include "traffic/CampaignEditor.h"
#include "ui/FieldPage.h"

namespace zemo {

// What the page asks of its window, which shows afterwards what became of it.
struct CampaignOrders {
  std::function<void(std::function<void()> order)> run;   // answers at once
  std::function<void(std::function<void()> order)> work;  // may ask: waits for a free moment
  std::function<void()> chooseFile;
  std::function<void(int mode)> pickDay;  // 1 the start, 2 the end
  std::function<void()> shown;            // the fields are, also as they were typed in
};

class CampaignPage : public FieldPage {
 public:
  // Station, editor, orders and texts outlive the page.
  CampaignPage(Station& station, CampaignEditor& editor, const CampaignOrders& orders,
               const Translation& texts, QWidget* parent);
  void BeginEntry();  // of a new record: the keys go to its first field

 private:
  QWidget* Kind();
  QWidget* Category();
  QWidget* Days();
  QWidget* Division();
  QWidget* SoundFile();

  Station& station_;
  CampaignEditor& editor_;
  QLineEdit* firstHour_ = nullptr;
  const CampaignOrders& orders_;
};

}  // namespace zemo
