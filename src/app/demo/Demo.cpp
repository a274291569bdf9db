// Makes the demo station: sounds on all cores, then the side files, then the base under a name of
// its own, which becomes the station's only when everything is there.
#include "app/demo/Demo.h"

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <deque>
#include <exception>
#include <filesystem>
#include <mutex>
#include <optional>
#include <ostream>
#include <thread>
#include <vector>

#include "app/demo/DemoBase.h"
#include "app/demo/DemoCatalogue.h"
#include "app/demo/DemoSideFiles.h"
#include "platform/real/desktop/RealClock.h"
#include "platform/real/files/LocalFolder.h"
#include "platform/real/files/WholeFiles.h"
#include "settings/SideFiles.h"
#include "station/BaseFiles.h"
#include "station/BasePlaces.h"
#include "station/SideFileText.h"
#include "station/TextForms.h"
#include "store/StoreError.h"
#include "traffic/CampaignFiles.h"
#include "traffic/CampaignGrid.h"

namespace zemo {
namespace {

namespace fs = std::filesystem;

// The base while it grows; as long as it stands there, an interrupted run may be taken up again.
constexpr const char* kDemoPartName = "Demo.part";

// Names of files on any system: what some of them refuse becomes a hyphen.
std::string FileName(std::string name) {
  for (char& c : name) {
    if (std::string_view("/\\:*?\"<>|").find(c) != std::string_view::npos) c = '-';
  }
  return name;
}

const char* FolderOf(ShortKind kind) {
  switch (kind) {
    case ShortKind::kJingle:
    case ShortKind::kBreakJingle:
      return "Jingles";
    case ShortKind::kOther:
      return "Virgules";
    case ShortKind::kSpot:
      return "Pubs";
    case ShortKind::kNews:
      return "Rubriques";
    case ShortKind::kPip:
      break;
  }
  return "Tops";
}

const char* EndingOf(SoundForm form) {
  return form == SoundForm::kWav ? ".wav" : ".mp3";
}

// One sound file to be made, and afterwards what its card says.
struct Job {
  const DemoTitle* title = nullptr;  // else a short element
  const DemoShort* element = nullptr;
  uint64_t seed = 0;
  double lengthSec = 0;
  std::string path;
  Piece made;  // without its sound
  int64_t frames = 0;

  std::string Label() const {
    return title ? std::string(title->artist) + " - " + title->title : std::string(element->label);
  }
};

std::vector<Job> Jobs(const std::string& dir, const DemoSize& size) {
  std::vector<Job> jobs;
  const auto titles = DemoTitles().first(
      std::min(static_cast<size_t>(std::max(size.titles, 1)), DemoTitles().size()));
  for (const DemoTitle& title : titles) {
    Job job{&title, nullptr, 1000 + jobs.size(), title.lengthSec * size.lengthFactor, {}, {}, 0};
    job.path = dir + "/Musique/" + FileName(job.Label()) + EndingOf(title.form);
    jobs.push_back(std::move(job));
  }
  for (const DemoShort& element : DemoShorts()) {
    Job job{nullptr, &element, 5000 + jobs.size(), element.lengthSec, {}, {}, 0};
    if (element.kind != ShortKind::kPip)
      job.lengthSec = std::max(2.0, job.lengthSec * size.lengthFactor);
    job.path =
        dir + "/" + FolderOf(element.kind) + "/" + FileName(job.Label()) + EndingOf(element.form);
    jobs.push_back(std::move(job));
  }
  return jobs;
}

void MakeSound(Job& job) {
  StereoBuffer sound;
  if (job.title) {
    job.made = Compose(job.seed, job.title->manner, job.lengthSec);
    sound = std::move(job.made.sound);
    job.made.sound = {};
  } else {
    DemoShort element = *job.element;
    element.lengthSec = job.lengthSec;
    sound = MakeShort(element, job.seed);
  }
  job.frames = sound.Frames();
  ReplaceWholeFile(job.path, EncodeSound(sound, job.title ? job.title->form : job.element->form));
}

// Runs the jobs on all cores. The caller's thread hears of each one done; the first failure stops
// the rest and is thrown here.
void MakeSounds(std::vector<Job>& jobs, const std::function<void(const Job&, size_t)>& done) {
  std::atomic<size_t> next{0};
  std::mutex guard;  // over what follows
  std::condition_variable changed;
  std::deque<size_t> finished;
  size_t working = std::clamp<size_t>(std::thread::hardware_concurrency(), 1, 8);
  std::exception_ptr failure;

  const auto work = [&] {
    try {
      for (size_t i = next++; i < jobs.size(); i = next++) {
        MakeSound(jobs[i]);
        const std::lock_guard lock(guard);
        finished.push_back(i);
        changed.notify_one();
      }
    } catch (...) {
      next = jobs.size();
      const std::lock_guard lock(guard);
      if (!failure) failure = std::current_exception();
    }
    const std::lock_guard lock(guard);
    --working;
    changed.notify_one();
  };
  std::vector<std::jthread> workers;
  for (size_t i = 0, count = working; i < count; ++i) workers.emplace_back(work);

  std::unique_lock lock(guard);
  for (size_t count = 0;;) {
    changed.wait(lock, [&] { return !finished.empty() || working == 0; });
    if (finished.empty()) break;
    const size_t i = finished.front();
    finished.pop_front();
    lock.unlock();
    done(jobs[i], ++count);
    lock.lock();
  }
  if (failure) std::rethrow_exception(failure);
}

int64_t LengthMs(const Job& job) {
  return (job.frames * 1000 + kDemoRate / 2) / kDemoRate;
}

std::vector<MadeShort> MadeShorts(const std::vector<Job>& jobs) {
  std::vector<MadeShort> shorts;
  for (const Job& job : jobs)
    if (job.element) shorts.push_back({job.element, job.path, LengthMs(job)});
  return shorts;
}

void MakeDemoBase(const LocalFolder& station, const std::vector<Job>& jobs, int year) {
  std::vector<MadeTitle> titles;
  for (const Job& job : jobs)
    if (job.title)
      titles.push_back(
          {job.title, job.path, LengthMs(job), job.made.introSec, job.made.exitPointMs});
  const std::string part = station.Path() + kDemoPartName;
  RemoveFile(part);
  RemoveFile(part + BaseFile::kJournal);
  MakeDemoBase(part, titles, MadeShorts(jobs), year);
}

void WriteSideFiles(LocalFolder& station, const std::vector<Job>& jobs, int year) {
  for (const SideFile& file : DemoSideFiles()) station.Write(file.name, file.bytes);
  int priority = 0;
  for (const MadeShort& made : MadeShorts(jobs)) {
    if (made.element->category[0] == '\0') continue;
    const CampaignForm campaign = DemoCampaign(made, priority += 10, year);
    ReplaceWholeFile(campaign.FILENAMEGRILLE, EncodeSideFile(GridFileText(campaign.GPub, [] {})));
    ReplaceWholeFile(SideFilePath(made.path, "prg"), EncodeSideFile(CampaignProgram(campaign)));
  }
}

// A name for each file that the run will write; none may stand there already, unless the run before
// was interrupted.
void RefuseToOverwrite(const LocalFolder& station, const std::vector<Job>& jobs) {
  if (NamesBase(station)) {
    throw DemoError(station.Path() + " already holds a station; nothing was changed");
  }
  if (station.Exists(kDemoPartName)) return;
  std::vector<std::string> paths;
  for (const Job& job : jobs) paths.push_back(job.path);
  for (const SideFile& file : DemoSideFiles()) paths.push_back(station.PathOf(file.name));
  for (const std::string& path : paths) {
    if (fs::exists(path)) throw DemoError(path + " exists already; nothing was changed");
  }
}

void MakeStation(const std::string& dir, const DemoSize& size,
                 const std::function<void(const std::string& line)>& progress) {
  const std::string path = fs::weakly_canonical(fs::absolute(dir)).string();
  LocalFolder station(path);
  std::vector<Job> jobs = Jobs(path, size);
  RefuseToOverwrite(station, jobs);
  fs::create_directories(path);
  for (const Job& job : jobs) fs::create_directories(fs::path(job.path).parent_path());
  station.Write(kDemoPartName, "");
  MakeSounds(jobs, [&](const Job& job, size_t count) {
    progress(std::to_string(count) + " of " + std::to_string(jobs.size()) + ": " + job.Label() +
             " (" + FormatDuration(LengthMs(job)) + ")");
  });
  const int year = RealClock().LocalNow().year;  // of the dated campaigns
  WriteSideFiles(station, jobs, year);
  MakeDemoBase(station, jobs, year);
  station.Rename(kDemoPartName, BaseFile::kBase);
}

}  // namespace

void MakeDemoStation(const std::string& dir, const DemoSize& size,
                     const std::function<void(const std::string& line)>& progress) {
  try {
    MakeStation(dir, size, progress);
  } catch (const DemoError&) {
    throw;
  } catch (const fs::filesystem_error& error) {
    throw DemoError(error.path1().string() + ": " + error.code().message());
  } catch (const StoreError& error) {
    throw DemoError("the base of " + dir + " cannot be made: " + error.what());
  } catch (const FileError& error) {
    throw DemoError(error.what());
  } catch (const std::exception& error) {
    throw DemoError(dir + ": " + error.what());
  }
}

int RunDemo(const std::string& dir, std::ostream& out, std::ostream& err) {
  try {
    MakeDemoStation(dir, {},
                    [&](const std::string& line) { out << "demo: " << line << std::endl; });
  } catch (const DemoError& error) {
    err << "zemoradio: " << OneLine(error.what()) << std::endl;
    return 1;
  }
  out << "demo: the station stands in " << dir << std::endl;
  return 0;
}

}  // namespace zemo
