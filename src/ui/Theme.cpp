#include "ui/Theme.h"

#include <QFontDatabase>
#include <QSize>
#include <algorithm>
#include <cmath>

#include "station/OnAirList.h"

namespace zemo::Theme {

namespace {

constexpr double kMinUnit = 0.66;
constexpr double kMaxUnit = 1.35;
constexpr int kSmallestPixels = 10;
constexpr double kLeastContrast = 4.5;

// Families whose digits have one width, the first that is there.
QString Family() {
  for (const char* family : {"Roboto", "DejaVu Sans"})
    if (QFontDatabase::families().contains(QString::fromLatin1(family)))
      return QString::fromLatin1(family);
  return QFontDatabase::systemFont(QFontDatabase::GeneralFont).family();
}

double Luminance(const QColor& colour) {
  const auto linear = [](double c) {
    return c <= 0.03928 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
         0.0722 * linear(colour.blueF());
}

}  // namespace

QColor ColourOfElement(int32_t code) {
  if (code > 0) return kMusic;
  switch (code) {
    case Element::kJingle:
      return kJingle;
    case Element::kSpot:
      return kSpot;
    case Element::kHourPip:
      return kPip;
    case Element::kNews:
      return kNews;
    case Element::kOther:
      return kOther;
    case Element::kVoiceTrack:
      return kVoiceTrack;
    default:
      return kMarker;
  }
}

QColor FromBgr(uint32_t colour) {
  return QColor(static_cast<int>(colour & 0xff), static_cast<int>(colour >> 8 & 0xff),
                static_cast<int>(colour >> 16 & 0xff));
}

QColor Readable(const QColor& colour, const QColor& otherwise) {
  const double contrast = (Luminance(colour) + 0.05) / (Luminance(kPanel) + 0.05);
  return contrast >= kLeastContrast ? colour : otherwise;
}

double UnitFor(const QSize& window) {
  return std::clamp(std::min(window.width() / 1280.0, window.height() / 800.0), kMinUnit, kMaxUnit);
}

int Px(double unit, double pixels) {
  return std::max(1, static_cast<int>(std::lround(unit * pixels)));
}

QFont Type(double unit, double pixels, bool bold) {
  QFont font(Family());
  font.setPixelSize(std::max(kSmallestPixels, Px(unit, pixels)));
  font.setBold(bold);
  return font;
}

QString StyleSheet(double unit, bool gradients) {
  const QString raised =
      gradients
          ? QStringLiteral("qlineargradient(x1:0,y1:0,x2:0,y2:1,stop:0 #2c3440,stop:1 #222932)")
          : kRaised.name();
  const int text = std::max(kSmallestPixels + 1, Px(unit, 15));
  QString sheet = QStringLiteral(R"(
    * { color: %INK; }
    QMenu, QToolTip, QDialog, QDialog QWidget, QComboBox QAbstractItemView, QPushButton, QToolButton,
    QComboBox, QLineEdit, QCheckBox, QRadioButton, QTabBar, #CadreRech QLabel, #CadrePL QLabel,
    #FrmDiscotheque QLabel, #FrmPub QLabel, #FrmRapport QLabel, #FrmAttestation QLabel, #FrmConfig QLabel, #FrmConfig QSpinBox, #FrmConfig QListWidget,
    #FrmVoiceTrack QLabel, #FrmVoiceTrack QSpinBox {
      font-family: "%FAMILY"; font-size: %TEXTpx; }
    #FrmDiscotheque QLabel[small="true"], #FrmPub QLabel[small="true"], #FrmVoiceTrack QLabel[small="true"], #FrameAutorisation QRadioButton { font-size: %HEADpx; }
    #FrmVoiceTrack QLabel[figure="true"] { font-size: %FIGUREpx; font-weight: bold; }
    #FrmVoiceTrack #BtnRecord:enabled { border: 1px solid %ONAIR; }
    #CmdStop { font-size: %NEXTpx; font-weight: bold; }
    QMainWindow, QDialog, QMenuBar { background: %GROUND; }
    QDialog { border: 1px solid %LINE; }
    QTabWidget::pane { border: 1px solid %LINE; }
    QTabWidget > QStackedWidget > QWidget { background: %GROUND; }
    QDialogButtonBox { dialogbuttonbox-buttons-have-icons: 0; }
    QFrame[panel="true"] { background: %PANEL; border: 1px solid %LINE; border-radius: 4px; }
    QLabel { background: transparent; border: none; }
    QLabel[dim="true"] { color: %DIM; }
    QLabel[head="true"] { font-weight: bold; }
    QLabel[refusal="true"] { color: %NOTE; }
    QLabel[mark="true"], QLabel[mark="false"] { padding: 1px 8px; border-radius: 3px; }
    QLabel[mark="true"] { background: %NOTE; color: %GROUND; font-weight: bold; }
    QLabel[note="true"] { color: %NOTE; font-weight: bold; padding: 0 8px; }
    QToolTip { background: %RAISED; color: %INK; border: 1px solid %LINE; padding: 3px; }
    QMenuBar { background: %GROUND; } QMenuBar::item { padding: 2px 8px; background: transparent; }
    QMenuBar::item:selected, QMenu::item:selected { background: %RAISED; }
    QMenuBar::item:disabled, QMenu::item:disabled { color: #6d7784; }
    QMenu { background: %PANEL; border: 1px solid %LINE; }
    QMenu::item { padding: 4px 24px 4px 24px; }
    QMenu::separator { height: 1px; background: %LINE; margin: 3px 6px; }
    QMenu::indicator { left: 6px; }
    QPushButton, QToolButton, QComboBox, QLineEdit, QAbstractSpinBox {
      background: %FACE; border: 1px solid %LINE; border-radius: 3px; padding: %VPADpx %PADpx; }
    QPushButton:hover, QToolButton:hover { border-color: %DIM; }
    QPushButton:focus, QToolButton:focus, QComboBox:focus, QLineEdit:focus, QCheckBox:focus,
    QAbstractSpinBox:focus, QTableView:focus, QTableWidget:focus, QListView:focus, QTreeView:focus {
      border: 1px solid %FOCUS; }
    QPushButton:pressed, QToolButton:pressed, QToolButton:checked, QPushButton:checked {
      background: #3b5a86; border-color: %FOCUS; }
    QPushButton:checked:focus, QToolButton:checked:focus { border: 2px solid %INK; }
    #CmdStop[cuts="true"] { border: 2px solid %NOTE; color: %NOTE; }
    QPushButton:disabled, QToolButton:disabled, QComboBox:disabled, QCheckBox:disabled {
      color: #6d7784; background: %PANEL; }
    QToolButton[running="true"]:checked { background: #1f3a2d; border: 2px solid %GOOD; }
    QLineEdit, QAbstractSpinBox, QPlainTextEdit { background: #0d1014; }
    QPlainTextEdit { border: 1px solid %LINE; }
    QProgressBar { border: 1px solid %LINE; border-radius: 3px; background: #0d1014; }
    QProgressBar::chunk { background: #3b5a86; border-radius: 2px; }
    QAbstractSpinBox QLineEdit { border: none; padding: 0; }
    QAbstractSpinBox::up-button, QAbstractSpinBox::down-button { width: %BOXpx; background: %RAISED; border: none; }
    QAbstractSpinBox::up-button { margin-bottom: 1px; }
    QAbstractSpinBox::up-arrow, QAbstractSpinBox::down-arrow { width: 0; height: 0; border-left: 4px solid %RAISED;
      border-right: 4px solid %RAISED; }
    QAbstractSpinBox::up-arrow { border-bottom: 5px solid %INK; }
    QAbstractSpinBox::down-arrow { border-top: 5px solid %INK; }
    QComboBox QAbstractItemView { background: %PANEL; selection-background-color: #3b5a86; }
    QCheckBox { background: transparent; spacing: 4px; border: 1px solid transparent; }
    QCheckBox::indicator { width: %BOXpx; height: %BOXpx; border: 1px solid %DIM; border-radius: 2px;
      background: #0d1014; }
    QCheckBox::indicator:checked { background: %FOCUS; }
    QRadioButton { background: transparent; spacing: 4px; border: 1px solid transparent; }
    QRadioButton:focus { border-color: %FOCUS; }
    QRadioButton::indicator { width: %DOTpx; height: %DOTpx; border: 1px solid %DIM;
      border-radius: %RADIUSpx; background: #0d1014; }
    QRadioButton::indicator:checked { background: %FOCUS; }
    QRadioButton:disabled { color: #6d7784; }
    QTabBar::tab { background: %PANEL; border: 1px solid %LINE; border-bottom: 2px solid %LINE;
      padding: %VPADpx %TABpx; margin-right: 3px; color: %DIM; }
    QTabBar::tab:selected { background: %RAISED; color: %INK; border-bottom-color: %FOCUS; }
    QTabBar::tab:selected:focus { border-color: %FOCUS; }
    QSlider { background: transparent; border: 1px solid transparent; min-height: %BOXpx; }
    QSlider:focus { border-color: %FOCUS; }
    QSlider::groove:horizontal { height: 4px; background: %LINE; border-radius: 2px; }
    QSlider::sub-page:horizontal { background: #3b5a86; border-radius: 2px; }
    QSlider::handle:horizontal { width: %DOTpx; margin: -5px 0; border-radius: 3px; background: %DIM; }
    QSlider::handle:horizontal:disabled { background: %LINE; }
    QTableView, QTableWidget, QListView, QTreeView { background: %PANEL; alternate-background-color: #1f252d;
      border: 1px solid %LINE; gridline-color: %LINE; selection-background-color: #324a6b;
      selection-color: %INK; }
    QHeaderView { background: %RAISED; border: none; font-family: "%FAMILY"; font-size: %HEADpx; }
    QHeaderView::section { background: %RAISED; color: %DIM; border: none;
      border-right: 1px solid %LINE; padding: 2px 5px; }
    QCalendarWidget QWidget { background: %PANEL; alternate-background-color: %RAISED; }
    QTableCornerButton::section { background: %RAISED; border: none; }
    QAbstractScrollArea::corner { background: %PANEL; border: none; }
    QScrollBar:vertical { background: %PANEL; width: 12px; }
    QScrollBar:horizontal { background: %PANEL; height: 12px; }
    QScrollBar::handle { background: #4a5564; border-radius: 4px; min-height: 20px; min-width: 20px; }
    QScrollBar::add-line, QScrollBar::sub-line { width: 0; height: 0; }
  )");
  const std::pair<const char*, QString> values[] = {
      {"%FAMILY", Family()},
      {"%TEXT", QString::number(text)},
      {"%GROUND", kGround.name()},
      {"%PANEL", kPanel.name()},
      {"%RAISED", kRaised.name()},
      {"%LINE", kLine.name()},
      {"%INK", kText.name()},
      {"%DIM", kDim.name()},
      {"%NOTE", kNote.name()},
      {"%FOCUS", kFocus.name()},
      {"%FACE", raised},
      {"%HEAD", QString::number(Type(unit, kTableHeadPixels).pixelSize())},
      {"%FIGURE", QString::number(Type(unit, kFigurePixels).pixelSize())},
      {"%ONAIR", kOnAir.name()},
      {"%NEXT", QString::number(text + 2)},
      {"%GOOD", kGood.name()},
      {"%VPAD", QString::number(Px(unit, 4))},
      {"%PAD", QString::number(Px(unit, 9))},
      {"%DOT", QString::number(2 * (std::max(10, Px(unit, 12)) / 2))},
      {"%RADIUS", QString::number(std::max(10, Px(unit, 12)) / 2 + 1)},
      {"%TAB", QString::number(Px(unit, 16))},
      {"%BOX", QString::number(std::max(10, Px(unit, 14)))}};
  for (const auto& [place, value] : values) sheet.replace(QString::fromLatin1(place), value);
  return sheet;
}

}  // namespace zemo::Theme
