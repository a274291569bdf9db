// The files beside the station's base while another one takes its place, and what every such change
// does before and after. All of them stand in the station's folder.
#pragma once

#include <string>
#include <vector>

namespace zemo {

class Folder;
struct Station;

namespace BaseFile {
inline constexpr char kBase[] = "Triskin.MDB";        // in whatever case it stands there
inline constexpr char kBackup[] = "Triskin.BAK";      // the base before the last change
inline constexpr char kCopy[] = "TriskinN.MDB";       // of a compaction, until it is the base
inline constexpr char kCopyLock[] = "TriskinN.LDB";   // its lock file
inline constexpr char kIni[] = "Base.Ini";            // names a base on a server, in its place
inline constexpr char kMovedIni[] = "Base.New";       // the same while the base is moved
inline constexpr char kMovedPart[] = "Triskin.part";  // a file that comes from a server, growing
inline constexpr char kNew[] = "New.mdb";             // dropped to take the base's place
inline constexpr char kJournal[] = "-journal";        // behind a base's name: of a write under way
}  // namespace BaseFile

// Name of the base in the station's folder, in the spelling that it has there.
std::string BaseFileName(const Station& station);

// "HEAD2026-11-21 120000TAIL", by the moment: a name for what is kept.
std::string DatedName(const Station& station, const std::string& head, const std::string& tail);

// Why the file of that name in the folder cannot be a station's base, in one line; empty: it can.
std::string WhyNoBase(const Folder& folder, const std::string& name);

// Logs what the base lacks of the schema, once an opening: a line a column, by its name. Without
// what was `known` before.
void TellGaps(Station& station, const std::vector<std::string>& known = {});

// The base is this program's alone while this stands. Thread: the logic's.
class BaseAlone {
 public:
  // A tool that is at work on the base is waited for, at most `waitMs`. Throws StoreError
  // kErrLocked, which names who else has it.
  BaseAlone(Station& station, int waitMs);
  ~BaseAlone();
  BaseAlone(const BaseAlone&) = delete;

 private:
  Station& station_;
};

// A file that is a base, with the journal that may stand beside it. Throws FileError.
void RemoveBaseFile(Station& station, const std::string& name);

// Keeps the base as it was under "Triskin.BAK", in the place of the one before it. A journal that
// nobody has taken back goes with the file it belongs to. Throws FileError.
void SetBaseAside(Station& station);

// Another file has the base's place: no request goes by the former one's model, lists and cards
// while this one cannot be read.
void ForgetAnswers(Station& station);

// The base is opened again under its name, with the tables that it has (one that is missing is
// logged); without a file of that name it stays closed. Nothing that was known of the former file
// is believed any more: settings, counts, what the requests know of the report, the day's grid.
// Throws StoreError.
void OpenBaseAgain(Station& station);

// The same where the base is closed or its file is no longer the one that was opened; true when it
// was. One whose tables another tool changed stays open, and its tables are opened anew. Waits for
// no lock. Throws StoreError where what stands there cannot be opened: what was open
// stays.
bool OpenLostBase(Station& station);

}  // namespace zemo
