// Printers list: its three lines a printer.
#include "slip/printers_list.h"

#include <gtest/gtest.h>

#include "fake/computer.h"

namespace tellaxis {
namespace {

TEST(StampaPorte, ShowsThreeLinesForEachPrinter) {
  fake::Computer computer;
  computer.Printer.installed = {{"EPSON TM-L90 Receipt", "LPT1:"}, {"PDF", "FILE:"}};
  fStampa_Porte form;
  Form_Load(computer.host, form);
  EXPECT_EQ(form.txListaStampanti.Text,
            "Port    > LPT1:\r\n"
            "Printer > EPSON TM-L90 Receipt\r\n"
            "-------------------------------------\r\n"
            "Port    > FILE:\r\n"
            "Printer > PDF\r\n"
            "-------------------------------------\r\n");
}

TEST(StampaPorte, StaysEmptyWithoutPrinters) {
  fake::Computer computer;
  fStampa_Porte form;
  Form_Load(computer.host, form);
  EXPECT_EQ(form.txListaStampanti.Text, "");
  computer.Printer.installed = {{"PDF", "FILE:"}};
  computer.journal.failCall(1);
  Form_Load(computer.host, form);
  EXPECT_EQ(form.txListaStampanti.Text, "");
}

TEST(StampaPorte, AppendsToWhatTheBoxHolds) {
  fake::Computer computer;
  computer.Printer.installed = {{"PDF", "FILE:"}};
  fStampa_Porte form{.txListaStampanti = {"prima\r\n"}};
  Form_Load(computer.host, form);
  EXPECT_TRUE(form.txListaStampanti.Text.starts_with("prima\r\nPort    > FILE:\r\n"));
}

}  // namespace
}  // namespace tellaxis
