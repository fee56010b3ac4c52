// Dates and date formatters against raw NSDate and NSDateFormatter.
#import <Foundation/Foundation.h>

#include <benchmark/benchmark.h>

#include <Rovani/Rovani.h>

#include "BenchRatios.h"

namespace {

// Parsed dates are autoreleased; both sides drain a pool every 1024 runs.
template <typename Body>
void InPools(benchmark::State& state, Body body) {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  unsigned i = 0;
  for (auto _ : state) {
    body();
    if ((++i & 1023) == 0) {
      [pool drain];
      pool = [[NSAutoreleasePool alloc] init];
    }
  }
  [pool drain];
}

NSDateFormatter* RawFormatter() {
  NSDateFormatter* formatter = [[NSDateFormatter alloc] init];
  [formatter setFormatterBehavior:NSDateFormatterBehavior10_4];
  [formatter setDateStyle:NSDateFormatterShortStyle];
  [formatter setTimeStyle:NSDateFormatterNoStyle];
  [formatter setTimeZone:[NSTimeZone systemTimeZone]];
  [formatter setDateFormat:@"MM-dd-yyyy"];
  return formatter;
}

}  // namespace

static void BM_RVDateCompare(benchmark::State& state) {
  RVDate early = RVDate::DateWithTimeIntervalSinceReferenceDate(1000.0);
  RVDate late = RVDate::DateWithTimeIntervalSinceReferenceDate(2000.0);
  for (auto _ : state) benchmark::DoNotOptimize(early < late);
}
BENCHMARK(BM_RVDateCompare);

static void BM_RawNSDateCompare(benchmark::State& state) {
  NSDate* early = [[NSDate alloc] initWithTimeIntervalSinceReferenceDate:1000.0];
  NSDate* late = [[NSDate alloc] initWithTimeIntervalSinceReferenceDate:2000.0];
  for (auto _ : state) {
    benchmark::DoNotOptimize([early timeIntervalSinceReferenceDate] <
                             [late timeIntervalSinceReferenceDate]);
  }
  [early release];
  [late release];
}
BENCHMARK(BM_RawNSDateCompare);

static void BM_RVDateDaysSinceReferenceDate(benchmark::State& state) {
  RVDate date = RVDate::DateWithTimeIntervalSinceReferenceDate(1.0e8);
  for (auto _ : state) benchmark::DoNotOptimize(date.DaysSinceReferenceDate());
}
BENCHMARK(BM_RVDateDaysSinceReferenceDate);

static void BM_RawNSDateDaysSinceReferenceDate(benchmark::State& state) {
  NSDate* date = [[NSDate alloc] initWithTimeIntervalSinceReferenceDate:1.0e8];
  for (auto _ : state) {
    benchmark::DoNotOptimize(static_cast<int>([date timeIntervalSinceReferenceDate] / 86400.0));
  }
  [date release];
}
BENCHMARK(BM_RawNSDateDaysSinceReferenceDate);

static void BM_RVDateFormatterParseDash(benchmark::State& state) {
  RVDateFormatter formatter = RVDateFormatter::DefaultFormatter();
  RVString text("12-25-2008");
  InPools(state, [&] { benchmark::DoNotOptimize(formatter.DateFromString(text).Ref()); });
}
BENCHMARK(BM_RVDateFormatterParseDash);

// Each call makes and configures a formatter of its own.
static void BM_RVDateDateFromStringDash(benchmark::State& state) {
  RVString text("12-25-2008");
  InPools(state, [&] { benchmark::DoNotOptimize(RVDate::DateFromString(text).Ref()); });
}
BENCHMARK(BM_RVDateDateFromStringDash);

static void BM_RawNSDateFormatterParseDash(benchmark::State& state) {
  NSDateFormatter* formatter = RawFormatter();
  NSString* text = @"12-25-2008";
  InPools(state, [&] { benchmark::DoNotOptimize([formatter dateFromString:text]); });
  [formatter release];
}
BENCHMARK(BM_RawNSDateFormatterParseDash);

// GNUstep reads most "/" texts on the first attempt; this one only after
// the retry has replaced the "/".
static void BM_RVDateFormatterParseSlashRetry(benchmark::State& state) {
  RVDateFormatter formatter = RVDateFormatter::DefaultFormatter();
  RVString text("/12-25-2008");
  InPools(state, [&] { benchmark::DoNotOptimize(formatter.DateFromString(text).Ref()); });
}
BENCHMARK(BM_RVDateFormatterParseSlashRetry);

static void BM_RawNSDateFormatterParseSlash(benchmark::State& state) {
  NSDateFormatter* formatter = RawFormatter();
  NSString* text = @"/12-25-2008";
  InPools(state, [&] { benchmark::DoNotOptimize([formatter dateFromString:text]); });
  [formatter release];
}
BENCHMARK(BM_RawNSDateFormatterParseSlash);

ROVANI_BENCH_RATIO("RVDate operator< vs NSDate intervals", "BM_RVDateCompare",
                   "BM_RawNSDateCompare", 0);
ROVANI_BENCH_RATIO("RVDate DaysSinceReferenceDate vs NSDate", "BM_RVDateDaysSinceReferenceDate",
                   "BM_RawNSDateDaysSinceReferenceDate", 0);
ROVANI_BENCH_RATIO("RVDateFormatter DateFromString \"-\" vs NSDateFormatter",
                   "BM_RVDateFormatterParseDash", "BM_RawNSDateFormatterParseDash", 0);
ROVANI_BENCH_RATIO("RVDate::DateFromString \"-\" (new formatter) vs NSDateFormatter",
                   "BM_RVDateDateFromStringDash", "BM_RawNSDateFormatterParseDash", 0);
ROVANI_BENCH_RATIO("RVDateFormatter DateFromString \"/\" with retry vs NSDateFormatter",
                   "BM_RVDateFormatterParseSlashRetry", "BM_RawNSDateFormatterParseSlash", 0);
