#include "ui/Window.h"

#include <QApplication>
#include <QCloseEvent>
#include <QGuiApplication>
#include <QMenuBar>
#include <QScreen>
#include <exception>
#include <utility>

#include "station/Station.h"
#include "ui/QtWords.h"
#include "ui/Theme.h"
#include "ui/WhenFree.h"
#include "ui/WindowPlace.h"

namespace zemo {

namespace {

int LanguageNow(Station& station) {
  station.base.CheckCnf();
  return static_cast<int>(station.base.CnfInt(Cnf::kLangue));
}

// What the desktop draws around a window, as those that stand there already have it: a window that
// was never shown has none yet.
QMargins FrameOfTheDesktop() {
  QMargins most;
  for (const QWidget* window : QApplication::topLevelWidgets()) {
    if (!window->isVisible() || !qobject_cast<const QMainWindow*>(window)) continue;
    const QRect outer = window->frameGeometry(), inner = window->geometry();
    most = most | QMargins(inner.left() - outer.left(), inner.top() - outer.top(),
                           outer.right() - inner.right(), outer.bottom() - inner.bottom());
  }
  return most;
}

QList<QRect> Screens() {
  const QMargins frame = FrameOfTheDesktop();
  QList<QRect> screens;
  for (const QScreen* screen : QGuiApplication::screens())
    screens << screen->availableGeometry().marginsRemoved(frame);
  return screens;
}

}  // namespace

Window::Window(Station& station, const char* name, const WindowTexts& texts, PlaceOfWindow place)
    : station_(station), texts_(texts, LanguageNow(station)), place_(place) {
  setObjectName(QString::fromLatin1(name));
  SpeakQtWords(texts_.Langue());
}

void Window::WhenFree(std::function<void()> order) {
  zemo::WhenFree(station_, this, std::move(order));
}

// --- measures ---

void Window::Arrange() {
  unit_ = Theme::UnitFor(size());
  const bool gradients = station_.base.IsOpen() && station_.base.CnfInt(Cnf::kGraphiqueMini) == 0;
  setFont(Theme::Type(unit_, 15));
  menuBar()->setFont(font());
  setStyleSheet(Theme::StyleSheet(unit_, gradients));
  ArrangeParts(unit_);
}

// A new unit costs a tenth of a second.
void Window::resizeEvent(QResizeEvent* event) {
  QMainWindow::resizeEvent(event);
  if (Theme::UnitFor(event->size()) == unit_) return;
  WhenFree([this] {
    if (Theme::UnitFor(size()) != unit_) Arrange();
  });
}

// --- the place ---

QSize Window::RoomOnScreen() const {
  return screen()->availableGeometry().marginsRemoved(FrameOfTheDesktop()).size();
}

void Window::showEvent(QShowEvent* event) {
  const bool first = !std::exchange(placed_, true);
  if (first && place_ == PlaceOfWindow::kKept) {
    const LocalValues& values = station_.platform.localValues;
    if (const auto kept = KeptPlace(values, objectName().toStdString(), Screens()))
      setGeometry(*kept);
  }
  QMainWindow::showEvent(event);
}

void Window::KeepPlaceOf() {
  if (place_ != PlaceOfWindow::kKept) return;
  try {
    KeepPlace(station_.platform.localValues, objectName().toStdString(), normalGeometry());
  } catch (const std::exception&) {
    LogCurrentException(station_, objectName().toStdString());
  }
}

// --- being left ---

void Window::closeEvent(QCloseEvent* event) {
  event->ignore();
  WhenFree([this] { Leave(); });
}

void Window::Leave() {
  if (!MayLeave()) return;
  KeepPlaceOf();
  Left();
}

}  // namespace zemo
