#!/usr/bin/env python3
"""Shows that check_floors.py finds what it is there to find, on samples made for it."""

import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
import check_floors  # noqa: E402

COMPILER = os.environ.get("CXX", "c++")


class Sample(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)
        self.src = pathlib.Path(self.folder.name)

    def write(self, name, text):
        path = self.src / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text, encoding="utf-8")
        return path

    def violations(self):
        return check_floors.check_sources(self.src)[1]

    def found(self, name, text):
        """The one violation of a tree that holds just this file."""
        self.write(name, text)
        violations = self.violations()
        self.assertEqual(len(violations), 1, violations)
        return violations[0]

    def compiled(self, name, text):
        source = self.write(name, text)
        result = source.with_suffix(".o")
        subprocess.run([COMPILER, "-std=c++20", "-O1", "-fPIE", "-c", source, "-o", result], check=True)
        return str(result)


class Queries(Sample):
    def assert_value(self, line):
        self.assertEqual(self.found("engine/Ask.cpp", "\n" + line + "\n"),
                         "src/engine/Ask.cpp:2: a value in the text of a query: bind it")

    def test_a_value_behind_a_comparison(self):
        self.assert_value('db.Execute("DELETE * FROM Pls WHERE NUMPLS = " + code);')

    def test_a_quoted_value(self):
        self.assert_value('sql = "SELECT * FROM VT WHERE LIBELLE LIKE \'" + name + "\'";')

    def test_a_value_behind_a_text_of_two_pieces(self):
        self.assert_value('sql = "SELECT * FROM VT " "WHERE CUT < " + cut;')

    def test_a_value_behind_top(self):
        self.assert_value('sql += "SELECT TOP " + number;')

    def test_a_number_in_the_call(self):
        self.assert_value('db.ReadRows(head + std::to_string(n), take);')

    def test_the_words_of_the_store(self):
        self.assert_value('text += SqlQuoted(name);')

    def test_bound_values_columns_tables_and_messages_are_free(self):
        self.write("engine/Ask.cpp",
                   'db.Execute("DELETE * FROM " + table + " WHERE JOUR = ?", {day});\n'
                   'db.ReadRows("SELECT " + columns + " FROM VT", {std::to_string(n)}, take);\n'
                   'log("Code = " + std::to_string(code));  // "WHERE CODE = " + code\n')
        self.assertEqual(self.violations(), [])

    def test_the_store_may(self):
        self.write("store/Sql.cpp", 'sql = "SELECT X FROM T WHERE Y = " + SqlLiteral(y);\n')
        self.assertEqual(self.violations(), [])


class Includes(Sample):
    def test_an_upper_floor_may_include_a_lower_one(self):
        self.write("platform/Clock.h", "")
        self.write("engine/Tick.cpp", '#include "platform/Clock.h"\n#include <vector>\n')
        self.assertEqual(self.violations(), [])

    def test_a_lower_floor_may_not_include_an_upper_one(self):
        self.assertEqual(self.found("station/Row.cpp", '\n#include "engine/Tick.h"\n'),
                         "src/station/Row.cpp:2: station may not include engine (engine/Tick.h)")

    def test_the_store_knows_the_platform_only(self):
        self.assertIn("store may not include station",
                      self.found("store/Table.h", '#include "station/Station.h"\n'))

    def test_the_logic_does_not_know_the_real_platform(self):
        self.assertIn("engine may not include platform/real",
                      self.found("engine/Tick.h", '#include "platform/real/files/RealFolder.h"\n'))

    def test_an_include_beside_the_file_counts_as_its_own_folder(self):
        self.write("engine/Tick.h", "")
        self.write("engine/Tick.cpp", '#include "Tick.h"\n')
        self.assertEqual(self.violations(), [])

    def test_a_folder_outside_the_table_is_named(self):
        self.assertIn("stands in no folder", self.found("misc/Helpers.cpp", "int f();\n"))

    def test_only_a_screen_may_include_a_screen(self):
        self.assertIn("only a screen may include a screen",
                      self.found("engine/Tick.cpp", '#include "engine/screens/MainWindow.h"\n'))

    def test_a_screen_may_include_what_windows_share_its_folder_what_is_below_and_other_screens(self):
        self.write("traffic/screens/CampaignWindow.cpp",
                   '#include "ui/Theme.h"\n#include "traffic/CampaignGrid.h"\n#include "station/Station.h"\n'
                   '#include "engine/screens/OnAirWindow.h"\n#include "reports/screens/ReportWindow.h"\n')
        self.assertEqual(self.violations(), [])

    def test_a_screen_may_not_include_the_logic_above_its_folder(self):
        self.assertEqual(self.found("library/screens/CardWindow.cpp", '#include "engine/MainTick.h"\n'),
                         "src/library/screens/CardWindow.cpp:1: library may not include engine (engine/MainTick.h)")

    def test_no_logic_may_include_what_windows_share(self):
        self.assertEqual(self.found("engine/Tick.cpp", '#include "ui/Theme.h"\n'),
                         "src/engine/Tick.cpp:1: engine may not include ui (ui/Theme.h)")

    def test_what_windows_share_knows_little_of_the_logic_and_no_window(self):
        self.write("ui/Window.cpp", '#include "station/Station.h"\n#include "platform/LocalValues.h"\n'
                                    '#include "engine/FreeMoment.h"\n')
        self.assertEqual(self.violations(), [])
        self.assertIn("ui may not include traffic", self.found("ui/Window.cpp", '#include "traffic/Break.h"\n'))
        self.assertIn("only a screen may include a screen",
                      self.found("ui/Window.cpp", '#include "engine/screens/OnAirWindow.h"\n'))

    def test_the_program_may_include_screens_and_what_windows_share(self):
        self.write("app/Screen.cpp", '#include "ui/Theme.h"\n#include "engine/screens/OnAirWindow.h"\n')
        self.assertEqual(self.violations(), [])

    def test_a_circle_between_the_three_is_found_through_header_and_source(self):
        self.write("scheduling/Fit.h", "")
        self.write("scheduling/Fit.cpp", '#include "traffic/Break.h"\n')
        self.write("traffic/Break.h", '#include "reports/Row.h"\n')
        self.write("reports/Row.h", "")
        self.write("reports/Row.cpp", '#include "scheduling/Fit.h"\n')
        self.assertEqual(self.violations(), [
            "src/reports/Row: stands in a circle of includes with scheduling/Fit",
            "src/scheduling/Fit: stands in a circle of includes with traffic/Break",
            "src/traffic/Break: stands in a circle of includes with reports/Row"])

    def test_the_three_may_include_each_other_without_a_circle(self):
        self.write("scheduling/Fit.cpp", '#include "traffic/Break.h"\n')
        self.write("traffic/Break.h", "")
        self.write("traffic/Export.cpp", '#include "scheduling/Rules.h"\n')
        self.write("scheduling/Rules.h", "")
        self.assertEqual(self.violations(), [])


class Names(Sample):
    def test_each_rule_finds_its_sample(self):
        samples = {
            "Qt": ["#include <QTimer>\n", "auto t = QDateTime::currentDateTime();\n"],
            "sound library": ["#include <sndfile.h>\n", "#include <RtAudio.h>\n",
                              "#include <taglib/tag.h>\n"],
            "server library": ["#include <libpq-fe.h>\n", "auto x = PQexec(c, q);\n"],
            "joystick library": ["#include <SDL.h>\n", "#include <SDL2/SDL_joystick.h>\n"],
            "system clock": ["#include <chrono>\n", "auto t = std::time(nullptr);\n",
                             "gettimeofday(&tv, nullptr);\n", "auto t = ::clock_gettime(0, &ts);\n",
                             "std::chrono::steady_clock::time_point t;\n"],
            "time zone": ["#include <ctime>\n", "auto* t = localtime(&now);\n"],
            "sleep": ["usleep(10);\n", "x.sleep_for(a);\n", "poll(&fds, 1, 10);\n"],
            "thread": ["std::thread t;\n", "#include <thread>\n", "pthread_create(&t, 0, f, 0);\n"],
            "lock": ["std::mutex m;\n", "std::lock_guard g(m);\n", "#include <condition_variable>\n"],
            "atomic": ["#include <atomic>\n", "std::atomic<int> n;\n"],
            "file call": ["#include <fstream>\n", "std::ifstream in(path);\n", "std::remove(path);\n",
                          'auto* f = fopen("a", "r");\n', "#include <filesystem>\n",
                          "unlink(path.c_str());\n", "int f = ::open(path, 0);\n",
                          "stat(path, &s);\n", 'auto h = getenv("HOME");\n'],
            "console": ["#include <iostream>\n", "std::cerr << 1;\n"],
            "chance": ["#include <random>\n", "int n = rand();\n"],
        }
        self.assertEqual(set(samples), {what for what, _, _ in check_floors.RULES})
        for what, lines in samples.items():
            for line in lines:
                with self.subTest(line=line):
                    self.assertTrue(
                        self.found("engine/Tick.cpp", line)
                        .startswith(f"src/engine/Tick.cpp:1: {what} in engine: "))

    def test_members_and_own_procedures_are_no_system_calls(self):
        self.write("engine/Tick.cpp",
                   "channel.open();\nreader->time(3);\nBase::Open(path);\nPlaytime(3);\n"
                   "rows.erase(std::remove(a, b, c), b);\nint time = 3;\nstd::snprintf(a, 3, b);\n")
        self.assertEqual(self.violations(), [])

    def test_comments_and_texts_are_not_looked_at(self):
        self.write("engine/Tick.cpp",
                   '// usleep(3)\n/* std::mutex\n */ const char* a = "fopen(x) \\" std::thread";\n'
                   'const char* b = R"(std::mutex)";\nint c = 1\'000; char d = \'"\';\n')
        self.assertEqual(self.violations(), [])

    def test_what_stands_behind_a_comment_has_its_own_line(self):
        self.assertTrue(self.found("store/Table.cpp", "/* a\n b */\n// c\nusleep(1);\n")
                        .startswith("src/store/Table.cpp:4:"))

    def test_the_real_platform_and_the_program_may_name_the_machine(self):
        self.write("platform/real/Files.cpp", "#include <fstream>\n#include <thread>\n")
        self.write("app/Main.cpp", "#include <QCoreApplication>\n#include <iostream>\n")
        self.assertEqual(self.violations(), [])

    def test_the_simulated_platform_may_not_ask_the_system_clock(self):
        self.assertIn("system clock in platform/sim",
                      self.found("platform/sim/Loop.cpp", "auto t = time(nullptr);\n"))

    def test_a_screen_may_know_qt_and_nothing_else_of_the_machine(self):
        self.write("engine/screens/MainWindow.cpp", "#include <QWidget>\n")
        self.assertEqual(self.violations(), [])
        self.assertIn("file call", self.found("engine/screens/MainWindow.cpp", "#include <fstream>\n"))

    def test_what_windows_share_may_know_qt_and_nothing_else_of_the_machine(self):
        self.write("ui/Theme.cpp", "#include <QColor>\n")
        self.assertEqual(self.violations(), [])
        self.assertIn("thread", self.found("ui/Theme.cpp", "#include <thread>\n"))

    def test_tests_are_not_held_to_the_floors(self):
        self.write("engine/tests/TickTests.cpp", "#include <fstream>\n")
        self.assertEqual(self.violations(), [])


class Types(Sample):
    def test_two_headers_may_not_define_one_name(self):
        self.write("settings/Text.h", "namespace zemo {\nstruct Field {\n  int n;\n};\n}\n")
        self.write("store/Table.h", "namespace zemo {\nstruct Field {\n  double d;\n};\n}\n")
        self.assertEqual(self.violations(),
                         ["src/store/Table.h:2: zemo::Field is defined in src/settings/Text.h already"])

    def test_declarations_and_types_of_another_scope_do_not_count(self):
        self.write("store/Table.h", "struct Row {\n  struct Cell {\n  };\n};\nnamespace Cnf {\n"
                                    "enum Kind : int { kA };\n}\ntemplate <class Of>\nvoid F(Of) {\n}\n")
        self.write("store/Value.h", "struct Row;\nclass Cell final : Row {\n};\n"
                                    "enum class Kind : int { kA };\nclass Of {};\n")
        self.assertEqual(self.violations(), [])


class Globals(Sample):
    def found(self, text):
        return check_floors.check_globals(self.src, [self.compiled("engine/Tick.cpp", text)])[1]

    def test_a_counter_at_namespace_scope_is_found(self):
        self.assertIn("can be written to from everywhere: zemo::ticks",
                      self.found("namespace zemo { int ticks = 3; }\n")[0])

    def test_a_static_of_a_procedure_is_found(self):
        self.assertEqual(len(self.found("int Next() { static int last; return ++last; }\n")), 1)

    def test_a_variable_a_thread_is_found(self):
        self.assertEqual(len(self.found("thread_local int last; int* Next() { return &last; }\n")), 1)

    def test_constants_are_none_even_when_they_are_made_at_the_first_use(self):
        self.assertEqual([], self.found(
            '#include <string>\nconst char* const kNames[] = {"a", "b"};\nextern const int kN = 3;\n'
            'const std::string& Name() { static const std::string name = "x"; return name; }\n'
            "const char* At(int i) { return kNames[i]; }\n"
            "struct Fault {}; int F(int n); int G() { try { return F(1); } catch (Fault&) { return 0; } }\n"
            "int F(int n) { if (n) throw Fault(); return n; }\n"))


class Callback(Sample):
    def found(self, text):
        return check_floors.check_callback([self.compiled("Callback.cpp", text)])[1]

    def test_copying_is_allowed(self):
        self.assertEqual([], self.found(
            "#include <cstring>\nint Pull(float* to, const float* from, unsigned n) {\n"
            "  std::memcpy(to, from, n); return 0; }\n"))

    def test_what_allocates_locks_waits_writes_or_calls_away_is_found(self):
        samples = {
            "operator new": "int* Pull() { return new int[9]; }\n",
            "malloc": "#include <cstdlib>\nvoid* Pull(int n) { return malloc(n); }\n",
            "pthread_mutex_lock": "#include <mutex>\nvoid Pull(std::mutex& m) { m.lock(); }\n",
            "usleep": "#include <unistd.h>\nvoid Pull() { usleep(1); }\n",
            "puts": '#include <cstdio>\nvoid Pull() { puts("late"); }\n',
            "__cxa_guard_acquire": "int Now(); int Pull() { static int at = Now(); return at; }\n",
            "zemo::Refill()": "namespace zemo { void Refill(); void Pull() { Refill(); } }\n",
        }
        for name, text in samples.items():
            with self.subTest(name=name):
                self.assertTrue(any(name in line for line in self.found(text)), self.found(text))

    def test_the_objects_of_the_callback_may_call_each_other(self):
        ring = self.compiled("Ring.cpp", "int Ring(int n) { return n + 1; }\n")
        pull = self.compiled("Pull.cpp", "int Ring(int n); int Pull(int n) { return Ring(n) * 2; }\n")
        self.assertEqual(check_floors.check_callback([ring, pull])[1], [])
        self.assertEqual(len(check_floors.check_callback([pull])[1]), 1)


class Program(Sample):
    def test_the_exit_status_tells_what_was_found(self):
        self.assertEqual(check_floors.main(["sources", str(self.src)]), 2)  # nothing looked at
        self.write("engine/Tick.cpp", "int f();\n")
        self.assertEqual(check_floors.main(["sources", str(self.src)]), 0)
        self.write("engine/Tick.cpp", "#include <fstream>\n")
        self.assertEqual(check_floors.main(["sources", str(self.src)]), 1)
        self.assertEqual(check_floors.main(["callback"]), 2)


if __name__ == "__main__":
    unittest.main()
