// Job metrics: what a start found is counted, with a diary and without.
#include "app/job_metrics.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "fake/computer.h"
#include "fake/scripted_devices.h"

namespace tellaxis {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;

struct Desk {
  explicit Desk(platform::BridgeOptions options = {.metrics = "m.prom"}) : bridge(computer.host, std::move(options)) {
    setMainFolder(bridge.settings, "C:\\cassa");
    bridge.settings.MF_Active = bridge.settings.Cort_Active = true;
    for (const char* folder : {"Orbis", "IN", "CortOrbis", "CortIN"})
      computer.files.addFolder("C:\\cassa\\" + std::string(folder));
  }

  void open() {
    metrics = JobMetrics::open(bridge, "C:\\cassa", noted, activity);
    diary = JobDiary::open(bridge, "C:\\cassa", metrics ? metrics->devices() : noted, activity);
  }
  std::string startedText() {
    if (diary) diary->started();
    metrics->started(diary.get());
    metrics->end();
    return computer.files.text("C:\\cassa\\m.prom");
  }

  fake::Computer computer;
  Bridge bridge;
  fake::ScriptedDevices jobs;
  Activity activity;
  NotedDevices noted{jobs, activity, bridge};
  std::unique_ptr<JobMetrics> metrics;
  std::unique_ptr<JobDiary> diary;
};

TEST(JobMetricsTest, WithoutTheOptionThereAreNone) {
  Desk desk{platform::BridgeOptions{}};
  desk.open();
  EXPECT_EQ(desk.metrics, nullptr);
  Polling polling(desk.bridge, desk.noted);
  desk.bridge.settings = {};
  tick(polling, desk.metrics.get());
  EXPECT_THAT(desk.computer.journal.calls(), IsEmpty());
}

TEST(JobMetricsTest, AnAbsolutePathIsTakenAsItStands) {
  Desk desk({.metrics = "D:\\textfile_inputs\\tellaxis.prom"});
  desk.open();
  desk.metrics->end();
  EXPECT_TRUE(desk.computer.files.has("D:\\textfile_inputs\\tellaxis.prom"));
}

TEST(JobMetricsTest, JobsThatTheStartEmptiedAreDiscarded) {
  Desk desk;
  for (const char* job : {"Orbis\\a.txt", "Orbis\\b.txt", "IN\\c.txt", "CortOrbis\\d.txt"})
    desk.computer.files.put("C:\\cassa\\" + std::string(job), "x");
  desk.open();
  desk.computer.files.erase("C:\\cassa\\Orbis\\a.txt");
  desk.computer.files.erase("C:\\cassa\\IN\\c.txt");
  EXPECT_THAT(desk.startedText(), AllOf(HasSubstr("{device=\"fiscal\",outcome=\"discarded\"} 2\n"),
                                        HasSubstr("{device=\"courtesy\",outcome=\"discarded\"} 0\n")));
}

TEST(JobMetricsTest, WithADiaryTheJobUnderWayIsUnconfirmedAndTheOthersAreDiscarded) {
  Desk desk({.diary = "diario", .metrics = "m.prom"});
  desk.open();
  desk.computer.files.put("C:\\cassa\\IN\\a.txt", "x");
  desk.jobs.job = [&] {
    // The program is killed now: what follows is another run on what lies there.
    const std::string note = desk.computer.files.text("C:\\cassa\\diario\\ultimo.json");
    Desk next({.diary = "diario", .metrics = "m.prom"});
    next.computer.files.put("C:\\cassa\\diario\\ultimo.json", note);
    for (const char* job : {"a", "b"}) next.computer.files.put("C:\\cassa\\IN\\" + std::string(job) + ".txt", "x");
    next.open();
    for (const char* job : {"a", "b"}) next.computer.files.erase("C:\\cassa\\IN\\" + std::string(job) + ".txt");
    EXPECT_THAT(next.startedText(), AllOf(HasSubstr("{device=\"fiscal\",outcome=\"unconfirmed\"} 1\n"),
                                          HasSubstr("{device=\"fiscal\",outcome=\"discarded\"} 1\n")));
  };
  desk.diary->devices().MF_Invia("C:\\cassa\\IN\\a.txt");
  EXPECT_EQ(desk.jobs.lastCall, "MF_Invia C:\\cassa\\IN\\a.txt");
}

TEST(JobMetricsTest, FailingStepsAreHeardOfUntilTheMetricsEnd) {
  Desk desk;
  desk.open();
  desk.activity.failed("copy", "a", "manca");
  desk.metrics->end();
  EXPECT_THAT(desk.computer.files.text("C:\\cassa\\m.prom"), HasSubstr("{operation=\"copy\"} 1\n"));
  desk.metrics.reset();
  desk.activity.failed("copy", "a", "manca");
}

TEST(JobMetricsTest, ATickIsMeasured) {
  Desk desk;
  desk.open();
  desk.computer.files.put("C:\\cassa\\Orbis\\a.txt", "x");
  desk.bridge.settings.MF_File = "C:\\MF\\in.txt";
  desk.jobs.job = [&] { desk.computer.clock.sleep(std::chrono::seconds(2)); };
  Polling polling(desk.bridge, desk.metrics->devices());
  tick(polling, desk.metrics.get());
  EXPECT_THAT(desk.computer.files.text("C:\\cassa\\m.prom"),
              AllOf(HasSubstr("\ntellaxis_tick_seconds_max 2\n"),
                    HasSubstr("\ntellaxis_job_seconds_sum{device=\"fiscal\"} 2\n")));
}

}  // namespace
}  // namespace tellaxis
