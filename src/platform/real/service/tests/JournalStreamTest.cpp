#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

#include "platform/real/service/JournalStream.h"

namespace zemo {
namespace {

// Two pipes: the journal's, and one that somebody put in its place.
TEST(JournalStream, IsTheOneThatTheEnvironmentNamesByDeviceAndNumber) {
  int journal[2];
  int other[2];
  ASSERT_EQ(pipe(journal), 0);
  ASSERT_EQ(pipe(other), 0);
  struct stat its {};
  ASSERT_EQ(fstat(journal[1], &its), 0);
  const std::string name = std::to_string(its.st_dev) + ":" + std::to_string(its.st_ino);
  setenv("JOURNAL_STREAM", name.c_str(), 1);
  EXPECT_TRUE(LeadsIntoJournal(journal[1]));
  EXPECT_FALSE(LeadsIntoJournal(other[1]));
  EXPECT_FALSE(LeadsIntoJournal(-1));
  unsetenv("JOURNAL_STREAM");
  EXPECT_FALSE(LeadsIntoJournal(journal[1]));
  for (const int end : {journal[0], journal[1], other[0], other[1]}) close(end);
}

}  // namespace
}  // namespace zemo
