// Tests of the printer object of a Linux computer, from the devices file to the files and bytes that come out.
#include "platform/linux/printers.h"

#include <gmock/gmock.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <thread>

#include "platform/linux/printing/cups_printer.h"
#include "platform/printing/sample_documents.h"
#include "platform/temporary_folder.h"
#include "platform/trace_log.h"

namespace tellaxis::platform {
namespace {

using test::TemporaryFolder;
using test::TraceLog;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

struct LinuxPrinters : testing::Test {
  LinuxPrinters() { setenv("CUPS_SERVER", (folder / "no-server.sock").c_str(), 1); }

  std::unique_ptr<PrinterObject> open(const std::string& devices) {
    const auto parsed = parseDevicesFile(devices, "devices.toml");
    EXPECT_TRUE(std::holds_alternative<DevicesFile>(parsed));
    return openPrinters(
        std::get<DevicesFile>(parsed), folder / "",
        [this](std::string_view path) { return folder / std::string(path); }, trace);
  }

  TemporaryFolder folder;
  TraceLog trace;
};

constexpr const char* oneFolderPrinter =
    "[[printer]]\nname = \"SAMSUNG SRP-350\"\nport = \"COM3:\"\ntarget = \"folder:spool\"\n";

TEST_F(LinuxPrinters, AFolderPrinterWritesAllFourFiles) {
  const auto printer = open(oneFolderPrinter);
  EXPECT_EQ(printer->DeviceName(), "SAMSUNG SRP-350");
  EXPECT_TRUE(printer->Print("Totale"));
  EXPECT_TRUE(printer->EndDoc());
  for (const char* name : {"spool/000001.jsonl", "spool/000001.txt", "spool/000001.pdf", "spool/000001.png"})
    EXPECT_FALSE(folder.read(name).empty()) << name;
  EXPECT_THAT(folder.read("spool/000001.pdf"), HasSubstr("%PDF"));
  EXPECT_THAT(trace.lines, IsEmpty());
}

TEST_F(LinuxPrinters, APictureHasItsSizeAndADamagedOneIsAFailedStep) {
  const auto printer = open(oneFolderPrinter);
  folder.write("logo.bmp", test::logoBitmap());
  folder.write("damaged.bmp", test::logoBitmap().substr(0, 1000));
  const auto picture = printer->LoadPicture("logo.bmp");
  ASSERT_TRUE(picture);
  EXPECT_EQ(picture->width, 384);
  EXPECT_EQ(picture->height, 96);
  EXPECT_TRUE(printer->PaintPicture(*picture, 0, 0));
  EXPECT_TRUE(printer->EndDoc());
  EXPECT_THAT(trace.lines, IsEmpty());
  EXPECT_EQ(printer->LoadPicture("damaged.bmp"), std::nullopt);
  EXPECT_EQ(printer->LoadPicture("none.bmp"), std::nullopt);
  EXPECT_THAT(trace.lines, ElementsAre("LoadPicture | damaged.bmp | immagine danneggiata",
                                       "LoadPicture | none.bmp | il file non si pu\xF2 leggere"));
}

TEST_F(LinuxPrinters, AReceiptPrinterOnADeviceGetsItsBytes) {
  folder.write("lp0", "");
  const auto printer = open("[[printer]]\nname = \"X\"\nport = \"LPT1:\"\ntarget = \"escpos:lp0\"\n");
  EXPECT_TRUE(printer->FontName("FontControl"));
  EXPECT_TRUE(printer->Print("P"));
  EXPECT_EQ(folder.read("lp0"), "");
  EXPECT_TRUE(printer->EndDoc());
  EXPECT_EQ(folder.read("lp0"), std::string("\x1B@\x1Bt\x10\x1DV\x42\0", 9));
}

TEST_F(LinuxPrinters, WithoutAServerQueuesFailAndOthersPrint) {
  const auto printer = open(std::string(oneFolderPrinter) +
                            "[[printer]]\nname = \"Q\"\nport = \"LPT1:\"\ntarget = \"cups:coda\"\n"
                            "[[printer]]\nname = \"R\"\nport = \"LPT2:\"\ntarget = \"escpos:cups:coda\"\n");
  ASSERT_THAT(printer->Printers(), testing::Optional(SizeIs(3)));
  for (const std::size_t index : {std::size_t{1}, std::size_t{2}}) {
    ASSERT_TRUE(printer->select(index));
    EXPECT_TRUE(printer->Print("a"));
    EXPECT_FALSE(printer->EndDoc());
  }
  EXPECT_THAT(trace.lines, ElementsAre("Printers | CUPS | il servizio di stampa non risponde",
                                       "EndDoc | coda | il servizio di stampa non risponde",
                                       "EndDoc | coda | il servizio di stampa non risponde"));
  ASSERT_TRUE(printer->select(0));
  EXPECT_TRUE(printer->Print("a"));
  EXPECT_TRUE(printer->EndDoc());
}

/// A server that takes every connection and never answers.
class SilentServer {
 public:
  explicit SilentServer(const std::string& path) : socket_(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    EXPECT_EQ(::bind(socket_, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    EXPECT_EQ(::listen(socket_, 64), 0);
  }
  ~SilentServer() { ::close(socket_); }
  SilentServer(const SilentServer&) = delete;
  SilentServer& operator=(const SilentServer&) = delete;

 private:
  int socket_;
};

TEST_F(LinuxPrinters, ASilentServerCostsTwoSecondsOnceAndPrintersOfTheDevicesFileNothing) {
  const SilentServer server(folder / "silent.sock");
  setenv("CUPS_SERVER", (folder / "silent.sock").c_str(), 1);
  // libcups keeps to the server that a thread was first told.
  std::thread([&] {
    const auto printer =
        open(std::string(oneFolderPrinter) + "[[printer]]\nname = \"Q\"\nport = \"LPT1:\"\ntarget = \"cups:coda\"\n");
    const auto secondsOf = [](const auto& action) {
      const auto begin = std::chrono::steady_clock::now();
      action();
      return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    };
    EXPECT_LT(secondsOf([&] { EXPECT_EQ(findPrinterNamed(*printer, "SAMSUNG SRP-350").index, 0U); }), 1);
    EXPECT_THAT(trace.lines, IsEmpty());
    const double first = secondsOf([&] { EXPECT_FALSE(findPrinterNamed(*printer, "Altra").complete); });
    EXPECT_GT(first, 1.5);
    EXPECT_LT(first, 4);
    EXPECT_LT(secondsOf([&] {
                EXPECT_FALSE(findPrinterNamed(*printer, "Altra").complete);
                EXPECT_THAT(printer->Printers(), testing::Optional(SizeIs(2)));
                EXPECT_TRUE(printer->select(1));
                EXPECT_TRUE(printer->Print("a"));
                EXPECT_FALSE(printer->EndDoc());
              }),
              2);
    EXPECT_THAT(trace.lines, ElementsAre("Printers | CUPS | il servizio di stampa non risponde",
                                         "Printers | CUPS | il servizio di stampa non ha risposto da poco",
                                         "Printers | CUPS | il servizio di stampa non ha risposto da poco",
                                         "EndDoc | coda | il servizio di stampa non ha risposto da poco"));
  }).join();
}

TEST(PortOfQueue, IsThePortThatItsLineHas) {
  const std::vector<SerialDefinition> lines{{7, "/dev/ttyUSB0"}};
  EXPECT_EQ(portOfQueue("serial:/dev/ttyUSB0?baud=9600", lines), "COM7:");
  EXPECT_EQ(portOfQueue("serial:/dev/ttyS2", lines), "COM3:");
  EXPECT_EQ(portOfQueue("parallel:/dev/lp0", lines), "LPT1:");
  EXPECT_EQ(portOfQueue("usb://EPSON/TM-T20?serial=1", lines), "usb://EPSON/TM-T20?serial=1");
  EXPECT_EQ(portOfQueue("serial:/dev/ttyS", lines), "serial:/dev/ttyS");
}

}  // namespace
}  // namespace tellaxis::platform
