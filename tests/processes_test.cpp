#include <gmock/gmock.h>
#include <signal.h>

#include "platform/foundation/glib.hpp"
#include "platform/processes/process.hpp"
#include "tests/support/environment.hpp"

using platform::Process;
using platform::ProcessEnd;

namespace {

class Processes : public tests::Environment {
 protected:
  /// Lets a shell do that.
  ProcessEnd run(const std::string& shell, std::chrono::milliseconds deadline) {
    ProcessEnd result;
    process_.start({"/bin/sh", "-c", shell}, deadline, [&](const ProcessEnd& end) {
      result = end;
      g_main_loop_quit(loop_.get());
    });
    g_main_loop_run(loop_.get());
    return result;
  }

  /// Whether a process is gone within some seconds, and not even a zombie is left.
  static bool goes(int process) {
    for (int i = 0; i < 5000 && kill(process, 0) == 0; ++i) {
      g_main_context_iteration(nullptr, FALSE);
      g_usleep(1000);
    }
    return kill(process, 0) != 0;
  }

  platform::GLoop loop_{g_main_loop_new(nullptr, FALSE)};
  Process process_;
};

constexpr std::chrono::seconds ample{60};

}  // namespace

TEST_F(Processes, tellWhatTheyPrintedAndHowTheyEnded) {
  const auto well = run("echo out; echo complaint >&2", ample);
  EXPECT_EQ(well.output + well.complaint + well.failure, "out\ncomplaint\n");
  EXPECT_EQ(run("exit 3", ample).failure, "its exit status was 3");
  EXPECT_THAT(run("kill -SEGV $$", ample).failure, testing::StartsWith("it was ended by signal "));
  EXPECT_THAT(run("exec yes", ample).failure,
              testing::StartsWith("it was ended by signal File size"));
}

TEST_F(Processes, areGivenUpAtTheirDeadlineWhetherTheyDieOrNot) {
  // It leaves its process group, so that a signal to that one misses it.
  const auto number = folder_ / "number";
  const auto end = run("exec perl -e 'setpgrp(0, getpgrp(getppid())); open F, \">\", \"" +
                           number.string() + "\"; print F $$; close F; sleep 100'",
                       std::chrono::milliseconds(1500));
  EXPECT_EQ(end.failure, "it took too long");
  EXPECT_FALSE(process_.isRunning());
  EXPECT_TRUE(goes(std::stoi(tests::readFile(number))));
}

TEST_F(Processes, thatAreEndedDeliverNothingAndHoldNothingUp) {
  const auto number = folder_ / "number";
  bool delivered = false;
  process_.start({"/bin/sh", "-c",
                  "echo $$ >" + number.string() + ".new; mv " + number.string() + ".new " +
                      number.string() + "; sleep 100"},
                 ample, [&](const ProcessEnd&) { delivered = true; });
  for (int i = 0; i < 10'000 && !std::filesystem::exists(number); ++i) g_usleep(1000);
  process_.end();
  EXPECT_TRUE(goes(std::stoi(tests::readFile(number))));
  EXPECT_FALSE(delivered);
}

TEST_F(Processes, thatCannotBeStartedSayItFromTheMainLoop) {
  std::string failure;
  process_.start({"/nowhere"}, ample, [&](const ProcessEnd& end) {
    failure = end.failure;
    g_main_loop_quit(loop_.get());
  });
  EXPECT_EQ(failure, "");
  g_main_loop_run(loop_.get());
  EXPECT_EQ(failure, "it could not be started");
}

TEST_F(Processes, thatLiveOnTellWhyTheyEnded) {
  ProcessEnd end;
  setenv("DESKTOP_STARTUP_ID", "old", 1);
  EXPECT_TRUE(platform::startDetached(
      {"/bin/sh", "-c", "echo $XDG_ACTIVATION_TOKEN$DESKTOP_STARTUP_ID >&2; exit 1"}, "token",
      [&](const ProcessEnd& ended) {
        end = ended;
        g_main_loop_quit(loop_.get());
      }));
  g_main_loop_run(loop_.get());
  EXPECT_EQ(end.complaint, "tokentoken\n");
  EXPECT_EQ(end.failure, "its exit status was 1");
  EXPECT_FALSE(platform::startDetached({"/nowhere"}));
  unsetenv("DESKTOP_STARTUP_ID");
}
