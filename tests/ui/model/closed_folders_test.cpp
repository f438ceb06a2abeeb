// Closed folders: which of them the window tells of.
#include "ui/model/closed_folders.h"

#include <gtest/gtest.h>

#include "fake/computer.h"
#include "fake/inspection.h"

namespace tellaxis::ui {
namespace {

class ClosedFoldersTest : public testing::Test {
 protected:
  ClosedFoldersTest() {
    settings.mainFolder = "C:\\Programmi\\Tellaxis";
    settings.MF_Active = true;
    settings.MF_File = "C:\\Driver\\in.txt";
    settings.MF_File_Output = "C:\\Driver\\out.txt";
    computer.files.addFolder(settings.mainFolder);
    computer.files.addFolder("C:\\Driver");
  }
  std::string told() { return closedFolders(settings, inspection); }

  fake::Computer computer;
  fake::Inspection inspection{computer.files, computer.processes};
  Settings settings;
};

TEST_F(ClosedFoldersTest, WhereAllAreOpenNothingIsSaid) { EXPECT_EQ(told(), ""); }

TEST_F(ClosedFoldersTest, EachClosedFolderIsToldOnce) {
  inspection.unwritable = {"c:\\programmi\\tellaxis", "c:\\driver"};
  EXPECT_EQ(told(), "Non si pu\xF2 scrivere in C:\\Programmi\\Tellaxis, C:\\Driver");
}

TEST_F(ClosedFoldersTest, TheDriversFoldersCountWhileTheFiscalPrinterIsActive) {
  inspection.unwritable = {"c:\\driver"};
  EXPECT_EQ(told(), "Non si pu\xF2 scrivere in C:\\Driver");
  settings.MF_Active = false;
  EXPECT_EQ(told(), "");
}

TEST_F(ClosedFoldersTest, AMissingFolderMayStillCome) {
  settings.MF_File = "D:\\altrove\\in.txt";
  settings.MF_File_Output = "out.txt";
  EXPECT_EQ(told(), "");
}

TEST_F(ClosedFoldersTest, ADrivesRootIsAFolderToo) {
  settings.MF_File = "C:\\in.txt";
  computer.files.addFolder("C:");
  inspection.unwritable = {"c:\\"};
  EXPECT_EQ(told(), "Non si pu\xF2 scrivere in C:\\");
}

}  // namespace
}  // namespace tellaxis::ui
