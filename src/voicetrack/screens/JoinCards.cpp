#include "voicetrack/screens/JoinCards.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QStyle>
#include <QVBoxLayout>
#include <string>

#include "ui/FieldPage.h"
#include "ui/FitLabel.h"
#include "ui/Named.h"
#include "ui/Theme.h"
#include "voicetrack/VoiceTrackTexts.h"

namespace zemo {

namespace {

constexpr double kTitlePixels = 22;
constexpr int kSmallestTitle = 10;
constexpr int32_t kSoonMs = 5000;  // the intro is about to end

void Colour(QLabel& label, const QColor& colour) {
  const QString sheet = QStringLiteral("color: %1").arg(colour.name());
  if (label.styleSheet() != sheet) label.setStyleSheet(sheet);
}

}  // namespace

JoinCards::JoinCards(const VoiceTrackEditor& editor, const Translation& texts, QWidget* parent)
    : QWidget(parent), editor_(editor), texts_(texts) {
  row_ = new QHBoxLayout(this);
  row_->setContentsMargins(0, 0, 0, 0);
  row_->addWidget(MakeCard(before_, "FileAvant", "Avant", {"InfoPS"}, nullptr), 1);
  row_->addWidget(MakeFigures());
  row_->addWidget(MakeCard(after_, "FileApres", "Apres", {"Intro", "Diffusion"}, "LblIntro"), 1);
}

QWidget* JoinCards::MakeCard(Card& card, const char* file, const char* title,
                             const std::vector<const char*>& values, const char* figure) {
  auto* frame = new QFrame(this);
  frame->setProperty("panel", true);
  auto* words = new QLabel(texts_.Word(std::string("For.") + file), frame);
  words->setProperty("dim", true);
  card.title = Named(new FitLabel(frame), title);
  card.file = Named(new QLineEdit(frame), file);
  card.file->setReadOnly(true);
  card.file->setFocusPolicy(Qt::ClickFocus);
  card.file->setAccessibleName(words->text());
  auto* foot = new QHBoxLayout;
  for (const char* name : values) {
    card.values.push_back(Named(new QLabel(frame), name));
    card.values.back()->setTextFormat(Qt::PlainText);
    foot->addWidget(card.values.back());
    foot->addStretch(1);
  }
  auto* text = new QVBoxLayout;
  for (QWidget* part : {static_cast<QWidget*>(words), static_cast<QWidget*>(card.title),
                        static_cast<QWidget*>(card.file)})
    text->addWidget(part);
  text->addLayout(foot);
  auto* whole = new QHBoxLayout(frame);
  whole->addLayout(text, 1);
  if (figure) {
    card.figure = Named(new QLabel(frame), figure);
    card.figure->setProperty("figure", true);
    card.figure->setAlignment(Qt::AlignCenter);
    card.figure->setAccessibleName(texts_.Word("For.LblIntro"));
    card.figure->setToolTip(card.figure->accessibleName());
    whole->addWidget(card.figure);
  }
  return frame;
}

QWidget* JoinCards::Figure(const char* name, QLabel*& figure) {
  auto* part = new QWidget(this);
  auto* words = new QLabel(texts_.Word(std::string("For.") + name), part);
  words->setProperty("dim", true);
  words->setAlignment(Qt::AlignCenter);
  figure = Named(new QLabel(part), name);
  figure->setProperty("figure", true);
  figure->setAlignment(Qt::AlignCenter);
  auto* layout = new QVBoxLayout(part);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(words);
  layout->addWidget(figure);
  return part;
}

QWidget* JoinCards::MakeFigures() {
  auto* frame = new QFrame(this);
  frame->setProperty("panel", true);
  auto* layout = new QVBoxLayout(frame);
  layout->addWidget(Figure("LblARemplir", LblARemplir));
  layout->addWidget(Figure("LblDecompte", LblDecompte));
  return frame;
}

void JoinCards::Arrange(double unit) {
  const int margin = Theme::Px(unit, 8);
  row_->setSpacing(Theme::Px(unit, 6));
  for (QFrame* frame : findChildren<QFrame*>(QString(), Qt::FindDirectChildrenOnly)) {
    frame->layout()->setContentsMargins(margin, margin / 2, margin, margin / 2);
    frame->layout()->setSpacing(margin / 2);
  }
  for (const Card& card : {before_, after_})
    card.title->SetType(Theme::Type(unit, kTitlePixels, true), kSmallestTitle);
  const QFontMetrics figures(Theme::Type(unit, Theme::kFigurePixels, true));
  for (QLabel* figure : {LblARemplir, LblDecompte})
    figure->setMinimumWidth(figures.horizontalAdvance(QStringLiteral("-00:00.0")));
  after_.figure->setMinimumWidth(figures.horizontalAdvance(QStringLiteral("000")));
}

void JoinCards::Show(const Figures& figures) {
  before_.title->Show(ShownText(editor_.Avant));
  after_.title->Show(ShownText(editor_.Apres));
  const std::pair<QLineEdit*, const std::string*> files[] = {{before_.file, &editor_.FileAvant},
                                                             {after_.file, &editor_.FileApres}};
  for (const auto& [box, path] : files) {
    ShowIn(*box, *path);
    box->setToolTip(box->text());
  }
  before_.values[0]->setText(texts_.OfRoutine(editor_.InfoPS));
  after_.values[0]->setText(texts_.OfRoutine(editor_.Intro));
  after_.values[1]->setText(texts_.OfRoutine(editor_.Diffusion));
  after_.figure->setText(editor_.FileApres.empty() ? QString() : QString::number(editor_.LblIntro));
  Colour(*after_.figure, Theme::kMusic);
  const auto shown = [](const std::optional<int32_t>& ms) {
    return ms ? ShownText(ShownFigure(*ms)) : QStringLiteral("–");
  };
  LblARemplir->setText(shown(figures.fillMs));
  LblDecompte->setText(shown(figures.countdownMs));
  const bool late = figures.countdownMs && *figures.countdownMs < 0;
  const bool soon = figures.countdownMs && *figures.countdownMs < kSoonMs;
  Colour(*LblDecompte, late ? Theme::kHeard : soon ? Theme::kNote : Theme::kText);
}

}  // namespace zemo
