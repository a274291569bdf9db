// The joins of the list at a glance: which have their voice track, which lack it, and whose track
// stands between others than it was made for.
#pragma once

#include <QListWidget>
#include <functional>
#include <vector>

#include "ui/Translation.h"
#include "voicetrack/TrackJoins.h"

namespace zemo {

class JoinList : public QListWidget {
 public:
  JoinList(const Translation& texts, QWidget* parent);  // the texts outlive it
  void Arrange(double unit);
  void Show(std::vector<TrackJoin> joins);  // redraws only what is another

  std::function<void(const TrackJoin& join)> chosen;  // by Return or a double click

 private:
  void Fill();

  const Translation& texts_;
  std::vector<TrackJoin> joins_;
};

}  // namespace zemo
