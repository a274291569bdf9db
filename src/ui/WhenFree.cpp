#include "ui/WhenFree.h"

#include <QTimer>
#include <utility>

#include "engine/FreeMoment.h"

namespace zemo {

namespace {
constexpr int kAskAgainMs = 20;
}

void WhenFree(const Station& station, QObject* owner, std::function<void()> order) {
  if (IsFreeMoment(station)) return order();
  QTimer::singleShot(kAskAgainMs, owner, [&station, owner, order = std::move(order)]() mutable {
    WhenFree(station, owner, std::move(order));
  });
}

}  // namespace zemo
