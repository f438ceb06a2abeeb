// Receipt paper: what comes out, what waits for paper, and what the printer says of itself.
#include "receipt_paper.h"

#include <gtest/gtest.h>

namespace tellaxis::tools {
namespace {

using namespace std::string_literals;

const std::string begin = "\x1B@\x1Bt\x10";

struct ReceiptPaperTest : testing::Test {
  void send(const std::string& bytes) {
    paper.receive(bytes);
    paper.end();
  }
  std::string status() { return paper.receive("\x10\x04\x01\x10\x04\x02\x10\x04\x04"); }

  ReceiptPaper paper;
};

TEST_F(ReceiptPaperTest, ADocumentComesOutAsText) {
  send(begin + "Totale \x80\n\n\x1DVB" + "\0"s);
  EXPECT_EQ(paper.takePrinted(), "Totale €\n\n[taglio]\n");
  EXPECT_EQ(paper.takePrinted(), "");
}

TEST_F(ReceiptPaperTest, WhatIsNoCommandIsSaid) {
  send("uno\n");
  EXPECT_TRUE(paper.takePrinted().starts_with("[comandi sconosciuti: "));
}

TEST_F(ReceiptPaperTest, TheAnswersSayTheState) {
  EXPECT_EQ(status(), "\x12\x12\x12");
  paper.obey("carta poca");
  EXPECT_EQ(status(), "\x12\x12\x1E");
  paper.obey("senza carta");
  EXPECT_EQ(status(), "\x1A\x32\x7E");
  paper.obey("carta");
  paper.obey("apri");
  EXPECT_EQ(status(), "\x1A\x16\x12");
  paper.obey("chiudi");
  EXPECT_EQ(status(), "\x12\x12\x12");
  paper.obey("muta");
  EXPECT_EQ(status(), "");
}

TEST_F(ReceiptPaperTest, WithoutPaperEverythingWaitsAndComesOutOnce) {
  paper.obey("senza carta");
  send(begin + "uno\n");
  send(begin + "due\n");
  EXPECT_EQ(paper.takePrinted(), "");
  paper.obey("carta");
  EXPECT_EQ(paper.takePrinted(), "uno\ndue\n");
}

TEST_F(ReceiptPaperTest, ThePaperMayEndInTheMidst) {
  paper.obey("carta 1");
  send(begin + "uno\ndue\n");
  EXPECT_EQ(paper.takePrinted(), "uno\n");
  EXPECT_EQ(status(), "\x1A\x32\x7E");
  paper.obey("carta");
  EXPECT_EQ(paper.takePrinted(), "due\n");
}

TEST_F(ReceiptPaperTest, OneThatDiesLosesWhatItHad) {
  paper.obey("muori 8");
  send(begin + "uno\n");
  EXPECT_TRUE(paper.isDead());
  EXPECT_EQ(paper.takePrinted(), "");
  EXPECT_EQ(status(), "");
  paper.obey("riaccendi");
  EXPECT_FALSE(paper.isDead());
  send(begin + "due\n");
  EXPECT_EQ(paper.takePrinted(), "due\n");
}

TEST_F(ReceiptPaperTest, AQuestionInsideADocumentIsAPartOfIt) { EXPECT_EQ(paper.receive(begin + "\x10\x04\x01"), ""); }

TEST_F(ReceiptPaperTest, UnknownWordsAreRefused) {
  for (const char* words : {"", "carta molta", "carta -1", "ballare", "muori ora"}) EXPECT_FALSE(paper.obey(words));
}

}  // namespace
}  // namespace tellaxis::tools
