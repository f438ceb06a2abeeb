// Report: the block of a device, and the array of findings.
#include "check/report.h"

#include "check/check_desk.h"

namespace tellaxis {
namespace {

struct CheckReport : CheckDesk {};

TEST_F(CheckReport, ABlockTellsStateWhatWasLookedAtAndEachProblemWithItsRemedy) {
  setting("Display_Type", "FUTURA");
  const std::string text = checkText(findings());
  EXPECT_THAT(text, testing::HasSubstr("\nDisplay: ERRORE\n"
                                       "  Tipo FUTURA su COM3 (9600,N,8,1), file C:\\DLY\\display.txt.\n"
                                       "  ERRORE: Il tipo di display \"FUTURA\" (Display_Type) non si conosce. "
                                       "[family-unknown]\n    Rimedio: Scegliere il display dall'elenco"));
  EXPECT_THAT(text, testing::HasSubstr("\nLinea commutata: non in uso\n"));
  EXPECT_THAT(text, testing::HasSubstr("\nMisuratore fiscale: in ordine\n"));
  EXPECT_TRUE(text.ends_with("\n1 errore, 0 avvisi.\n"));
}

TEST_F(CheckReport, EveryTextIsUtf8) {
  serving.reset();
  EXPECT_THAT(checkText(findings()), testing::HasSubstr("Il ponte non \xC3\xA8 in funzione"));
  EXPECT_THAT(checkJson(findings()), testing::HasSubstr("\"Il ponte non \xC3\xA8 in funzione"));
}

TEST_F(CheckReport, JsonIsAnArrayOfObjectsWithFiveMembers) {
  const std::string json =
      checkJson({{.device = Checked::dialup,
                  .level = Level::error,
                  .code = "dialup-incomplete",
                  .text = "manca \"x\"",
                  .remedy = "C:\\y"},
                 {.device = Checked::slip, .level = Level::off, .code = "off", .text = "Spenta."}});
  EXPECT_EQ(json,
            "[\n{\"device\":\"dialup\",\"level\":\"error\",\"code\":\"dialup-incomplete\",\"text\":\"manca \\\"x\\\"\","
            "\"remedy\":\"C:\\\\y\"},\n"
            "{\"device\":\"slip\",\"level\":\"off\",\"code\":\"off\",\"text\":\"Spenta.\",\"remedy\":\"\"}\n]\n");
}

}  // namespace
}  // namespace tellaxis
