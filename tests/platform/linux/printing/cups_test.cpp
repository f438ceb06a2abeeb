// Tests of CUPS printing against a server of their own: queues as printers, page jobs, raw jobs, failures.
#include <gmock/gmock.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <set>
#include <thread>

#include "platform/linux/printers.h"
#include "platform/temporary_folder.h"
#include "platform/trace_log.h"

namespace tellaxis::platform {
namespace {

using namespace std::chrono_literals;
using test::TemporaryFolder;
using test::TraceLog;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

/// The server that all tests of this program print on: libcups keeps to the first that it was told.
class PrivateCups {
 public:
  PrivateCups() {
    setenv("CUPS_SERVER", (folder_ / "run/cups.sock").c_str(), 1);
    std::array<int, 2> pipe{};
    EXPECT_EQ(::pipe(pipe.data()), 0);
    const std::string folder = folder_.path("").parent_path().string();
    server_ = fork();
    if (server_ == 0) {
      dup2(pipe[1], STDOUT_FILENO);
      execl(TEST_DATA "/printing/private_cups.sh", "private_cups.sh", folder.c_str(), "ricevute", "pos", nullptr);
      _exit(127);
    }
    close(pipe[1]);
    std::array<char, 6> answer{};
    ready_ = read(pipe[0], answer.data(), answer.size()) == 6;
    close(pipe[0]);
  }
  ~PrivateCups() { stop(); }
  PrivateCups(const PrivateCups&) = delete;
  PrivateCups& operator=(const PrivateCups&) = delete;

  bool ready() const { return ready_; }
  std::string output() const { return folder_ / "out"; }

  void stop() {
    if (server_ <= 0) return;
    kill(server_, SIGTERM);
    waitpid(server_, nullptr, 0);
    server_ = 0;
  }

  /// What the next job printed, once it has.
  std::string nextJob() {
    for (int i = 0; i < 200; ++i) {
      for (const auto& file : std::filesystem::directory_iterator(output())) {
        const std::string name = file.path().filename().string();
        if (!name.starts_with('.') && seen_.insert(name).second) return folder_.read("out/" + name);
      }
      std::this_thread::sleep_for(50ms);
    }
    return "nothing was printed";
  }

 private:
  TemporaryFolder folder_;
  pid_t server_ = 0;
  bool ready_ = false;
  std::set<std::string> seen_;
};

struct Cups : testing::Test {
  static PrivateCups& server() {
    static PrivateCups server;
    return server;
  }

  void SetUp() override { ASSERT_TRUE(server().ready()) << "cupsd, lpadmin and lpstat are needed"; }

  std::unique_ptr<PrinterObject> open(const std::string& devices) {
    const auto parsed = parseDevicesFile(devices, "devices.toml");
    return openPrinters(
        std::get<DevicesFile>(parsed), folder / "", [](std::string_view path) { return std::string(path); }, trace);
  }

  TemporaryFolder folder;
  TraceLog trace;
};

TEST_F(Cups, QueuesAreInstalledPrintersBehindThoseOfTheDevicesFile) {
  const auto printer = open("[[printer]]\nname = \"A\"\nport = \"COM3:\"\ntarget = \"folder:a\"\n");
  const auto printers = printer->Printers();
  ASSERT_TRUE(printers);
  ASSERT_EQ(printers->size(), 3U);
  EXPECT_EQ((*printers)[0].DeviceName, "A");
  EXPECT_EQ((*printers)[1].DeviceName, "pos");
  EXPECT_EQ((*printers)[1].Port, "capture:" + server().output());
  EXPECT_EQ((*printers)[2].DeviceName, "ricevute") << "the server's own order, wherever its default queue stands";
}

TEST_F(Cups, TheServersDefaultQueueIsAskedForEachDocument) {
  const auto printer = open("");
  EXPECT_EQ(printer->DeviceName(), "ricevute");
  ASSERT_EQ(std::system("PATH=$PATH:/usr/sbin lpadmin -d pos"), 0);
  EXPECT_EQ(printer->DeviceName(), "pos");
  EXPECT_TRUE(printer->Print("a"));
  ASSERT_EQ(std::system("PATH=$PATH:/usr/sbin lpadmin -d ricevute"), 0);
  EXPECT_EQ(printer->DeviceName(), "pos") << "a document goes on where it began";
  printer->abandon();
  EXPECT_EQ(printer->DeviceName(), "ricevute");
}

TEST_F(Cups, NothingOfAnAbandonedDocumentIsPrinted) {
  for (const char* target : {"cups:pos", "escpos:cups:pos"}) {
    const auto printer =
        open(std::string("[[printer]]\nname = \"X\"\nport = \"COM3:\"\ntarget = \"") + target + "\"\n");
    EXPECT_TRUE(printer->Print("abbandonato"));
    printer->abandon();
    EXPECT_TRUE(printer->EndDoc());
  }
  const auto printer = open("[[printer]]\nname = \"X\"\nport = \"COM3:\"\ntarget = \"escpos:cups:pos\"\n");
  EXPECT_TRUE(printer->Print("buono"));
  EXPECT_TRUE(printer->EndDoc());
  EXPECT_EQ(server().nextJob(),
            "\x1B@\x1Bt\x10"
            "buono\n");
}

TEST_F(Cups, ADocumentOnAQueueIsAPdfJob) {
  const auto printer = open("");
  EXPECT_TRUE(printer->Print("Totale \x80 5,00"));
  EXPECT_TRUE(printer->EndDoc());
  folder.write("job.pdf", server().nextJob());
  EXPECT_THAT(folder.read("job.pdf"), StartsWith("%PDF-"));
  const std::string command = "pdftotext " + folder / "job.pdf" + " " + folder / "job.txt";
  EXPECT_EQ(std::system(command.c_str()), 0);
  EXPECT_THAT(folder.read("job.txt"), HasSubstr("Totale € 5,00"));
  EXPECT_THAT(trace.lines, IsEmpty());
}

TEST_F(Cups, ANamedQueueOfTheDevicesFileGetsThePageOfItsPrinter) {
  const auto printer = open("[[printer]]\nname = \"EPSON TM-U295 Slip\"\nport = \"LPT1:\"\ntarget = \"cups:pos\"\n");
  EXPECT_TRUE(printer->Print("a"));
  EXPECT_TRUE(printer->EndDoc());
  folder.write("job.pdf", server().nextJob());
  const std::string command = "pdfinfo " + folder / "job.pdf" + " > " + folder / "info.txt";
  EXPECT_EQ(std::system(command.c_str()), 0);
  EXPECT_THAT(folder.read("info.txt"), HasSubstr("297.6"));
}

TEST_F(Cups, ReceiptPrinterCommandsReachTheDeviceByteForByteOneJobADocument) {
  const auto printer = open("[[printer]]\nname = \"X\"\nport = \"COM3:\"\ntarget = \"escpos:cups:pos\"\n");
  for (const char* text : {"uno", "due"}) {
    EXPECT_TRUE(printer->FontName("FontA15cpi"));
    EXPECT_TRUE(printer->Print(text));
    EXPECT_TRUE(printer->FontName("FontControl"));
    EXPECT_TRUE(printer->Print("P"));
    EXPECT_TRUE(printer->EndDoc());
    using namespace std::string_literals;
    EXPECT_EQ(server().nextJob(), "\x1B@\x1Bt\x10"s + text + "\n\x1DV\x42\0"s);
  }
}

TEST_F(Cups, AnUnknownQueueIsAFailedStep) {
  const auto printer = open("[[printer]]\nname = \"X\"\nport = \"COM3:\"\ntarget = \"cups:nessuna\"\n");
  EXPECT_TRUE(printer->Print("a"));
  EXPECT_FALSE(printer->EndDoc());
  EXPECT_THAT(trace.lines, ElementsAre(StartsWith("EndDoc | nessuna | ")));
}

TEST_F(Cups, AQueueTellsWhetherItsPrinterCanPrint) {
  const auto printer = open("[[printer]]\nname = \"A\"\nport = \"COM3:\"\ntarget = \"escpos:cups:pos\"\n");
  EXPECT_EQ(printer->state("A"), PrinterState::ready);
  EXPECT_EQ(printer->state("ricevute"), PrinterState::ready);
  EXPECT_EQ(printer->state("nessuna"), PrinterState::unknown);
  ASSERT_EQ(std::system("PATH=$PATH:/usr/sbin cupsdisable pos && PATH=$PATH:/usr/sbin cupsreject ricevute"), 0);
  EXPECT_EQ(printer->state("A"), PrinterState::offLine);
  EXPECT_EQ(printer->state("pos"), PrinterState::offLine);
  EXPECT_EQ(printer->state("ricevute"), PrinterState::offLine);
  ASSERT_EQ(std::system("PATH=$PATH:/usr/sbin cupsenable pos && PATH=$PATH:/usr/sbin cupsaccept ricevute"), 0);
  EXPECT_EQ(printer->state("A"), PrinterState::ready);
  EXPECT_EQ(printer->state("ricevute"), PrinterState::ready);
}

TEST_F(Cups, WhatTheBackEndReportsIsTheState) {
  const auto printer = open("[[printer]]\nname = \"A\"\nport = \"COM3:\"\ntarget = \"escpos:cups:pos\"\n");
  const auto afterReport = [&](const char* report) {
    std::ofstream(server().output() + "/.state") << report << "\n";
    printer->Print("uno");
    EXPECT_TRUE(printer->EndDoc());
    server().nextJob();
    // The server hears the report before the document, but not at once.
    PrinterState state = printer->state("A");
    for (int i = 0; i < 100 && state == PrinterState::ready; ++i) {
      std::this_thread::sleep_for(20ms);
      state = printer->state("A");
    }
    return state;
  };
  EXPECT_EQ(afterReport("+media-empty-warning"), PrinterState::noPaper);
  EXPECT_EQ(afterReport("+cover-open-error"), PrinterState::coverOpen);
  std::ofstream(server().output() + "/.state") << "-media-empty-warning,cover-open-error\n";
  printer->Print("uno");
  EXPECT_TRUE(printer->EndDoc());
  server().nextJob();
  for (int i = 0; i < 100 && printer->state("A") != PrinterState::ready; ++i) std::this_thread::sleep_for(20ms);
  EXPECT_EQ(printer->state("A"), PrinterState::ready);
  std::filesystem::remove(server().output() + "/.state");
}

TEST_F(Cups, LastlyAServerThatWentAwayIsAFailedStepAndTheDocumentIsNotSentLater) {
  const auto printer = open("");
  EXPECT_TRUE(printer->Print("a"));
  server().stop();
  EXPECT_FALSE(printer->EndDoc());
  EXPECT_TRUE(printer->EndDoc());
  EXPECT_EQ(trace.lines.size(), 1U);
}

}  // namespace
}  // namespace tellaxis::platform
