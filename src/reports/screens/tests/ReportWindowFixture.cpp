#include "reports/screens/tests/ReportWindowFixture.h"

#include <QApplication>
#include <QHeaderView>
#include <QLineEdit>

#include "platform/real/files/WholeFiles.h"

namespace zemo::test {

namespace {

struct FileInMemory : FileInParts {
  FileInMemory(std::string& file, std::function<void()>& onPart) : file_(file), onPart_(onPart) {}
  void Append(std::string_view bytes) override {
    text_ += bytes;
    if (onPart_) onPart_();
  }
  void Finish() override { file_ = text_; }

 private:
  std::string& file_;
  std::function<void()>& onPart_;
  std::string text_;
};

}  // namespace

void ReportScreenTest::SetUp() {
  ReportFixture::SetUp();
  sources.questions.choosePrinter = [](QWidget*, QPrinter&) { return false; };
  sources.files.open = [this](const std::string& path) {
    return std::make_unique<FileInMemory>(files[path], onPart);
  };
  sources.files.spreadsheets = &sheets;
}

void ReportScreenTest::OpenWindow(int width, int height) {
  window = std::make_unique<ReportWindow>(on.station, sources);
  window->resize(width, height);
  window->Open();
  BringForward(*window, width, height);
}

void ReportScreenTest::AddSongs() {
  Add({.time = "10:00:00", .artist = "Zoo", .title = "One", .genre = "POP", .variety = "NATIONAL"});
  Add({.time = "10:04:00", .artist = "Abba", .title = "Two", .genre = "ROCK", .variety = "WORLD"});
  Add({.time = "10:08:00", .artist = "Bakery", .title = "", .genre = "PUB", .variety = ""});
  Add({.time = "11:12:00", .artist = "Abba", .title = "Two", .genre = "ROCK", .variety = "WORLD"});
}

void ReportScreenTest::AddMany(int rows) {
  on.Sql(
      "INSERT INTO Rapport (AUTEUR, TITRE, DATENUM) WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL "
      "SELECT i + 1 FROM n WHERE i < " +
      std::to_string(rows) +
      ") SELECT CASE i % 2 WHEN 0 THEN 'Even' ELSE 'Odd' END, 'Title ' || i, 46347 + i / "
      "1000000.0 FROM n");
}

void ReportScreenTest::Click(const char* name, Qt::MouseButton button) {
  ClickOn(Find(name), button);
  QApplication::processEvents();
}

void ReportScreenTest::ClickHead(const char* list, int column) {
  QHeaderView* heads = Find<QTableView>(list)->horizontalHeader();
  QTest::mouseClick(heads->viewport(), Qt::LeftButton, Qt::NoModifier,
                    QPoint(heads->sectionViewportPosition(column) + 10, heads->height() / 2));
  QApplication::processEvents();
}

void ReportScreenTest::ClickRow(const char* list, int row) {
  auto* table = Find<QTableView>(list);
  QTest::mouseClick(table->viewport(), Qt::LeftButton, Qt::NoModifier,
                    QPoint(20, table->rowViewportPosition(row) + table->rowHeight(row) / 2));
  QApplication::processEvents();
}

void ReportScreenTest::Type(const char* name, const std::string& text) {
  auto* box = Find<QLineEdit>(name);
  ASSERT_TRUE(box->isVisible() && box->isEnabled()) << name;
  box->setFocus();
  for (const QChar letter : QString::fromStdString(text)) {
    QTest::keyClick(box, letter.toLatin1());
    QApplication::processEvents();
  }
}

void ReportScreenTest::PickInCalendar(int year, int month, int day) {
  PickDayIn(*window, year, month, day);
}

void ReportScreenTest::SaveAs(const std::string& path) {
  SaveIn(*window, "FrmExport", path);
}

std::string ReportScreenTest::Bytes(const std::string& name) const {
  return ReadWholeFile(InFolder(name)).value_or("");
}

std::string ReportScreenTest::Text(const char* name) {
  return TextOn(Find(name));
}

std::vector<std::string> ReportScreenTest::Column(const char* list, int column) {
  std::vector<std::string> texts;
  const QAbstractItemModel& model = *Find<QTableView>(list)->model();
  for (int row = 0; row < model.rowCount(); ++row)
    texts.push_back(model.index(row, column).data().toString().toStdString());
  return texts;
}

}  // namespace zemo::test
