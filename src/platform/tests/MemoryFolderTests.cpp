// Folders of sound files in memory list themselves as real ones do.
#include <gtest/gtest.h>

#include "platform/tests/MemoryFolder.h"

namespace zemo {
namespace {

using Texts = std::vector<std::string>;

TEST(MemorySoundFiles, AreListedByFolderInOrderWithoutRegardToCase) {
  MemorySoundFiles sounds;
  for (const char* path : {"D:\\Music\\b.wav", "D:\\Music\\A.mp3", "D:\\Music\\.hidden",
                           "D:\\Music\\Pop\\x.wav", "D:\\Music\\Pop\\y.wav", "D:\\Musique\\z.wav"})
    sounds.files[path] = "sound";
  for (const char* folder : {"D:\\Music", "D:\\Music\\"}) {
    const FolderListing listing = sounds.List(folder);
    EXPECT_TRUE(listing.exists);
    EXPECT_EQ(listing.folders, Texts{"Pop"});
    EXPECT_EQ(listing.files, (Texts{"A.mp3", "b.wav"}));
  }
  EXPECT_EQ(sounds.List("D:\\").folders, (Texts{"Music", "Musique"}));
  EXPECT_FALSE(sounds.List("D:\\Mus").exists);
}

}  // namespace
}  // namespace zemo
