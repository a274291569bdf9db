// How seldom a sound file is opened for its length.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <fstream>

#include "TemporaryFolder.h"
#include "platform/real/files/KnownLengths.h"
#include "platform/real/files/LocalFolder.h"
#include "platform/real/files/StoredPaths.h"

namespace zemo {
namespace {

// A "sound" whose length in frames stands in its file; counts what is opened.
class NumberOpener : public SoundOpener {
 public:
  int opens = 0;
  std::unique_ptr<SoundSource> Open(const std::string& path) override {
    ++opens;
    int64_t frames = -1;
    std::ifstream(path) >> frames;
    if (frames < 0) throw SoundError(path + " is no sound");
    return std::make_unique<Source>(frames);
  }

 private:
  struct Source : SoundSource {
    explicit Source(int64_t given) : frames(given) {}
    int64_t LengthFrames() const override { return frames; }
    int Read(float*, int) override { return 0; }
    void Seek(int64_t) override {}
    int64_t frames;
  };
};

class SoundLength : public testing::Test {
 protected:
  std::string Put(const std::string& name, const std::string& text) {
    const std::string path = folder.Path() + "/" + name;
    std::ofstream(path) << text;
    return path;
  }
  // The file's time of change, seconds since 1970.
  static void Touch(const std::string& path, int64_t seconds) {
    const timespec times[2] = {{seconds, 0}, {seconds, 0}};
    ASSERT_EQ(utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
  }
  TemporaryFolder folder;
  LocalFolder machine{folder.Path()};
  StoredPaths files{machine};
  NumberOpener opener;
  SoundFileLengths lengths{opener, files};
};

TEST_F(SoundLength, AFileIsOpenedOnceWhileItStaysTheSame) {
  const std::string path = Put("a.wav", "88200");
  EXPECT_EQ(lengths.LengthMs(path), 2000);
  EXPECT_EQ(lengths.LengthMs(path), 2000);
  EXPECT_EQ(opener.opens, 1);
}

TEST_F(SoundLength, AnotherTimeOfChangeOrSizeHasItReadAnew) {
  const std::string path = Put("a.wav", "88200");
  Touch(path, 1000);
  EXPECT_EQ(lengths.LengthMs(path), 2000);
  Put("a.wav", "44100");
  Touch(path, 1001);
  EXPECT_EQ(lengths.LengthMs(path), 1000);
  Put("a.wav", "441000");
  Touch(path, 1001);
  EXPECT_EQ(lengths.LengthMs(path), 10000);
  EXPECT_EQ(opener.opens, 3);
}

TEST_F(SoundLength, WhatCannotBeOpenedHasNoLengthAndIsTriedAgain) {
  const std::string path = folder.Path() + "/late.wav";
  EXPECT_EQ(lengths.LengthMs(path), 0);
  Put("late.wav", "no number");
  EXPECT_EQ(lengths.LengthMs(path), 0);
  Put("late.wav", "44100");
  EXPECT_EQ(lengths.LengthMs(path), 1000);
}

TEST_F(SoundLength, TheEmptyPathIsNotOpened) {
  EXPECT_EQ(lengths.LengthMs(""), 0);
  EXPECT_EQ(opener.opens, 0);
}

}  // namespace
}  // namespace zemo
