// Metrics text: lines, labels that may be any text, seconds.
#include "metrics/metrics_text.h"

#include <gtest/gtest.h>

namespace tellaxis {
namespace {

using namespace std::chrono_literals;

std::string seconds(std::chrono::microseconds value) {
  MetricsText text;
  text.family("t", "gauge", "T.");
  text.sample("", {}, value);
  return text.end();
}

TEST(MetricsTextTest, AFamilyIsMentionedOnceBeforeItsSamples) {
  MetricsText text;
  text.family("jobs_total", "counter", "Lavori.");
  text.sample("", {{"device", "fiscal"}, {"outcome", "done"}}, 3U);
  text.sample("", {{"device", "display"}, {"outcome", "done"}}, 0U);
  text.family("start_seconds", "gauge", "Avvio.");
  text.sample("", {}, 2s);
  EXPECT_EQ(text.end(),
            "# HELP jobs_total Lavori.\n"
            "# TYPE jobs_total counter\n"
            "jobs_total{device=\"fiscal\",outcome=\"done\"} 3\n"
            "jobs_total{device=\"display\",outcome=\"done\"} 0\n"
            "# HELP start_seconds Avvio.\n"
            "# TYPE start_seconds gauge\n"
            "start_seconds 2\n"
            "# EOF\n");
}

TEST(MetricsTextTest, AFamilyWithoutSamplesIsNotMentioned) {
  MetricsText text;
  text.family("jobs_total", "counter", "Lavori.");
  EXPECT_EQ(text.end(), "# EOF\n");
}

TEST(MetricsTextTest, ASampleMayHaveASuffix) {
  MetricsText text;
  text.family("job_seconds", "histogram", "Durata.");
  text.sample("_bucket", {{"le", "+Inf"}}, 1U);
  EXPECT_EQ(text.end(),
            "# HELP job_seconds Durata.\n# TYPE job_seconds histogram\njob_seconds_bucket{le=\"+Inf\"} 1\n# EOF\n");
}

TEST(MetricsTextTest, WhatWouldEndALabelOrALineIsEscaped) {
  MetricsText text;
  text.family("f", "gauge", "F.");
  text.sample("", {{"operation", "a\\b \"c\"\nd"}}, 1U);
  EXPECT_EQ(text.end(), "# HELP f F.\n# TYPE f gauge\nf{operation=\"a\\\\b \\\"c\\\"\\nd\"} 1\n# EOF\n");
}

TEST(MetricsTextTest, SecondsHaveNoMoreDigitsThanTheyNeed) {
  const std::pair<std::chrono::microseconds, std::string_view> rows[] = {
      {0us, "0"},     {1us, "0.000001"}, {123'456us, "0.123456"}, {1500ms, "1.5"},
      {10s, "10"},    {100s, "100"},     {-1500ms, "-1.5"},       {1'795'300'080'135ms, "1795300080.135"},
      {50ms, "0.05"},
  };
  for (const auto& [value, digits] : rows)
    EXPECT_EQ(seconds(value), "# HELP t T.\n# TYPE t gauge\nt " + std::string(digits) + "\n# EOF\n");
}

}  // namespace
}  // namespace tellaxis
