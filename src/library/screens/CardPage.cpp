#include "library/screens/CardPage.h"

#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSlider>

#include "library/MusicCard.h"
#include "station/TextForms.h"

namespace zemo {

namespace {

constexpr int kExitStepMs = 100, kExitPageMs = 1000;

}  // namespace

CardPage::CardPage(Station& station, LibraryEditor& editor, const LibraryOrders& orders,
                   const Translation& texts, QWidget* parent)
    : FieldPage(texts, parent), station_(station), editor_(editor), orders_(orders) {}

QWidget* CardPage::ExitPoint(const char* sliderName, const char* labelName, int32_t& ms) {
  auto* slider = Named(new QSlider(Qt::Horizontal, this), sliderName);
  slider->setRange(0, kLatestExitMs);
  slider->setSingleStep(kExitStepMs);
  slider->setPageStep(kExitPageMs);
  slider->setAccessibleName(texts_.Word("For.PointSortie"));
  connect(slider, &QSlider::valueChanged, this, [this, &ms](int value) {
    ms = value;
    Changed();
  });
  Follow([slider, &ms] {
    const QSignalBlocker silent(slider);
    slider->setValue(ms);
  });
  QLabel* label = Label(labelName, [&ms] { return SecondsText(ms); });
  return Beside({{slider, 1}, {label, 0}});
}

QPushButton* CardPage::WindowDay(const char* name, std::string& text, int mode) {
  QPushButton* day = Day(
      name, [&text] { return text.empty() ? QStringLiteral("- -") : ShownText(text); },
      [this, mode] { orders_.pickDay(mode); },
      [this, &text] {
        text.clear();
        Changed();
      });
  day->setToolTip(texts_.Word("WindowDayTip"));
  day->setAccessibleDescription(day->toolTip());
  return day;
}

QWidget* CardPage::Window(const char* from, std::string& fromText, int fromMode, const char* to,
                          std::string& toText, int toMode) {
  auto* first = new QLabel(texts_.Word("LblJ.0"), this);
  auto* last = new QLabel(texts_.Word("LblJ.1"), this);
  QPushButton* begin = WindowDay(from, fromText, fromMode);
  QPushButton* end = WindowDay(to, toText, toMode);
  begin->setAccessibleName(first->text());
  end->setAccessibleName(last->text());
  return Beside({{first, 0}, {begin, 1}, {last, 0}, {end, 1}});
}

}  // namespace zemo
