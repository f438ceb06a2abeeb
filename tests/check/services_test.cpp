// Services: the FTP server, the dial-up account and the timetable.
#include "check/check_desk.h"

namespace tellaxis {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct ServicesCheck : CheckDesk {
  ServicesCheck() {
    setting("FTP_Indirizzo", "ftp.example");
    setting("FTP_User", "cassa");
    setting("FTP_Pw", "segreta");
  }
  void timetable(std::string_view key, std::string_view value) {
    computer.files.put(file, "");
    computer.profiles.put(file, "VARIE", key, value);
  }

  static constexpr std::string_view file = "C:\\MERIDIA\\_Schedulatore.ini";
};

TEST_F(ServicesCheck, AServerIsAskedOnlyWhereTheNetworkMayBeUsed) {
  computer.ftpClients.login = platform::FtpLogin::unreachable;
  EXPECT_THAT(problems(Checked::ftp), IsEmpty());
  EXPECT_THAT(computer.journal.callsThatBegin("ftp "), IsEmpty());
}

TEST_F(ServicesCheck, AServerThatTakesTheAccountIsInOrder) {
  network = true;
  EXPECT_THAT(problems(Checked::ftp), IsEmpty());
  EXPECT_THAT(computer.journal.callsThatBegin("ftp "),
              ElementsAre("ftp create", "ftp logIn 'ftp.example' 'cassa' 'segreta'", "ftp release"));
}

TEST_F(ServicesCheck, AServerThatIsAway) {
  network = true;
  computer.ftpClients.login = platform::FtpLogin::unreachable;
  EXPECT_THAT(problems(Checked::ftp), ElementsAre("ftp-unreachable"));
  expectFinding("ftp-unreachable", Checked::ftp, Level::error, "ftp.example non si raggiunge: finto");
}

TEST_F(ServicesCheck, AServerThatRefusesTheAccountIsToldWithoutThePassword) {
  network = true;
  computer.ftpClients.login = platform::FtpLogin::refused;
  EXPECT_THAT(problems(Checked::ftp), ElementsAre("ftp-refused"));
  expectFinding("ftp-refused", Checked::ftp, Level::error, "\"cassa\"");
  for (const Finding& finding : findings()) EXPECT_EQ(finding.text.find("segreta"), std::string::npos);
}

TEST_F(ServicesCheck, ADialUpAccountThatIsNotComplete) {
  setting("WEB_chkDial", "-1");
  setting("Int_Indirizzo", "provider");
  setting("WEB_User", "altro");
  EXPECT_THAT(problems(Checked::dialup), ElementsAre("dialup-incomplete"));
  expectFinding("dialup-incomplete", Checked::dialup, Level::error, "manca: Ind_User, Ind_Pw");
  setting("Ind_User", "u");
  setting("Ind_Pw", "p");
  EXPECT_THAT(problems(Checked::dialup), IsEmpty());
}

TEST_F(ServicesCheck, EntriesThatAMinuteReachesAreInOrder) {
  timetable("LUN#0930", "25#NOTTE#");
  timetable("dom#2359", "1##");
  timetable("PRC_ACTIVE", "0");
  EXPECT_THAT(problems(Checked::schedule), IsEmpty());
}

TEST_F(ServicesCheck, EntriesThatNoMinuteReachesOrThatAreNotWellFormed) {
  for (const char* const key : {"MON#0930", "LUN#2430", "LUN#0960", "LUN#930", "LUN0930", "LUN#"}) {
    timetable(key, "25#NOTTE#");
    expectFinding("schedule-entry", Checked::schedule, Level::warning, std::string(key) + "=25#NOTTE# non cade");
    computer.profiles.write("VARIE", std::nullopt, std::nullopt, file);
  }
  for (const char* const entry : {"25#NOTTE", "25", "", "#NOTTE#"}) {
    timetable("LUN#0930", entry);
    expectFinding("schedule-entry", Checked::schedule, Level::warning, "chiusi da #");
  }
}

TEST_F(ServicesCheck, ATimetableThatCannotBeRead) {
  timetable("LUN#0930", "25");
  inspection.unreadable = {fake::lower(file)};
  EXPECT_THAT(problems(Checked::schedule), ElementsAre("schedule-unreadable"));
  expectFinding("schedule-unreadable", Checked::schedule, Level::warning, file);
}

}  // namespace
}  // namespace tellaxis
