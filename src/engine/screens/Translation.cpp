#include "engine/screens/Translation.h"

#include <QAbstractButton>
#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QMenu>
#include <QWidget>

#include "engine/MainScreenTexts.h"

namespace zemo {

namespace {

void SetText(QObject* control, const QString& text) {
  if (auto* menu = qobject_cast<QMenu*>(control)) return menu->setTitle(text);
  if (auto* action = qobject_cast<QAction*>(control)) return action->setText(text);
  if (auto* label = qobject_cast<QLabel*>(control)) return label->setText(text);
  auto* button = qobject_cast<QAbstractButton*>(control);
  if (!button) return;
  button->setText(text);
  QString plain = text;
  button->setAccessibleName(plain.remove(u'&'));
}

void SetItem(QObject* control, int item, const QString& text) {
  auto* combo = qobject_cast<QComboBox*>(control);
  if (combo && item < combo->count()) combo->setItemText(item, text);
}

void Apply(QObject* control, const QString& property, const QString& text) {
  bool number = false;
  const int item = property.toInt(&number);
  if (number) return SetItem(control, item, text);
  if (property == QStringLiteral("text")) return SetText(control, text);
  auto* widget = qobject_cast<QWidget*>(control);
  if (!widget) return;
  if (property == QStringLiteral("tip"))
    SetTip(*widget, text);
  else if (property == QStringLiteral("name"))
    widget->setAccessibleName(text);
}

}  // namespace

void SetTip(QWidget& control, const QString& tip) {
  const QString keys = control.property("keys").toString();
  const QString whole = keys.isEmpty() ? tip : QStringLiteral("%1 (%2)").arg(tip, keys);
  if (control.toolTip() == whole && control.accessibleDescription() == whole) return;
  control.setToolTip(whole);
  control.setAccessibleDescription(whole);
  // A label's name is its text.
  if (control.accessibleName().isEmpty() && !qobject_cast<QLabel*>(&control))
    control.setAccessibleName(tip.trimmed());
}

void ApplyTexts(QObject& screen, int langue) {
  for (const ScreenText& row : MainScreenTexts()) {
    const QString name = QString::fromUtf8(row.control);
    QList<QObject*> controls = screen.findChildren<QObject*>(name);
    if (name == QStringLiteral("LedSat"))
      for (int contact = 0; contact < 4; ++contact)
        controls += screen.findChildren<QObject*>(name + QString::number(contact));
    for (QObject* control : controls)
      Apply(control, QString::fromUtf8(row.property),
            QString::fromUtf8(InLanguage(row.texts, langue)));
  }
}

}  // namespace zemo
