// The screen in four languages and four sizes: no text is cut, no control overlaps another, every
// control can be reached and names itself. Pictures are kept for a person to look at.
#include <QAbstractButton>
#include <QAction>
#include <QComboBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QStyle>
#include <QStyleOptionComboBox>

#include "engine/OperatorControls.h"
#include "engine/screens/OnAirWindowTexts.h"
#include "engine/screens/tests/ScreenFixture.h"
#include "platform/Waveforms.h"
#include "traffic/DayGridComposition.h"
#include "ui/FitLabel.h"

namespace zemo::test {
namespace {

struct Size {
  int width, height;
};
constexpr Size kSizes[] = {{800, 600}, {1024, 768}, {1280, 800}, {1920, 1080}};
constexpr const char* kLanguageNames[] = {"fr", "en", "pt", "es"};

std::string NameOf(const QWidget& widget) {
  return widget.objectName().isEmpty()
             ? std::string(widget.metaObject()->className()) + " in " +
                   (widget.parentWidget() ? widget.parentWidget()->objectName().toStdString() : "")
             : widget.objectName().toStdString();
}

bool IsControl(const QWidget& widget) {
  return qobject_cast<const QLabel*>(&widget) || qobject_cast<const QAbstractButton*>(&widget) ||
         qobject_cast<const QComboBox*>(&widget) || qobject_cast<const QLineEdit*>(&widget);
}

int TextWidth(const QWidget& widget, const QString& text) {
  QString plain = text;
  return widget.fontMetrics().size(0, plain.remove(u'&')).width();
}

// What of a control's text does not fit into it; empty for none.
std::string CutText(const QWidget& widget) {
  if (const auto* fit = dynamic_cast<const FitLabel*>(&widget)) {
    if (fit->Shortened() && fit->toolTip() != fit->text()) return "shortened without a tool tip";
    return {};
  }
  if (const auto* label = qobject_cast<const QLabel*>(&widget)) {
    const QSize room = label->contentsRect().size();
    if (TextWidth(*label, label->text()) > room.width()) return label->text().toStdString();
    return label->fontMetrics().height() > room.height() + 4 ? "too low" : "";
  }
  if (const auto* button = qobject_cast<const QAbstractButton*>(&widget)) {
    if (button->text().isEmpty()) return {};
    const int needed = button->minimumSizeHint().width();
    return needed > button->width() ? button->text().toStdString() : "";
  }
  if (const auto* combo = qobject_cast<const QComboBox*>(&widget)) {
    QStyleOptionComboBox option;
    option.initFrom(combo);
    option.editable = combo->isEditable();
    const QRect room = combo->style()->subControlRect(QStyle::CC_ComboBox, &option,
                                                      QStyle::SC_ComboBoxEditField, combo);
    if (combo->objectName() == "ComboPLS") return {};  // the station's own texts
    return TextWidth(*combo, combo->currentText()) > room.width()
               ? combo->currentText().toStdString()
               : "";
  }
  return {};
}

QRect OnScreen(const QWidget& widget, const QWidget& window) {
  return {widget.mapTo(&window, QPoint()), widget.size()};
}

// A song's shape: quiet at both ends, with verses and choruses.
class Song : public Waveforms {
 public:
  std::shared_ptr<const WavePeaks> PeaksOf(const std::string&) override { return shape_; }
  std::shared_ptr<const WavePart> PartOf(const std::string&, int64_t, int64_t, size_t) override {
    return nullptr;
  }

 private:
  static std::shared_ptr<const WavePeaks> Shape() {
    auto peaks = std::make_shared<WavePeaks>(kWavePeaks);
    for (size_t i = 0; i < kWavePeaks; ++i) {
      const bool chorus = i / 140 % 2 == 1;
      const size_t end = std::min(i, kWavePeaks - 1 - i);
      const size_t full = (chorus ? 205 : 130) + i * 7919 % 45;
      (*peaks)[i] = static_cast<uint8_t>(std::min(full, 40 + end * 4));
    }
    return peaks;
  }
  std::shared_ptr<const WavePeaks> shape_ = Shape();
};

class Sweep : public Screen {
 protected:
  Song song;
  // A station with something in every figure.
  void Prepare(int langue) {
    on.Load();
    on.Set("Langue", std::to_string(langue));
    on.station.base.CheckCnf();
    ASSERT_TRUE(ComposeDayGrid(on.station));  // whose heads have their language then
    for (int i = 1; i <= 14; ++i)
      on.AppendCard(on.AddCard(
          {.lengthMs = 185000 + i * 7000,
           .artist = i == 2 ? "THE ORCHESTRA OF A LONG NAME INDEED" : "ARTIST " + std::to_string(i),
           .title =
               i == 2 ? "A title that goes on for quite a while" : "Title " + std::to_string(i),
           .genre = "POP",
           .exitMs = 4000,
           .introSec = 14}));
    OnAirElement spot{};
    spot.title = "BAKERY";
    spot.genre = "PUB";
    spot.code = -2;
    spot.lengthMs = 30000;
    on.station.PL.Insert(4, spot);
    DayGrid& grid = on.station.GPubJour;
    for (int row = 1; row <= 12; ++row) {
      grid.SetCell(row, 0, (row < 8 ? "0" : "1") + std::to_string((row + 2) % 10) + ":30");
      grid.SetCell(row, 1, "02:10");
      grid.SetCell(row, 2, row % 3 ? "Pubs" : "Rubriques");
      for (int column = 3; column < 7; ++column)
        grid.SetCell(row, column, "Advertiser " + std::to_string(column));
    }
    sources.waveforms = &song;
    sources.output = [] {
      return OutputFigures{"HDA Intel PCH: ALC257", true, 0, 0, 0.55F, 0.42F};
    };
    sources.freeDiskBytes = [] { return int64_t{182'400'000'000}; };
    on.Sql("UPDATE Toph SET FICHIER = '/pip.wav', JOURSEMAINE = 'XXXXXXX'");
  }
  void CheckAll(const std::string& where) {
    QList<QWidget*> controls;
    for (QWidget* widget : window->findChildren<QWidget*>())
      if (widget->isVisible() && IsControl(*widget)) controls << widget;
    ASSERT_GT(controls.size(), 30);
    for (int column = 0; column < kColumns; ++column) {
      if (!List().isVisible() || List().isColumnHidden(column)) continue;
      EXPECT_GE(List().columnWidth(column), List().horizontalHeader()->sectionSizeHint(column) - 6)
          << where << ": head " << column;
    }
    const QRect whole = window->rect();
    for (QWidget* widget : controls) {
      const std::string cut = CutText(*widget);
      EXPECT_TRUE(cut.empty()) << where << ": " << NameOf(*widget) << ": " << cut;
      EXPECT_TRUE(whole.contains(OnScreen(*widget, *window)))
          << where << ": " << NameOf(*widget) << " leaves the window";
    }
    for (int i = 0; i < controls.size(); ++i)
      for (int j = i + 1; j < controls.size(); ++j) {
        if (controls[i]->isAncestorOf(controls[j]) || controls[j]->isAncestorOf(controls[i]))
          continue;
        EXPECT_FALSE(OnScreen(*controls[i], *window).intersects(OnScreen(*controls[j], *window)))
            << where << ": " << NameOf(*controls[i]) << " overlaps " << NameOf(*controls[j]);
      }
  }
};

class SweepOf : public Sweep, public testing::WithParamInterface<int> {};

TEST_P(SweepOf, NothingIsCutAndNothingOverlapsInAnyMode) {
  const int langue = GetParam();
  Prepare(langue);
  Open();
  Click("Toolbar1_5");
  Run(42000);
  for (const Size& size : kSizes) {
    window->resize(size.width, size.height);
    QCoreApplication::processEvents();
    ASSERT_EQ(window->size(), QSize(size.width, size.height));
    for (const char* mode : {"1", "2", "3"}) {
      Click((std::string("Toolbar1_") + mode).c_str());
      QCoreApplication::processEvents();
      Draw();
      const std::string where =
          std::string(kLanguageNames[langue]) + "-" + std::to_string(size.width) + "-mode" + mode;
      CheckAll(where);
      KeepPicture(*window, where);
    }
    Click("Toolbar1_1");
  }
}

INSTANTIATE_TEST_SUITE_P(Languages, SweepOf, testing::Values(0, 1, 2, 3), [](const auto& language) {
  return std::string(kLanguageNames[language.param]);
});

TEST_F(Sweep, EveryControlHasATextOrANameForScreenReaders) {
  Prepare(0);
  Open();
  Click("Toolbar1_2");
  for (const char* name : {"Toolbar1_1",   "Toolbar1_2",       "Toolbar1_3",
                           "Toolbar1_5",   "Toolbar1_6",       "CmdStop",
                           "CmdRequette",  "BtnSurImpression", "BntVoiceTrack",
                           "PL",           "ListRech",         "MenuLive",
                           "Rech",         "RechGenre",        "CheckExtrait",
                           "OptionDirect", "CheckNoJingle",    "CmdMarqueurExtrait",
                           "ComboPLS",     "LblDate",          "ChHeure",
                           "OptPls",       "BtnSauve",         "BtnNew",
                           "GPubJour",     "BtnCopyPub",       "BtnImpressionPub",
                           "BtnPubJourX",  "BtnPrevision",     "Info",
                           "VuMettre",     "MMLevelX1"}) {
    QWidget* control = Find(name);
    auto* button = qobject_cast<QAbstractButton*>(control);
    EXPECT_TRUE(!control->accessibleName().isEmpty() || (button && !button->text().isEmpty()))
        << name;
  }
}

TEST_F(Sweep, EveryButtonAndBoxIsReachedByTheTabKey) {
  Prepare(0);
  Open();
  Click("Toolbar1_2");
  for (QWidget* widget : window->findChildren<QWidget*>()) {
    const bool works = qobject_cast<QAbstractButton*>(widget) || qobject_cast<QComboBox*>(widget) ||
                       qobject_cast<QLineEdit*>(widget);
    const bool part = widget->objectName().isEmpty() || widget->objectName().startsWith("qt_");
    if (!works || part) continue;
    EXPECT_TRUE(widget->focusPolicy() & Qt::TabFocus) << NameOf(*widget);
  }
}

TEST_F(Sweep, TextsThatNoLanguageCoversStandInFrench) {
  const Translation unknown(OnAirWindowTexts(), 9);
  for (const ScreenText& row : OnAirWindowTexts().controls) {
    ASSERT_TRUE(row.texts[0]) << row.control;
    EXPECT_EQ(unknown.Text(row.control, row.property).toStdString(), row.texts[0]) << row.control;
  }
}

TEST_F(Sweep, TheLanguageIsReadWhenTheScreenOpens) {
  Prepare(1);
  Open();
  EXPECT_EQ(Text("Toolbar1_5"), "Start");
  EXPECT_EQ(Text("BtnPubJourX"), "See the day from");
  EXPECT_EQ(window->findChild<QAction*>("MnuRapport")->text(), "Broadcast &report...");
  EXPECT_EQ(List().model()->headerData(Col::kTitle, Qt::Horizontal).toString(), "Artist");
  on.Set("Langue", "2");
  Run(2000);
  EXPECT_EQ(Text("Toolbar1_5"), "Start");  // as loaded
}

TEST_F(Sweep, FramesOfTheHeaderStandStillWhileTheAirGoesOn) {
  Prepare(0);
  Open();
  Click("Toolbar1_5");
  const auto places = [&] {
    std::vector<QRect> rects;
    for (const char* name : {"LblArtiste", "VuMettre", "Temp", "hh", "ss", "InfoDate", "LblMode",
                             "TileNextWhat", "TileBreakWhat", "PL", "CmdRequette", "LblInfo"})
      rects.push_back(OnScreen(*Find(name), *window));
    return rects;
  };
  Run(500);
  const auto before = places();
  for (int step = 0; step < 40; ++step) {
    Run(9000);
    QCoreApplication::processEvents();
    ASSERT_EQ(places(), before) << "after " << nowMs << " ms";
  }
}

}  // namespace
}  // namespace zemo::test
