#include "reports/screens/ReportBar.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <utility>

#include "reports/ReportTexts.h"
#include "ui/ButtonKeys.h"

namespace zemo {

ReportBar::ReportBar(const ReportEditor& editor, ReportBarOrders orders, const Translation& texts,
                     QWidget* parent)
    : FieldPage(texts, parent), editor_(editor), orders_(std::move(orders)) {
  const auto day = [&](const char* name, const char* tip, const std::function<void()>& pick,
                       std::function<void()> otherwise) {
    QPushButton* made = Day(
        name, [this, name] { return texts_.Word(name); }, pick, std::move(otherwise));
    made->setToolTip(texts_.Word(tip));
    made->setAccessibleDescription(made->toolTip());
    return made;
  };
  QPushButton* first = day("CmdCalend", "CmdCalendTip", orders_.pickFirst, [] {});
  QPushButton* last =
      day("BtnDateFin", "BtnDateFinTip", orders_.pickLast, [this] { orders_.firstAlone(); });
  QPushButton* read = Button("VoirRapport", orders_.read);
  GiveKeys(*read, Qt::Key_F5);
  LblDate = Label("LblDate", [this] { return editor_.LblDate; });
  LblDateFin = Label("LblDateFin", [this] { return editor_.LblDateFin; });
  LblCompteur = Label("LblCompteur", [this] { return ShownCount(editor_, texts_.Langue()); });
  LblLecture = Label("LblLecture", [this] {
    return editor_.reading ? texts_.Word("Reading").toStdString() : std::string();
  });
  LblLecture->setProperty("dim", true);
  Row({{first, 0},
       {LblDate, 0},
       {last, 0},
       {LblDateFin, 0},
       {read, 0},
       {Filter("FiltreArtiste", FiltreArtiste), 4},
       {Filter("FiltreGenre", FiltreGenre), 2},
       {Filter("FiltreVariete", FiltreVariete), 2},
       {LblLecture, 0},
       {LblCompteur, 0}});
}

QWidget* ReportBar::Filter(const char* name, QLineEdit*& box) {
  box = Named(new QLineEdit(this), name);
  box->setClearButtonEnabled(true);
  box->setAccessibleName(texts_.Word(std::string("For.") + name));
  box->setToolTip(texts_.Word("FilterTip"));
  box->setAccessibleDescription(box->toolTip());
  connect(box, &QLineEdit::textChanged, this, [this] { orders_.filter(); });
  auto* label = new QLabel(texts_.Word(std::string("For.") + name), this);
  label->setProperty("dim", true);
  label->setBuddy(box);
  return Beside({{label, 0}, {box, 1}});
}

TypedFilters ReportBar::Typed() const {
  return {FiltreArtiste->text().toStdString(), FiltreGenre->text().toStdString(),
          FiltreVariete->text().toStdString()};
}

void ReportBar::EmptyFilters() {
  for (QLineEdit* box : {FiltreArtiste, FiltreGenre, FiltreVariete}) ShowIn(*box, {});
}

// Room for what changes, so that the boxes stay where they are while one types into them.
void ReportBar::Arrange(double unit) {
  FieldPage::Arrange(unit);
  const auto keepRoom = [](QLabel& label, const QString& longest) {
    label.setMinimumWidth(QFontMetrics(label.font()).horizontalAdvance(longest) + 4);
  };
  for (QLabel* day : {LblDate, LblDateFin}) keepRoom(*day, QStringLiteral("00/00/0000"));
  keepRoom(*LblLecture, texts_.Word("Reading"));
  keepRoom(*LblCompteur, texts_.Word("LblCompteur", QStringLiteral("000000")));
  LblCompteur->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
}

}  // namespace zemo
