#include "ui/WindowPlace.h"

#include <QStringList>
#include <algorithm>
#include <array>
#include <string>

#include "platform/LocalValues.h"

namespace zemo {

namespace {
constexpr int kGap = 12;  // pixels between a box and what it speaks of

std::string NameOf(std::string_view window) {
  return "Place" + std::string(window);
}

int64_t Shown(const QRect& place, const QRect& screen) {
  const QRect part = place.intersected(screen);
  return int64_t{part.width()} * part.height();
}
}  // namespace

QRect Within(const QRect& place, const QList<QRect>& screens) {
  if (screens.empty()) return place;
  const QRect screen = *std::max_element(screens.begin(), screens.end(), [&](auto& a, auto& b) {
    return Shown(place, a) < Shown(place, b);
  });
  QRect whole(place.topLeft(), place.size().boundedTo(screen.size()));
  whole.moveLeft(std::clamp(whole.left(), screen.left(), screen.right() + 1 - whole.width()));
  whole.moveTop(std::clamp(whole.top(), screen.top(), screen.bottom() + 1 - whole.height()));
  return whole;
}

QPoint PlaceBeside(const QSize& box, const QRect& spokenOf, const QRect& window) {
  const QRect centred(window.center() - QPoint(box.width() / 2, box.height() / 2), box);
  QRect below = centred, above = centred, right = centred, left = centred;
  below.moveTop(spokenOf.bottom() + 1 + kGap);
  above.moveBottom(spokenOf.top() - 1 - kGap);
  right.moveLeft(spokenOf.right() + 1 + kGap);
  left.moveRight(spokenOf.left() - 1 - kGap);
  QRect best = centred;
  for (const QRect& wanted : {centred, below, above, right, left}) {
    const QRect place = Within(wanted, {window});
    if (Shown(place, spokenOf) < Shown(best, spokenOf)) best = place;
  }
  return best.topLeft();
}

std::optional<QRect> KeptPlace(const LocalValues& values, std::string_view window,
                               const QList<QRect>& screens) {
  const QString kept = QString::fromStdString(values.GetText(NameOf(window), ""));
  const QStringList words = kept.split(QChar(u','));
  std::array<int, 4> numbers{};
  if (words.size() != static_cast<qsizetype>(numbers.size())) return std::nullopt;
  for (size_t i = 0; i < numbers.size(); ++i) {
    bool number = false;
    numbers[i] = words[static_cast<qsizetype>(i)].toInt(&number);
    if (!number) return std::nullopt;
  }
  const auto [left, top, width, height] = numbers;
  if (width < 1 || height < 1) return std::nullopt;
  return Within({left, top, width, height}, screens);
}

void KeepPlace(LocalValues& values, std::string_view window, const QRect& place) {
  const QString text = QStringLiteral("%1,%2,%3,%4")
                           .arg(place.left())
                           .arg(place.top())
                           .arg(place.width())
                           .arg(place.height());
  values.Set(NameOf(window), text.toStdString());
}

}  // namespace zemo
