#include "support/BaseFaults.h"

#include <new>
#include <string_view>

namespace zemo::test {

struct BaseFaults::File {
  sqlite3_file base;  // first: SQLite knows the file by it
  BaseFaults* faults;
  sqlite3_file* Real() { return reinterpret_cast<sqlite3_file*>(this + 1); }
};

struct BaseFaults::Calls {
  static File& Of(sqlite3_file* file) { return *reinterpret_cast<File*>(file); }
  static sqlite3_file* Real(sqlite3_file* file) { return Of(file).Real(); }
  static int Pass(sqlite3_file* file, BasePoint point) { return Of(file).faults->Pass(point); }
  static BaseFaults& Of(sqlite3_vfs* layer) { return *static_cast<BaseFaults*>(layer->pAppData); }
  static sqlite3_vfs* System(sqlite3_vfs* layer) { return Of(layer).system_; }

  // --- of a file ---
  static int Close(sqlite3_file* file) { return Real(file)->pMethods->xClose(Real(file)); }
  static int Read(sqlite3_file* file, void* into, int count, sqlite3_int64 at) {
    const int fault = Pass(file, BasePoint::kRead);
    return fault != SQLITE_OK ? fault : Real(file)->pMethods->xRead(Real(file), into, count, at);
  }
  static int Write(sqlite3_file* file, const void* from, int count, sqlite3_int64 at) {
    const int fault = Pass(file, BasePoint::kWrite);
    return fault != SQLITE_OK ? fault : Real(file)->pMethods->xWrite(Real(file), from, count, at);
  }
  static int Truncate(sqlite3_file* file, sqlite3_int64 size) {
    return Real(file)->pMethods->xTruncate(Real(file), size);
  }
  static int Sync(sqlite3_file* file, int flags) {
    const int fault = Pass(file, BasePoint::kSync);
    return fault != SQLITE_OK ? fault : Real(file)->pMethods->xSync(Real(file), flags);
  }
  static int FileSize(sqlite3_file* file, sqlite3_int64* size) {
    return Real(file)->pMethods->xFileSize(Real(file), size);
  }
  static int Lock(sqlite3_file* file, int level) {
    const BasePoint point = level == SQLITE_LOCK_SHARED     ? BasePoint::kLockToRead
                            : level == SQLITE_LOCK_RESERVED ? BasePoint::kLockToWrite
                                                            : BasePoint::kLockToCommit;
    const int fault = Pass(file, point);
    return fault != SQLITE_OK ? fault : Real(file)->pMethods->xLock(Real(file), level);
  }
  static int Unlock(sqlite3_file* file, int level) {
    return Real(file)->pMethods->xUnlock(Real(file), level);
  }
  static int CheckReservedLock(sqlite3_file* file, int* held) {
    return Real(file)->pMethods->xCheckReservedLock(Real(file), held);
  }
  static int FileControl(sqlite3_file* file, int order, void* argument) {
    return Real(file)->pMethods->xFileControl(Real(file), order, argument);
  }
  static int SectorSize(sqlite3_file* file) {
    return Real(file)->pMethods->xSectorSize(Real(file));
  }
  static int Characteristics(sqlite3_file* file) {
    return Real(file)->pMethods->xDeviceCharacteristics(Real(file));
  }

  // --- of the file system ---
  static int Open(sqlite3_vfs* layer, const char* name, sqlite3_file* file, int flags, int* given) {
    static constexpr sqlite3_io_methods kMethods{
        .iVersion = 1,
        .xClose = Close,
        .xRead = Read,
        .xWrite = Write,
        .xTruncate = Truncate,
        .xSync = Sync,
        .xFileSize = FileSize,
        .xLock = Lock,
        .xUnlock = Unlock,
        .xCheckReservedLock = CheckReservedLock,
        .xFileControl = FileControl,
        .xSectorSize = SectorSize,
        .xDeviceCharacteristics = Characteristics,
        .xShmMap = nullptr,
        .xShmLock = nullptr,
        .xShmBarrier = nullptr,
        .xShmUnmap = nullptr,
        .xFetch = nullptr,
        .xUnfetch = nullptr,
    };
    File& ours = *new (file) File{{nullptr}, &Of(layer)};
    const int fault = Of(layer).Pass(BasePoint::kOpen);
    if (fault != SQLITE_OK) return fault;
    const int result = System(layer)->xOpen(System(layer), name, ours.Real(), flags, given);
    if (ours.Real()->pMethods != nullptr) ours.base.pMethods = &kMethods;
    return result;
  }
  static int Delete(sqlite3_vfs* layer, const char* name, int sync) {
    const bool journal = std::string_view(name).ends_with("-journal");
    const int fault = journal ? Of(layer).Pass(BasePoint::kCommit) : SQLITE_OK;
    return fault != SQLITE_OK ? fault : System(layer)->xDelete(System(layer), name, sync);
  }
  static int Access(sqlite3_vfs* layer, const char* name, int flags, int* result) {
    return System(layer)->xAccess(System(layer), name, flags, result);
  }
  static int FullPathname(sqlite3_vfs* layer, const char* name, int size, char* into) {
    return System(layer)->xFullPathname(System(layer), name, size, into);
  }
  static int Randomness(sqlite3_vfs* layer, int size, char* into) {
    return System(layer)->xRandomness(System(layer), size, into);
  }
  static int Sleep(sqlite3_vfs* layer, int us) {
    Of(layer).waitedUs_ += us;
    return us;
  }
  static int CurrentTime(sqlite3_vfs* layer, double* days) {
    return System(layer)->xCurrentTime(System(layer), days);
  }
  static int LastError(sqlite3_vfs* layer, int size, char* into) {
    return System(layer)->xGetLastError(System(layer), size, into);
  }
};

BaseFaults::BaseFaults() : system_(sqlite3_vfs_find(nullptr)) {
  layer_.iVersion = 1;
  layer_.szOsFile = static_cast<int>(sizeof(File)) + system_->szOsFile;
  layer_.mxPathname = system_->mxPathname;
  layer_.zName = "faults";
  layer_.pAppData = this;
  layer_.xOpen = Calls::Open;
  layer_.xDelete = Calls::Delete;
  layer_.xAccess = Calls::Access;
  layer_.xFullPathname = Calls::FullPathname;
  layer_.xRandomness = Calls::Randomness;
  layer_.xSleep = Calls::Sleep;
  layer_.xCurrentTime = Calls::CurrentTime;
  layer_.xGetLastError = Calls::LastError;
  constexpr int kDefault = 1;
  sqlite3_vfs_register(&layer_, kDefault);
}

BaseFaults::~BaseFaults() {
  sqlite3_vfs_unregister(&layer_);
}

void BaseFaults::Arm(BasePoint point, BaseFault fault, int nth, int times) {
  const int last = times > INT_MAX - nth ? INT_MAX : nth + times - 1;
  points_[static_cast<size_t>(point)] = {0, nth, last, fault};
}

void BaseFaults::Disarm() {
  for (Point& point : points_) point.first = 0;
}

int BaseFaults::Passages(BasePoint point) const {
  return points_[static_cast<size_t>(point)].passages;
}

int BaseFaults::Pass(BasePoint point) {
  Point& at = points_[static_cast<size_t>(point)];
  ++at.passages;
  const bool fails = at.first > 0 && at.passages >= at.first && at.passages <= at.last;
  return fails ? static_cast<int>(at.fault) : SQLITE_OK;
}

}  // namespace zemo::test
