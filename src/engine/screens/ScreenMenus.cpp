#include "engine/screens/ScreenMenus.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>
#include <utility>

#include "engine/MainScreenPicture.h"
#include "engine/OperatorControls.h"
#include "station/Station.h"
#include "ui/Translation.h"

namespace zemo {

namespace {
constexpr const char* kToCome = "toCome";

QMenu* AddMenu(QMenuBar& bar, const char* name) {
  QMenu* menu = bar.addMenu(QString());
  menu->setObjectName(QString::fromLatin1(name));
  menu->setToolTipsVisible(true);
  return menu;
}
}  // namespace

QAction* ScreenMenus::Add(QMenu* menu, const char* name, std::function<void()> order) {
  QAction* action = menu->addAction(QString());
  action->setObjectName(QString::fromLatin1(name));
  QObject::connect(action, &QAction::triggered, menu, std::move(order));
  return action;
}

QAction* ScreenMenus::AddToCome(QMenu* menu, const char* name) {
  QAction* action = Add(menu, name, [] {});
  action->setEnabled(false);
  action->setProperty(kToCome, true);
  return action;
}

QAction* ScreenMenus::AddScreen(QMenu* menu, const char* name, const std::function<void()>& order) {
  return order ? Add(menu, name, order) : AddToCome(menu, name);
}

ScreenMenus::ScreenMenus(Station& station, QMenuBar& bar, MenuOrders orders)
    : station_(station), orders_(std::move(orders)) {
  MnuEdit_ = AddMenu(bar, "MnuEdit");
  AddScreen(MnuEdit_, "Discotheque", orders_.library);
  AddScreen(MnuEdit_, "MnuHPubs", orders_.campaigns);
  MnuModels_ = MnuEdit_->addMenu(QString());
  MnuModels_->setObjectName(QStringLiteral("MnuModels"));
  MnuModels_->setToolTipsVisible(true);
  MnuModelCaption_ = AddScreen(MnuModels_, "MnuModel", orders_.models);
  MnuPlaylist_ = Add(MnuEdit_, "MnuPlaylist", [this] { orders_.storedLists(); });
  Add(MnuEdit_, "MnuInsertPub", [this] {
    orders_.insertBreak();
  })->setShortcut(QKeySequence(Qt::SHIFT | Qt::Key_F4));
  MnuEdit_->addSeparator();
  MnuImprime_ = Add(MnuEdit_, "MnuImprime", [this] { orders_.printList(); });

  Options_ = AddMenu(bar, "Options");
  AddScreen(Options_, "MnuRapport", orders_.report);
  Add(Options_, "MakePubduJour", [this] { orders_.composeGrid(); });
  Add(Options_, "MnuPrevision", [this] {
    orders_.forecast();
  })->setShortcut(QKeySequence(Qt::Key_F7));
  Options_->addSeparator();
  MnuStartStop_ = Add(Options_, "MnuStartStop", [this] {
    OnAir::SetCheck(station_, "MnuStartStop", !station_.engine.MnuStartStop);
    Refresh(PictureOf(station_));
  });
  MnuPCProduction_ = Add(Options_, "MnuPCProduction", [this] {
    OnAir::SetCheck(station_, "MnuPCProduction", !station_.engine.PCProduction);
    Refresh(PictureOf(station_));
  });
  for (QAction* mark : {MnuStartStop_, MnuPCProduction_}) mark->setCheckable(true);
  Options_->addSeparator();
  if (orders_.settings)
    MnuParametrage_ = Add(Options_, "MnuParametrage", [this] { orders_.settings(); });
  else
    AddToCome(Options_, "MnuParametrage");
  MnuPasseWord_ = Add(Options_, "MnuPasseWord", [this] {
    Refresh(PictureOf(station_));  // the mark is the lock's, not the click's
    orders_.password();
  });
  MnuPasseWord_->setCheckable(true);
  Options_->addSeparator();
  Add(Options_, "Quitter", [this] { orders_.quit(); });
}

void ScreenMenus::SetTexts(const Translation& texts) {
  const QString later = texts.Word("ComesLater");
  for (QMenu* menu : {MnuEdit_, MnuModels_, Options_})
    for (QAction* action : menu->actions())
      if (action->property(kToCome).toBool()) action->setToolTip(later);
}

void ScreenMenus::Refresh(const MainScreen& screen) {
  MnuEdit_->menuAction()->setEnabled(screen.MnuEditEnabled);
  if (MnuParametrage_) MnuParametrage_->setEnabled(screen.MnuParametrageEnabled);
  MnuPasseWord_->setChecked(station_.engine.ScreenLocked);
  MnuPlaylist_->setEnabled(screen.MnuPlaylistEnabled);
  MnuImprime_->setEnabled(screen.MnuImprimeEnabled);
  MnuStartStop_->setChecked(station_.engine.MnuStartStop);
  MnuPCProduction_->setChecked(station_.engine.PCProduction);
  const QString model = QString::fromStdString(station_.notices.modelCaption);
  if (MnuModelCaption_->text() != model) MnuModelCaption_->setText(model);
}

}  // namespace zemo
