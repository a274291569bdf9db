// A server that is gone without a word: over a network nothing tells of it but time.
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

#include <filesystem>

#include "store/postgres/PostgresDatabase.h"
#include "store/postgres/ServerFeed.h"
#include "support/TestServer.h"

namespace zemo {
namespace {

using test::TestServer;

int SettingOf(int socket, int level, int name) {
  int value = -1;
  socklen_t size = sizeof value;
  getsockopt(socket, level, name, &value, &size);
  return value;
}

// Also while an answer is waited for, when nothing of ours is on its way.
TEST(LostServer, ALineOverTheNetworkThatIsDeadIsGivenUpWithinHalfAMinute) {
  if (!TestServer::Get().Missing().empty()) GTEST_SKIP() << TestServer::Get().Missing();
  const std::string folder =
      (std::filesystem::path(testing::TempDir()) / ("zemo_network_" + std::to_string(getpid())))
          .string();
  const std::string port = TestServer::FreePort();
  const TestServer server(folder, {"listen_addresses=localhost", "port=" + port});
  ASSERT_EQ(server.Missing(), "");
  const std::string url = "postgresql://radio@localhost:" + port + "/postgres";
  ClosedPostgresDatabase(url, std::make_shared<LockWait>())->Open(true);
  ServerFeed feed(url, std::make_shared<LockWait>());
  EXPECT_EQ(SettingOf(feed.Socket(), SOL_SOCKET, SO_KEEPALIVE), 1);
  const int idle = SettingOf(feed.Socket(), IPPROTO_TCP, TCP_KEEPIDLE);
  const int between = SettingOf(feed.Socket(), IPPROTO_TCP, TCP_KEEPINTVL);
  const int times = SettingOf(feed.Socket(), IPPROTO_TCP, TCP_KEEPCNT);
  EXPECT_LE(idle + between * times, 30);
}

}  // namespace
}  // namespace zemo
