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
  const QKeySequence keys = button->shortcut();
  button->setText(text);
  button->setShortcut(keys);  // a new text takes the shortcut away
  QString plain = text;
  button->setAccessibleName(plain.remove(u'&'));
}

void SetTip(QObject* control, const QString& tip) {
  auto* widget = qobject_cast<QWidget*>(control);
  if (!widget) return;
  const QString keys = control->property("keys").toString();
  widget->setToolTip(keys.isEmpty() ? tip : QStringLiteral("%1 (%2)").arg(tip, keys));
  widget->setAccessibleDescription(widget->toolTip());
  // A label's name is its text.
  if (widget->accessibleName().isEmpty() && !qobject_cast<QLabel*>(control))
    widget->setAccessibleName(tip.trimmed());
}

void SetItem(QObject* control, int item, const QString& text) {
  auto* combo = qobject_cast<QComboBox*>(control);
  if (combo && item < combo->count()) combo->setItemText(item, text);
}

void Apply(QObject* control, const QString& property, const QString& text) {
  bool number = false;
  const int item = property.toInt(&number);
  if (number)
    SetItem(control, item, text);
  else if (property == QStringLiteral("text"))
    SetText(control, text);
  else if (property == QStringLiteral("tip"))
    SetTip(control, text);
  else if (property == QStringLiteral("name") && qobject_cast<QWidget*>(control))
    qobject_cast<QWidget*>(control)->setAccessibleName(text);
}

}  // namespace

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
