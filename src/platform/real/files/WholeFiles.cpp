#include "platform/real/files/WholeFiles.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>
#include <utility>

namespace zemo {

namespace {

[[noreturn]] void Fail(const std::string& path, int reason) {
  throw FileError(path + ": " + std::system_category().message(reason));
}

// An open file. Closes itself; Close() also tells of what only the closing brings to light.
class Descriptor {
 public:
  Descriptor(std::string path, int flags, mode_t mode = 0) : path_(std::move(path)) {
    // Never waits for the other end of a pipe, never becomes a child's.
    number_ = ::open(path_.c_str(), flags | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, mode);
    openReason_ = number_ < 0 ? errno : 0;
  }
  ~Descriptor() {
    if (number_ >= 0) ::close(number_);
  }
  Descriptor(const Descriptor&) = delete;

  int OpenReason() const { return openReason_; }  // 0 when it is open
  void RequireOpen() const {
    if (number_ < 0) Fail(path_, openReason_);
  }
  int Number() const { return number_; }

  // A folder can be opened to be read, and a pipe too.
  void RequireRegular() const {
    struct stat status;
    if (fstat(number_, &status) != 0) Fail(path_, errno);
    if (S_ISDIR(status.st_mode)) Fail(path_, EISDIR);
    if (!S_ISREG(status.st_mode)) throw FileError(path_ + ": not a regular file");
  }

  void WriteAll(std::string_view bytes) const {
    while (!bytes.empty()) {
      const ssize_t written = ::write(number_, bytes.data(), bytes.size());
      if (written < 0 && errno == EINTR) continue;
      if (written < 0) Fail(path_, errno);
      bytes.remove_prefix(static_cast<size_t>(written));
    }
  }

  void Close() {
    if (::close(std::exchange(number_, -1)) != 0) Fail(path_, errno);
  }

 private:
  std::string path_;
  int number_ = -1;
  int openReason_ = 0;
};

// Where the bytes of `path` lie: the end of the links, if it is one.
std::string BehindLinks(const std::string& path) {
  std::error_code failed;
  if (!std::filesystem::is_symlink(path, failed)) return path;
  const std::filesystem::path target = std::filesystem::weakly_canonical(path, failed);
  return failed ? path : target.string();
}

// A name beside the file that no other process uses.
std::string TemporaryBeside(const std::string& path) {
  const size_t slash = path.rfind('/');
  const size_t name = slash == std::string::npos ? 0 : slash + 1;
  return path.substr(0, name) + "." + path.substr(name) + "." + std::to_string(::getpid()) + ".tmp";
}

constexpr mode_t kNewFileMode = 0666;  // less the user's mask

// Not every file system can be asked to sync (some shares), and not every folder that may be
// written in may be opened: then the system's own time has to do.
bool CannotBeAsked(int reason) {
  return reason == EINVAL || reason == ENOTSUP || reason == EROFS || reason == EACCES;
}

void Sync(const DiskSync& disk, int descriptor, const std::string& path) {
  const int reason = disk.Sync(descriptor);
  if (reason != 0 && !CannotBeAsked(reason)) Fail(path, reason);
}

// A new name is safe once its folder is.
void SyncFolderOf(const std::string& path, const DiskSync& disk) {
  const size_t slash = path.rfind('/');
  const Descriptor folder(slash == std::string::npos ? "." : path.substr(0, slash + 1),
                          O_RDONLY | O_DIRECTORY);
  if (CannotBeAsked(folder.OpenReason())) return;
  folder.RequireOpen();
  Sync(disk, folder.Number(), path);
}

// A file beside the one that it is to replace. Without `disk` nothing waits for it. Where it is not
// for good the old one goes first: a file system that brings a new file onto the disk as it takes
// an old one's name leaves it in memory then.
// `mode` of the new file, whatever an old one has; without one the old file's, or the usual one.
class Replacement : public FileInParts {
 public:
  explicit Replacement(const std::string& path, const DiskSync* disk = nullptr,
                       std::optional<mode_t> mode = std::nullopt, bool forGood = true)
      : path_(path), target_(BehindLinks(path)), disk_(disk), mode_(mode), forGood_(forGood) {
    struct stat status;
    const bool existed = ::stat(target_.c_str(), &status) == 0;
    if (existed && S_ISDIR(status.st_mode)) Fail(path_, EISDIR);
    if (existed && !S_ISREG(status.st_mode)) throw FileError(path_ + ": not a regular file");
    const std::string temporary = TemporaryBeside(target_);
    file_.emplace(temporary, O_WRONLY | O_CREAT | O_TRUNC, mode_.value_or(kNewFileMode));
    if (file_->OpenReason() != 0) Fail(path_, file_->OpenReason());
    temporary_ = temporary;
    if (existed && !mode_) mode_ = status.st_mode & 07777;
  }
  ~Replacement() override {
    if (!temporary_.empty()) ::unlink(temporary_.c_str());
  }

  void Append(std::string_view bytes) override { file_->WriteAll(bytes); }
  void Finish() override {
    if (mode_ && fchmod(file_->Number(), *mode_) != 0) Fail(path_, errno);
    if (disk_) Sync(*disk_, file_->Number(), path_);
    file_->Close();
    if (!forGood_) ::unlink(target_.c_str());
    if (::rename(temporary_.c_str(), target_.c_str()) != 0) Fail(path_, errno);
    temporary_.clear();
    if (disk_) SyncFolderOf(target_, *disk_);
  }

 private:
  const std::string path_, target_;
  const DiskSync* disk_;
  std::optional<mode_t> mode_;
  const bool forGood_;
  std::optional<Descriptor> file_;
  std::string temporary_;  // empty: there is none
};

void Replace(const std::string& path, std::string_view bytes, const DiskSync* disk,
             std::optional<mode_t> mode = std::nullopt, bool forGood = true) {
  Replacement file(path, disk, mode, forGood);
  file.Append(bytes);
  file.Finish();
}

void Append(const std::string& path, std::string_view bytes, const DiskSync* disk) {
  const bool existed = disk && IsRegularFile(path);
  Descriptor file(path, O_WRONLY | O_CREAT | O_APPEND, kNewFileMode);
  file.RequireOpen();
  file.RequireRegular();
  file.WriteAll(bytes);
  if (disk) Sync(*disk, file.Number(), path);
  file.Close();
  if (disk && !existed) SyncFolderOf(path, *disk);
}

}  // namespace

constinit const DiskSync kDiskSync{};
constinit const NoDiskSync kNoDiskSync{};

int DiskSync::Sync(int descriptor) const {
  while (::fsync(descriptor) != 0)
    if (errno != EINTR) return errno;
  return 0;
}

bool IsRegularFile(const std::string& path) {
  struct stat status;
  return ::stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

int64_t RegularFileSizeBytes(const std::string& path) {
  struct stat status;
  return ::stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) ? status.st_size : -1;
}

std::optional<SoundFileStamp> RegularFileStamp(const std::string& path) {
  constexpr int64_t kMsOfSecond = 1000, kNsOfMs = 1'000'000;
  struct stat status;
  if (::stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
  return SoundFileStamp{status.st_size, int64_t{status.st_mtim.tv_sec} * kMsOfSecond +
                                            status.st_mtim.tv_nsec / kNsOfMs};
}

std::optional<std::string> ReadWholeFile(const std::string& path) {
  const Descriptor file(path, O_RDONLY);
  if (file.OpenReason() == ENOENT || file.OpenReason() == ENOTDIR) return std::nullopt;
  file.RequireOpen();
  file.RequireRegular();
  struct stat status;
  std::string bytes;
  if (fstat(file.Number(), &status) == 0) bytes.reserve(static_cast<size_t>(status.st_size) + 1);
  char block[16384];
  for (;;) {
    const ssize_t got = ::read(file.Number(), block, sizeof block);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) Fail(path, errno);
    if (got == 0) return bytes;
    bytes.append(block, static_cast<size_t>(got));
  }
}

void ReplaceWholeFile(const std::string& path, std::string_view bytes, const DiskSync& disk) {
  Replace(path, bytes, nullptr, std::nullopt, disk.IsForGood());
}

std::unique_ptr<FileInParts> ReplaceFileInParts(const std::string& path) {
  return std::make_unique<Replacement>(path);
}

void ReplaceWholeFileDurably(const std::string& path, std::string_view bytes,
                             const DiskSync& disk) {
  Replace(path, bytes, &disk);
}

void ReplaceSecretFile(const std::string& path, std::string_view bytes, const DiskSync& disk) {
  Replace(path, bytes, &disk, S_IRUSR | S_IWUSR);
}

void AppendToFile(const std::string& path, std::string_view bytes) {
  Append(path, bytes, nullptr);
}

void AppendToFileDurably(const std::string& path, std::string_view bytes, const DiskSync& disk) {
  Append(path, bytes, &disk);
}

void PutIntoFile(const std::string& path, int64_t offset, std::string_view bytes) {
  Descriptor file(path, O_WRONLY | O_CREAT, kNewFileMode);
  file.RequireOpen();
  file.RequireRegular();
  if (::lseek(file.Number(), offset, SEEK_SET) < 0) Fail(path, errno);
  file.WriteAll(bytes);
  file.Close();
}

void MakeFileWritable(const std::string& path) {
  struct stat status;
  if (::stat(path.c_str(), &status) == 0 && (status.st_mode & S_IWUSR) == 0)
    ::chmod(path.c_str(), (status.st_mode & 07777) | S_IWUSR);
}

void RemoveFile(const std::string& path) {
  if (::unlink(path.c_str()) != 0 && errno != ENOENT && errno != ENOTDIR) Fail(path, errno);
}

void RenameFile(const std::string& from, const std::string& to, const DiskSync& disk) {
  if (::rename(from.c_str(), to.c_str()) != 0) Fail(from + " to " + to, errno);
  try {
    SyncFolderOf(to, disk);
  } catch (const FileError&) {
    // It has its new name: whoever takes that back would have neither.
  }
}

std::string FileStamp(const std::string& path) {
  struct stat status;
  if (::stat(path.c_str(), &status) != 0) return {};
  return std::to_string(status.st_ino) + " " + std::to_string(status.st_size) + " " +
         std::to_string(status.st_mtim.tv_sec) + "." + std::to_string(status.st_mtim.tv_nsec);
}

}  // namespace zemo
