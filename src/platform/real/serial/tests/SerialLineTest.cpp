// The automaton over a real line: a pair of pseudo terminals with the program zemo_automaton at the
// other end. Times are real: a test waits for a condition with a bound and asserts no time.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <termios.h>
#include <unistd.h>

#include <QCoreApplication>
#include <filesystem>

#include "engine/ExternalTriggers.h"
#include "platform/real/desktop/RealClock.h"
#include "platform/real/desktop/RealEventLoop.h"
#include "platform/real/serial/QtSerialPort.h"
#include "settings/SerialInput.h"
#include "support/Child.h"
#include "support/TestStation.h"

namespace zemo::test {
namespace {

struct HandClock : Clock {
  int64_t ms = 1'000'000;
  LocalDateTime LocalNow() const override { return {}; }
  int64_t MonotonicMs() const override { return ms; }
};

// Both ends of the line as paths, and the automaton at one of them.
class Wire {
 public:
  Wire(const std::string& ours, const std::string& theirs)
      : socat_({"socat", "PTY,raw,echo=0,link=" + ours, "PTY,raw,echo=0,link=" + theirs}) {
    const auto there = [&] {
      return std::filesystem::exists(ours) && std::filesystem::exists(theirs);
    };
    if (!WaitFor(there, [] { usleep(1000); })) throw std::runtime_error("no pseudo terminals");
    automaton_ = std::make_unique<Child>(std::vector<std::string>{ZEMO_AUTOMATON_PROGRAM, theirs});
    if (automaton_->Line() != "ready") throw std::runtime_error("no automaton");
  }
  // Served when the call comes back. What the automaton said before is forgotten.
  void Order(const std::string& order) {
    automaton_->Tell(order + "\n");
    while (const auto line = automaton_->Line())
      if (*line == "ok") return;
    throw std::runtime_error("the automaton does not answer");
  }
  std::string Heard(const std::function<void()>& meanwhile) {
    return automaton_->Line(meanwhile).value_or("(nothing)");
  }

 private:
  Child socat_;
  std::unique_ptr<Child> automaton_;
};

class SerialLine : public testing::Test {
 protected:
  void SetUp() override {
    virtualStation_.Load();
    virtualStation_.localValues.Set("PortCom1", Ours());
    station_.base.OpenOrCreateDatabase();
    station_.base.OpenAllTables();
    Connect();
  }
  std::string Ours() const { return folder_.Path() + "/ours"; }
  void Connect() { wire_ = std::make_unique<Wire>(Ours(), folder_.Path() + "/theirs"); }
  void OpenPort(const std::string& setting = "4800,N,8,1") {
    ASSERT_EQ(Settings::PortCom_Click(station_, 1, setting), "Init " + setting + " Ok");
  }
  bool Led(size_t contact) const { return station_.engine.Contacts[contact]; }
  void Poll() {
    PollInputs(station_);
    loop_.WaitYield();
  }
  // Polls as the tick does until the indicators stand so, contact 3 first.
  bool LedsBecome(const std::string& wanted) {
    const auto leds = [this] {
      std::string text;
      for (const size_t contact : {3, 2, 1, 0}) text += Led(contact) ? '1' : '0';
      return text;
    };
    return WaitFor([&] { return leds() == wanted; }, [this] { Poll(); });
  }
  // What the automaton hears next, while the loop moves the bytes and nobody polls.
  std::string Heard() {
    return wire_->Heard([this] { loop_.WaitYield(); });
  }

  int argc_ = 1;
  char name_[8] = "test";
  char* argv_[2] = {name_, nullptr};
  QCoreApplication application_{argc_, argv_};
  RealEventLoop loop_;
  HandClock clock_;
  TestStation virtualStation_;  // folders and base; its clock stands still
  TempFolder folder_;
  QtSerialPort port_{virtualStation_.localValues, clock_};
  Station station_{Platform{virtualStation_.loop, virtualStation_.loop, virtualStation_.sound,
                            virtualStation_.stationFolder, virtualStation_.machineFolder,
                            virtualStation_.soundFiles, virtualStation_.lengths,
                            virtualStation_.localValues, virtualStation_.clipboard,
                            virtualStation_.messages, virtualStation_.keyboard,
                            virtualStation_.system, port_, virtualStation_.joystick}};
  std::unique_ptr<Wire> wire_;
};

// Pseudo terminals know neither parity nor fewer than eight data bits.
TEST_F(SerialLine, TheContactsArriveAtEveryLineSetting) {
  for (const char* setting : {"4800,N,8,1", "9600,N,8,2", "300,N,8,1", "115200,N,8,2"}) {
    OpenPort(setting);
    wire_->Order("contacts 10");
    EXPECT_TRUE(LedsBecome("1010")) << setting;
    wire_->Order("contacts 5");
    EXPECT_TRUE(LedsBecome("0101")) << setting;
    EXPECT_EQ(Settings::PortCom_Click(station_, 0, ""), "Port COM Close OK !");
  }
}

TEST_F(SerialLine, ALateAnswerIsWaitedForWithOnePollOnTheWay) {
  wire_->Order("contacts 2");
  wire_->Order("answers late");
  OpenPort();
  Poll();
  EXPECT_EQ(Heard(), "E");
  Poll();
  Poll();
  EXPECT_FALSE(Led(1));
  wire_->Order("release");  // would hear of a second poll before its own "ok"
  EXPECT_TRUE(LedsBecome("0010"));
  EXPECT_EQ(Heard(), "E");  // the poll behind the answer
}

TEST_F(SerialLine, ATornAnswerIsPutTogether) {
  wire_->Order("contacts 8");
  wire_->Order("answers torn");
  OpenPort();
  Poll();
  EXPECT_EQ(Heard(), "E");
  Poll();
  Poll();
  EXPECT_FALSE(Led(3));
  wire_->Order("answers whole");
  wire_->Order("contacts 0");
  wire_->Order("release");
  EXPECT_TRUE(LedsBecome("1000"));
  EXPECT_TRUE(LedsBecome("0000"));
}

TEST_F(SerialLine, AfterDoubledAndWrongAnswersTheNextWholeOneCounts) {
  OpenPort();
  for (const char* fault : {"doubled", "wrong"}) {
    wire_->Order(std::string("answers ") + fault);
    for (int polls = 0; polls < 10; ++polls) Poll();
    wire_->Order("answers whole");
    wire_->Order("contacts 4");
    EXPECT_TRUE(LedsBecome("0100")) << fault;
    wire_->Order("contacts 0");
    EXPECT_TRUE(LedsBecome("0000")) << fault;
  }
}

TEST_F(SerialLine, AMissingAnswerIsAskedForAgain) {
  wire_->Order("contacts 1");
  wire_->Order("answers missing");
  OpenPort();
  for (int asked = 0; asked < 3; ++asked) EXPECT_EQ(wire_->Heard([this] { Poll(); }), "E");
  EXPECT_FALSE(Led(0));
  wire_->Order("answers whole");
  EXPECT_TRUE(LedsBecome("0001"));
}

TEST_F(SerialLine, RelaysGoOutAsOneByte) {
  OpenPort();
  SetRelays(station_, true, false, true, true);
  EXPECT_EQ(Heard(), "S 13");
  SetRelays(station_, false, true, false, false);
  EXPECT_EQ(Heard(), "S 2");
}

TEST_F(SerialLine, ALostLineIsOpenedAgainWhenItIsBack) {
  OpenPort();
  wire_->Order("contacts 3");
  ASSERT_TRUE(LedsBecome("0011"));
  wire_.reset();
  const auto told = [this] { return virtualStation_.stationFolder.Read("Messages.Txt"); };
  ASSERT_TRUE(WaitFor([&] { return told() && told()->find("the line is lost") != told()->npos; },
                      [this] { Poll(); }));
  EXPECT_TRUE(Led(0) && Led(1));  // the state stands
  EXPECT_TRUE(station_.engine.SerialInputOpen);
  Connect();
  wire_->Order("contacts 12");
  for (int polls = 0; polls < 5; ++polls) Poll();
  EXPECT_TRUE(Led(0));  // not tried again before its time
  clock_.ms += 2000;
  EXPECT_TRUE(LedsBecome("1100"));
}

TEST_F(SerialLine, APortThatIsNotThereIsOneErrorWithItsName) {
  virtualStation_.localValues.Set("PortCom3", folder_.Path() + "/none");
  EXPECT_EQ(Settings::PortCom_Click(station_, 3, "4800,N,8,1"), "Erreur n° 1");
  EXPECT_FALSE(station_.engine.SerialInputOpen);
  EXPECT_NE(virtualStation_.stationFolder.Read("Messages.Txt")->find("/none: "), std::string::npos);
}

TEST_F(SerialLine, LineParametersThatAreNoneAreAnError) {
  EXPECT_THROW(port_.Open(1, "fast"), SerialError);
  EXPECT_FALSE(port_.IsOpen());
  EXPECT_THROW(port_.Write("E"), SerialError);
}

TEST(SerialDevice, TakesBaudAndStopBitsOfTheSetting) {
  int argc = 1;
  char name[] = "test";
  char* argv[] = {name, nullptr};
  const QCoreApplication application(argc, argv);
  const int master = posix_openpt(O_RDWR | O_NOCTTY);
  ASSERT_GE(master, 0);
  ASSERT_EQ(grantpt(master), 0);
  ASSERT_EQ(unlockpt(master), 0);
  TestStation station;
  station.localValues.Set("PortCom2", ptsname(master));
  const RealClock clock;
  QtSerialPort port(station.localValues, clock);
  termios form{};
  port.Open(2, "4800,N,8,1");
  ASSERT_EQ(tcgetattr(master, &form), 0);
  EXPECT_EQ(cfgetospeed(&form), static_cast<speed_t>(B4800));
  EXPECT_EQ(form.c_cflag & CSTOPB, 0u);
  port.Open(2, "19200,N,8,2");
  ASSERT_EQ(tcgetattr(master, &form), 0);
  EXPECT_EQ(cfgetospeed(&form), static_cast<speed_t>(B19200));
  EXPECT_NE(form.c_cflag & CSTOPB, 0u);
  close(master);
}

}  // namespace
}  // namespace zemo::test
