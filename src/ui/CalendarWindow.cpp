#include "ui/CalendarWindow.h"

#include <QCalendarWidget>
#include <QPushButton>
#include <QTextCharFormat>
#include <QVBoxLayout>

#include "ui/QtWords.h"
#include "ui/SharedTexts.h"
#include "ui/Theme.h"

namespace zemo {

CalendarWindow::CalendarWindow(int langue, const LocalDateTime& day, QWidget* parent)
    : QDialog(parent) {
  setObjectName(QStringLiteral("FrmCalendrier"));
  setAttribute(Qt::WA_DeleteOnClose);
  setWindowModality(Qt::WindowModal);
  auto* month = new QCalendarWidget(this);
  month->setObjectName(QStringLiteral("Calendrier"));
  month->setLocale(LocaleOf(langue));
  month->setFirstDayOfWeek(Qt::Monday);
  month->setVerticalHeaderFormat(QCalendarWidget::NoVerticalHeader);
  month->setSelectedDate(QDate(day.year, day.month, day.day));
  month->setMinimumSize(360, 300);  // six weeks whole
  QTextCharFormat plain;
  plain.setForeground(Theme::kText);
  for (const Qt::DayOfWeek rest : {Qt::Saturday, Qt::Sunday})
    month->setWeekdayTextFormat(rest, plain);
  const Translation texts(SharedTexts(), langue);
  setWindowTitle(texts.Word("CalendarTitle"));
  auto* cancel = new QPushButton(texts.Word("Cancel"), this);
  cancel->setObjectName(QStringLiteral("BtnCancel"));
  cancel->setAutoDefault(false);
  connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(month);
  layout->addWidget(cancel, 0, Qt::AlignRight);
  const auto choose = [this](const QDate& date) {
    const auto tell = picked;
    accept();
    if (tell) tell({date.year(), date.month(), date.day()});
  };
  connect(month, &QCalendarWidget::clicked, this, choose);
  connect(month, &QCalendarWidget::activated, this, choose);  // Return
}

}  // namespace zemo
