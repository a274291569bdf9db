#include "traffic/screens/CampaignPage.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <string>

#include "library/screens/FreeEntryBox.h"

namespace zemo {

namespace {
constexpr int kStart = 1, kEnd = 2;  // modes of the calendar
constexpr int kMarkDigits = 2;
}  // namespace

CampaignPage::CampaignPage(Station& station, CampaignEditor& editor, const CampaignOrders& orders,
                           const Translation& texts, QWidget* parent)
    : FieldPage(texts, parent), station_(station), editor_(editor), orders_(orders) {
  Row({{Field("LblCode", Label("LblCode", [&editor] { return editor.LblCode; })), 0},
       {Field("ChAnnonceur", Box("ChAnnonceur", editor.ChAnnonceur)), 4},
       {Field("Categorie", Category()), 3},
       {Field("ComboPriority",
              ClosedList("ComboPriority", editor.ComboPriority, editor.ComboPriorityList)),
        1},
       {Field("ChContact", Box("ChContact", editor.ChContact)), 3},
       {Field("GenreAssocie",
              ClosedList("GenreAssocie", editor.GenreAssocie, editor.GenreAssocieList)),
        2}});
  Row({{Kind(), 0}, {SoundFile(), 1}});
  Row({{Days(), 3}, {Division(), 4}});
  Follow([&orders] { orders.shown(); });
}

void CampaignPage::BeginEntry() {
  firstHour_->setFocus();
  firstHour_->selectAll();
}

QWidget* CampaignPage::Kind() {
  const auto option = [this](int number) {
    const std::string name = "OptPub." + std::to_string(number);
    auto* made = Named(new QRadioButton(texts_.Word(name), this),
                       ("OptPub_" + std::to_string(number)).c_str());
    connect(made, &QRadioButton::clicked, this, [this, number] {
      orders_.run([this, number] { Campaigns::OptPub_Click(editor_, number); });
    });
    Follow([this, made, number] { made->setChecked(editor_.OptPub[static_cast<size_t>(number)]); });
    return made;
  };
  return Beside({{option(0), 0}, {option(1), 0}});
}

QWidget* CampaignPage::Category() {
  auto* box = new FreeEntryBox("Categorie", this);
  box->typed = [this](const std::string& text) { editor_.Categorie = text; };
  box->enter = [this] {
    orders_.work([this] { Campaigns::Categorie_KeyEnter(station_, editor_); });
  };
  box->erase = [this] {
    orders_.work([this] { Campaigns::Categorie_KeyDelete(station_, editor_); });
  };
  Follow([this, box] { box->Show(editor_.Categorie, editor_.CategorieList); });
  return box;
}

QWidget* CampaignPage::SoundFile() {
  QPushButton* file = Button("CmdLoadFile", [this] { orders_.chooseFile(); });
  QLineEdit* path = Box("FichierAudio", editor_.FichierAudio);
  path->setAccessibleName(texts_.Word("For.FichierAudio"));
  auto* length = Named(new QLineEdit(this), "Longeur");
  connect(length, &QLineEdit::textEdited, this, [this](const QString& typed) {
    Campaigns::Longeur_Change(editor_, typed.toStdString());
    Changed();
  });
  NameLength(*Shown(length, [this] { return editor_.Longeur; }));
  return Beside({{file, 0},
                 {path, 6},
                 {length, 1},
                 {Label("LblTemp", [this] { return editor_.LblTemp; }), 0}});
}

QWidget* CampaignPage::Days() {
  const auto day = [this](const char* name, std::string& text, int mode, const char* tip,
                          std::function<void()> otherwise) {
    QPushButton* made = Day(
        name, [this, &text] { return texts_.OfRoutine(text); },
        [this, mode] { orders_.pickDay(mode); }, std::move(otherwise));
    made->setToolTip(texts_.Word(tip));
    made->setAccessibleDescription(made->toolTip());
    return Field(name, made);
  };
  return Beside({{day("LblDepartPub", editor_.LblDepartPub, kStart, "StartTip",
                      [this] {
                        orders_.work(
                            [this] { Campaigns::LblDepartPub_RightClick(station_, editor_); });
                      }),
                  1},
                 {day("LblFinPub", editor_.LblFinPub, kEnd, "EndTip", [] {}), 1}});
}

QWidget* CampaignPage::Division() {
  const auto narrow = [this](const std::string& name, std::string& text) {
    QLineEdit* box = Box(name.c_str(), text);
    box->setMaxLength(kMarkDigits);
    box->setAlignment(Qt::AlignCenter);
    box->setMinimumWidth(box->fontMetrics().horizontalAdvance(QStringLiteral("000")));
    return box;
  };
  auto* marks = new QWidget(this);
  auto* row = new QHBoxLayout(marks);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(4);
  for (size_t mark = 0; mark < editor_.DecoupagePub.size(); ++mark) {
    QLineEdit* box = narrow("DecoupagePub_" + std::to_string(mark), editor_.DecoupagePub[mark]);
    box->setAccessibleName(texts_.Word("For.DecoupagePub") + QStringLiteral(" %1").arg(mark + 1));
    row->addWidget(box, 1);
  }
  firstHour_ = narrow("HDepPub", editor_.HDepPub);
  return Beside({{Field("HDepPub", firstHour_), 1},
                 {Field("HFinPub", narrow("HFinPub", editor_.HFinPub)), 1},
                 {Field("DecoupagePub", marks), 8}});
}

}  // namespace zemo
