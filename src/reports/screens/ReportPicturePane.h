// The pictures of the report as they stand beside its list, with what draws their figures: of
// millions of rows that takes its time, with pauses.
#pragma once

#include <QWidget>
#include <memory>
#include <optional>

#include "reports/ReportEditor.h"
#include "ui/Translation.h"

namespace zemo {

class HourPicture;
class SharePicture;
class TitlePicture;
struct Station;

// Thread: the logic's. It must not be destroyed while the editor counts work.
class ReportPicturePane : public QWidget {
 public:
  // Station, editor and texts outlive the pane.
  ReportPicturePane(Station& station, ReportEditor& editor, const Translation& texts,
                    QWidget* parent);
  void Arrange(double unit);
  // Shows what the list holds, if it can be seen, and the title of that row of the report.
  void Follow(std::optional<uint32_t> row);

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  using Rows = std::shared_ptr<const ReportRows>;
  struct Shown {
    Rows rows;
    std::optional<uint32_t> row;
    bool operator==(const Shown&) const = default;
  };
  void DrawWhenFree();
  void Draw();
  void DrawAll(const Rows& rows);
  void DrawTitle(const Shown& wanted);

  Station& station_;
  ReportEditor& editor_;
  HourPicture* hours_;
  TitlePicture* title_;
  SharePicture* shares_;
  Shown wanted_, shown_;
  bool drawing_ = false;
};

}  // namespace zemo
