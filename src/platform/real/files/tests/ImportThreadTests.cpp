// The files of an import: which are found, and read by a thread in real time. What is waited for
// has a bound.
#include <sched.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <thread>
#include <vector>

#include "TemporaryFolder.h"
#include "platform/real/files/ImportThread.h"
#include "platform/real/files/SoundFilesBelow.h"

namespace zemo {
namespace {

using Paths = std::vector<std::string>;

Paths Found(const std::string& path) {
  Paths found;
  FindSoundFiles(path, [&](std::string file) {
    found.push_back(std::move(file));
    return true;
  });
  return found;
}

TEST(SoundFilesBelow, AreThoseOfAFolderByTheirEndingsInTheOrderOfTheirPaths) {
  const TemporaryFolder folder;
  const std::string b = folder.Put("b.WAV", ""), inner = folder.Put("a/z.flac", ""),
                    before = folder.Put("a.ogg", ""), c = folder.Put("c d.Mp3", "");
  folder.Put("a/cover.jpg", "");
  folder.Put("mp3", "");
  EXPECT_EQ(Found(folder.Path()), (Paths{before, inner, b, c}));
  EXPECT_EQ(Found(folder.Path() + "/"), (Paths{before, inner, b, c}));
}

TEST(SoundFilesBelow, AFileThatIsNamedItselfMayBeCalledAnything) {
  const TemporaryFolder folder;
  const std::string file = folder.Put("song", "");
  EXPECT_EQ(Found(folder.Path() + "/./song"), Paths{file});
  EXPECT_EQ(Found("/no/such"), Paths{"/no/such"});
}

TEST(SoundFilesBelow, LinksToFilesCountAndLinksToFoldersAreNotFollowed) {
  const TemporaryFolder folder;
  const std::string file = folder.Put("in/a.wav", "");
  std::filesystem::create_directory_symlink(folder.Path(), folder / "in/round");
  std::filesystem::create_symlink(file, folder / "in/link.wav");
  std::filesystem::create_symlink("/no/such.wav", folder / "in/lost.wav");
  EXPECT_EQ(Found(folder.Path()), (Paths{file, folder / "in/link.wav"}));
}

TEST(SoundFilesBelow, WhoHasEnoughEndsTheWalk) {
  const TemporaryFolder folder;
  for (const char* name : {"a/1.wav", "a/2.wav", "b.wav"}) folder.Put(name, "");
  int found = 0;
  FindSoundFiles(folder.Path(), [&](const std::string&) { return ++found < 2; });
  EXPECT_EQ(found, 2);
}

// Who may read everything reads as somebody else meanwhile.
class AsNobody {
 public:
  AsNobody() {
    if (all_) Become(65534);
  }
  ~AsNobody() {
    if (all_) Become(0);
  }
  AsNobody(const AsNobody&) = delete;

 private:
  static void Become(uid_t user) { EXPECT_EQ(::seteuid(user), 0); }

  bool all_ = ::geteuid() == 0;
};

TEST(SoundFilesBelow, AFolderThatCannotBeReadIsGivenInPlaceOfWhatIsInIt) {
  namespace fs = std::filesystem;
  const TemporaryFolder folder;
  const std::string file = folder.Put("b.wav", "");
  folder.Put("a/lost.wav", "");
  fs::permissions(folder.Path(), fs::perms(0755));
  fs::permissions(folder / "a", fs::perms::none);
  {
    const AsNobody reader;
    EXPECT_EQ(Found(folder.Path()), (Paths{folder / "a", file}));
    EXPECT_EQ(Found(folder / "a"), Paths{folder / "a"});
  }
  fs::permissions(folder / "a", fs::perms::owner_all);
}

bool Wait(const std::function<bool()>& condition) {
  const auto bound = std::chrono::steady_clock::now() + std::chrono::seconds(60);
  while (std::chrono::steady_clock::now() < bound) {
    if (condition()) return true;
    std::this_thread::yield();  // another one reads
  }
  return false;
}

// A file's bytes are its sound: one frame a byte, of its value.
class ByteSounds : public SoundOpener {
 public:
  explicit ByteSounds(std::atomic<int>& policy) : policy_(policy) {}
  std::unique_ptr<SoundSource> Open(const std::string& path) override {
    policy_ = sched_getscheduler(0);
    std::ifstream file(path, std::ios::binary);
    std::string bytes{std::istreambuf_iterator<char>(file), {}};
    if (bytes.empty()) throw SoundError("cannot play \"" + path + "\": is empty");
    return std::make_unique<Sound>(std::move(bytes));
  }

 private:
  class Sound : public SoundSource {
   public:
    explicit Sound(std::string bytes) : bytes_(std::move(bytes)) {}
    int64_t LengthFrames() const override { return static_cast<int64_t>(bytes_.size()); }
    int Read(float* stereo, int frames) override {
      int given = 0;
      for (; given < frames && at_ < bytes_.size(); ++given, ++at_)
        stereo[2 * given] = stereo[2 * given + 1] = static_cast<float>(bytes_[at_]);
      return given;
    }
    void Seek(int64_t frame) override { at_ = static_cast<size_t>(frame); }

   private:
    std::string bytes_;
    size_t at_ = 0;
  };
  std::atomic<int>& policy_;
};

// The name of a file is its title.
struct NameTags : SoundTags {
  std::optional<TagTexts> Read(const std::string& path) override {
    TagTexts texts;
    texts.title = std::filesystem::path(path).stem().string();
    return texts;
  }
};

const std::string kSound(100, 's'), kOther(100, 'o');

struct ReadingAhead : testing::Test {
  TemporaryFolder folder, machine;
  std::atomic<int> policy = -1;
  ImportThread thread{
      [this] {
        return ImportTools{std::make_unique<ByteSounds>(policy), std::make_unique<NameTags>()};
      },
      machine.Path()};

  SoundFileReading Next() {
    std::optional<SoundFileReading> reading;
    EXPECT_TRUE(Wait([&] { return (reading = thread.Take()).has_value(); }));
    return reading.value_or(SoundFileReading());
  }
  bool AllFound(size_t files) {
    return Wait([&] { return thread.Found().all; }) && thread.Found().files == files;
  }
};

TEST_F(ReadingAhead, GivesOfEachFileItsLengthItsTagsOrWhatIsWrongWithIt) {
  const std::string a = folder.Put("a.wav", std::string(441, 'a'));
  folder.Put("b.wav", "");
  thread.Begin({folder.Path(), "/no/such.wav"}, {});
  const SoundFileReading good = Next();
  EXPECT_EQ(good.path, a);
  EXPECT_EQ(good.error, "");
  EXPECT_EQ(good.lengthMs, 10);
  EXPECT_EQ(good.tags->title, "a");
  EXPECT_EQ(Next().error, "is empty");  // without its path
  EXPECT_EQ(Next().error, "there is no such file");
  EXPECT_TRUE(AllFound(3));
  EXPECT_FALSE(thread.Take());
}

TEST_F(ReadingAhead, LessThanAMillisecondIsNoSound) {
  thread.Begin(
      {folder.Put("a.wav", std::string(22, 'a')), folder.Put("b.wav", std::string(23, 'a'))}, {});
  EXPECT_EQ(Next().error, "holds no sound");
  EXPECT_EQ(Next().error, "");
}

TEST_F(ReadingAhead, NamesACardsFileOfTheSameSoundOrOneReadBefore) {
  const std::string card = folder.Put("card.wav", kSound), a = folder.Put("new/a.wav", kSound),
                    b = folder.Put("new/b.wav", kOther), c = folder.Put("new/c.wav", kOther);
  machine.Put("PathMap.Ini", "D:\\Music = " + folder.Path());
  thread.Begin({folder / "new", card}, {"D:\\Music\\CARD.WAV", "/lost.wav"});
  EXPECT_EQ(Next().sameSoundAs, "D:\\Music\\CARD.WAV");
  EXPECT_EQ(Next().sameSoundAs, "");
  EXPECT_EQ(Next().sameSoundAs, b);
}

TEST_F(ReadingAhead, AKnownFileIsNotReadAgain) {
  const std::string a = folder.Put("a.wav", "");
  thread.Begin({a}, {a});
  const SoundFileReading known = Next();
  EXPECT_EQ(known.path, a);
  EXPECT_EQ(known.error, "");
  EXPECT_FALSE(known.tags);
}

TEST_F(ReadingAhead, RunsOnlyWhileNothingElseWantsTo) {
  thread.Begin({folder.Put("a.wav", kSound)}, {});
  Next();
  EXPECT_EQ(policy, SCHED_IDLE);
}

TEST_F(ReadingAhead, WaitsWhereWhatItReadIsNotTakenAndComesToTheEndAllTheSame) {
  for (int i = 0; i < 600; ++i)
    folder.Put(std::to_string(i) + ".wav", std::string(50, 's') + std::to_string(i));
  thread.Begin({folder.Path()}, {});
  ASSERT_TRUE(AllFound(600));
  for (int i = 0; i < 600; ++i) ASSERT_EQ(Next().error, "");
  EXPECT_FALSE(thread.Take());
}

TEST_F(ReadingAhead, OneThatIsStoppedGivesNothingMoreAndTheNextOneItsOwn) {
  for (int i = 0; i < 600; ++i) folder.Put(std::to_string(i) + ".wav", kSound + std::to_string(i));
  const std::string other = folder.Put("other/a.wav", kSound);
  thread.Begin({folder.Path()}, {});
  Next();
  thread.Stop();
  EXPECT_FALSE(thread.Take());
  EXPECT_EQ(thread.Found().files, 0U);
  thread.Begin({folder.Path()}, {});
  thread.Begin({other}, {});
  EXPECT_EQ(Next().path, other);
  EXPECT_TRUE(AllFound(1));
}

}  // namespace
}  // namespace zemo
