// The control socket with real clients: what they get, and what those cost who do not behave. What
// is waited for has a bound.
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <ctime>
#include <future>
#include <mutex>
#include <semaphore>
#include <set>

#include "platform/real/control/ControlConnection.h"
#include "platform/real/control/ControlSocket.h"
#include "platform/real/files/tests/TemporaryFolder.h"

namespace zemo {
namespace {

constexpr int kBoundMs = 60000;
using Lines = std::vector<std::string>;

// Everything but "rubbish..." is a request, which the logic gets as it is; "hold" keeps the thread.
class EchoWords : public ControlWords {
 public:
  std::string Greeting() override { return "hello"; }
  Understood Understand(std::string_view line) override {
    if (line.starts_with("rubbish")) return {.answer = "what?"};
    if (line == "hold") {
      held = true;
      letGo.acquire();
    }
    return {.forLogic = std::string(line)};
  }
  std::string Farewell(ControlCut why) override {
    return "bye " + std::to_string(static_cast<int>(why));
  }
  void EverySecond() override { ++seconds; }
  std::atomic<int> seconds = 0;
  std::atomic<bool> held = false;
  std::binary_semaphore letGo{0};
};

std::string Bye(ControlCut why) {
  return "bye " + std::to_string(static_cast<int>(why));
}

struct SocketOfTest : testing::Test {
  ControlBounds bounds;
  TemporaryFolder folder;
  EchoWords words;
  std::atomic<int> arrivals = 0;
  std::unique_ptr<ControlSocket> line;

  void Open(std::optional<uid_t> owner = {}) {
    line = std::make_unique<ControlSocket>(
        folder.Path(), words, [this] { ++arrivals; }, bounds, owner);
  }
  // The test is the logic. A condition that was met is not asked again.
  static bool Until(const std::function<bool()>& condition) {
    const auto latest = std::chrono::steady_clock::now() + std::chrono::milliseconds(kBoundMs);
    while (std::chrono::steady_clock::now() < latest) {
      if (condition()) return true;
      poll(nullptr, 0, 1);
    }
    return false;
  }
  ControlRequest Taken() {
    ControlRequest request;
    EXPECT_TRUE(Until([&] { return line->Take(request); }));
    return request;
  }
  uint64_t Cuts(ControlCut why) const { return line->Figures().cuts[static_cast<size_t>(why)]; }
};

// A client that has read its greeting.
struct Client : ControlConnection {
  explicit Client(const SocketOfTest& of) : ControlConnection(of.folder.Path()) {
    EXPECT_EQ(Next(), "hello");
  }
  std::string Next() { return Line(kBoundMs).value_or("(closed)"); }
  Lines UpToTheEnd() {
    Lines lines;
    while (auto line = Line(kBoundMs)) lines.push_back(*line);
    return lines;
  }
};

// A client that does as it likes.
struct RawClient {
  explicit RawClient(const SocketOfTest& of) : socket(ControlPlace(of.folder.Path()).Connect()) {}
  ~RawClient() { Close(); }
  RawClient(const RawClient&) = delete;
  void Close() {
    if (socket >= 0) close(socket);
    socket = -1;
  }
  bool Send(const std::string& text) const {
    return send(socket, text.data(), text.size(), MSG_NOSIGNAL) ==
           static_cast<ssize_t>(text.size());
  }
  // False: the other end has closed.
  bool CanSendOn(const std::string& text) const {
    const ssize_t count = send(socket, text.data(), text.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
    return count >= 0 || errno == EAGAIN;
  }
  int socket;
};

TEST_F(SocketOfTest, AnswersTheClientThatAsked) {
  Open();
  Client one(*this), two(*this);
  two.Say("from two");
  const ControlRequest request = Taken();
  EXPECT_EQ(request.text, "from two");
  line->Answer(request.client, "for two");
  EXPECT_EQ(two.Next(), "for two");
  one.Say("from one");
  line->Answer(Taken().client, "for one");
  EXPECT_EQ(one.Next(), "for one");
  EXPECT_EQ(line->Figures().clients, 2u);
}

TEST_F(SocketOfTest, TellsOnceThatSomethingHasArrivedUntilAllIsTaken) {
  Open();
  Client client(*this);
  client.Say("1\n2\n3\nrubbish");
  EXPECT_EQ(client.Next(), "what?");  // all of them lie there by now
  EXPECT_EQ(arrivals, 1);
  std::string taken;
  while (taken.size() < 3) taken += Taken().text;
  EXPECT_EQ(taken, "123");
  ControlRequest none;
  EXPECT_FALSE(line->Take(none));
  client.Say("4");
  EXPECT_EQ(Taken().text, "4");
  EXPECT_TRUE(Until([&] { return arrivals == 2; }));  // it may be told a moment behind
}

TEST_F(SocketOfTest, PublishesToThoseAloneWhoListen) {
  Open();
  Client listener(*this), other(*this);
  listener.Say("listen");
  const ControlClient number = Taken().client;
  EXPECT_FALSE(line->IsListenedTo(ControlChannel::kEvents));
  line->Answer(number, "yes");
  line->Listen(number, ControlChannel::kEvents);
  EXPECT_TRUE(line->IsListenedTo(ControlChannel::kEvents));
  EXPECT_FALSE(line->IsListenedTo(ControlChannel::kStatus));
  line->Publish(ControlChannel::kEvents, "event");
  line->Publish(ControlChannel::kStatus, "status");
  other.Say("ask");
  line->Answer(Taken().client, "answer");
  EXPECT_EQ(listener.Next(), "yes");
  EXPECT_EQ(listener.Next(), "event");
  EXPECT_EQ(other.Next(), "answer");
}

TEST_F(SocketOfTest, NobodyListensOnceTheListenerHasGone) {
  Open();
  {
    Client listener(*this);
    listener.Say("listen");
    line->Listen(Taken().client, ControlChannel::kStatus);
  }
  EXPECT_TRUE(Until([&] { return !line->IsListenedTo(ControlChannel::kStatus); }));
}

TEST_F(SocketOfTest, TheLogicHearsThatAClientHasGone) {
  Open();
  ControlClient number = 0;
  {
    Client client(*this);
    client.Say("wait for me");
    number = Taken().client;
  }
  const ControlRequest gone = Taken();
  EXPECT_EQ(gone.client, number);
  EXPECT_EQ(gone.text, "");
  line->Answer(number, "too late");  // costs nothing
  Client next(*this);
  EXPECT_TRUE(Until([&] { return line->Figures().clients == 1; }));
}

TEST_F(SocketOfTest, OfOneWhoAskedNothingTheLogicHearsNothing) {
  Open();
  { const Client silent(*this); }
  ASSERT_TRUE(Until([&] { return line->Figures().clients == 0; }));
  Client next(*this);
  next.Say("next");
  EXPECT_EQ(Taken().text, "next");
}

TEST_F(SocketOfTest, WhoClosesOnlyHisOwnDirectionGetsHisAnswersFirst) {
  Open();
  Client client(*this);
  RawClient raw(*this);
  ASSERT_TRUE(raw.Send("ask\n"));
  shutdown(raw.socket, SHUT_WR);
  const ControlRequest request = Taken();
  client.Say("meanwhile");  // the thread has gone round
  Taken();
  line->Answer(request.client, "answer");
  std::string got(100, '\0');
  std::string all;
  ssize_t count = 0;
  pollfd ready{raw.socket, POLLIN, 0};
  while (poll(&ready, 1, kBoundMs) > 0 && (count = recv(raw.socket, got.data(), 100, 0)) != 0)
    if (count > 0) all.append(got, 0, static_cast<size_t>(count));
  EXPECT_EQ(all, "hello\nanswer\n");
}

TEST_F(SocketOfTest, HalfALineOfOneWhoDiesIsNoRequest) {
  Open();
  {
    RawClient dying(*this);
    ASSERT_TRUE(dying.Send("whole\nhal"));
    EXPECT_EQ(Taken().text, "whole");
  }
  EXPECT_EQ(Taken().text, "");  // gone
  Client next(*this);
  next.Say("next");
  EXPECT_EQ(Taken().text, "next");
}

TEST_F(SocketOfTest, NorIsHalfALineOfOneWhoSaysNoMore) {
  Open();
  const RawClient client(*this);
  ASSERT_TRUE(client.Send("whole\nhal"));
  shutdown(client.socket, SHUT_WR);
  const ControlRequest whole = Taken();
  EXPECT_EQ(whole.text, "whole");
  line->Answer(whole.client, "done");
  EXPECT_EQ(Taken().text, "");  // gone
}

TEST_F(SocketOfTest, ALineMayComeInPieces) {
  Open();
  const RawClient client(*this);
  for (const char byte : std::string("in pieces\r\n")) ASSERT_TRUE(client.Send({byte}));
  EXPECT_EQ(Taken().text, "in pieces");
}

TEST_F(SocketOfTest, OneThatDoesNotReadIsCutOffAndTheOthersAreNot) {
  bounds.unreadBytes = 20000;
  Open();
  Client good(*this);
  const RawClient bad(*this);
  for (int i = 0; i < 2; ++i) (i == 0 ? good.Say("listen") : void(bad.Send("listen\n")));
  for (int i = 0; i < 2; ++i) line->Listen(Taken().client, ControlChannel::kEvents);
  // What the system takes for one who does not read is some hundred kilobytes.
  const std::string event(10000, 'e');
  int published = 0;
  while (Cuts(ControlCut::kSlow) == 0 && published < 200) {
    line->Publish(ControlChannel::kEvents, event);
    ++published;
    ASSERT_EQ(good.Next(), event);
  }
  EXPECT_EQ(Cuts(ControlCut::kSlow), 1u);
  EXPECT_EQ(line->Figures().clients, 1u);
  line->Publish(ControlChannel::kEvents, "more");
  EXPECT_EQ(good.Next(), "more");
}

TEST_F(SocketOfTest, OneThatFloodsIsSlowedThenCut) {
  bounds.linesASecond = 100;
  bounds.linesAtOnce = 5;
  bounds.flood = std::chrono::milliseconds(300);
  Open();
  Client good(*this);
  const RawClient bad(*this);
  const std::string flood = "go\ngo\ngo\ngo\ngo\ngo\ngo\ngo\ngo\ngo\n";
  const auto begun = std::chrono::steady_clock::now();
  int served = 0;
  ControlRequest request;
  const auto latest = begun + std::chrono::milliseconds(kBoundMs);
  while (bad.CanSendOn(flood) && Cuts(ControlCut::kFlood) == 0 &&
         std::chrono::steady_clock::now() < latest)
    for (; line->Take(request) && !request.text.empty(); ++served)
      line->Answer(request.client, "done");
  const std::chrono::duration<double> took = std::chrono::steady_clock::now() - begun;
  EXPECT_EQ(Cuts(ControlCut::kFlood), 1u);
  EXPECT_GE(took.count(), 0.3);
  // What it may at once, and 100 a second.
  EXPECT_LE(served, 5 + 100 * took.count() + 1);
  EXPECT_GE(served, 5);
  good.Say("still here");
  while (Taken().text != "still here") {
  }
}

TEST_F(SocketOfTest, ABurstThatEndsIsServedAndForgiven) {
  bounds.linesASecond = 1000;
  bounds.linesAtOnce = 4;
  bounds.flood = std::chrono::milliseconds(20000);
  Open();
  Client client(*this);
  std::string burst;
  for (int i = 0; i < 100; ++i) burst += "again\n";
  client.Say(burst + "last");
  for (int i = 0; i < 101; ++i) {
    const ControlRequest request = Taken();
    EXPECT_EQ(request.text, i < 100 ? "again" : "last");
    if (i == 100) break;
    line->Answer(request.client, "done");
    EXPECT_EQ(client.Next(), "done");
  }
}

TEST_F(SocketOfTest, RubbishIsAnsweredAndCutOffWhenItGoesOn) {
  bounds.rubbish = 3;
  Open();
  Client client(*this);
  client.Say("rubbish\nrubbish\nask\nrubbish\nrubbish\nrubbish\nrubbish");
  const Lines lines = client.UpToTheEnd();
  // The request between two and three of them makes them begin anew.
  EXPECT_EQ(lines, (Lines{"what?", "what?", "what?", "what?", "what?", Bye(ControlCut::kRubbish)}));
  EXPECT_EQ(Cuts(ControlCut::kRubbish), 1u);
  EXPECT_EQ(Taken().text, "ask");
}

TEST_F(SocketOfTest, ALineWithoutAnEndIsCutOff) {
  bounds.lineBytes = 1000;
  Open();
  Client client(*this);
  client.Say(std::string(1000, 'x'));
  EXPECT_EQ(Taken().text, std::string(1000, 'x'));
  client.Say(std::string(1001, 'x'));
  EXPECT_EQ(client.UpToTheEnd(), Lines{Bye(ControlCut::kRubbish)});
  const RawClient endless(*this);
  while (endless.CanSendOn(std::string(500, 'y')) && Cuts(ControlCut::kRubbish) < 2)
    poll(nullptr, 0, 1);
  EXPECT_EQ(Cuts(ControlCut::kRubbish), 2u);
}

TEST_F(SocketOfTest, NoMoreThanSoManyAreLetIn) {
  bounds.clients = 2;
  Open();
  Client one(*this);
  {
    Client two(*this);
    ControlConnection three(folder.Path());
    EXPECT_EQ(three.Line(kBoundMs), Bye(ControlCut::kNumber));
    EXPECT_EQ(three.Line(kBoundMs), std::nullopt);
  }
  ASSERT_TRUE(Until([&] { return line->Figures().clients == 1; }));
  Client again(*this);
  EXPECT_EQ(line->Figures().accepted, 3u);
  EXPECT_EQ(Cuts(ControlCut::kNumber), 1u);
}

// The thread, which is busy with another one meanwhile, sees at once that one has gone and that
// another knocks.
TEST_F(SocketOfTest, ThePlaceOfOneWhoHasGoneIsFree) {
  bounds.clients = 2;
  Open();
  std::optional<Client> going(*this);
  Client holding(*this);
  holding.Say("hold");
  ASSERT_TRUE(Until([&] { return words.held.load(); }));
  going.reset();
  ControlConnection three(folder.Path());
  words.letGo.release();
  EXPECT_EQ(three.Line(kBoundMs), "hello");
}

// Two at a time with a bound of two, and a tenth of a second from one time to the next.
TEST_F(SocketOfTest, ThoseWhoKnockWithoutEndWait) {
  bounds.clients = 2;
  Open();
  Client one(*this), two(*this);
  const auto begun = std::chrono::steady_clock::now();
  std::vector<std::unique_ptr<RawClient>> knocking;
  for (int i = 0; i < 20; ++i) knocking.push_back(std::make_unique<RawClient>(*this));
  ASSERT_TRUE(Until([&] { return Cuts(ControlCut::kNumber) == 20; }));
  const std::chrono::duration<double> took = std::chrono::steady_clock::now() - begun;
  EXPECT_GE(took.count(), 0.8);
}

double ProcessorSeconds() {
  timespec used{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &used);
  return static_cast<double>(used.tv_sec) + static_cast<double>(used.tv_nsec) / 1e9;
}

// All handles that the process may have, up to the end.
struct NoHandleLeft {
  NoHandleLeft() {
    getrlimit(RLIMIT_NOFILE, &before);
    const rlimit few{256, before.rlim_max};
    setrlimit(RLIMIT_NOFILE, &few);
    for (int made = dup(0); made >= 0; made = dup(0)) taken.push_back(made);
  }
  ~NoHandleLeft() {
    for (const int handle : taken) close(handle);
    setrlimit(RLIMIT_NOFILE, &before);
  }
  NoHandleLeft(const NoHandleLeft&) = delete;
  rlimit before{};
  std::vector<int> taken;
};

// He knocks on, and nobody can let him in: the thread turns no faster for that.
TEST_F(SocketOfTest, WhereNoHandleIsLeftAKnockCostsNoTimeAndIsServedLater) {
  Open();
  const Client client(*this);  // the seconds count while somebody is there
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  const std::string place = folder / "Control.Sock";
  ASSERT_LT(place.size(), sizeof address.sun_path);
  place.copy(address.sun_path, place.size());
  const int knocking = socket(AF_UNIX, SOCK_STREAM, 0);
  {
    const NoHandleLeft none;
    ASSERT_EQ(connect(knocking, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    const double used = ProcessorSeconds();
    const int seconds = words.seconds;
    ASSERT_TRUE(Until([&] { return words.seconds >= seconds + 3; }));  // two whole ones at least
    EXPECT_LT(ProcessorSeconds() - used, 0.6);
  }
  pollfd ready{knocking, POLLIN, 0};
  ASSERT_EQ(poll(&ready, 1, kBoundMs), 1);
  char text[6] = "";
  EXPECT_EQ(recv(knocking, text, 5, 0), 5);
  EXPECT_STREQ(text, "hello");
  close(knocking);
}

// As many wait to be let in as may; once there is room the knock succeeds.
TEST_F(SocketOfTest, AClientKnocksAgainWhereTooManyWait) {
  const ControlPlace knockedAt(folder.Path());
  ControlPlace place(folder.Path());
  const int listening = place.Bind();
  std::vector<int> waiting;
  for (int made = knockedAt.Connect(); made >= 0; made = knockedAt.Connect())
    waiting.push_back(made);
  ASSERT_EQ(errno, EAGAIN);
  auto made = std::async(std::launch::async,
                         [&] { return std::make_unique<ControlConnection>(folder.Path()); });
  EXPECT_EQ(made.wait_for(std::chrono::milliseconds(200)), std::future_status::timeout);
  close(accept(listening, nullptr, nullptr));
  EXPECT_NE(made.get(), nullptr);
  for (const int one : waiting) close(one);
  close(listening);
}

TEST_F(SocketOfTest, NoMoreThanSoManyRequestsOfOneWaitForTheirAnswers) {
  bounds.unanswered = 2;
  Open();
  Client client(*this), other(*this);
  client.Say("1\n2\n3");
  const ControlRequest first = Taken(), second = Taken();
  other.Say("other");
  EXPECT_EQ(Taken().text, "other");  // the thread has gone round
  ControlRequest third;
  EXPECT_FALSE(line->Take(third));
  line->Answer(first.client, "one");
  EXPECT_EQ(Taken().text, "3");
}

TEST_F(SocketOfTest, WhereMoreIsSaidThanFindsRoomAllAreCutOff) {
  Open();
  Client client(*this);
  client.Say("listen");
  const ControlClient number = Taken().client;
  line->Listen(number, ControlChannel::kEvents);
  line->Answer(number, std::string(2 * 1024 * 1024, 'x'));
  EXPECT_EQ(client.UpToTheEnd(), Lines{Bye(ControlCut::kFull)});
  EXPECT_EQ(Cuts(ControlCut::kFull), 1u);
  EXPECT_FALSE(line->IsListenedTo(ControlChannel::kEvents));
}

TEST_F(SocketOfTest, ASocketThatIsRemovedUnderItIsMadeAgain) {
  bounds.look = std::chrono::milliseconds(10);
  Open();
  Client before(*this);
  std::filesystem::remove(folder / "Control.Sock");
  ASSERT_TRUE(Until([&] { return std::filesystem::exists(folder / "Control.Sock"); }));
  // It listens a moment behind its making.
  ASSERT_TRUE(Until([&] {
    const int made = ControlPlace(folder.Path()).Connect();
    if (made >= 0) close(made);
    return made >= 0;
  }));
  before.Say("still here");
  std::set<std::string> texts;
  while (!texts.contains("still here")) texts.insert(Taken().text);
}

TEST_F(SocketOfTest, IsTakenAwayAtItsEndAndClosesToAll) {
  Open();
  Client client(*this);
  line.reset();
  EXPECT_EQ(client.UpToTheEnd(), Lines());
  EXPECT_FALSE(std::filesystem::exists(folder / "Control.Sock"));
}

TEST_F(SocketOfTest, LooksAfterTheWordsOnceASecondWhileSomebodyIsThere) {
  Open();
  EXPECT_EQ(words.seconds, 0);
  Client client(*this);
  EXPECT_TRUE(Until([&] { return words.seconds >= 1; }));
}

// Who may is asked of the system, also where the rights of the file would let everybody in.
TEST_F(SocketOfTest, AnotherUserIsSentAway) {
  if (geteuid() != 0) GTEST_SKIP() << "only root can be another user";
  constexpr uid_t kOwner = 1, kStranger = 2;
  Open(kOwner);
  chmod(folder.Path().c_str(), 0755);
  chmod((folder / "Control.Sock").c_str(), 0666);
  Client root(*this);
  for (const uid_t user : {kOwner, kStranger}) {
    const pid_t child = fork();
    if (child == 0) {
      const int made = setuid(user) == 0 ? ControlPlace(folder.Path()).Connect() : -1;
      char text[6] = "";
      pollfd ready{made, POLLIN, 0};
      if (made < 0 || poll(&ready, 1, kBoundMs) != 1 || read(made, text, 5) != 5) _exit(100);
      _exit(text[0] == 'h' ? 0 : text[4] - '0');
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), user == kOwner ? 0 : static_cast<int>(ControlCut::kUser));
  }
  EXPECT_EQ(Cuts(ControlCut::kUser), 1u);
}

}  // namespace
}  // namespace zemo
