// The Core Foundation date and Gregorian calendar calls the date handle
// needs, on top of GNUstep's NSCalendar, NSTimeZone and NSDate. A date
// reference is the NSDate itself, a time-zone reference the NSTimeZone.
// Private: hidden symbols, never installed.
#ifndef ROVANI_PLATFORM_RVCALENDAR_H
#define ROVANI_PLATFORM_RVCALENDAR_H

#include <cstdint>

#include <Rovani/RVDefines.h>

#include "Platform/CoreFoundation/RVCoreFoundation.h"

// Seconds since the first instant of 1 January 2001, GMT.
typedef double CFAbsoluteTime;
typedef double CFTimeInterval;
typedef unsigned long CFOptionFlags;
typedef const struct __CFTimeZone* CFTimeZoneRef;

// The default allocator; the only one there is here.
constexpr CFAllocatorRef kCFAllocatorDefault = nullptr;

// A calendar date and wall-clock time.
struct CFGregorianDate {
  int32_t year;
  int8_t month;   // 1 to 12
  int8_t day;     // 1 to the length of the month
  int8_t hour;    // 0 to 23
  int8_t minute;  // 0 to 59
  double second;  // [0, 60)
};

// An amount to move a time by.
struct CFGregorianUnits {
  int32_t years;
  int32_t months;
  int32_t days;
  int32_t hours;
  int32_t minutes;
  double seconds;
};

// Which fields CFGregorianDateIsValid checks.
enum : CFOptionFlags {
  kCFGregorianUnitsYears = 1UL << 0,
  kCFGregorianUnitsMonths = 1UL << 1,
  kCFGregorianUnitsDays = 1UL << 2,
  kCFGregorianUnitsHours = 1UL << 3,
  kCFGregorianUnitsMinutes = 1UL << 4,
  kCFGregorianUnitsSeconds = 1UL << 5,
  kCFGregorianAllUnits = 0x00FFFFFF,
};

// True when every field named in units is in range: month 1-12, a day that
// exists in that month of that (proleptic Gregorian) year, hour 0-23,
// minute 0-59, second in [0, 60). Any year is valid.
bool CFGregorianDateIsValid(CFGregorianDate date, CFOptionFlags units);

// The instant at which the wall clock of zone shows date (GMT for a null
// zone). Fields out of range roll over as the calendar rolls them.
CFAbsoluteTime CFGregorianDateGetAbsoluteTime(CFGregorianDate date, CFTimeZoneRef zone);

// Moves time by units: years, months and days on the calendar of zone, so
// the wall-clock time is kept across a daylight-saving change; hours,
// minutes and seconds as exact elapsed seconds. A time that is not finite
// is moved by the elapsed seconds only.
CFAbsoluteTime CFAbsoluteTimeAddGregorianUnits(CFAbsoluteTime time, CFTimeZoneRef zone,
                                               CFGregorianUnits units);

// A new date at time, owned by the caller (+1). Null when time is not a
// number (the platform refuses such dates).
CFDateRef CFDateCreate(CFAllocatorRef allocator, CFAbsoluteTime time);

// The date's time; 0 for null.
CFAbsoluteTime CFDateGetAbsoluteTime(CFDateRef date);

#endif
