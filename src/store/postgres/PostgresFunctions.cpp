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
ALTER TABLE zemo.base ADD COLUMN IF NOT EXISTS identity text NOT NULL DEFAULT gen_random_uuid();
UPDATE zemo.base SET functions = @functions@, form = greatest(form, @form@);
CREATE OR REPLACE FUNCTION zemo.lock_writers() RETURNS void LANGUAGE plpgsql AS $body$
BEGIN
  IF NOT pg_try_advisory_xact_lock(@lock@) THEN
    RAISE EXCEPTION 'another program writes' USING ERRCODE = 'lock_not_available';
  END IF;
END $body$;
CREATE OR REPLACE FUNCTION zemo.begin_write() RETURNS trigger LANGUAGE plpgsql @as_owner@ AS $body$
BEGIN
  PERFORM zemo.lock_writers();
  IF current_setting('zemo.form', true)::int < (SELECT form FROM zemo.base) THEN
    RAISE EXCEPTION 'made by a newer version' USING ERRCODE = '@form_state@';
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
CREATE OR REPLACE FUNCTION zemo.key_of(regclass) RETURNS text LANGUAGE sql STABLE AS
  $body$ SELECT attname FROM pg_attribute WHERE attrelid = $1 AND attidentity <> '' $body$;
CREATE OR REPLACE FUNCTION zemo.keep_numbers() RETURNS trigger LANGUAGE plpgsql @as_owner@ AS $body$
DECLARE
  key text := zemo.key_of(TG_RELID);
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

// What replicas live on: which rows were written, in the order in which they were stored, and by
// which machine a queue of writes was brought up to where. A machine's writes come with the place
// of the last one, and are taken once, however often they come.
constexpr char kFeed[] = R"(
CREATE TABLE IF NOT EXISTS zemo.changes (
  place bigserial PRIMARY KEY, at timestamptz NOT NULL DEFAULT clock_timestamp(),
  tablename text NOT NULL, number bigint);
CREATE TABLE IF NOT EXISTS zemo.machines (
  machine text PRIMARY KEY, sent bigint NOT NULL, seen timestamptz NOT NULL, host text);
CREATE OR REPLACE FUNCTION zemo.is_owners(role name) RETURNS boolean LANGUAGE sql STABLE AS
  $body$ SELECT pg_has_role(role, nspowner, 'MEMBER') FROM pg_namespace WHERE nspname = 'zemo' $body$;
CREATE OR REPLACE FUNCTION zemo.note_rows() RETURNS trigger LANGUAGE plpgsql @as_owner@ AS $body$
DECLARE
  key text := zemo.key_of(TG_RELID);
  rows text := CASE TG_OP WHEN 'INSERT' THEN 'SELECT %1$I FROM behind'
                          WHEN 'DELETE' THEN 'SELECT %1$I FROM ahead'
                          ELSE 'SELECT %1$I FROM ahead UNION SELECT %1$I FROM behind' END;
  noted bigint := 1;
BEGIN
  IF current_setting('zemo.filling', true) = 'on' AND zemo.is_owners(session_user) THEN
    RETURN NULL;
  END IF;
  IF TG_OP = 'TRUNCATE' OR key IS NULL THEN
    INSERT INTO zemo.changes (tablename) VALUES (TG_TABLE_NAME);
  ELSE
    EXECUTE format('INSERT INTO zemo.changes (tablename, number) SELECT $1, %1$I FROM (' || rows ||
                   ') AS written ORDER BY 2', key) USING TG_TABLE_NAME;
    GET DIAGNOSTICS noted = ROW_COUNT;
  END IF;
  IF noted > 0 THEN
    PERFORM pg_notify('zemo_changes', '');
  END IF;
  RETURN NULL;
END $body$;
CREATE OR REPLACE FUNCTION zemo.watch(watched regclass) RETURNS void LANGUAGE plpgsql AS $body$
DECLARE
  made text;
BEGIN
  FOREACH made IN ARRAY ARRAY[
    'zemo_begin_write BEFORE INSERT OR UPDATE OR DELETE OR TRUNCATE ON %s FOR EACH STATEMENT '
      'EXECUTE FUNCTION zemo.begin_write()',
    'zemo_keep_numbers AFTER INSERT OR UPDATE ON %s FOR EACH STATEMENT '
      'EXECUTE FUNCTION zemo.keep_numbers()',
    'zemo_note_inserted AFTER INSERT ON %s REFERENCING NEW TABLE AS behind FOR EACH STATEMENT '
      'EXECUTE FUNCTION zemo.note_rows()',
    'zemo_note_updated AFTER UPDATE ON %s REFERENCING OLD TABLE AS ahead NEW TABLE AS behind '
      'FOR EACH STATEMENT EXECUTE FUNCTION zemo.note_rows()',
    'zemo_note_deleted AFTER DELETE ON %s REFERENCING OLD TABLE AS ahead FOR EACH STATEMENT '
      'EXECUTE FUNCTION zemo.note_rows()',
    'zemo_note_truncated AFTER TRUNCATE ON %s FOR EACH STATEMENT '
      'EXECUTE FUNCTION zemo.note_rows()']
  LOOP
    EXECUTE 'CREATE OR REPLACE TRIGGER ' || format(made, watched);
  END LOOP;
END $body$;
SELECT zemo.watch(tgrelid::regclass) FROM pg_trigger WHERE tgname = 'zemo_begin_write';
CREATE OR REPLACE FUNCTION zemo.begin_filling() RETURNS void LANGUAGE plpgsql AS $body$
BEGIN
  PERFORM set_config('zemo.filling', 'on', true);
  UPDATE zemo.base SET identity = gen_random_uuid();
  PERFORM pg_notify('zemo_changes', '');
END $body$;
CREATE OR REPLACE FUNCTION zemo.place_of(of_machine text) RETURNS bigint
LANGUAGE sql STABLE @as_owner@ AS
  $body$ SELECT sent FROM zemo.machines WHERE machine = of_machine $body$;
CREATE OR REPLACE FUNCTION zemo.keep_place(of_machine text, up_to bigint) RETURNS void
LANGUAGE sql @as_owner@ AS $body$
  INSERT INTO zemo.machines VALUES (of_machine, up_to, now(), host(inet_client_addr()))
    ON CONFLICT (machine) DO UPDATE SET sent = up_to, seen = now(), host = excluded.host $body$;
CREATE OR REPLACE FUNCTION zemo.take(from_machine text, up_to bigint, changes jsonb)
RETURNS bigint LANGUAGE plpgsql AS $body$
DECLARE
  taken bigint;
  change jsonb;
  part jsonb;
  sets text;
  columns text;
BEGIN
  PERFORM zemo.lock_writers();
  taken := zemo.place_of(from_machine);
  IF taken >= up_to THEN
    RETURN taken;
  END IF;
  FOR change IN SELECT * FROM jsonb_array_elements(changes) LOOP
    IF jsonb_array_length(change->'gone') > 0 THEN
      EXECUTE format('DELETE FROM %1$I WHERE %2$I IN (SELECT jsonb_array_elements_text($1)::bigint)',
                     change->>'table', change->>'key') USING change->'gone';
    END IF;
    FOR part IN SELECT * FROM jsonb_array_elements(change->'changed') LOOP
      SELECT string_agg(format('%1$I = sent.%1$I', name), ', ') INTO sets
        FROM jsonb_array_elements_text(part->'fields') name;
      IF sets IS NOT NULL THEN
        EXECUTE format('UPDATE %1$I AS here SET %2$s FROM jsonb_populate_recordset(NULL::%1$I, $1) '
                       'AS sent WHERE here.%3$I = sent.%3$I',
                       change->>'table', sets, change->>'key') USING part->'rows';
      END IF;
    END LOOP;
    IF jsonb_array_length(change->'new') > 0 THEN
      SELECT string_agg(format('%I', name), ', ') INTO columns
        FROM jsonb_object_keys(change->'new'->0) name;
      EXECUTE format('INSERT INTO %1$I (%2$s) SELECT %2$s FROM '
                     'jsonb_populate_recordset(NULL::%1$I, $1) ORDER BY %3$I',
                     change->>'table', columns, change->>'key') USING change->'new';
    END IF;
  END LOOP;
  PERFORM zemo.keep_place(from_machine, up_to);
  RETURN up_to;
END $body$;
CREATE OR REPLACE FUNCTION zemo.reserve_numbers(of_table regclass, wanted bigint) RETURNS bigint
LANGUAGE plpgsql @as_owner@ AS $body$
DECLARE
  numbers text := pg_get_serial_sequence(of_table::text, zemo.key_of(of_table));
  first bigint;
BEGIN
  IF wanted NOT BETWEEN 1 AND 1000000 OR NOT has_table_privilege(session_user, of_table, 'INSERT')
     OR NOT EXISTS (SELECT FROM pg_trigger WHERE tgrelid = of_table AND
                                                 tgname = 'zemo_begin_write') THEN
    RAISE EXCEPTION 'no numbers for %', of_table USING ERRCODE = 'insufficient_privilege';
  END IF;
  PERFORM zemo.lock_writers();
  first := nextval(numbers);
  PERFORM setval(numbers, first + wanted - 1);
  RETURN first;
END $body$;
CREATE OR REPLACE FUNCTION zemo.reserve(in_table text, wanted bigint) RETURNS bigint
LANGUAGE sql AS
  $body$ SELECT zemo.reserve_numbers(format('%I', in_table)::regclass, wanted) $body$;
CREATE OR REPLACE FUNCTION zemo.forget_changes(days int) RETURNS void LANGUAGE sql @as_owner@ AS
  $body$ DELETE FROM zemo.changes WHERE at < now() - days * interval '1 day' AND
           place < (SELECT max(place) FROM zemo.changes) $body$;
)";

// What a role may do in the base: all that it may is given here, to a role that had more as well.
// Who works writes the tables; what the base notes of it is written by the functions that do so as
// their owner. A machine's place in its queue is told and changed to who knows its name, which
// nobody else reads.
constexpr char kRights[] = R"(
-- Who fires a trigger needs no right to its function, who hangs it on a table of his own does.
REVOKE EXECUTE ON FUNCTION zemo.begin_write(), zemo.keep_numbers(), zemo.note_rows() FROM PUBLIC;
REVOKE EXECUTE ON FUNCTION zemo.keep_place(text, bigint), zemo.reserve_numbers(regclass, bigint),
  zemo.forget_changes(int) FROM PUBLIC;
CREATE OR REPLACE FUNCTION zemo.give_rights(to_role text, rights text) RETURNS void
LANGUAGE plpgsql AS $body$
DECLARE
  base text := current_database();
  tables text := current_schema();
  owner text := (SELECT rolname FROM pg_namespace n JOIN pg_roles r ON r.oid = n.nspowner
                 WHERE nspname = 'zemo');
  step text;
BEGIN
  IF rights NOT IN ('read', 'work', 'own') THEN
    RAISE EXCEPTION 'no such rights: %', rights;
  END IF;
  IF NOT zemo.is_owners(current_user) THEN
    RAISE EXCEPTION 'only who owns the base gives rights' USING ERRCODE = 'insufficient_privilege';
  END IF;
  IF NOT EXISTS (SELECT FROM pg_roles WHERE rolname = to_role) THEN
    RAISE EXCEPTION 'there is no role "%"', to_role;
  END IF;
  IF to_role = owner THEN
    RAISE EXCEPTION 'role "%" owns the base', to_role;
  END IF;
  FOREACH step IN ARRAY ARRAY[
    'REVOKE ALL ON ALL TABLES IN SCHEMA %2$I, zemo FROM %3$I',
    'REVOKE ALL ON ALL SEQUENCES IN SCHEMA %2$I FROM %3$I',
    'REVOKE ALL ON ALL FUNCTIONS IN SCHEMA zemo FROM %3$I',
    'ALTER DEFAULT PRIVILEGES IN SCHEMA %2$I REVOKE ALL ON TABLES FROM %3$I',
    'ALTER DEFAULT PRIVILEGES IN SCHEMA %2$I REVOKE ALL ON SEQUENCES FROM %3$I',
    'GRANT CONNECT ON DATABASE %1$I TO %3$I',
    'GRANT USAGE ON SCHEMA %2$I, zemo TO %3$I',
    'GRANT SELECT ON ALL TABLES IN SCHEMA %2$I TO %3$I',
    'GRANT SELECT ON ALL SEQUENCES IN SCHEMA %2$I TO %3$I',
    'GRANT SELECT ON zemo.base, zemo.changes TO %3$I',
    'GRANT SELECT (sent, seen, host) ON zemo.machines TO %3$I',
    'ALTER DEFAULT PRIVILEGES IN SCHEMA %2$I GRANT SELECT ON TABLES TO %3$I',
    'ALTER DEFAULT PRIVILEGES IN SCHEMA %2$I GRANT SELECT ON SEQUENCES TO %3$I']
  LOOP
    EXECUTE format(step, base, tables, to_role);
  END LOOP;
  IF rights = 'work' THEN
    FOREACH step IN ARRAY ARRAY[
      'GRANT INSERT, UPDATE, DELETE ON ALL TABLES IN SCHEMA %2$I TO %3$I',
      'ALTER DEFAULT PRIVILEGES IN SCHEMA %2$I GRANT INSERT, UPDATE, DELETE ON TABLES TO %3$I',
      'GRANT EXECUTE ON FUNCTION zemo.keep_place(text, bigint), '
        'zemo.reserve_numbers(regclass, bigint), zemo.forget_changes(int) TO %3$I']
    LOOP
      EXECUTE format(step, base, tables, to_role);
    END LOOP;
  END IF;
  step := CASE WHEN rights = 'own' THEN 'GRANT %I TO %I'
               WHEN EXISTS (SELECT FROM pg_auth_members WHERE roleid = quote_ident(owner)::regrole
                              AND member = quote_ident(to_role)::regrole) THEN 'REVOKE %I FROM %I'
          END;
  IF step IS NOT NULL THEN
    EXECUTE format('SET LOCAL ROLE %I', session_user);
    EXECUTE format(step, owner, to_role);
    EXECUTE format('SET LOCAL ROLE %I', owner);
  END IF;
END $body$;
)";

void PutAll(std::string& sql, std::string_view word, const std::string& value) {
  for (size_t at = sql.find(word); at != std::string::npos; at = sql.find(word, at + value.size()))
    sql.replace(at, word.size(), value);
}

}  // namespace

std::string PostgresSchemaSql() {
  std::string bookkeeping = std::string(kBookkeeping) + kFeed + kRights;
  // A search path of their own: who calls them puts no function of his in the place of one.
  PutAll(bookkeeping, "@as_owner@", "SECURITY DEFINER SET search_path = pg_catalog, pg_temp");
  PutAll(bookkeeping, "@form_state@", kFormState);
  PutAll(bookkeeping, "@lock@", kWriterLock);
  PutAll(bookkeeping, "@functions@", std::to_string(kFunctionsVersion));
  PutAll(bookkeeping, "@form@", std::to_string(kBaseForm));
  return "CREATE SCHEMA IF NOT EXISTS zemo;\n" + FoldedSql() + LettersSql() + AccentsSql() +
         DigitsSql() + PatternSql() + bookkeeping;
}

std::string PostgresWatchSql(const std::string& table) {
  return "SELECT zemo.watch(" + PostgresLiteral(QuotedName(table)) + "::regclass);\n";
}

}  // namespace zemo
