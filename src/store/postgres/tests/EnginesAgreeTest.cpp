// The engines beside each other, and a replica beside them: on generated rows, queries, writes and
// walks of a cursor each answers as the file does. Every run takes the same ones; the seed is in
// the message.
#include <algorithm>
#include <array>
#include <random>

#include "store/Collation.h"
#include "store/postgres/PostgresConnection.h"
#include "store/postgres/tests/EngineFixture.h"

namespace zemo {
namespace {

using test::TestServer;

// Letters of every kind that the comparisons tell apart.
const Strings& Pieces() {
  static const Strings kPieces = {
      "a",  "A", "b",  "B",  "e",          "E",       "é",       "É",      "è",
      "ê",  "ë", "o",  "ô",  "œ",          "Œ",       "oe",      "æ",      "Æ",
      "ae", "ß", "ss", "þ",  "ĳ",          "ç",       "Ç",       "c",      "C",
      "ñ",  "ł", "Ł",  "İ",  "ı",          "ſ",       "s",       "S",      "Ÿ",
      "ÿ",  "×", "÷",  "Ω",  "ω",          "Я",       "я",       "Ё",      "ё",
      "ẞ",  "Ẁ", "ẁ",  "日", "\U0001F3B5", "e\u0301", "E\u0301", "\u0301", "e\u0301\u0308",
      " ",  "'", "\"", "%",  "_",          "\\",      "*",       "?",      "[",
      "]",  "-", "0",  "1",  "5",          ".",       "Z",       "z",      "\x01",
      "\t", "ŉ", "ž",  "Ž"};
  return kPieces;
}

class Chance {
 public:
  explicit Chance(unsigned seed) : engine_(seed) {}
  size_t Below(size_t n) { return engine_() % n; }
  bool OneIn(size_t n) { return Below(n) == 0; }
  const std::string& Of(const Strings& choices) { return choices[Below(choices.size())]; }
  std::string Text(size_t most) {
    std::string text;
    for (size_t n = Below(most + 1); n-- > 0;) text += Of(Pieces());
    return text;
  }

 private:
  std::mt19937 engine_;
};

// Few different ones, so that they meet.
std::string ShortText(Chance& chance) {
  static const Strings kCommon = {"",     "abba", "ABBA", "Abba", "été", "ÉTÉ",  "ete", "cote",
                                  "côte", "coté", "côté", "a%b",  "a_b", "a\\b", "5",   "05",
                                  "5.0",  "œuf",  "OEUF", "of",   "z",   "l'a",  "é",   "E"};
  return chance.OneIn(3) ? chance.Text(4) : chance.Of(kCommon);
}

Value AnyText(Chance& chance) {
  return chance.OneIn(8) ? Value() : Value(ShortText(chance));
}
Value AnyWhole(Chance& chance) {
  return chance.OneIn(8) ? Value() : Value(static_cast<int64_t>(chance.Below(9)) - 3);
}
Value AnyReal(Chance& chance) {
  if (chance.OneIn(8)) return {};
  if (chance.OneIn(4)) return 38000 + 1.0 / static_cast<double>(3 + chance.Below(4));
  return static_cast<double>(chance.Below(40)) / 4 - 3;
}

std::string Shown(const Value& value) {
  if (IsNull(value)) return "NULL";
  if (std::holds_alternative<std::string>(value)) return "'" + AsText(value) + "'";
  return (std::holds_alternative<double>(value) ? "r" : "i") + AsText(value);
}

Strings Answer(Database& base, const std::string& sql, const Values& values) {
  Strings answer;
  const int error = ErrorOf([&] {
    const auto rows = base.OpenRecordset(sql, values);
    std::string names;
    for (int i = 0; i < rows->FieldCount(); ++i) names += rows->FieldName(i) + ' ';
    answer.push_back(names);
    for (; !rows->Eof(); rows->MoveNext()) {
      std::string row;
      for (int i = 0; i < rows->FieldCount(); ++i) row += Shown(rows->Field(i)) + '|';
      answer.push_back(row);
    }
  });
  if (error != 0) answer = {"error " + std::to_string(error)};
  return answer;
}

class Agreement : public testing::Test {
 protected:
  void SetUp() override {
    if (!TestServer::Get().Missing().empty()) GTEST_SKIP() << TestServer::Get().Missing();
    file = std::make_unique<EngineBase>(Engine::kFile);
    server = std::make_unique<EngineBase>(Engine::kServer);
    replica = std::make_unique<EngineBase>(Engine::kReplica);
  }
  // The file's first, with which the others are to agree.
  std::array<Database*, 3> All() { return {&file->Db(), &server->Db(), &replica->Db()}; }
  void OnAll(const std::string& sql, const Values& values) {
    std::string told;
    std::vector<int> errors;
    for (Database* base : All()) {
      std::string text;
      errors.push_back(ErrorOf([&] { base->Execute(sql, values); }, &text));
      told += text + '\n';
    }
    EXPECT_EQ(errors, std::vector<int>(errors.size(), errors[0]))
        << QueryWithValues(sql, values) << '\n'
        << told;
  }
  void Fill(Chance& chance, int rows) {
    Transaction ofFile(file->Db()), ofServer(server->Db()), ofReplica(replica->Db());
    for (int i = 0; i < rows; ++i) {
      OnAll(
          "INSERT INTO Discotheque(AUTEUR, TITRE, GENRE, COMMENTAIRE, DUREE, NBPASSJOUR, LASTDIFF) "
          "VALUES(?,?,?,?,?,?,?)",
          {AnyText(chance), AnyText(chance), ShortText(chance), AnyText(chance), AnyWhole(chance),
           AnyWhole(chance), AnyReal(chance)});
      OnAll("INSERT INTO VT(FILENAME, LIBELLE, CUT, START) VALUES(?,?,?,?)",
            {AnyText(chance), AnyText(chance), chance.OneIn(2) ? -1 : 0, AnyWhole(chance)});
      if (i % 4 == 0)
        OnAll("INSERT INTO Variete(POURCENT, VARIETE) VALUES(?,?)",
              {AnyWhole(chance), AnyText(chance)});
    }
    ofFile.Commit();
    ofServer.Commit();
    ofReplica.Commit();
  }
  void ExpectSameAnswer(const std::string& sql, const Values& values = {}, bool anyOrder = false) {
    Strings first;
    for (Database* base : All()) {
      Strings answer = Answer(*base, sql, values);
      if (anyOrder) std::sort(answer.begin(), answer.end());
      if (base == &file->Db()) first = std::move(answer);
      if (base != &file->Db()) ExpectSame(first, answer, QueryWithValues(sql, values));
    }
  }
  static void ExpectSame(const Strings& first, const Strings& other, const std::string& query) {
    const size_t rows = std::min(first.size(), other.size());
    for (size_t i = 0; i < rows; ++i)
      ASSERT_EQ(first[i], other[i]) << "row " << i << " of " << query;
    EXPECT_EQ(first.size(), other.size()) << "rows of " << query;
  }
  void ExpectSameTables() {
    for (const char* table : {"Discotheque", "VT", "Variete", "Toph", "Rapport"})
      ExpectSameAnswer(std::string("SELECT * FROM ") + table);
  }

  std::unique_ptr<EngineBase> file, server, replica;
};

// --- Comparisons ---

int SignOf(int value) {
  return (value > 0) - (value < 0);
}

TEST_F(Agreement, OnTheOrderTheCaseAndThePatternsOfTexts) {
  PostgresConnection connection(TestServer::Get().Url(server->Name()), false,
                                std::make_shared<LockWait>());
  const std::string key = "(zemo.letters($N) COLLATE \"C\", zemo.accents($N) COLLATE \"C\")";
  const auto of = [&key](const char* place) {
    std::string made = key;
    for (size_t at; (at = made.find("$N")) != std::string::npos;) made.replace(at, 2, place);
    return made;
  };
  const std::string sql = "SELECT CASE WHEN " + of("$1::text") + " < " + of("$2::text") +
                          " THEN -1 WHEN " + of("$1::text") + " > " + of("$2::text") +
                          " THEN 1 ELSE 0 END, (zemo.folded($1) = zemo.folded($2))::int, "
                          "(zemo.folded($1) LIKE zemo.folded(zemo.pattern($2)))::int";
  Chance chance(1);
  int equal = 0, like = 0;
  for (int i = 0; i < 10000; ++i) {
    // Half of them of few letters, so that accents are what decides.
    const bool alike = chance.OneIn(2);
    const auto word = [&] {
      std::string text;
      for (size_t n = alike ? 3 : 0; n-- > 0;)
        text += chance.Of({"e", "é", "è", "E", "É", "e\u0301", "ê", "\u00EB"});
      return alike ? text : chance.Text(5);
    };
    const std::string a = word();
    std::string b = chance.OneIn(3) ? a : word();
    if (chance.OneIn(3) && !b.empty() && static_cast<unsigned char>(b[0]) < 0x80) b[0] ^= ' ';
    if (b.find('\0') != std::string::npos) continue;
    const PostgresResult told = connection.Run(sql, {a, b}, false);
    ASSERT_EQ(told.Int(0, 0), SignOf(CompareFrenchOrder(a, b))) << a << " and " << b;
    ASSERT_EQ(told.Int(0, 1) != 0, CompareFrenchCase(a, b) == 0) << a << " and " << b;
    ASSERT_EQ(told.Int(0, 2) != 0, MatchesPattern(a, b)) << a << " like " << b;
    equal += told.Int(0, 0) == 0 ? 1 : 0;
    like += told.Int(0, 2) != 0 ? 1 : 0;
  }
  EXPECT_GT(equal, 500);
  EXPECT_GT(like, 500);
}

TEST_F(Agreement, OnEveryCharacterThatIsFolded) {
  PostgresConnection connection(TestServer::Get().Url(server->Name()), false,
                                std::make_shared<LockWait>());
  const PostgresResult told = connection.Run(
      "SELECT c, ascii(zemo.folded(chr(c))), ascii(zemo.letters(chr(c))), "
      "coalesce(ascii(zemo.accents(chr(c))), 0) FROM generate_series(1, 12000) c",
      {}, false);
  for (int row = 0; row < told.Rows(); ++row) {
    const auto c = static_cast<char32_t>(told.Int(row, 0));
    ASSERT_EQ(told.Int(row, 1), static_cast<int64_t>(FoldCase(c))) << told.Int(row, 0);
    const bool mark = c >= kFirstMark && c <= kLastMark;
    const LetterWeights weights = WeightsOf(c);
    ASSERT_EQ(told.Int(row, 2), mark ? 0 : static_cast<int64_t>(weights.first));
    ASSERT_EQ(told.Int(row, 3), mark ? 0 : static_cast<int64_t>(weights.accent));
  }
}

// --- Queries ---

// A condition of the dialect on the cards, its values bound or written.
class Conditions {
 public:
  explicit Conditions(Chance& chance) : chance_(chance) {}
  Values values;

  std::string Any(int depth) {
    if (depth > 0 && chance_.OneIn(3))
      return "(" + Any(depth - 1) + (chance_.OneIn(2) ? " AND " : " OR ") + Any(depth - 1) + ")";
    if (depth > 0 && chance_.OneIn(6)) return "NOT " + Any(depth - 1);
    switch (chance_.Below(9)) {
      case 0:
      case 1:
        return Text() + ' ' + Sign() + ' ' + Put(AnyText(chance_));
      case 2:
        return Text() + (chance_.OneIn(3) ? " NOT LIKE " : " LIKE ") + Put(Pattern());
      case 3:
        return Text() + (chance_.OneIn(3) ? " NOT IN(" : " In(") + Put(AnyText(chance_)) + ", " +
               Put(AnyText(chance_)) + ", 'abba')";
      case 4:
        return Number() + ' ' + Sign() + ' ' + Put(AnyWhole(chance_));
      case 5:
        return Number() + ' ' + Sign() + ' ' + Put(AnyReal(chance_));
      case 6:
        return Odd();
      case 7:
        return Put(ShortText(chance_)) + ' ' + Sign() + ' ' + Text();
      default:
        return Number() + (chance_.OneIn(3) ? " NOT IN(" : " IN(") + Put(AnyWhole(chance_)) + ", " +
               Put(AnyReal(chance_)) + ")";
    }
  }

 private:
  std::string Odd() {
    switch (chance_.Below(9)) {
      case 0:
        return Text() + " IS NULL";
      case 1:
        return Number() + " IS NOT NULL";
      case 2:
        return Number() + ' ' + Sign() + ' ' + Put(ShortText(chance_));
      case 3:
        return Text() + ' ' + Sign() + ' ' + Put(AnyWhole(chance_));
      case 4:
        return Text() + ' ' + Sign() + ' ' + Text();
      case 5:
        return "CODE IN (SELECT CODE FROM VT WHERE LIBELLE = " + Put(ShortText(chance_)) + ")";
      case 6:
        return "AUTEUR IN (SELECT LIBELLE FROM VT WHERE CUT = True)";
      case 7:
        return "NBPASSJOUR + DUREE * 2 " + Sign() + ' ' + Put(AnyWhole(chance_));
      default:
        return Number() + " BETWEEN " + Put(AnyWhole(chance_)) + " AND " + Put(AnyReal(chance_));
    }
  }
  std::string Text() {
    return chance_.Of({"AUTEUR", "titre", "Discotheque.GENRE", "[COMMENTAIRE]"});
  }
  std::string Number() { return chance_.Of({"CODE", "duree", "NBPASSJOUR", "LASTDIFF"}); }
  std::string Sign() { return chance_.Of({"=", "<>", "<", ">", "<=", ">="}); }
  std::string Pattern() {
    std::string pattern = ShortText(chance_);
    pattern.insert(chance_.OneIn(2) ? pattern.size() : 0, chance_.OneIn(3) ? "?" : "*");
    return pattern;
  }
  std::string Put(const Value& value) {
    if (chance_.OneIn(2)) return SqlLiteral(value);
    values.push_back(value);
    return "?";
  }

  Chance& chance_;
};

TEST_F(Agreement, OnGeneratedQueries) {
  Chance chance(2);
  Fill(chance, 150);
  const Strings orders = {"",
                          " ORDER BY AUTEUR",
                          " ORDER BY titre DESC",
                          " ORDER BY LASTDIFF",
                          " ORDER BY NBPASSJOUR DESC, AUTEUR",
                          " ORDER BY GENRE, DUREE DESC;",
                          " ORDER BY CODE DESC",
                          " ORDER BY Discotheque.COMMENTAIRE, Code"};
  int some = 0;
  for (int i = 0; i < 3000 && !HasFailure(); ++i) {
    Conditions conditions(chance);
    const std::string where = chance.OneIn(10) ? " WHERE '*'" : " WHERE " + conditions.Any(2);
    std::string sql = "SELECT ";
    if (chance.OneIn(5)) sql += "TOP " + std::to_string(chance.Below(6)) + " ";
    const Strings columns = {"*", "CODE", "Auteur, CODE", "CODE, TITRE, LASTDIFF, NBPASSJOUR",
                             "CODE, DUREE + 1, -NBPASSJOUR"};
    sql += chance.Of(columns) + " FROM Discotheque" + where + chance.Of(orders);
    const Strings answer = Answer(file->Db(), sql, conditions.values);
    some += answer.size() > 1 ? 1 : 0;
    for (const auto& other : {&server, &replica})
      ExpectSame(answer, Answer((*other)->Db(), sql, conditions.values),
                 QueryWithValues(sql, conditions.values));
  }
  EXPECT_GT(some, 1000) << "queries that find nothing prove nothing";
}

TEST_F(Agreement, OnWhatIsReckonedOverRows) {
  Chance chance(3);
  Fill(chance, 120);
  for (int i = 0; i < 500 && !HasFailure(); ++i) {
    Conditions conditions(chance);
    const Strings columns = {"COUNT(*)",        "COUNT(AUTEUR)",      "MAX(LASTDIFF)",
                             "MIN(CODE)",       "SUM(DUREE)",         "AVG(NBPASSJOUR)",
                             "MAX(NBPASSJOUR)", "COUNT(*), MAX(CODE)"};
    ExpectSameAnswer(
        "SELECT " + chance.Of(columns) + " FROM Discotheque WHERE " + conditions.Any(1),
        conditions.values);
  }
  for (const char* sql :
       {"SELECT DISTINCT NBPASSJOUR FROM Discotheque ORDER BY NBPASSJOUR",
        "SELECT NBPASSJOUR, COUNT(*) FROM Discotheque GROUP BY NBPASSJOUR ORDER BY NBPASSJOUR",
        "SELECT COUNT(*) FROM Discotheque, VT WHERE Discotheque.AUTEUR = VT.LIBELLE",
        "SELECT COUNT(*) FROM Discotheque d JOIN VT v ON d.CODE = v.CODE AND v.CUT = True",
        "SELECT LENGTH(AUTEUR), TRIM(TITRE), AUTEUR || '-' || CODE FROM Discotheque",
        "SELECT * FROM Variete", "SELECT TOP 5 * FROM Variete ORDER BY POURCENT",
        "SELECT VARIETE FROM Variete ORDER BY VARIETE DESC"})
    ExpectSameAnswer(sql);
  ExpectSameAnswer("SELECT DISTINCT GENRE FROM Discotheque ORDER BY GENRE", {}, true);
  ExpectSameAnswer("SELECT GENRE, COUNT(*) FROM Discotheque GROUP BY GENRE", {}, true);
}

// --- Writes ---

TEST_F(Agreement, OnGeneratedWrites) {
  Chance chance(4);
  Fill(chance, 60);
  for (int i = 0; i < 400 && !HasFailure(); ++i) {
    Conditions conditions(chance);
    switch (chance.Below(7)) {
      case 0: {
        const std::string where = conditions.Any(1) + " AND NBPASSJOUR = 1";
        OnAll("DELETE * FROM Discotheque WHERE " + where, conditions.values);
        break;
      }
      case 1: {
        Conditions next(chance);
        const Value title = AnyText(chance);
        const std::string where = next.Any(1);
        Values values = {title, AnyReal(chance)};
        values.insert(values.end(), next.values.begin(), next.values.end());
        OnAll("UPDATE Discotheque SET TITRE = ?, LASTDIFF = ?, NBPASSJOUR = NBPASSJOUR + 1 WHERE " +
                  where,
              values);
        break;
      }
      case 2:
        OnAll("INSERT INTO VT(LIBELLE, START) SELECT TOP 3 AUTEUR, DUREE FROM Discotheque WHERE " +
                  conditions.Any(1),
              conditions.values);
        break;
      case 3:  // beyond its field, or a text for a number
        OnAll("UPDATE Discotheque SET ANNEE = ?, NBPASSJOUR = ?, DUREE = ? WHERE CODE = ?",
              {chance.OneIn(2) ? Value(chance.Text(6)) : Value(int64_t{2005}),
               chance.OneIn(4) ? Value(int64_t{40000}) : AnyWhole(chance),
               chance.OneIn(4) ? Value(ShortText(chance)) : AnyWhole(chance),
               static_cast<int64_t>(chance.Below(80))});
        break;
      case 4:
        OnAll("INSERT INTO VT(CODE, LIBELLE) VALUES(?,?)",
              {static_cast<int64_t>(chance.Below(400)), AnyText(chance)});
        break;
      case 5:
        OnAll("DELETE * FROM VT WHERE CODE > ?", {static_cast<int64_t>(300 + chance.Below(200))});
        break;
      default:
        OnAll("INSERT INTO Discotheque(AUTEUR, TITRE, DUREE, LASTDIFF) VALUES(?,?,?,?)",
              {AnyText(chance), AnyReal(chance), ShortText(chance).empty() ? 5 : 6,
               AnyWhole(chance)});
    }
    for (Database* base : All()) EXPECT_EQ(base->LastInsertCode(), file->Db().LastInsertCode());
    if (i % 20 == 0) ExpectSameTables();
  }
  ExpectSameTables();
}

// --- Cursors ---

std::string Where(Recordset& table) {
  if (table.NoMatch()) return "no match";
  std::string where = std::string(table.Bof() ? "Bof " : "") + (table.Eof() ? "Eof " : "");
  const int error = ErrorOf([&] {
    for (int i = 0; i < table.FieldCount(); ++i) where += Shown(table.Field(i)) + '|';
  });
  return error == 0 ? where : where + "error " + std::to_string(error);
}

TEST_F(Agreement, OnGeneratedWalksOfACursor) {
  Chance chance(5);
  Fill(chance, 80);
  std::vector<std::unique_ptr<Recordset>> cursors;
  for (Database* base : All()) cursors.push_back(base->OpenTable("Discotheque"));
  for (int i = 0; i < 3000 && !HasFailure(); ++i) {
    const size_t act = chance.Below(14);
    const std::string index = chance.Of({"", "CODE", "Auteur", "TITRE", "NbPassJour", "NoIndex"});
    const Value key = chance.OneIn(2) ? AnyText(chance) : AnyWhole(chance);
    const Value text = AnyText(chance), number = AnyWhole(chance);
    Strings told;
    for (const auto& cursor : cursors) {
      Recordset& table = *cursor;
      const int error = ErrorOf([&] {
        switch (act) {
          case 0:
            return table.SetIndex(index);
          case 1:
            return table.Seek("=", key);
          case 2:
            return table.MoveFirst();
          case 3:
            return table.MoveLast();
          case 4:
          case 5:
          case 6:
          case 7:
            return table.MoveNext();
          case 8:
          case 9:
            return table.MovePrevious();
          case 10:
            table.AddNew();
            table.Set("AUTEUR", text);
            table.Set("TITRE", number);
            table.Set("NBPASSJOUR", number);
            return table.Update();
          case 11:
            table.Edit();
            table.Set("AUTEUR", text);
            table.Set("LASTDIFF", number);
            return table.Update();
          case 12:
            table.Edit();
            return table.Set("TITRE", text);
          default:
            return table.Delete();
        }
      });
      told.push_back(std::to_string(error) + ' ' + Where(table));
    }
    EXPECT_EQ(told, Strings(told.size(), told[0]))
        << "step " << i << ", act " << act << ", index " << index << ", key " << Shown(key);
  }
  EXPECT_GT(cursors[0]->RecordCount(), 20);
  ExpectSameTables();
}

}  // namespace
}  // namespace zemo
