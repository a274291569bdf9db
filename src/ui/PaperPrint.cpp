#include "ui/PaperPrint.h"

#include <QFontMetricsF>
#include <QMessageBox>
#include <QPainter>
#include <QPrinter>
#include <QPushButton>
#include <QStringList>

#include "ui/Questions.h"
#include "ui/SharedTexts.h"

namespace zemo {

namespace {

constexpr size_t kLinesBetweenPauses = 200;

// The line cut to the width of the page; what is left goes on under it.
QStringList Wrapped(const QString& line, const QFontMetricsF& metrics, double width) {
  QStringList parts;
  QString rest = line;
  while (metrics.horizontalAdvance(rest) > width) {
    int count = static_cast<int>(rest.size()) - 1;
    while (count > 1 && metrics.horizontalAdvance(rest.left(count)) > width) --count;
    parts << rest.left(count);
    rest = QStringLiteral("      ") + rest.mid(count);
    if (count <= 6) break;  // a page narrower than the indent
  }
  return parts << rest;
}

void TellFailure(QWidget* parent, int langue) {
  const Translation texts(SharedTexts(), langue);
  auto* box = new QMessageBox(QMessageBox::Warning, texts.OfRoutine("Alerte"),
                              texts.Word("PrintFailed"), QMessageBox::Ok, parent);
  box->setObjectName(QStringLiteral("PrintFailed"));
  box->button(QMessageBox::Ok)->setIcon({});  // a desktop's own
  box->setAttribute(Qt::WA_DeleteOnClose);
  box->open();
}

}  // namespace

std::vector<std::string> LinesOfPages(const std::vector<std::vector<std::string>>& pages) {
  std::vector<std::string> lines;
  for (const auto& page : pages) {
    if (!lines.empty()) lines.emplace_back(kNewPage);
    lines.insert(lines.end(), page.begin(), page.end());
  }
  return lines;
}

bool PrintLines(QPrinter& printer, const std::vector<std::string>& lines, const char* family,
                int points, const std::function<void()>& pause) {
  QPainter painter;
  if (!painter.begin(&printer)) return false;
  QFont font(QString::fromLatin1(family));
  font.setStyleHint(QFont::Monospace);
  font.setPointSize(points);
  painter.setFont(font);
  const QFontMetricsF metrics(font, &printer);
  const QRectF page = printer.pageRect(QPrinter::DevicePixel);
  double y = 0;
  size_t printed = 0;
  for (const std::string& line : lines) {
    if (pause && ++printed % kLinesBetweenPauses == 0) pause();
    if (line == kNewPage) {
      printer.newPage();
      y = 0;
      continue;
    }
    for (const QString& part : Wrapped(QString::fromStdString(line), metrics, page.width())) {
      if (y + metrics.lineSpacing() > page.height()) {
        printer.newPage();
        y = 0;
      }
      painter.drawText(QPointF(0, y + metrics.ascent()), part);
      y += metrics.lineSpacing();
    }
  }
  return painter.end();
}

void PrintOnPaper(QWidget* parent, const Questions& questions,
                  const std::vector<std::string>& lines, const char* family, int points, int langue,
                  const std::function<void()>& pause) {
  QPrinter printer;
  printer.setPageOrientation(QPageLayout::Landscape);
  if (!questions.choosePrinter(parent, printer)) return;
  if (!PrintLines(printer, lines, family, points, pause)) TellFailure(parent, langue);
}

void PrintIntoPdf(QWidget* parent, const std::string& path, const std::vector<std::string>& lines,
                  const char* family, int points, int langue, const std::function<void()>& pause) {
  QPrinter printer;
  printer.setOutputFormat(QPrinter::PdfFormat);
  printer.setOutputFileName(QString::fromStdString(path));
  printer.setPageOrientation(QPageLayout::Landscape);
  if (!PrintLines(printer, lines, family, points, pause)) TellFailure(parent, langue);
}

}  // namespace zemo
