// The settings' window in four languages and three sizes: no text is cut, no control overlaps
// another, every control names itself. Pictures are kept for a person to look at.
#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QSlider>
#include <QSpinBox>
#include <QStyle>
#include <QStyleOptionComboBox>
#include <QTabBar>
#include <QTableWidget>

#include "settings/SettingsTexts.h"
#include "settings/screens/tests/SettingsWindowFixture.h"

namespace zemo::test {
namespace {

struct Size {
  int width, height;
};
constexpr Size kSizes[] = {{1024, 768}, {1280, 800}, {1920, 1080}};
constexpr const char* kLanguageNames[] = {"fr", "en", "pt", "es"};

std::string NameOf(const QWidget& widget) {
  return widget.objectName().isEmpty() ? widget.metaObject()->className()
                                       : widget.objectName().toStdString();
}

bool IsControl(const QWidget& widget) {
  if (widget.objectName().startsWith("qt_")) return false;
  return qobject_cast<const QLabel*>(&widget) || qobject_cast<const QAbstractButton*>(&widget) ||
         qobject_cast<const QComboBox*>(&widget) || qobject_cast<const QLineEdit*>(&widget) ||
         qobject_cast<const QSlider*>(&widget) || qobject_cast<const QTabBar*>(&widget) ||
         qobject_cast<const QSpinBox*>(&widget) || qobject_cast<const QListWidget*>(&widget) ||
         qobject_cast<const QTableWidget*>(&widget);
}

int TextWidth(const QWidget& widget, QString text) {
  return widget.fontMetrics().size(0, text.remove(u'&')).width();
}

// What of a control's text does not fit into it; empty for none.
std::string CutText(const QWidget& widget) {
  if (const auto* label = qobject_cast<const QLabel*>(&widget)) {
    const QSize room = label->contentsRect().size();
    if (label->wordWrap())
      return label->heightForWidth(label->width()) > label->height() ? "wrapped" : "";
    return TextWidth(*label, label->text()) > room.width() ? label->text().toStdString() : "";
  }
  if (const auto* button = qobject_cast<const QAbstractButton*>(&widget)) {
    if (button->text().isEmpty()) return {};
    return button->minimumSizeHint().width() > button->width() ? button->text().toStdString() : "";
  }
  if (const auto* tabs = qobject_cast<const QTabBar*>(&widget))
    return tabs->sizeHint().width() > tabs->width() ? "tabs" : "";
  if (const auto* spinner = qobject_cast<const QSpinBox*>(&widget))
    return spinner->minimumSizeHint().width() > spinner->width() ? spinner->text().toStdString()
                                                                 : "";
  if (const auto* combo = qobject_cast<const QComboBox*>(&widget)) {
    QStyleOptionComboBox option;
    option.initFrom(combo);
    const QRect room = combo->style()->subControlRect(QStyle::CC_ComboBox, &option,
                                                      QStyle::SC_ComboBoxEditField, combo);
    return TextWidth(*combo, combo->currentText()) > room.width()
               ? combo->currentText().toStdString()
               : "";
  }
  return {};
}

QRect OnScreen(const QWidget& widget, const QWidget& window) {
  return {widget.mapTo(&window, QPoint()), widget.size()};
}

bool NamesItself(const QWidget& widget) {
  if (const auto* button = qobject_cast<const QAbstractButton*>(&widget))
    if (!button->text().isEmpty()) return true;
  if (qobject_cast<const QLabel*>(&widget) || qobject_cast<const QTabBar*>(&widget)) return true;
  return widget.objectName().isEmpty() || !widget.accessibleName().isEmpty();
}

bool TellsItself(const QWidget& widget) {
  if (qobject_cast<const QLabel*>(&widget) || qobject_cast<const QTabBar*>(&widget)) return true;
  return widget.objectName().isEmpty() || !widget.toolTip().isEmpty();
}

class SettingsSweep : public SettingsScreenTest, public testing::WithParamInterface<int> {
 protected:
  void Prepare() {
    on.Set("Langue", std::to_string(GetParam()));
    on.Set("JingleAvantPubs", "'/sounds/jingles/before-the-spots-of-the-morning.wav'");
    on.MakeFile("StartStop.5", "\"START\",\"06:00\"\r\n\"STOP\",\"23:00-Q\"\r\n");
    on.MakeFile("Topage.5", "\"06:30\"\r\n\"07:30\"\r\n");
    on.MakeFile("Exclusion.Txt", "06:00\t09:00\r\n18:00\t20:30\r\n");
    on.localValues.Set("AudioOutID", "1");
    on.machineFolder.Write("ZemoAudio.Ini", "1,0\r\n");
  }

  void CheckAll(const std::string& where) {
    QWidget& whole = Window();
    QList<QWidget*> controls;
    for (QWidget* widget : whole.findChildren<QWidget*>())
      if (widget->isVisible() && IsControl(*widget)) controls << widget;
    EXPECT_GT(controls.size(), 5) << where;
    for (QWidget* widget : controls) {
      const std::string cut = CutText(*widget);
      EXPECT_TRUE(cut.empty()) << where << ": " << NameOf(*widget) << ": " << cut;
      EXPECT_TRUE(whole.rect().contains(OnScreen(*widget, whole)))
          << where << ": " << NameOf(*widget) << " leaves the window";
      EXPECT_TRUE(TellsItself(*widget)) << where << ": " << NameOf(*widget) << " has no tip";
      EXPECT_TRUE(NamesItself(*widget)) << where << ": " << NameOf(*widget) << " has no name";
    }
    for (int i = 0; i < controls.size(); ++i)
      for (int j = i + 1; j < controls.size(); ++j) {
        if (controls[i]->isAncestorOf(controls[j]) || controls[j]->isAncestorOf(controls[i]))
          continue;
        EXPECT_FALSE(OnScreen(*controls[i], whole).intersects(OnScreen(*controls[j], whole)))
            << where << ": " << NameOf(*controls[i]) << " overlaps " << NameOf(*controls[j]);
      }
  }
};

TEST_P(SettingsSweep, NothingIsCutAndNothingOverlapsOnAnyTab) {
  Prepare();
  Open();
  for (const Size& size : kSizes) {
    Window().resize(size.width, size.height);
    QApplication::processEvents();
    ASSERT_EQ(Window().size(), QSize(size.width, size.height));
    for (int tab = 0; tab < kSettingsTabs; ++tab) {
      Tab(tab);
      const std::string where = std::string("settings-") + kLanguageNames[GetParam()] + "-" +
                                std::to_string(size.width) + "-" + std::to_string(tab);
      CheckAll(where);
      KeepPicture(Window(), where);
    }
  }
}

// What stands beside a control for a while has its room, too.
TEST_P(SettingsSweep, WhatIsToldBesideAControlIsNotCut) {
  Prepare();
  Open(1024, 768);
  const std::string where = std::string("settings-") + kLanguageNames[GetParam()] + "-told-";
  Type("JingleMn", "40000", true);
  Choose("Langue", (GetParam() + 1) % 4);
  EXPECT_EQ(Notes().size(), 2U);
  CheckAll(where + "0");
  KeepPicture(Window(), where + "0");
  Tab(3);
  Type("NbrBuffers", "200", true);
  Type("Buffers", "32767", true);
  Click("TestPrelisten");
  EXPECT_EQ(Notes().size(), 3U);
  CheckAll(where + "3");
  KeepPicture(Window(), where + "3");
  Tab(5);
  Type("ChEdit", "noon", true);
  Type("ChDecoupe_0", "75");
  Click("BtnInti");
  CheckAll(where + "5");
  Tab(7);
  Type("ChFiltre", "noon", true);
  Click("PortCom_1");
  CheckAll(where + "7");
  KeepPicture(Window(), where + "7");
}

INSTANTIATE_TEST_SUITE_P(Languages, SettingsSweep, testing::Values(0, 1, 2, 3),
                         [](const auto& language) {
                           return std::string(kLanguageNames[language.param]);
                         });

}  // namespace
}  // namespace zemo::test
