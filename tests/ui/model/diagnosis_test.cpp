// Diagnosis: the rows of the findings, the one to look at first, and the words for it.
#include "ui/model/diagnosis.h"

#include <gtest/gtest.h>

namespace tellaxis::ui {
namespace {

const Finding running{Checked::general, Level::ok, "second-copy", "Il ponte \xE8 in funzione.", ""};
const Finding closed{Checked::fiscal, Level::warning, "gate-closed", "La chiave MF_Vuoto \xE8 0.", "Riportarla a -1."};
const Finding missing{Checked::display, Level::error, "port-missing", "La porta COM3 non c'\xE8.", "Collegarla."};
const Finding busy{Checked::courtesy, Level::error, "port-busy", "La porta COM4 \xE8 occupata.", "Liberarla."};
const Finding unused{Checked::ftp, Level::off, "off", "Nessun server.", ""};

std::string rowOf(const Diagnosis& diagnosis, std::size_t row) {
  return diagnosis.cell(row, Diagnosis::device) + "|" + diagnosis.cell(row, Diagnosis::state) + "|" +
         diagnosis.cell(row, Diagnosis::text) + "|" + diagnosis.cell(row, Diagnosis::remedy);
}

TEST(DiagnosisRows, AreTheFindingsWithDeviceStateTextAndRemedy) {
  Diagnosis diagnosis;
  EXPECT_EQ(diagnosis.size(), 0U);
  diagnosis.show({running, closed, missing, unused});
  ASSERT_EQ(diagnosis.size(), 4U);
  EXPECT_EQ(rowOf(diagnosis, 0), "Generale|in ordine|Il ponte \xE8 in funzione.|");
  EXPECT_EQ(rowOf(diagnosis, 1), "Misuratore fiscale|AVVISO|La chiave MF_Vuoto \xE8 0.|Riportarla a -1.");
  EXPECT_EQ(rowOf(diagnosis, 2), "Display|ERRORE|La porta COM3 non c'\xE8.|Collegarla.");
  EXPECT_EQ(rowOf(diagnosis, 3), "Trasferimento FTP|non in uso|Nessun server.|");
  EXPECT_EQ(diagnosis.summary(), "1 errore, 1 avviso.");
}

TEST(DiagnosisRows, OnlyAProblemHasRemedyAndCodeInItsDetails) {
  Diagnosis diagnosis;
  diagnosis.show({running, missing});
  EXPECT_EQ(diagnosis.details(0), "Generale: in ordine\nIl ponte \xE8 in funzione.");
  EXPECT_EQ(diagnosis.details(1), "Display: ERRORE\nLa porta COM3 non c'\xE8.\nRimedio: Collegarla.\n[port-missing]");
}

TEST(DiagnosisRows, TheFirstOfTheWorstIsLookedAtFirst) {
  Diagnosis diagnosis;
  EXPECT_EQ(diagnosis.worst(), std::nullopt);
  diagnosis.show({running, closed, missing, busy, unused});
  EXPECT_EQ(diagnosis.worst(), 2U);
  diagnosis.show({running, closed, unused});
  EXPECT_EQ(diagnosis.worst(), 1U);
  diagnosis.show({running, unused});
  EXPECT_EQ(diagnosis.worst(), 0U);
}

}  // namespace
}  // namespace tellaxis::ui
