#include "ui/Translation.h"

#include <QAbstractButton>
#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QMenu>
#include <QWidget>
#include <algorithm>

#include "station/OperatorWords.h"
#include "ui/SharedTexts.h"

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

void Assign(QObject* control, const QString& property, const QString& text) {
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

QString Translation::Text(std::string_view control, std::string_view property) const {
  const auto found = std::find_if(
      texts_.controls.begin(), texts_.controls.end(),
      [&](const ScreenText& row) { return row.control == control && row.property == property; });
  return found == texts_.controls.end() ? QString()
                                        : QString::fromUtf8(InLanguage(found->texts, langue_));
}

QString Translation::Word(std::string_view name) const {
  const char* word = FindWord(texts_.words, name, langue_);
  return QString::fromUtf8(word ? word : FindWord(SharedTexts().words, name, langue_));
}

QString Translation::Word(std::string_view name, const QString& inPlace) const {
  return QString::fromStdString(WithPlace(Word(name).toStdString(), inPlace.toStdString()));
}

QString Translation::OfRoutine(std::string_view text) const {
  return QString::fromStdString(InOperatorsWords(text, langue_));
}

void Translation::Apply(QObject& window) const {
  for (const ScreenText& row : texts_.controls) {
    const QString name = QString::fromUtf8(row.control);
    const QString text = QString::fromUtf8(InLanguage(row.texts, langue_));
    const auto assign = [&](const QList<QObject*>& controls) {
      for (QObject* control : controls) Assign(control, QString::fromUtf8(row.property), text);
      return !controls.empty();
    };
    assign(window.findChildren<QObject*>(name));
    for (int number = 0; assign(window.findChildren<QObject*>(name + QString::number(number)));)
      ++number;
  }
}

}  // namespace zemo
