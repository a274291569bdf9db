// A base behind TLS as the URL asks for it: a server of the test's own that listens on the loopback
// with a certificate of the test's own.
#include <gtest/gtest.h>

#include <memory>

#include "BlackBox.h"
#include "support/TestServer.h"

namespace zemo {
namespace {

using test::TestServer;

class Tls : public BlackBox {
 protected:
  void SetUp() override {
    BlackBox::SetUp();
    if (!TestServer::Get().Missing().empty()) GTEST_SKIP() << TestServer::Get().Missing();
    std::filesystem::permissions(root_, std::filesystem::perms(0755));
    for (const char* name : {"own", "other"}) {
      const std::string to = Path(name);
      ASSERT_EQ(Shell("openssl req -x509 -newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -nodes "
                      "-days 2 -subj /CN=localhost -addext subjectAltName=DNS:localhost -keyout " +
                      to + ".key -out " + to + ".crt")
                    .status,
                0);
    }
    // The server reads its key alone.
    Shell("chmod 600 own.key; chown 65534 own.key own.crt");
    port_ = TestServer::FreePort();
    server_ = std::make_unique<TestServer>(
        Path("server"), std::vector<std::string>{"listen_addresses=localhost", "port=" + port_,
                                                 "ssl=on", "ssl_cert_file=" + Path("own.crt"),
                                                 "ssl_key_file=" + Path("own.key")});
    ASSERT_EQ(server_->Missing(), "") << ReadText(root_ / "server/log");
    base_ = server_->NewBase();
    MakeStation({2});
  }
  void TearDown() override {
    server_.reset();
    BlackBox::TearDown();
  }

  std::string Url(const std::string& host, const std::string& trusted) const {
    return "postgresql://radio@" + host + ":" + port_ + "/" + base_ +
           "?sslmode=verify-full&sslrootcert=" + Path(trusted);
  }

  std::string port_, base_;
  std::unique_ptr<TestServer> server_;
};

TEST_F(Tls, AServerThatShowsTheCertificateThatTheUrlTrustsHasTheBase) {
  const Result moved =
      Run("move --station station --machine machine --to '" + Url("localhost", "own.crt") + "'");
  EXPECT_EQ(moved.status, 0) << moved.err;
  const Result run = Run("run --station station --machine machine --output null --for 1");
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(ReadText(root_ / "station/Messages.Txt").find("serves"), std::string::npos)
      << ReadText(root_ / "station/Messages.Txt");
  EXPECT_EQ(Run("settings --station station --machine machine set FadeOut 1234").status, 0);
  EXPECT_EQ(server_->Ask(base_, "SELECT \"FadeOut\" FROM \"Cnf\""), "1234");
}

TEST_F(Tls, AServerWithAnotherCertificateOrOfAnotherNameIsRefusedInOneLine) {
  for (const auto& [url, why] :
       {std::pair(Url("localhost", "other.crt"), "certificate verify failed"),
        std::pair(Url("127.0.0.1", "own.crt"), "does not match host name")}) {
    Shell("rm -f station/Triskin.MDB");
    Put("station/Base.Ini", url + "\n");
    const Result set = Run("settings --station station --machine machine set FadeOut 1234");
    EXPECT_EQ(set.status, 1);
    ExpectOneError(set.err);
    EXPECT_NE(set.err.find(why), std::string::npos) << set.err;
  }
}

}  // namespace
}  // namespace zemo
