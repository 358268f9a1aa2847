// Clock: time values, German date and time texts, calendar fields, timers and their report.
#include <gtest/gtest.h>

#include <array>
#include <ctime>
#include <optional>
#include <string>

#include <tivlib/clock.h>

#include "clock/timers.h"
#include "scoped_env.h"
#include "test_dir.h"

namespace tiv::test {
namespace {

// Runs the clock in a fixed time zone (Central Europe) and restores the old one.
class Clock : public InTempDir {
 protected:
  void SetUp() override { ::tzset(); }
  void TearDown() override {
    tz_.reset();
    ::tzset();
  }

 private:
  std::optional<ScopedEnv> tz_{std::in_place, "TZ", "Europe/Berlin"};
};

// The fields of a time value in their record order, for comparing them in one go.
std::array<int32_t, 8> fields_of(const clock_fields& f) {
  return {f.second, f.minute, f.hour, f.day, f.month, f.year, f.weekday, f.yearday};
}

constexpr int32_t k7Dec1997 = 881496000;     // 1997-12-07 12:00:00 UTC, 13:00:00 in Berlin
constexpr int32_t k1Jan2005 = 1104537600;    // 2005-01-01 00:00:00 UTC, 01:00:00 in Berlin

TEST_F(Clock, DateAndTimeTexts) {
  EXPECT_STREQ(clock_date(k7Dec1997, 0), "07.12.97");
  for (int32_t form : {1, 2, -1}) EXPECT_STREQ(clock_date(k7Dec1997, form), "07. Dezember 1997");
  EXPECT_STREQ(clock_date(k1Jan2005, 0), "01.01.105");
  EXPECT_STREQ(clock_date(k1Jan2005 + 60 * 86400, 1), "02. Maerz 2005");
  EXPECT_STREQ(clock_time(k7Dec1997 + 5, 0), "13:00");
  for (int32_t form : {1, 9}) EXPECT_STREQ(clock_time(k7Dec1997 + 5, form), "13:00:05");
}

TEST_F(Clock, FieldsAndValuesRoundTripAndOverflowCarries) {
  clock_fields f{};
  clock_makestruct(k7Dec1997, &f);
  const std::array<int32_t, 8> sunday{0, 0, 13, 7, 11, 97, 0, 340};
  EXPECT_EQ(fields_of(f), sunday);
  f.weekday = f.yearday = -9;
  EXPECT_EQ(clock_makevalue(&f), k7Dec1997);
  EXPECT_EQ(fields_of(f), sunday);
  // Overflowing fields carry over into the value and stay; weekday and yearday are filled in.
  clock_fields jan32{0, 0, 12, 32, 0, 100, 77, 77};  // 32 January 2000 is 1 February
  EXPECT_EQ(clock_makevalue(&jan32), 949402800);     // 2000-02-01 11:00:00 UTC
  EXPECT_EQ(fields_of(jan32), (std::array<int32_t, 8>{0, 0, 12, 32, 0, 100, 2, 31}));
  clock_fields summer{0, 0, 12, 1, 6, 120, 0, 0};  // daylight saving from the rules of the day
  EXPECT_EQ(clock_makevalue(&summer), 1593597600);
  clock_fields far{0, 0, 0, 1, 0, 300, 0, 0};  // year 2200 does not fit 32 bits
  EXPECT_EQ(clock_makevalue(&far), -1);
  EXPECT_EQ(clock_makevalue(nullptr), -1);
}

// One process-wide table: the timer tests run in one test so that the counts are known.
TEST_F(Clock, TimersAndTheirReport) {
  const std::string title = std::string("   Zeitmessung vom ") + clock_date(0, 0) + ", ";
  std::string report;
  if (tiv::clock::timer_count() == 0) {  // run alone, as under CTest
    clock_timertable("empty.txt", 0);
    report = read_file("empty.txt");
    EXPECT_EQ(report.substr(0, title.size()), title);
    EXPECT_EQ(report.substr(report.size() - 24), "\n\nkeine Timer vorhanden.");
  }
  clock_timer* t = clock_timeropen("Rechnen");
  ASSERT_NE(t, nullptr);
  EXPECT_EQ(clock_timerget(t), 0);
  t->start_seconds = clock_value() - 2;
  t->start_millis = 0;
  clock_timerstop(t);
  const int32_t first = clock_timerget(t);
  EXPECT_GE(first, 2000);
  EXPECT_LT(first, 3500);
  clock_timerstop(t);  // measures from the same start again
  EXPECT_GE(clock_timerget(t), 2 * first);
  EXPECT_EQ(t->stops, 2);
  clock_timerreset(t);
  EXPECT_EQ(clock_timerget(t), 0);
  EXPECT_EQ(t->stops, 0);
  EXPECT_EQ(t->start_seconds, 0);
  EXPECT_STREQ(t->name, "Rechnen");
  t->elapsed = 1500;
  t->stops = 3;

  clock_timerstart(nullptr);  // nil timers are ignored
  clock_timerstop(nullptr);
  clock_timerreset(nullptr);
  EXPECT_EQ(clock_timerget(nullptr), 0);

  const std::string long_name(100, 'n');
  clock_timer* second = clock_timeropen(long_name.c_str());
  ASSERT_NE(second, nullptr);
  EXPECT_EQ(std::string(second->name), std::string(79, 'n'));
  second->elapsed = 0xFFFFFFFFu;  // read unsigned in the report
  second->stops = 1;

  write_file("t.txt", "old");
  clock_timertable("T.TXT", 2);
  report = read_file("t.txt");
  const std::string rule = "   -----------------|---------|----------\n";
  const std::string head = "\n\n          Timername |  Starts |  Sekunden\n" + rule;
  const std::string body =
      "            Rechnen |       3 |     1.500\n" + rule +
      "    " + long_name.substr(0, 79) + " |       1 | 4294967.295\n" + rule;
  EXPECT_EQ(report.substr(report.size() - body.size()), body);
  EXPECT_NE(report.find(head), std::string::npos);
  EXPECT_EQ(report.substr(0, title.size()), title);
  clock_timertable("t.txt", 1);  // appends; the title's time of day may have moved on
  const std::string twice = read_file("t.txt");
  ASSERT_EQ(twice.size(), 2 * report.size());
  EXPECT_EQ(twice.substr(0, report.size()), report);
  EXPECT_EQ(twice.substr(twice.size() - body.size()), body);

  while (tiv::clock::timer_count() < CLOCK_TIMER_MAX) ASSERT_NE(clock_timeropen("x"), nullptr);
  EXPECT_EQ(clock_timeropen("one too many"), nullptr);
  EXPECT_EQ(tiv::clock::timer_count(), CLOCK_TIMER_MAX);
  clock_timertable("no\\such\\dir\\t.txt", 0);  // a report that can't be written is silent
  EXPECT_FALSE(file_exists("zv.err"));
}

}  // namespace
}  // namespace tiv::test
