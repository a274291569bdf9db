#include "library/screens/ImportPane.h"

#include <QDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>
#include <exception>
#include <utility>

#include "platform/Desktop.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "ui/Translation.h"
#include "ui/WhenFree.h"

namespace zemo {

namespace {

constexpr int kTurnLaterMs = 20;
constexpr int kShowEveryMs = 100;

QPushButton* AddButton(QHBoxLayout& bar, const char* name, const QString& text) {
  auto* button = new QPushButton(text);
  button->setObjectName(QString::fromLatin1(name));
  button->setAutoDefault(false);
  bar.addWidget(button);
  return button;
}

}  // namespace

ImportPane::ImportPane(Station& station, ImportSources sources, const Translation& texts,
                       Hooks hooks, QWidget* parent)
    : QWidget(parent),
      station_(station),
      sources_(std::move(sources)),
      texts_(texts),
      hooks_(std::move(hooks)),
      bar_(new QProgressBar(this)),
      text_(new QLabel(this)) {
  setObjectName(QStringLiteral("ImportStrip"));
  bar_->setObjectName(QStringLiteral("ImportBar"));
  bar_->setAccessibleName(texts.Word("Import"));
  bar_->setTextVisible(false);
  text_->setObjectName(QStringLiteral("LblImport"));
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(0, 4, 0, 0);
  layout->addWidget(bar_, 1);
  layout->addWidget(text_);
  connect(AddButton(*layout, "BtnImportCancel", texts.Word("BtnImportCancel")),
          &QPushButton::clicked, this, [this] { End(true); });
  timer_.setSingleShot(true);
  connect(&timer_, &QTimer::timeout, this,
          [this] { WhenFree(station_, this, [this] { Turn(); }); });
  hide();
}

void ImportPane::Begin(LibraryTab kind, std::vector<std::string> paths) {
  if (!CanBegin()) return;
  try {
    run_.emplace(station_, *sources_.files, kind, std::move(paths), sources_.bareCard);
  } catch (const std::exception&) {
    return LogCurrentException(station_, "Ajouter");
  }
  shown_.invalidate();
  ShowProgress();
  show();
  timer_.start(0);
}

void ImportPane::Stop() {
  timer_.stop();
  run_.reset();
  hide();
}

void ImportPane::Turn() {
  if (!run_) return;
  if (waits_ || !hooks_.mayWork()) return timer_.start(kTurnLaterMs);
  const ImportRun::Turn turn = run_->Slice();
  if (turn == ImportRun::Turn::kDone) return End(false);
  ShowProgress();
  timer_.start(turn == ImportRun::Turn::kMore ? 0 : kTurnLaterMs);
}

void ImportPane::ShowProgress() {
  if (shown_.isValid() && shown_.elapsed() < kShowEveryMs) return;
  shown_.start();
  const ImportProgress progress = run_->Progress();
  // Nothing to measure by until all files are found: the bar runs to and fro.
  bar_->setRange(0, progress.foundAll ? static_cast<int>(progress.found) : 0);
  bar_->setValue(static_cast<int>(progress.done));
  QString text = progress.foundAll
                     ? QStringLiteral("%1 / %2").arg(progress.done).arg(progress.found)
                     : texts_.Word("ImportFinding", QString::number(progress.found));
  if (progress.leftMs)
    text += QStringLiteral("   ") +
            texts_.Word("ImportLeft", QString::fromStdString(FormatDuration(*progress.leftMs)));
  text_->setText(text);
}

void ImportPane::End(bool stopped) {
  if (!run_) return;
  const ImportReport report = run_->Report();
  const LibraryTab kind = run_->Kind();
  Stop();
  hooks_.ended(kind);
  ShowReport(report, stopped);
}

void ImportPane::ShowReport(const ImportReport& report, bool stopped) {
  auto* dialog = new QDialog(this);
  dialog->setObjectName(QStringLiteral("FrmImport"));
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setWindowTitle(texts_.Word("Import"));
  const QString lines = QString::fromStdString(report.Lines(texts_.Langue()));
  QString text = QString::fromStdString(report.Counts(texts_.Langue()));
  if (const std::string notes = report.Notes(texts_.Langue()); !notes.empty())
    text += u'\n' + QString::fromStdString(notes).chopped(1);
  if (stopped) text += u'\n' + texts_.Word("ImportStopped");
  if (!lines.isEmpty()) text += QStringLiteral("\n\n") + lines;
  auto* box = new QPlainTextEdit(text, dialog);
  box->setObjectName(QStringLiteral("ImportReport"));
  box->setAccessibleName(texts_.Word("Import"));
  box->setReadOnly(true);
  box->setTabChangesFocus(true);
  box->setLineWrapMode(QPlainTextEdit::NoWrap);
  auto* bar = new QHBoxLayout;
  bar->addStretch(1);
  connect(AddButton(*bar, "BtnImportCopy", texts_.Word("BtnCopy")), &QPushButton::clicked, this,
          [this, text] { station_.platform.clipboard.SetText(text.toStdString()); });
  QPushButton* close = AddButton(*bar, "BtnImportClose", texts_.Word("BtnImportClose"));
  close->setDefault(true);
  connect(close, &QPushButton::clicked, dialog, &QDialog::accept);
  auto* layout = new QVBoxLayout(dialog);
  layout->addWidget(box, 1);
  layout->addLayout(bar);
  dialog->resize(640, lines.isEmpty() ? 160 : 400);
  close->setFocus();
  dialog->open();
}

}  // namespace zemo
