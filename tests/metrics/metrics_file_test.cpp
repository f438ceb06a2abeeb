// Metrics file: what stands in it, when it is written, and that its failures stay its own.
#include "metrics/metrics_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/gate.h"
#include "core/ini/ini.h"
#include "core/paper.h"
#include "fake/computer.h"

namespace tellaxis {
namespace {

using namespace std::chrono_literals;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

constexpr std::string_view file = "C:\\cassa\\m.prom";

/// Courtesy jobs come out of "POS".
struct OnePrinter : JobPrinters {
  std::optional<platform::InstalledPrinter> printerOf(Device device) override {
    if (device != Device::courtesyPrinter) return std::nullopt;
    return platform::InstalledPrinter{"POS", "COM3:", false};
  }
};

struct Desk {
  explicit Desk(platform::BridgeOptions options = {.metrics = "m.prom"}) : bridge(computer.host, std::move(options)) {
    setMainFolder(bridge.settings, "C:\\cassa");
    bridge.settings.RF_File = "C:\\rf.txt";
    bridge.settings.Display_File = "C:\\dly.txt";
    bridge.settings.MF_Active = true;
    for (const char* folder : {"C:\\cassa\\Orbis", "C:\\cassa\\CortOrbis"}) computer.files.addFolder(folder);
  }

  std::string written() {
    metrics.write();
    return computer.files.text(file);
  }
  void tickAfter(std::chrono::milliseconds pause, std::chrono::microseconds duration = 1ms) {
    computer.clock.sleep(pause);
    metrics.tickEnded(duration);
  }
  std::size_t writes() { return computer.journal.callsThatBegin("create ").size(); }

  fake::Computer computer;
  Bridge bridge;
  Figures figures;
  MetricsFile metrics{bridge, figures, std::string(file), "1.2.3"};
};

TEST(MetricsFileTest, ItNamesVersionRoleAndStart) {
  Desk desk({.metrics = "m.prom", .role = "SERVER"});
  desk.computer.clock.sleep(20s);
  EXPECT_THAT(desk.written(), AllOf(HasSubstr("\ntellaxis_info{version=\"1.2.3\",role=\"SERVER\"} 1\n"),
                                    HasSubstr("\ntellaxis_start_timestamp_seconds 1047025800\n")));
}

TEST(MetricsFileTest, EverybodyMayReadIt) {
  Desk desk;
  desk.metrics.write();
  EXPECT_THAT(desk.computer.journal.callsThatBegin("create for-everybody C:\\cassa\\m.prom "), SizeIs(1));
}

TEST(MetricsFileTest, CountersOfActiveDevicesBeginAtZeroForEachOutcomeThatTheyCanHave) {
  Desk desk;
  EXPECT_THAT(desk.written(), HasSubstr("# TYPE tellaxis_jobs_total counter\n"
                                        "tellaxis_jobs_total{device=\"fiscal\",outcome=\"delivered\"} 0\n"
                                        "tellaxis_jobs_total{device=\"fiscal\",outcome=\"confirmed\"} 0\n"
                                        "tellaxis_jobs_total{device=\"fiscal\",outcome=\"unanswered\"} 0\n"
                                        "tellaxis_jobs_total{device=\"fiscal\",outcome=\"given-up\"} 0\n"
                                        "tellaxis_jobs_total{device=\"fiscal\",outcome=\"failed\"} 0\n"
                                        "tellaxis_jobs_total{device=\"fiscal\",outcome=\"discarded\"} 0\n"
                                        "#"));
}

TEST(MetricsFileTest, WhatOnlyTheDiaryCanTellIsThereWithADiary) {
  Desk desk({.diary = "diario", .metrics = "m.prom"});
  desk.figures.count(Device::fiscalPrinter, Outcome::unconfirmed);
  EXPECT_THAT(desk.written(), HasSubstr("{device=\"fiscal\",outcome=\"unconfirmed\"} 1\n"));
}

TEST(MetricsFileTest, ADeviceThatIsOffIsNotMentioned) {
  Desk desk;
  EXPECT_THAT(desk.written(), AllOf(Not(HasSubstr("display")), Not(HasSubstr("slip")), Not(HasSubstr("courtesy"))));
  desk.bridge.settings.Display_Active = desk.bridge.settings.RF_Active = desk.bridge.settings.Cort_Active = true;
  desk.bridge.settings.MF_Active = false;
  EXPECT_THAT(desk.written(), AllOf(HasSubstr("tellaxis_waiting_jobs{device=\"display\"} 0\n"
                                              "tellaxis_waiting_jobs{device=\"slip\"} 0\n"
                                              "tellaxis_waiting_jobs{device=\"courtesy\"} 0\n"),
                                    Not(HasSubstr("fiscal"))));
}

TEST(MetricsFileTest, WaitingJobsAreTheFilesOfTheDropFolderOrTheOneFile) {
  Desk desk;
  desk.bridge.settings.Display_Active = desk.bridge.settings.RF_Active = desk.bridge.settings.Cort_Active = true;
  for (const char* job : {"Orbis\\a.txt", "Orbis\\b.txt", "CortOrbis\\c.txt"})
    desk.computer.files.put("C:\\cassa\\" + std::string(job), "x");
  desk.computer.files.put("C:\\rf.txt", "x");
  EXPECT_THAT(desk.written(), HasSubstr("tellaxis_waiting_jobs{device=\"fiscal\"} 2\n"
                                        "tellaxis_waiting_jobs{device=\"display\"} 0\n"
                                        "tellaxis_waiting_jobs{device=\"slip\"} 1\n"
                                        "tellaxis_waiting_jobs{device=\"courtesy\"} 1\n"));
}

TEST(MetricsFileTest, AGateIsTheOneOfTheSettingsFile) {
  Desk desk;
  desk.bridge.settings.Cort_Active = true;
  ScriviImpostazione(desk.computer.host, fiscalGate, no, desk.bridge.settings.settingsFile);
  EXPECT_THAT(desk.written(), HasSubstr("tellaxis_gate_open{device=\"fiscal\"} 0\n"
                                        "tellaxis_gate_open{device=\"courtesy\"} 1\n"));
}

TEST(MetricsFileTest, APrinterIsReadyOrNotOnceItHasSaidSo) {
  const std::pair<platform::PrinterState, std::string_view> rows[] = {
      {platform::PrinterState::ready, "tellaxis_device_ready{device=\"courtesy\"} 1\n"},
      {platform::PrinterState::paperLow, "tellaxis_device_ready{device=\"courtesy\"} 1\n"},
      {platform::PrinterState::noPaper, "tellaxis_device_ready{device=\"courtesy\"} 0\n"},
      {platform::PrinterState::offLine, "tellaxis_device_ready{device=\"courtesy\"} 0\n"},
  };
  for (const auto& [state, line] : rows) {
    Desk desk;
    desk.bridge.settings.Cort_Active = true;
    desk.computer.Printer.installed = {{"POS", "COM3:"}};
    OnePrinter printers;
    const auto paper = Paper::open(desk.bridge, printers);
    desk.bridge.paper = paper.get();
    EXPECT_THAT(desk.written(), Not(HasSubstr("tellaxis_device_ready"))) << "not asked yet";
    desk.computer.Printer.states["POS"] = platform::PrinterState::unknown;
    EXPECT_TRUE(paper->mayBegin(Device::courtesyPrinter));
    EXPECT_THAT(desk.written(), Not(HasSubstr("tellaxis_device_ready"))) << "it does not say";
    desk.computer.Printer.states["POS"] = state;
    EXPECT_TRUE(paper->mayBegin(Device::courtesyPrinter));
    EXPECT_THAT(desk.written(), HasSubstr(line));
  }
}

TEST(MetricsFileTest, TheHistogramIsWholeAndItsCountsRise) {
  Desk desk;
  for (const auto duration : {20ms, 700ms, 200'000ms}) desk.figures.of(Device::fiscalPrinter).durations.add(duration);
  EXPECT_THAT(desk.written(), HasSubstr("# TYPE tellaxis_job_seconds histogram\n"
                                        "tellaxis_job_seconds_bucket{device=\"fiscal\",le=\"0.05\"} 1\n"
                                        "tellaxis_job_seconds_bucket{device=\"fiscal\",le=\"0.1\"} 1\n"
                                        "tellaxis_job_seconds_bucket{device=\"fiscal\",le=\"0.25\"} 1\n"
                                        "tellaxis_job_seconds_bucket{device=\"fiscal\",le=\"0.5\"} 1\n"
                                        "tellaxis_job_seconds_bucket{device=\"fiscal\",le=\"1.0\"} 2\n"
                                        "tellaxis_job_seconds_bucket{device=\"fiscal\",le=\"2.5\"} 2\n"
                                        "tellaxis_job_seconds_bucket{device=\"fiscal\",le=\"5.0\"} 2\n"
                                        "tellaxis_job_seconds_bucket{device=\"fiscal\",le=\"10.0\"} 2\n"
                                        "tellaxis_job_seconds_bucket{device=\"fiscal\",le=\"30.0\"} 2\n"
                                        "tellaxis_job_seconds_bucket{device=\"fiscal\",le=\"60.0\"} 2\n"
                                        "tellaxis_job_seconds_bucket{device=\"fiscal\",le=\"120.0\"} 2\n"
                                        "tellaxis_job_seconds_bucket{device=\"fiscal\",le=\"+Inf\"} 3\n"
                                        "tellaxis_job_seconds_sum{device=\"fiscal\"} 200.72\n"
                                        "tellaxis_job_seconds_count{device=\"fiscal\"} 3\n"
                                        "# EOF\n"));
}

TEST(MetricsFileTest, TheLastJobHasNoTimeBeforeTheFirst) {
  Desk desk;
  EXPECT_THAT(desk.written(), Not(HasSubstr("tellaxis_last_job_timestamp_seconds")));
  desk.figures.of(Device::fiscalPrinter).lastJob = 1'047'025'800'250ms;
  EXPECT_THAT(desk.written(), HasSubstr("\ntellaxis_last_job_timestamp_seconds{device=\"fiscal\"} 1047025800.25\n"));
}

TEST(MetricsFileTest, OperationsAreWrittenInUtf8) {
  Desk desk;
  desk.figures.failedSteps.failed("prova pi\xF9", "", "");
  EXPECT_THAT(desk.written(), HasSubstr("\ntellaxis_failed_steps_total{operation=\"prova pi\xC3\xB9\"} 1\n"));
}

TEST(MetricsFileTest, ItIsWrittenByTheFirstTickAndThenEveryFifteenSeconds) {
  Desk desk;
  desk.tickAfter(0ms);
  EXPECT_EQ(desk.writes(), 1U);
  for (int tick = 0; tick < 29; ++tick) desk.tickAfter(500ms);
  EXPECT_EQ(desk.writes(), 1U);
  desk.tickAfter(500ms);
  EXPECT_EQ(desk.writes(), 2U);
}

TEST(MetricsFileTest, ATickBetweenTwoWritesLooksAtNothing) {
  Desk desk;
  desk.tickAfter(0ms);
  desk.computer.journal.clear();
  desk.metrics.tickEnded(1ms);
  EXPECT_THAT(desk.computer.journal.calls(), IsEmpty());
}

TEST(MetricsFileTest, TheLongestTickIsToldForFiveMinutes) {
  Desk desk;
  desk.tickAfter(0ms);
  desk.tickAfter(500ms, 3s);
  desk.tickAfter(500ms, 2ms);
  for (int seconds = 15; seconds <= 300; seconds += 15) {
    desk.tickAfter(15s, 2ms);
    EXPECT_THAT(desk.computer.files.text(file), HasSubstr("\ntellaxis_tick_seconds_max 3\n")) << seconds;
  }
  desk.tickAfter(15s, 2ms);
  EXPECT_THAT(desk.computer.files.text(file), HasSubstr("\ntellaxis_tick_seconds_max 0.002\n"));
}

TEST(MetricsFileTest, AFileThatCannotBeWrittenIsTriedAgainAfterAMinute) {
  Desk desk;
  desk.computer.files.fill("C:\\cassa");
  desk.tickAfter(0ms);
  for (int tick = 0; tick < 119; ++tick) desk.tickAfter(500ms);
  EXPECT_EQ(desk.writes(), 1U);
  desk.tickAfter(500ms);
  EXPECT_EQ(desk.writes(), 2U);
}

TEST(MetricsFileTest, WhateverCallFailsTheFileIsWrittenWithWhatIsKnown) {
  Desk all;
  all.bridge.settings.Display_Active = all.bridge.settings.Cort_Active = true;
  all.metrics.write();
  const std::size_t calls = all.computer.journal.calls().size();
  ASSERT_GT(calls, 4U);
  for (std::size_t k = 1; k < calls; ++k) {
    Desk desk;
    desk.bridge.settings.Display_Active = desk.bridge.settings.Cort_Active = true;
    desk.computer.journal.failCall(k);
    desk.metrics.write();
    EXPECT_THAT(desk.computer.files.text(file), HasSubstr("# EOF\n")) << k;
  }
}

}  // namespace
}  // namespace tellaxis
