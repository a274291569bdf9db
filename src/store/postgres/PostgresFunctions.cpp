// The order of texts comes from the tables of store/Collation, so that both engines have the same
// one; a collation of the server's libraries would differ in ligatures and signs, and change with
// their versions under the indexes. Texts of ASCII alone, nearly all, take a short way.
#include "store/postgres/PostgresFunctions.h"

#include <string_view>
#include <vector>

#include "store/Collation.h"
#include "store/Names.h"
#include "store/postgres/PostgresValues.h"

namespace zemo {

namespace {

std::string Utf8(char32_t c) {
  std::string text;
  if (c < 0x80) {
    text += static_cast<char>(c);
  } else if (c < 0x800) {
    text += static_cast<char>(0xC0 | (c >> 6));
    text += static_cast<char>(0x80 | (c & 0x3F));
  } else {
    text += static_cast<char>(0xE0 | (c >> 12));
    text += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
    text += static_cast<char>(0x80 | (c & 0x3F));
  }
  return text;
}

// translate() of every character that is changed by itself.
struct Translated {
  std::string from;
  std::string to;
  void Add(char32_t a, char32_t b) {
    if (a == b) return;
    from += Utf8(a);
    to += Utf8(b);
  }
  std::string Sql(const std::string& text) const {
    return "translate(" + text + ", " + PostgresLiteral(from) + ", " + PostgresLiteral(to) + ")";
  }
};

std::string Function(const std::string& name, const std::string& body) {
  return "CREATE OR REPLACE FUNCTION zemo." + name +
         " LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $body$ SELECT " + body + " $body$;\n";
}

std::string ShortWay(const std::string& ascii, const std::string& wide) {
  return "CASE WHEN octet_length($1) = length($1) THEN " + ascii + " ELSE " + wide + " END";
}

const char kAsciiLower[] = "lower($1 COLLATE \"C\")";

std::string FoldedSql() {
  Translated letters;
  for (char32_t c = 1; c <= kLastFolded; ++c) letters.Add(c, FoldCase(c));
  return Function("folded(text) RETURNS text", ShortWay(kAsciiLower, letters.Sql("$1")));
}

// The plain letters of a text, which decide first. Marks of their own are no letters: translate()
// drops what has no counterpart, so they stand at the end.
std::string LettersSql() {
  Translated letters;
  std::string text = "$1";
  for (char32_t c = 1; c <= kLastFolded; ++c) {
    if (c >= kFirstMark && c <= kLastMark) continue;
    const LetterWeights weights = WeightsOf(c);
    if (weights.second == 0)
      letters.Add(c, weights.first);
    else
      text = "replace(" + text + ", " + PostgresLiteral(Utf8(c)) + ", " +
             PostgresLiteral(Utf8(weights.first) + Utf8(weights.second)) + ")";
  }
  for (char32_t c = kFirstMark; c <= kLastMark; ++c) letters.from += Utf8(c);
  return Function("letters(text) RETURNS text COST 20", ShortWay(kAsciiLower, letters.Sql(text)));
}

// An accent for each plain letter, the last one first, which decide among the same letters. Plain
// ones are the lowest sign, those at the end left out: so an unaccented text has nothing here.
std::string AccentsSql() {
  Translated accents;
  std::string text = "regexp_replace($1 COLLATE \"C\", '^[\\u0300-\\u036f]+', '')";
  std::string kept = "\\u0300-\\u036f";
  for (char32_t c = kLastFolded; c >= 1; --c) {  // small letters first: some become two of them
    if (c >= kFirstMark && c <= kLastMark) continue;
    const LetterWeights weights = WeightsOf(c);
    if (weights.second != 0)
      text = "replace(" + text + ", " + PostgresLiteral(Utf8(c)) + ", " +
             PostgresLiteral(Utf8(weights.accent) + Utf8(weights.accent)) + ")";
    else if (weights.accent != 0)
      accents.Add(c, weights.accent);
    else if (c >= 0x80)
      accents.Add(c, 1);
    if (weights.accent == c) kept += Utf8(c);
  }
  // A mark stands for the letter that it is put on, the last one of several.
  text = "regexp_replace(" + accents.Sql(text) +
         ", '[^\\u0300-\\u036f][\\u0300-\\u036f]*([\\u0300-\\u036f])', '\\1', 'g')";
  text = "regexp_replace(" + text + ", '[^" + kept + "]', E'\\x01', 'g')";
  text = "rtrim(reverse(" + text + "), E'\\x01')";
  return Function("accents(text) RETURNS text COST 50", ShortWay("''", text));
}

// As the file writes a number into a text: fifteen digits, a real always with a mark, very large
// and very small ones with an exponent.
std::string DigitsSql() {
  return Function("digits(bigint) RETURNS text", "$1::text") +
         Function("digits(double precision) RETURNS text",
                  "CASE WHEN $1 <> 0 AND (abs($1) >= 1e15 OR abs($1) < 1e-4) THEN "
                  "regexp_replace($1::numeric::float8::text, '^(-?[0-9])e', '\\1.0e') "
                  "WHEN strpos($1::numeric::text, '.') > 0 THEN $1::numeric::text ELSE "
                  "$1::numeric::text || '.0' END") +
         Function("digits(numeric) RETURNS text", "$1::text");
}

std::string PatternSql() {
  return Function("pattern(text) RETURNS text",
                  "translate(replace(replace(replace($1, E'\\\\', E'\\\\\\\\'), '%', E'\\\\%'), "
                  "'_', E'\\\\_'), '*?', '%_')");
}

// One writer at a time, as on the file: so what is read within a transaction stays as it was read,
// and rows come into sight in the order of their numbers. Whoever finds another one is told at
// once; how long he asks again is his own affair.
constexpr char kBookkeeping[] = R"(
CREATE TABLE IF NOT EXISTS zemo.base (
  one int PRIMARY KEY DEFAULT 1 CHECK (one = 1), writes bigint NOT NULL, writer bigint NOT NULL,
  functions int NOT NULL, form int NOT NULL);
INSERT INTO zemo.base VALUES (1, 0, 0, 0, 0) ON CONFLICT DO NOTHING;
UPDATE zemo.base SET functions = FUNCTIONS, form = greatest(form, FORM);
CREATE OR REPLACE FUNCTION zemo.begin_write() RETURNS trigger LANGUAGE plpgsql AS $body$
BEGIN
  IF NOT pg_try_advisory_xact_lock(LOCK) THEN
    RAISE EXCEPTION 'another program writes' USING ERRCODE = 'lock_not_available';
  END IF;
  IF current_setting('zemo.form', true)::int < (SELECT form FROM zemo.base) THEN
    RAISE EXCEPTION 'made by a newer version' USING ERRCODE = 'FORM_STATE';
  END IF;
  UPDATE zemo.base SET writes = writes + 1, writer = txid_current() WHERE writer <> txid_current();
  IF FOUND THEN
    PERFORM set_config('zemo.own', (zemo.own() + 1)::text, false);
  END IF;
  RETURN NULL;
END $body$;
CREATE OR REPLACE FUNCTION zemo.refuse(text, text) RETURNS bigint LANGUAGE plpgsql AS $body$
BEGIN
  RAISE EXCEPTION USING ERRCODE = $1, MESSAGE = $2;
END $body$;
CREATE OR REPLACE FUNCTION zemo.own() RETURNS bigint LANGUAGE sql STABLE AS
  $body$ SELECT coalesce(nullif(current_setting('zemo.own', true), ''), '0')::bigint $body$;
CREATE OR REPLACE FUNCTION zemo.keep_numbers() RETURNS trigger LANGUAGE plpgsql AS $body$
DECLARE
  key text := (SELECT attname FROM pg_attribute WHERE attrelid = TG_RELID AND attidentity <> '');
  numbers text;
  highest bigint;
  last bigint;
BEGIN
  IF key IS NULL THEN
    RETURN NULL;
  END IF;
  numbers := pg_get_serial_sequence(TG_RELID::regclass::text, key);
  EXECUTE format('SELECT max(%I) FROM %s', key, TG_RELID::regclass) INTO highest;
  EXECUTE format('SELECT CASE WHEN is_called THEN last_value ELSE last_value - 1 END FROM %s',
                 numbers) INTO last;
  IF highest > last THEN
    PERFORM setval(numbers, highest);
  END IF;
  RETURN NULL;
END $body$;
)";

}  // namespace

std::string PostgresSchemaSql() {
  std::string bookkeeping = kBookkeeping;
  const auto put = [&bookkeeping](std::string_view word, const std::string& value) {
    bookkeeping.replace(bookkeeping.find(word), word.size(), value);
  };
  put("LOCK", kWriterLock);
  put("FUNCTIONS", std::to_string(kFunctionsVersion));
  put("FORM", std::to_string(kBaseForm));
  put("FORM_STATE", kFormState);
  return "CREATE SCHEMA IF NOT EXISTS zemo;\n" + FoldedSql() + LettersSql() + AccentsSql() +
         DigitsSql() + PatternSql() + bookkeeping;
}

std::string PostgresWatchSql(const std::string& table) {
  const std::string on = " ON " + QuotedName(table) + " FOR EACH STATEMENT EXECUTE FUNCTION zemo.";
  return "CREATE TRIGGER zemo_begin_write BEFORE INSERT OR UPDATE OR DELETE OR TRUNCATE" + on +
         "begin_write();\nCREATE TRIGGER zemo_keep_numbers AFTER INSERT OR UPDATE" + on +
         "keep_numbers();\n";
}

}  // namespace zemo
