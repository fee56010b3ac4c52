#import <Foundation/Foundation.h>

#include <cmath>

#include "Platform/CoreFoundation/RVCalendar.h"
#include "Platform/Runtime/RVOwned.h"

namespace {

bool IsLeapYear(int32_t year) {
  return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

int DaysInMonth(int32_t year, int month) {
  static const int kDays[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  if (month == 2 && IsLeapYear(year)) return 29;
  return kDays[month - 1];
}

NSTimeZone* ZoneOrGMT(CFTimeZoneRef zone) {
  return zone != nullptr ? (NSTimeZone*)zone : [NSTimeZone timeZoneForSecondsFromGMT:0];
}

// A Gregorian calendar in zone.
RVOwned<NSCalendar*> GregorianCalendarIn(CFTimeZoneRef zone) {
  RVOwned<NSCalendar*> calendar =
      RVAdopt([[NSCalendar alloc] initWithCalendarIdentifier:NSGregorianCalendar]);
  [calendar.Get() setTimeZone:ZoneOrGMT(zone)];
  return calendar;
}

}  // namespace

bool CFGregorianDateIsValid(CFGregorianDate date, CFOptionFlags units) {
  if ((units & kCFGregorianUnitsMonths) && (date.month < 1 || date.month > 12)) return false;
  if (units & kCFGregorianUnitsDays) {
    if (date.month < 1 || date.month > 12) return false;
    if (date.day < 1 || date.day > DaysInMonth(date.year, date.month)) return false;
  }
  if ((units & kCFGregorianUnitsHours) && (date.hour < 0 || date.hour > 23)) return false;
  if ((units & kCFGregorianUnitsMinutes) && (date.minute < 0 || date.minute > 59)) return false;
  // Written so that a second that is not a number is out of range too.
  if ((units & kCFGregorianUnitsSeconds) && !(date.second >= 0.0 && date.second < 60.0)) {
    return false;
  }
  return true;
}

CFAbsoluteTime CFGregorianDateGetAbsoluteTime(CFGregorianDate date, CFTimeZoneRef zone) {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  RVOwned<NSDateComponents*> owned = RVAdopt([[NSDateComponents alloc] init]);
  NSDateComponents* fields = owned.Get();
  [fields setYear:date.year];
  [fields setMonth:date.month];
  [fields setDay:date.day];
  [fields setHour:date.hour];
  [fields setMinute:date.minute];
  [fields setSecond:0];
  NSDate* minute = [GregorianCalendarIn(zone).Get() dateFromComponents:fields];
  // The seconds, fraction included, are added to the start of the minute.
  CFAbsoluteTime time = minute != nil ? [minute timeIntervalSinceReferenceDate] + date.second
                                      : NAN;
  [pool drain];
  return time;
}

CFAbsoluteTime CFAbsoluteTimeAddGregorianUnits(CFAbsoluteTime time, CFTimeZoneRef zone,
                                               CFGregorianUnits units) {
  if ((units.years != 0 || units.months != 0 || units.days != 0) && std::isfinite(time)) {
    NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
    RVOwned<NSDateComponents*> owned = RVAdopt([[NSDateComponents alloc] init]);
    NSDateComponents* amount = owned.Get();
    [amount setYear:units.years];
    [amount setMonth:units.months];
    [amount setDay:units.days];
    NSDate* start = [NSDate dateWithTimeIntervalSinceReferenceDate:time];
    NSDate* moved = [GregorianCalendarIn(zone).Get() dateByAddingComponents:amount
                                                                     toDate:start
                                                                    options:0];
    // Past the calendar's range the days are counted as elapsed time.
    time = moved != nil ? [moved timeIntervalSinceReferenceDate]
                        : time + units.days * 86400.0;
    [pool drain];
  }
  return time + units.hours * 3600.0 + units.minutes * 60.0 + units.seconds;
}

CFDateRef CFDateCreate(CFAllocatorRef, CFAbsoluteTime time) {
  if (std::isnan(time)) return nullptr;
  return (CFDateRef)[[NSDate alloc] initWithTimeIntervalSinceReferenceDate:time];
}

CFAbsoluteTime CFDateGetAbsoluteTime(CFDateRef date) {
  return date != nullptr ? [(NSDate*)date timeIntervalSinceReferenceDate] : 0.0;
}
