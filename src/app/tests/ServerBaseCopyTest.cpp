// What a command that asks a station on a server works on: a file with what its machine and the
// server know, at the cost of a copy.
#include <fstream>

#include "LinkedMachines.h"
#include "app/PrivateCopy.h"
#include "app/ServerBaseCopy.h"
#include "store/DatabaseFiles.h"
#include "store/Recordset.h"

namespace zemo {
namespace {

class ServerBaseCopy : public LinkedMachines {
 protected:
  void SetUp() override {
    LinkedMachines::SetUp();
    if (IsSkipped()) return;
    std::filesystem::create_directory(folder_ / "station");
    std::ofstream(folder_ / "station" / "Base.Ini") << Url() << '\n';
    const auto air = Link();
    Add(*Open(*air), "known");
    EXPECT_TRUE(Comes([&] { return OnServer(kCount) == "1" && air->State().waiting == 0; }));
  }
  std::string Replica() const {
    return Folder("air") + '/' + ServerLink::FileName(ServerPlace(Url()));
  }
  // A row that only the replica's file has, and nothing that is to be sent: who reads it has read
  // the replica.
  void MarkReplica() const {
    DBEngine::ExecuteNative(Replica(),
                            "UPDATE zemo_replica SET quiet = 1; INSERT INTO Discotheque(TITRE) "
                            "VALUES('mark'); UPDATE zemo_replica SET quiet = 0");
  }
  void OnServerDo(const std::string& sql) const {
    EXPECT_EQ(TestServer::Get().Try(made_, sql), "");
  }
  // The titles of a private copy by that machine folder, as commands make it; `told_` is what they
  // say to it.
  std::string Copied(const std::string& machine) {
    const std::filesystem::path to = folder_ / "copy";
    std::filesystem::remove_all(to);
    std::filesystem::create_directory(to);
    testing::internal::CaptureStderr();
    CopyStation((folder_ / "station").string(), to.string(), machine);
    told_ = testing::internal::GetCapturedStderr();
    const auto copy = DBEngine::OpenDatabase((to / "Triskin.MDB").string());
    std::string titles;
    for (const auto rows = copy->OpenRecordset("SELECT TITRE FROM Discotheque ORDER BY TITRE");
         !rows->Eof(); rows->MoveNext())
      titles += (titles.empty() ? "" : " ") + AsText(rows->Field(0));
    copy->Execute("INSERT INTO Discotheque(TITRE) VALUES('new')");  // a base as any other
    return titles;
  }

  static constexpr char kCount[] = "SELECT count(*) FROM \"Discotheque\"";
  std::string told_;
};

TEST_F(ServerBaseCopy, IsOfTheReplicaWithWhatOthersHaveStoredSince) {
  OnServerDo("INSERT INTO \"Discotheque\" (\"TITRE\") VALUES ('other')");
  MarkReplica();
  EXPECT_EQ(Copied(Folder("air")), "known mark other");
  EXPECT_EQ(told_, "");
  EXPECT_EQ(Copied({}), "known other");
  EXPECT_EQ(Copied(Folder("another")), "known other");
  EXPECT_EQ(OnServer(kCount), "2");
}

TEST_F(ServerBaseCopy, HasWhatItsMachineHasStillToSend) {
  TestServer::Get().Stop();
  {
    const auto air = Link();
    Add(*Open(*air), "waits");
  }
  EXPECT_EQ(Copied(Folder("air")), "known waits");
  EXPECT_NE(told_.find("; the replica on this machine answers, with what was stored on the server "
                       "up to 2"),
            std::string::npos)
      << told_;
  EXPECT_NE(told_.find(", and with 1 write of this machine that it has still to take\n"),
            std::string::npos);
  EXPECT_EQ(told_.find("secret"), std::string::npos);
  TestServer::Get().Start();
  OnServerDo("INSERT INTO \"Discotheque\" (\"TITRE\") VALUES ('other')");
  EXPECT_EQ(Copied(Folder("air")), "known other waits");
  EXPECT_EQ(told_, "");
  EXPECT_EQ(OnServer(kCount), "2");
  EXPECT_EQ(ServerLink::WaitingIn(Folder("air"), ServerPlace(Url())), 1);
}

TEST_F(ServerBaseCopy, OfAnotherBaseThanTheReplicasIsReadFromTheServer) {
  MarkReplica();
  OnServerDo("UPDATE zemo.base SET identity = 'restored'");
  EXPECT_EQ(Copied(Folder("air")), "known");
  EXPECT_EQ(told_, "");
}

// Of the program that is on air: nobody asks the server.
TEST_F(ServerBaseCopy, OfALinkedReplicaIsAsThatIs) {
  OnServerDo("INSERT INTO \"Discotheque\" (\"TITRE\") VALUES ('other')");
  LinkReplica(ServerPlace(Url()), Folder("air"), Folder("forecast"));
  EXPECT_EQ(Copied(Folder("forecast")), "known");
  TestServer::Get().Stop();
  EXPECT_EQ(Copied(Folder("forecast")), "known");
  EXPECT_EQ(told_, "");
  LinkReplica(ServerPlace(Url()), Folder("another"), Folder("none"));
  EXPECT_TRUE(std::filesystem::is_empty(Folder("none")));
}

}  // namespace
}  // namespace zemo
