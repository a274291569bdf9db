// What holds at every step, so that a loss of power between any two leaves a whole base. To a
// server: up to the rename of the file it is the base, whatever else is there; from then on
// "Base.New" names the new one, which is stored and compared, until it is "Base.Ini". To a file:
// "Base.Ini" becomes "Base.New", which names the same base up to the rename of the new file to
// "Triskin.MDB". The tables on the server are set aside in the transaction that kept writers off,
// which is committed behind that.
#include "station/BaseMove.h"

#include <memory>
#include <stdexcept>

#include "platform/Folder.h"
#include "station/BaseFiles.h"
#include "station/BasePlaces.h"
#include "station/Station.h"
#include "store/DatabaseFiles.h"
#include "store/StoreError.h"
#include "store/TableDefs.h"
#include "store/postgres/PostgresDatabase.h"
#include "store/postgres/ServerUrl.h"

namespace zemo {

namespace {

constexpr int kMoveWaitMs = 1000;  // for a tool that is at work on the base just now

std::shared_ptr<LockWait> Waits() {
  return std::make_shared<LockWait>(kMoveWaitMs);
}

void RefuseOtherUser(ServerDatabase& server) {
  if (const std::string other = server.OtherUser(); !other.empty())
    throw StoreError(kErrLocked, other);
}

// A URL with a password is its owner's alone to read.
void WriteIni(Folder& folder, const std::string& url) {
  const std::string line = url + "\r\n";
  if (HoldsPassword(url))
    folder.WriteSecret(BaseFile::kMovedIni, line);
  else
    folder.WriteDurably(BaseFile::kMovedIni, line);
}

// One that needs no quotes.
std::string SchemaName(std::string name) {
  for (char& c : name)
    if (c == ' ' || c == '-') c = '_';
  return name;
}

void DropTables(Database& base) {
  StructureTransaction all(base.Tables());
  while (base.Tables().Count() > 0) base.Tables().Delete(base.Tables().Item(0).Name);
  all.Commit();
}

// The server's base was filled and is nobody's: another move may have its place.
void TakeBack(Folder& folder, Database& server) {
  try {
    folder.Remove(BaseFile::kMovedIni);
    DropTables(server);
  } catch (const std::exception&) {
    // The fault that led here is told; the next move says that tables are there.
  }
}

}  // namespace

MovedBase MoveBaseToServer(Station& station, const std::string& url, const TableDone& done) {
  Folder& folder = station.platform.stationFolder;
  if (!station.base.IsFile())
    throw std::runtime_error("the base stands on a server already: " + station.base.Path());
  if (!station.base.IsThere())
    throw StoreError(kErrNoSuchFile, station.base.Path() + " is missing");
  MovedBase moved;
  moved.to = ShownServerUrl(url);
  moved.backup = DatedName(station, "Triskin ", ".BAK");
  const BaseAlone alone(station, kMoveWaitMs);
  station.base.Close();
  const auto server = ClosedPostgresDatabase(url, Waits());
  server->Open(true);
  RefuseOtherUser(*server);
  const auto file = DBEngine::OpenDatabase(station.base.Path(), kMoveWaitMs);
  file->BeginTrans();  // others may read
  moved.tables = CarryOver(*file, *server, done);
  try {
    VerifyCarried(*file, *server, moved.tables);
    WriteIni(folder, url);
    file->RollbackTrans();
    file->Close();
    folder.Rename(BaseFileName(station), moved.backup);
  } catch (const std::exception&) {
    TakeBack(folder, *server);
    throw;
  }
  try {
    folder.Rename(BaseFile::kMovedIni, BaseFile::kIni);
  } catch (const FileError& error) {
    moved.notice = error.what();  // the next start does it
  }
  return moved;
}

MovedBase MoveBaseToFile(Station& station, const TableDone& done) {
  Folder& folder = station.platform.stationFolder;
  if (station.base.IsFile())
    throw std::runtime_error("the base stands in a file already: " + station.base.Path());
  const bool named = folder.Exists(BaseFile::kIni);
  const std::string url = ReadBaseUrl(folder, named ? BaseFile::kIni : BaseFile::kMovedIni);
  MovedBase moved;
  moved.to = folder.PathOf(BaseFile::kBase);
  moved.backup = SchemaName(DatedName(station, "triskin ", ""));
  const BaseAlone alone(station, kMoveWaitMs);
  station.base.Close();
  const auto server = ClosedPostgresDatabase(url, Waits());
  server->Open(false);
  RefuseOtherUser(*server);
  server->BeginTrans();  // nobody writes any more
  RemoveBaseFile(station, BaseFile::kMovedPart);
  const auto file = DBEngine::ClosedDatabase(folder.Path() + BaseFile::kMovedPart, Waits());
  try {
    file->Open(true);
    moved.tables = CarryOver(*server, *file, done);
    VerifyCarried(*server, *file, moved.tables);
    file->Close();
    server->SetTablesAside(moved.backup);
    if (named) folder.Rename(BaseFile::kIni, BaseFile::kMovedIni);
    folder.Rename(BaseFile::kMovedPart, BaseFile::kBase);
  } catch (const std::exception&) {
    server->RollbackTrans();
    file->Close();
    if (named && folder.Exists(BaseFile::kMovedIni) && !folder.Exists(BaseFile::kIni))
      folder.Rename(BaseFile::kMovedIni, BaseFile::kIni);
    RemoveBaseFile(station, BaseFile::kMovedPart);
    throw;
  }
  try {
    server->CommitTrans();
    folder.Rename(BaseFile::kMovedIni, DatedName(station, "Base ", ".Ini"));
  } catch (const std::exception& error) {
    moved.notice = error.what();
  }
  return moved;
}

}  // namespace zemo
