#import <Foundation/Foundation.h>

#include <cmath>

#include <gtest/gtest.h>

#include <Rovani/Rovani.h>

#include "support/LogCapture.h"
#include "support/TestSupport.h"

// While a retry runs, it parses another text on a formatter of its own:
// the one retry flag is then clear for every formatter in the process.
static RVDate* gParsedDuringRetry = nullptr;

@interface RetryProbeFormatter : NSDateFormatter
@end

@implementation RetryProbeFormatter
- (NSDate*)dateFromString:(NSString*)text {
  if ([text isEqual:@"-probe"]) {
    *gParsedDuringRetry = RVDateFormatter::DefaultFormatter().DateFromString("/12-25-2008");
  }
  return [super dateFromString:text];
}
@end

namespace {

// Makes name the default time zone while it lives. The system zone stays
// what GNUSTEP_TZ made it.
class DefaultZone {
 public:
  explicit DefaultZone(NSString* name) : saved_([[NSTimeZone defaultTimeZone] retain]) {
    [NSTimeZone setDefaultTimeZone:[NSTimeZone timeZoneWithName:name]];
  }
  ~DefaultZone() {
    [NSTimeZone setDefaultTimeZone:saved_];
    [saved_ release];
  }

 private:
  NSTimeZone* saved_;
};

// The wall clock of date in the default time zone, as "yyyy-MM-dd HH:mm:ss.SSS".
std::string WallClock(const RVDate& date) {
  NSDateFormatter* formatter = [[[NSDateFormatter alloc] init] autorelease];
  [formatter setDateFormat:@"yyyy-MM-dd HH:mm:ss.SSS"];
  [formatter setTimeZone:[NSTimeZone defaultTimeZone]];
  return [[formatter stringFromDate:date.Ref()] UTF8String];
}

TEST(Date, CalendarFieldsInTheDefaultZoneAndImpossibleFields) {
  DefaultZone zone(@"America/New_York");
  LogCapture log;
  RVDate leapDay = RVDate::DateFromMonthDayYear(2, 29, 2008);
  EXPECT_EQ(WallClock(leapDay), "2008-02-29 00:00:00.000");
  EXPECT_EQ(leapDay.RetainCount(), 1u);
  RVDate precise = RVDate::DateFromMonthDayYearHourMinuteSecond(3, 15, 2009, 10, 30, 15.25);
  EXPECT_EQ(WallClock(precise), "2009-03-15 10:30:15.250");

  EXPECT_TRUE(RVDate::DateFromMonthDayYear(2, 29, 2009).IsEmpty());
  EXPECT_TRUE(RVDate::DateFromMonthDayYear(2, 29, 1900).IsEmpty());
  EXPECT_TRUE(RVDate::DateFromMonthDayYear(13, 1, 2009).IsEmpty());
  EXPECT_TRUE(RVDate::DateFromMonthDayYear(4, 31, 2009).IsEmpty());
  EXPECT_TRUE(RVDate::DateFromMonthDayYearHourMinuteSecond(1, 1, 2009, 24, 0, 0).IsEmpty());
  EXPECT_TRUE(RVDate::DateFromMonthDayYearHourMinuteSecond(1, 1, 2009, 0, 0, 60.0).IsEmpty());
  EXPECT_TRUE(RVDate::DateFromMonthDayYearHourMinuteSecond(1, 1, 2009, 0, 0, NAN).IsEmpty());
  RVDate reset = leapDay;
  reset.SetFromMonthDayYear(0, 1, 2009);
  EXPECT_TRUE(reset.IsEmpty());
  EXPECT_TRUE(log.Lines().empty());

  EXPECT_TRUE(RVDate::DateWithTimeIntervalSinceReferenceDate(NAN).IsEmpty());
  EXPECT_TRUE(RVDate::DateWithTimeIntervalSinceNow(NAN).IsEmpty());
  RVDate endless = RVDate::DateWithTimeIntervalSince1970(INFINITY);
  EXPECT_GT(endless, RVDate::DistantFuture());
  endless.AddDays(1);
  EXPECT_TRUE(std::isinf(endless.TimeIntervalSinceRefereceDate()));
  endless.AddTimeInterval(NAN);
  EXPECT_TRUE(endless.IsEmpty());
}

TEST(Date, EmptyDateIsTheDistantPast) {
  RVDate empty;
  RVDate reference = RVDate::ReferenceDate();
  EXPECT_TRUE(empty == RVDate::DistantPast());
  EXPECT_TRUE(empty < reference && empty != reference);
  EXPECT_TRUE(empty < static_cast<NSDate*>(reference));
  EXPECT_EQ(empty.TimeIntervalSinceRefereceDate(),
            [[NSDate distantPast] timeIntervalSinceReferenceDate]);
  EXPECT_LT(empty.DaysSinceNow(), -700000.0);
  // Measured from the reference date, whatever the other date is.
  EXPECT_EQ(empty.TimeIntervalSinceDate(RVDate::Now()),
            RVDate::DistantPast().TimeIntervalSinceRefereceDate());
  EXPECT_EQ(empty.TimeIntervalSinceDate(RVDate::DistantFuture()),
            RVDate::DistantPast().TimeIntervalSinceRefereceDate());
  EXPECT_TRUE(empty.Description().IsEmpty());
  EXPECT_EQ(&RVDate::ReferenceDate(), &RVDate::ReferenceDate());

  // Days are counted toward zero.
  EXPECT_EQ(RVDate::DateWithTimeIntervalSinceReferenceDate(1.9 * OneDayTimeInterval)
                .DaysSinceReferenceDate(),
            1);
  EXPECT_EQ(RVDate::DateWithTimeIntervalSinceReferenceDate(-1.9 * OneDayTimeInterval)
                .DaysSinceReferenceDate(),
            -1);
  EXPECT_NEAR(RVDate::DateWithTimeIntervalSinceNow(-36 * OneHourTimeInterval).DaysSinceNow(),
              -1.5, 0.001);
}

TEST(Date, TodayAndDaylightSaving) {
  DefaultZone zone(@"America/New_York");
  std::string today = WallClock(RVDate::Today());
  EXPECT_EQ(today.substr(10), " 00:00:00.000");
  EXPECT_EQ(today.substr(0, 10), WallClock(RVDate::Now()).substr(0, 10));

  // Clocks in New York went forward at 2:00 on 8 March 2009.
  RVDate noon = RVDate::DateFromMonthDayYearHourMinuteSecond(3, 7, 2009, 12, 0, 0.0);
  RVDate byDays = noon;
  byDays.AddDays(1);
  EXPECT_EQ(WallClock(byDays), "2009-03-08 12:00:00.000");
  EXPECT_EQ(byDays.TimeIntervalSinceDate(noon), 23 * OneHourTimeInterval);
  EXPECT_EQ(byDays.RetainCount(), 1u);
  RVDate bySeconds = noon;
  bySeconds.AddTimeInterval(OneDayTimeInterval);
  EXPECT_EQ(WallClock(bySeconds), "2009-03-08 13:00:00.000");
  EXPECT_EQ(bySeconds.TimeIntervalSinceDate(noon), OneDayTimeInterval);
  byDays.AddDays(-1);
  EXPECT_TRUE(byDays == noon);
}

TEST(DateFormatter, ReadsTextWithOneRetry) {
  RVDate christmas = RVDate::DateFromMonthDayYear(12, 25, 2008);
  EXPECT_TRUE(RVDate::DateFromString("12-25-2008") == christmas);
  EXPECT_TRUE(RVDate::DateFromString("12/25/2008") == christmas);
  EXPECT_TRUE(RVDate::DateFromStringUsingFormat("2008-12-25", RVDateFormat::yyyyMMddDateFormat()) ==
              christmas);

  // GNUstep reads "/" for "-" by itself in most texts; this one it reads
  // only once the "/" is replaced.
  NSDateFormatter* raw = [[[NSDateFormatter alloc] init] autorelease];
  [raw setDateFormat:@"MM-dd-yyyy"];
  ASSERT_EQ([raw dateFromString:@"/12-25-2008"], nil);
  RVDateFormatter formatter = RVDateFormatter::DefaultFormatter();
  EXPECT_FALSE(formatter.DateFromString("/12-25-2008").IsEmpty());
  // A failure leaves the retry in place for the next text.
  LogCapture log;
  EXPECT_TRUE(formatter.DateFromString("no date at all").IsEmpty());
  EXPECT_TRUE(formatter.DateFromString("").IsEmpty());
  EXPECT_TRUE(formatter.DateFromString(RVString(static_cast<RVId>(nil))).IsEmpty());
  EXPECT_TRUE(log.Lines().empty());

  RVDate parsedDuringRetry = christmas;
  gParsedDuringRetry = &parsedDuringRetry;
  RetryProbeFormatter* probe = [[RetryProbeFormatter alloc] init];
  [probe setDateFormat:@"MM-dd-yyyy"];
  EXPECT_TRUE(RVDateFormatter(static_cast<RVId>(probe)).DateFromString("/probe").IsEmpty());
  [probe release];
  gParsedDuringRetry = nullptr;
  EXPECT_TRUE(parsedDuringRetry.IsEmpty());
  EXPECT_FALSE(formatter.DateFromString("/12-25-2008").IsEmpty());

  RVString written = RVDateFormatter::DateFormatterUsingDateFormat(
                         RVDateFormat::MMddyyyyHHmmssSSSDateFormat())
                         .StringFromDate(RVDate::DateFromMonthDayYearHourMinuteSecond(
                             12, 25, 2008, 13, 5, 9.5));
  EXPECT_EQ(Text(written), "12-25-2008 13:05:09.500");
  EXPECT_EQ(Text(formatter.StringFromDate(RVDate())), "");
  // ICU divides by zero on a fractional-second field of 40 digits (found by
  // fuzzing): such text is no date and never reaches it.
  RVDateFormatter fraction = RVDateFormatter::DateFormatterUsingDateFormat("S");
  EXPECT_TRUE(fraction.DateFromString(std::string(40, '0').c_str()).IsEmpty());
  EXPECT_FALSE(fraction.DateFromString("5").IsEmpty());
}

TEST(DateFormatter, FormatsInTheSystemZoneNotTheDefaultZone) {
  DefaultZone zone(@"Asia/Tokyo");
  ASSERT_FALSE([[NSTimeZone systemTimeZone] isEqual:[NSTimeZone defaultTimeZone]]);
  RVDate midnight = RVDate::DateFromMonthDayYear(12, 25, 2008);  // midnight in Tokyo
  RVDateFormatter formatter = RVDateFormatter::DateFormatterUsingDateFormatDateStyle(
      RVDateFormat::yyyyMMddDateFormat() + " " + RVDateFormat::HHmmDateFormat(), 1);
  NSDateFormatter* inSystemZone = [[[NSDateFormatter alloc] init] autorelease];
  [inSystemZone setDateFormat:@"yyyy-MM-dd HH:mm"];
  [inSystemZone setTimeZone:[NSTimeZone systemTimeZone]];
  std::string expected = [[inSystemZone stringFromDate:midnight.Ref()] UTF8String];
  EXPECT_EQ(Text(formatter.StringFromDate(midnight)), expected);
  EXPECT_NE(expected, "2008-12-25 00:00");
}

TEST(DateFormatter, CopiesShareOneFormatterAndForeignOnesWarn) {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  RVDateFormatter owned = RVDateFormatter::DefaultFormatter();
  [pool drain];
  EXPECT_EQ(owned.RetainCount(), 1u);

  RVDateFormatter copy(owned);
  EXPECT_EQ(copy.Ref(), owned.Ref());
  copy.SetDateFormat(RVDateFormat::ddMMyyyyDateFormat());
  EXPECT_EQ(Text(owned.StringFromDate(RVDate::DateFromMonthDayYear(12, 25, 2008))),
            "25-12-2008");
  RVDateFormatter assigned(1, 0);
  assigned = owned;
  EXPECT_EQ(assigned.Ref(), owned.Ref());

  const std::string warning = "RVDateFormatter::RVDateFormatter(RVId) called and probably does not work";
  LogCapture log;
  RVDateFormatter foreign(static_cast<RVId>(owned.Ref()));
  RVDateFormatter none(static_cast<RVId>(nil));
  EXPECT_EQ(log.Count(warning), 2);
  EXPECT_EQ(foreign.Ref(), owned.Ref());
  EXPECT_TRUE(none.DateFromString("12-25-2008").IsEmpty());
  EXPECT_TRUE(none.StringFromDate(RVDate::Now()).IsEmpty());
}

}  // namespace
