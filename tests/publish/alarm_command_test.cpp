// The user's command is run for every alarm, whatever it does.
// SPDX-License-Identifier: MIT
#include "publish/alarm_command.h"

#include <sys/eventfd.h>
#include <sys/resource.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "network_faults.h"
#include "publish/program_run.h"
#include "sender_bench.h"
#include "support/temporary_broker.h"

namespace kestrel::publish {
namespace {

using namespace std::chrono_literals;

class Programs : public testing::Test {
 protected:
  ProgramEnd Run(const std::vector<std::string>& words, const std::string& input = "",
                 std::chrono::milliseconds limit = 10s) {
    return RunProgram({.words = words, .input = input, .limit = limit}, stop_);
  }
  int stop_ = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
};

TEST_F(Programs, ArgumentsAreHandedOverAsTheyAre) {
  const ProgramEnd end = Run({"printf", "%s|", "$HOME", "a b", "`id`", "", "*", "x;y", "\"q\""});
  EXPECT_EQ(end.output, "$HOME|a b|`id`||*|x;y|\"q\"|");
  EXPECT_EQ(TextOf(end), "ended with status 0");
}

TEST_F(Programs, ReadTheirInputToItsEnd) {
  EXPECT_EQ(Run({"cat"}, "one\ntwo").output, "one\ntwo");
}

TEST_F(Programs, TellHowTheyEnded) {
  EXPECT_EQ(TextOf(Run({"sh", "-c", "exit 3"})), "ended with status 3");
  EXPECT_EQ(TextOf(Run({"sh", "-c", "kill -9 $$"})), "was ended by signal 9");
  EXPECT_EQ(TextOf({.kind = ProgramEnd::Kind::Stopped}), "was ended with the program");
  EXPECT_EQ(TextOf(Run({"/none/such"})), "cannot be started: No such file or directory");
  EXPECT_EQ(TextOf(Run({"/etc/passwd"})), "cannot be started: Permission denied");
}

TEST_F(Programs, ThatTakeTooLongAreEndedWithAllTheyStarted) {
  const TemporaryFolder folder;
  const std::string file = (folder.path() / "process").string();
  const auto begin = std::chrono::steady_clock::now();
  const ProgramEnd end =
      Run({"sh", "-c", "sleep 1000 & echo $! > " + file + "; trap '' TERM; wait; sleep 1000"}, "",
          200ms);
  EXPECT_EQ(end.kind, ProgramEnd::Kind::TooLong);
  EXPECT_LT(std::chrono::steady_clock::now() - begin, 5s);
  const pid_t started = std::stoi(folder.Content("process"));
  EXPECT_TRUE(Eventually([&] {
    std::ifstream state("/proc/" + std::to_string(started) + "/stat");
    std::string text;
    return !std::getline(state, text) || text.find(") Z") != std::string::npos;
  }));
}

TEST_F(Programs, WriteAsMuchAsTheyLikeAndLittleIsKept) {
  const ProgramEnd end = Run({"head", "-c", "50000000", "/dev/zero"});
  EXPECT_EQ(end.kind, ProgramEnd::Kind::Exited);
  EXPECT_EQ(end.output.size(), 4096U);
  EXPECT_TRUE(end.isCut);
}

TEST_F(Programs, ThatLeaveSomethingBehindAreNotWaitedFor) {
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_EQ(Run({"sh", "-c", "sleep 5 & echo begun"}).output, "begun\n");
  EXPECT_LT(std::chrono::steady_clock::now() - begin, 3s);
}

TEST_F(Programs, HaveNoFilesOfThisProgram) {
  const TemporaryFolder folder;
  const int file = open(folder.Write("secret", "x").c_str(), O_RDONLY);     // without O_CLOEXEC
  EXPECT_EQ(Run({"sh", "-c", "ls /proc/self/fd"}).output, "0\n1\n2\n3\n");  // 3 is that of ls
  close(file);
}

class Commands : public testing::Test {
 protected:
  void Start(const std::vector<std::string>& words, std::chrono::seconds limit = 10s) {
    letters_ = std::make_shared<LetterQueue>(OutboxIn(File(), {.command = true}),
                                             Receivers{.command = true});
    command_ = std::make_unique<AlarmCommand>(CommandSettings{words, limit}, letters_,
                                              [this](const std::string& line) {
                                                const std::lock_guard lock(mutex_);
                                                log_.push_back(line);
                                              });
  }
  void Put(const Alarm& alarm) {
    letters_->Put({.id = alarm.id, .topic = "t", .payload = JsonOf(alarm)});
    command_->Wake();
  }
  bool AllTold() {
    return Eventually([&] { return letters_->State().waiting == 0; });
  }
  std::vector<std::string> LogLines() {
    const std::lock_guard lock(mutex_);
    return log_;
  }
  std::string File(const std::string& name = "outbox.db") {
    return (folder_.path() / name).string();
  }

  TemporaryFolder folder_;
  std::mutex mutex_;
  std::vector<std::string> log_;
  std::shared_ptr<LetterQueue> letters_;
  std::unique_ptr<AlarmCommand> command_;
};

TEST_F(Commands, GetTheAlarmAsJsonAndInTheEnvironment) {
  setenv(kPasswordVariable, "secret", 1);
  Start({"sh", "-c",
         "cat > " + File("json") + "; env | grep ^KESTREL_ | sort > " + File("variables")});
  const Alarm alarm{.id = "7",
                    .of = {"bench $(id)", "pump\n2"},
                    .kind = AlarmKind::Severity,
                    .grade = AlarmGrade::Fault,
                    .axis = Axis::Y,
                    .level = 1.5,
                    .unit = "mm/s"};
  Put(alarm);
  ASSERT_TRUE(AllTold());
  unsetenv(kPasswordVariable);
  EXPECT_EQ(folder_.Content("json"), JsonOf(alarm) + "\n");
  EXPECT_EQ(folder_.Content("variables"),
            "KESTREL_ALARM_AXIS=y\nKESTREL_ALARM_BENCH=bench $(id)\nKESTREL_ALARM_EVENT=begin\n"
            "KESTREL_ALARM_GRADE=fault\nKESTREL_ALARM_ID=7\nKESTREL_ALARM_LEVEL=1.5\n"
            "KESTREL_ALARM_SENSOR=pump�2\nKESTREL_ALARM_TIME=1970-01-01T00:00:00.000Z\n"
            "KESTREL_ALARM_UNIT=mm/s\nKESTREL_ALARM_WHAT=severity\n");
}

TEST_F(Commands, AreRunInTurnAndTheirOutputIsLogged) {
  Start({"sh", "-c", "echo told $KESTREL_ALARM_ID"});
  for (const char* id : {"1", "2", "3"}) Put({.id = id});
  ASSERT_TRUE(AllTold());
  EXPECT_EQ(LogLines(),
            (std::vector<std::string>{"command: told 1", "command: told 2", "command: told 3"}));
  EXPECT_EQ(command_->Trouble(), "");
}

TEST_F(Commands, ThatFailAreTroubleAndTheNextAlarmIsToldAllTheSame) {
  Start({"sh", "-c", "exit $KESTREL_ALARM_ID"});
  Put({.id = "4"});
  ASSERT_TRUE(AllTold());
  EXPECT_TRUE(
      Eventually([&] { return command_->Trouble() == "The command sh ended with status 4."; }));
  Put({.id = "0"});
  ASSERT_TRUE(AllTold());
  EXPECT_TRUE(Eventually([&] { return command_->Trouble().empty(); }));
}

TEST_F(Commands, MayWriteMuchAndLittleIsLogged) {
  Start({"sh", "-c", "seq $KESTREL_ALARM_ID"});
  Put({.id = "20"});
  ASSERT_TRUE(AllTold());
  EXPECT_EQ(LogLines().size(), 21U);
  EXPECT_EQ(LogLines().back(), "command: (more was written)") << "after so many nobody looks";
  Put({.id = "19"});
  ASSERT_TRUE(AllTold());
  EXPECT_EQ(LogLines().size(), 40U);
  EXPECT_EQ(LogLines().back(), "command: 19");
  Put({.id = "5000"});
  ASSERT_TRUE(AllTold());
  EXPECT_EQ(LogLines().back(), "command: (more was written)");
}

TEST_F(Commands, GetAnAlarmThatIsNoJsonAsItIs) {
  Start({"sh", "-c", "cat; env | grep -c ^KESTREL_ALARM"});
  letters_->Put({.id = "1", .topic = "t", .payload = "[1]"});
  command_->Wake();
  ASSERT_TRUE(AllTold());
  EXPECT_EQ(LogLines(), (std::vector<std::string>{"command: [1]", "command: 0",
                                                  "The command sh ended with status 1."}));
}

TEST_F(Commands, DoNotHoldUpWhoTellsThem) {
  Start({"sleep", "1000"}, 1s);
  const auto begin = std::chrono::steady_clock::now();
  for (int i = 0; i < 20; ++i) Put({.id = std::to_string(i)});
  EXPECT_LT(std::chrono::steady_clock::now() - begin, 2s);
  ASSERT_TRUE(Eventually([&] { return !LogLines().empty(); }));
  EXPECT_EQ(LogLines().front(), "The command sleep took too long and was ended.");
}

TEST_F(Commands, ThatAreAtWorkAtTheEndAreRunAgain) {
  Start({"sh", "-c", "echo x >> " + File("runs") + "; sleep 1000"});
  Put({.id = "1"});
  ASSERT_TRUE(Eventually([&] { return folder_.Content("runs") == "x\n"; }));
  command_.reset();
  EXPECT_EQ(letters_->State().waiting, 1);
  Start({"sh", "-c", "echo y >> " + File("runs")});
  ASSERT_TRUE(AllTold());
  EXPECT_EQ(folder_.Content("runs"), "x\ny\n");
}

// Each call that a run of the command makes of the system fails once, in turn.
TEST_F(Commands, ThatTheSystemHasNoRoomForAreRunLater) {
  struct Fault {
    const char* call;
    int error;
    bool isTold = true;  // else it does not keep the command from running
  };
  int alarms = 0;
  for (const Fault& fault :
       {Fault{"pipe2", EMFILE}, Fault{"write", ENOMEM}, Fault{"posix_spawnp", EAGAIN},
        Fault{"pidfd_open", EMFILE}, Fault{"poll", ENOMEM, false}, Fault{"read", EIO, false}}) {
    bool isMet = true;
    for (int number = 1; isMet && number < 20; ++number) {
      SCOPED_TRACE(fault.call + std::string(", call ") + std::to_string(number));
      const std::string id = std::to_string(alarms++);
      NetworkFaults faults(fault.call, number, fault.error);
      faults.Begin();
      Start({"sh", "-c", "cat > " + File("told-") + "$KESTREL_ALARM_ID; echo ran"});
      Put({.id = id});
      ASSERT_TRUE(Eventually([&] {
        command_->Wake();
        return letters_->State().waiting == 0;
      }));
      EXPECT_EQ(folder_.Content("told-" + id), JsonOf(Alarm{.id = id}) + "\n");
      EXPECT_TRUE(Eventually([&] { return command_->Trouble().empty(); }));
      isMet = faults.IsMet();
      faults.End();
      command_.reset();
      std::vector<std::string> expected;
      if (isMet && fault.isTold) {
        expected.push_back(std::string("The command sh cannot be started: ") +
                           std::strerror(fault.error) + ".");
      }
      expected.emplace_back("command: ran");
      EXPECT_EQ(std::exchange(log_, {}), expected);
    }
    EXPECT_FALSE(isMet) << fault.call;
  }
  EXPECT_GE(alarms, 12) << "each is made once at least";
}

TEST_F(Commands, ThatCannotBeRunForLongAreToldOfOnceAndWait) {
  rlimit before{};
  ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &before), 0);
  Start({"sh", "-c", "echo ran"});
  const rlimit none{0, before.rlim_max};
  ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &none), 0);
  letters_->Put({.id = "1", .topic = "t", .payload = JsonOf(Alarm{.id = "1"})});
  for (int i = 0; i < 20; ++i) {
    command_->Wake();
    std::this_thread::sleep_for(10ms);
  }
  EXPECT_EQ(command_->Trouble(), "The command sh cannot be started: Too many open files.");
  EXPECT_EQ(letters_->State().waiting, 1);
  ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &before), 0);
  command_->Wake();
  ASSERT_TRUE(AllTold());
  EXPECT_TRUE(Eventually([&] { return command_->Trouble().empty(); }));
  EXPECT_EQ(LogLines(),
            (std::vector<std::string>{"The command sh cannot be started: Too many open files.",
                                      "command: ran"}));
}

TEST_F(Commands, MayWriteWhatBreaksALog) {
  Start({"printf", "\\033[2Ja\\001\\377b\\n"});
  Put({.id = "1"});
  ASSERT_TRUE(AllTold());
  EXPECT_EQ(LogLines(), std::vector<std::string>{"command: �[2Ja��b"});
}

}  // namespace
}  // namespace kestrel::publish
