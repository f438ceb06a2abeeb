// Desktop contract: what every implementation of dialogs.h, tray.h and trace.h owes its callers.
#pragma once

#include <gtest/gtest.h>

#include "platform/dialogs.h"
#include "platform/host.h"
#include "platform/trace.h"
#include "platform/tray.h"

namespace tellaxis::test {

/// A Computer has host() and failures(), the steps reported as failed; nobody sits before it.
template <class Computer>
struct DesktopContract : testing::Test {
  Computer computer;
  platform::Host& host = computer.host();
};

TYPED_TEST_SUITE_P(DesktopContract);

TYPED_TEST_P(DesktopContract, WhereNobodyAnswersTheAnswerIsOkOrYes) {
  testing::internal::CaptureStderr();
  EXPECT_EQ(this->host.dialogs.show("Stampante NON trovata", "Tellaxis", platform::Buttons::ok), platform::Answer::ok);
  EXPECT_EQ(this->host.dialogs.show("Chiudere il programma", "Tellaxis", platform::Buttons::yesNo),
            platform::Answer::yes);
  this->host.dialogs.processEvents();
  testing::internal::GetCapturedStderr();
}

TYPED_TEST_P(DesktopContract, AnIconThatIsNotThereCannotBeRemoved) {
  EXPECT_FALSE(this->host.tray.notify(platform::TrayAction::remove, {}));
}

TYPED_TEST_P(DesktopContract, WithoutAPlaceForItAnIconCannotBeAdded) {
  if (this->host.tray.available()) this->computer.withoutTray();
  EXPECT_FALSE(this->host.tray.available());
  EXPECT_FALSE(this->host.tray.notify(platform::TrayAction::add, {}));
}

TYPED_TEST_P(DesktopContract, AFailedStepIsReportedOnce) {
  this->host.trace.failed("move", "C:\\caff\xE8.txt", "esiste gi\xE0");
  EXPECT_EQ(this->computer.failures(), 1);
}

REGISTER_TYPED_TEST_SUITE_P(DesktopContract, WhereNobodyAnswersTheAnswerIsOkOrYes, AnIconThatIsNotThereCannotBeRemoved,
                            WithoutAPlaceForItAnIconCannotBeAdded, AFailedStepIsReportedOnce);

}  // namespace tellaxis::test
