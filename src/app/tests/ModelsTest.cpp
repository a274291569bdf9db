// `zemoradio models` from outside: the week as lines, and as a spreadsheet file read back by
// another program.
#include <gtest/gtest.h>

#include "BlackBox.h"

namespace zemo {
namespace {

// Prints the cells of an .xlsx file's only sheet, "A1=text" a line, by its rows.
constexpr const char* kReader = R"(
import sys, zipfile, xml.etree.ElementTree as tree
space = '{http://schemas.openxmlformats.org/spreadsheetml/2006/main}'
book = zipfile.ZipFile(sys.argv[1])
print(tree.fromstring(book.read('xl/workbook.xml')).find(f'{space}sheets')[0].get('name'))
words = [''.join(t.text or '' for t in word.iter(f'{space}t'))
         for word in tree.fromstring(book.read('xl/sharedStrings.xml'))]
for cell in tree.fromstring(book.read('xl/worksheets/sheet1.xml')).iter(f'{space}c'):
    value = cell.find(f'{space}v')
    if value is not None:
        text = words[int(value.text)] if cell.get('t') == 's' else value.text
        print(cell.get('r') + '=' + text)
)";

class Models : public BlackBox {
 protected:
  void MakeModels(const std::string& orders) const {
    Put("make", orders);
    const Result made =
        Run("simulate --station station --in-place --no-start --for 0 --script make --trace made");
    ASSERT_EQ(made.status, 0) << made.err;
    ASSERT_EQ(ReadText(root_ / "made").find("\"error\""), std::string::npos);
  }
  void MakeWeek() const {
    MakeModels(
        "+0 sql INSERT INTO Models(JOUR, GENRE, TRANCHE00, TRANCHE23) VALUES (1, 'GOLD', 60, 0), "
        "(1, 'L''été', 45, 100), (7, 'ROCK', 5, 5)\n");
  }
  static std::string Asking(const std::string& more) {
    return "models " + more + " --station station --machine machine";
  }
};

TEST_F(Models, TheListHasABlockADayWithItsGenresHoursAndTotals) {
  MakeWeek();
  const Result result = Run(Asking("list"));
  ASSERT_EQ(result.status, 0) << result.err;
  const auto lines = LinesOf(result.out);
  // A heading, a line a genre, the totals and an empty line: 5 for Monday, 3 for the five days
  // without a genre, 4 for Sunday, whose last empty line holds nothing.
  ASSERT_EQ(lines.size(), 5U + 5 * 3 + 3) << result.out;
  EXPECT_EQ(lines[0].substr(0, 15), "Lundi\t00h\t01h\t0");
  EXPECT_EQ(lines[1].substr(0, 7), "GOLD\t60");
  EXPECT_EQ(lines[2].substr(0, 10), "L'été\t45");
  EXPECT_EQ(lines[2].substr(lines[2].rfind('\t')), "\t100");
  EXPECT_EQ(lines[3].substr(0, 11), "Total %\t105");
  EXPECT_EQ(lines[4], "");
  EXPECT_EQ(lines[5].substr(0, 5), "Mardi");
  EXPECT_EQ(lines[20].substr(0, 8), "Dimanche");
  EXPECT_EQ(lines[21].substr(0, 6), "ROCK\t5");
}

TEST_F(Models, TheSpreadsheetHoldsTheSameCells) {
  MakeWeek();
  const auto station = Files("station");
  const Result result = Run(Asking("export week.xlsx"));
  ASSERT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(Files("station"), station);
  Put("reader.py", kReader);
  const Result read = Shell("python3 reader.py week.xlsx");
  ASSERT_EQ(read.status, 0) << read.err;
  EXPECT_EQ(LinesOf(read.out).at(0), "ModelsSemaine");
  for (const char* cell : {"A1=Lundi", "B1=00h", "Y1=23h", "A2=GOLD", "B2=60", "Y2=0", "A3=L'été",
                           "B3=45", "Y3=100", "A4=Total %", "B4=105", "A6=Mardi", "A7=Total %",
                           "B7=0", "A21=Dimanche", "A22=ROCK", "Y22=5"})
    EXPECT_NE(read.out.find(std::string("\n") + cell + "\n"), std::string::npos) << cell << "\n"
                                                                                 << read.out;
}

TEST_F(Models, AStationThatFollowsSkeletonsGivesItsPositions) {
  MakeModels(
      "+0 set Squelette yes\n"
      "+0 sql INSERT INTO ModelSquelette(JOUR, TRANCHE00, TRANCHE08) VALUES (1, 'GOLD', ''), (1, "
      "'', 'ROCK')\n");
  const Result listed = Run(Asking("list"));
  ASSERT_EQ(listed.status, 0) << listed.err;
  const auto lines = LinesOf(listed.out);
  EXPECT_EQ(lines.at(1), "1\tGOLD");
  EXPECT_EQ(lines.at(2), "2\t\t\t\t\t\t\t\t\tROCK");
  ASSERT_EQ(Run(Asking("export positions.XLSX")).status, 0);
  Put("reader.py", kReader);
  const Result read = Shell("python3 reader.py positions.XLSX");
  EXPECT_EQ(LinesOf(read.out).at(0), "SqueletteSemaine");
  EXPECT_NE(read.out.find("\nJ3=ROCK\n"), std::string::npos) << read.out;
}

TEST_F(Models, WrongUsageIsStatusTwo) {
  for (const char* arguments :
       {"", "export", "export week.xls", "export ''", "list week.xlsx", "import week.xlsx"}) {
    const Result result = Run(Asking(arguments));
    EXPECT_EQ(result.status, 2) << arguments;
    ExpectOneError(result.err);
  }
}

TEST_F(Models, WhatCannotBeReadOrWrittenIsStatusOne) {
  Result result = Run(Asking("list"));
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.err,
            "zemoradio: there is no base in station: neither a Triskin.MDB nor a Base.Ini that "
            "names one on a server\n");
  MakeWeek();
  result = Run(Asking("export none/week.xlsx"));
  EXPECT_EQ(result.status, 1);
  ExpectOneError(result.err);
  EXPECT_NE(result.err.find("none/week.xlsx"), std::string::npos) << result.err;
}

}  // namespace
}  // namespace zemo
