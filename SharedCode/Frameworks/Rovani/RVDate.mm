#import <Foundation/Foundation.h>

#include <cmath>

#include <Rovani/RVDate.h>
#include <Rovani/RVDateFormatter.h>

#include "Platform/CoreFoundation/RVCalendar.h"
#include "Platform/Runtime/RVClassType.h"
#include "Platform/Runtime/RVOwned.h"

double OneMinuteTimeInterval = 60.0;
double OneHourTimeInterval = 3600.0;
double OneDayTimeInterval = 86400.0;

RVDate::RVDate() : RVObject() {}
RVDate::RVDate(const RVDate& other) : RVObject(other) {}
RVDate::RVDate(NSDate* date) : RVObject(date) {}
RVDate::RVDate(CFDateRef date) : RVObject((RVId)date) {}
RVDate::~RVDate() {}

RVDate& RVDate::operator=(const RVDate& other) {
  RVObject::operator=(other.Ref());
  return *this;
}
RVDate& RVDate::operator=(RVId obj) {
  RVObject::operator=(obj);
  return *this;
}
RVDate& RVDate::operator=(NSDate* date) {
  RVObject::operator=(date);
  return *this;
}
RVDate& RVDate::operator=(CFDateRef date) {
  RVObject::operator=((RVId)date);
  return *this;
}
RVDate::operator NSDate*() const { return Ref(); }
RVDate::operator CFDateRef() const { return (CFDateRef)Ref(); }

RVDate RVDate::Now() { return RVDate([NSDate date]); }

RVDate RVDate::Today() {
  RVDate today;
  RVOwned<NSCalendar*> calendar =
      RVAdopt([[NSCalendar alloc] initWithCalendarIdentifier:NSGregorianCalendar]);
  NSDateComponents* fields =
      [calendar.Get() components:(NSYearCalendarUnit | NSMonthCalendarUnit | NSDayCalendarUnit)
                  fromDate:[NSDate date]];
  today = DateFromMonthDayYear((int)[fields month], (int)[fields day], (int)[fields year]);
  return today;
}

RVDate RVDate::DateFromMonthDayYear(int month, int day, int year) {
  RVDate date;
  date.SetFromMonthDayYear(month, day, year);
  return date;
}

RVDate RVDate::DateFromMonthDayYearHourMinuteSecond(int month, int day, int year, int hour,
                                                    int minute, double second) {
  RVDate date;
  date.SetFromMonthDayYearHourMinuteSecond(month, day, year, hour, minute, second);
  return date;
}

// GNUstep refuses to make a date whose interval is not a number.
RVDate RVDate::DateWithTimeIntervalSinceReferenceDate(double seconds) {
  if (std::isnan(seconds)) return RVDate();
  return RVDate([NSDate dateWithTimeIntervalSinceReferenceDate:seconds]);
}

RVDate RVDate::DateWithTimeIntervalSinceNow(double seconds) {
  if (std::isnan(seconds)) return RVDate();
  return RVDate([NSDate dateWithTimeIntervalSinceNow:seconds]);
}

RVDate RVDate::DateWithTimeIntervalSince1970(double seconds) {
  if (std::isnan(seconds)) return RVDate();
  return RVDate([NSDate dateWithTimeIntervalSince1970:seconds]);
}

RVDate RVDate::DateFromString(const RVString& text) {
  return RVDateFormatter::DefaultFormatter().DateFromString(text);
}

RVDate RVDate::DateFromStringUsingFormat(const RVString& text, const RVString& format) {
  return RVDateFormatter::DateFormatterUsingDateFormat(format).DateFromString(text);
}

RVString RVDate::ClassType() { return RVString(RVClassTypeText(typeid(RVDate))); }

RVDate& RVDate::ReferenceDate() {
  static RVDate reference([NSDate dateWithTimeIntervalSinceReferenceDate:0.0]);
  return reference;
}

RVDate& RVDate::DistantPast() {
  static RVDate past([NSDate distantPast]);
  return past;
}

RVDate& RVDate::DistantFuture() {
  static RVDate future([NSDate distantFuture]);
  return future;
}

void RVDate::SetFromMonthDayYearHourMinuteSecond(int month, int day, int year, int hour,
                                                 int minute, double second) {
  CFGregorianDate fields;
  fields.year = year;
  fields.month = static_cast<int8_t>(month);
  fields.day = static_cast<int8_t>(day);
  fields.hour = static_cast<int8_t>(hour);
  fields.minute = static_cast<int8_t>(minute);
  fields.second = second;
  if (!CFGregorianDateIsValid(fields, kCFGregorianAllUnits)) {
    RVObject::operator=(static_cast<RVId>(nil));
    return;
  }
  CFTimeZoneRef zone = (CFTimeZoneRef)[NSTimeZone defaultTimeZone];
  CFDateRef made = CFDateCreate(kCFAllocatorDefault, CFGregorianDateGetAbsoluteTime(fields, zone));
  operator=(made);
  SafeCFRelease(made);
}

void RVDate::SetFromMonthDayYear(int month, int day, int year) {
  SetFromMonthDayYearHourMinuteSecond(month, day, year, 0, 0, 0.0);
}

namespace {

// The held date moved by units in the default time zone.
CFDateRef CreateMovedDate(RVId held, CFGregorianUnits units) {
  CFAbsoluteTime start = CFDateGetAbsoluteTime((CFDateRef)held);
  CFTimeZoneRef zone = (CFTimeZoneRef)[NSTimeZone defaultTimeZone];
  return CFDateCreate(kCFAllocatorDefault, CFAbsoluteTimeAddGregorianUnits(start, zone, units));
}

}  // namespace

void RVDate::AddDays(int days) {
  CFGregorianUnits units = {0, 0, days, 0, 0, 0.0};
  CFDateRef made = CreateMovedDate(Ref(), units);
  operator=(made);
  SafeCFRelease(made);
}

void RVDate::AddTimeInterval(double seconds) {
  CFGregorianUnits units = {0, 0, 0, 0, 0, seconds};
  CFDateRef made = CreateMovedDate(Ref(), units);
  operator=(made);
  SafeCFRelease(made);
}

double RVDate::TimeIntervalSinceRefereceDate() const {
  const RVDate* date = this;
  while (date->IsEmpty()) date = &DistantPast();
  return [date->Ref() timeIntervalSinceReferenceDate];
}

double RVDate::TimeIntervalSinceNow() const {
  const RVDate* date = this;
  while (date->IsEmpty()) date = &DistantPast();
  return [date->Ref() timeIntervalSinceNow];
}

double RVDate::TimeIntervalSinceDate(RVDate other) const {
  if (IsEmpty()) return DistantPast().TimeIntervalSinceRefereceDate();
  return [Ref() timeIntervalSinceDate:other.Ref()];
}

int RVDate::DaysSinceReferenceDate() const {
  return static_cast<int>(TimeIntervalSinceRefereceDate() / OneDayTimeInterval);
}

double RVDate::DaysSinceNow() const { return TimeIntervalSinceNow() / OneDayTimeInterval; }

bool RVDate::operator<(const RVDate& other) const {
  return TimeIntervalSinceRefereceDate() < other.TimeIntervalSinceRefereceDate();
}
bool RVDate::operator>(const RVDate& other) const {
  return TimeIntervalSinceRefereceDate() > other.TimeIntervalSinceRefereceDate();
}
bool RVDate::operator==(const RVDate& other) const {
  return TimeIntervalSinceRefereceDate() == other.TimeIntervalSinceRefereceDate();
}
bool RVDate::operator<=(const RVDate& other) const {
  return operator==(other) || operator<(other);
}
bool RVDate::operator>=(const RVDate& other) const {
  return operator==(other) || operator>(other);
}
bool RVDate::operator!=(const RVDate& other) const { return !operator==(other); }

#define RV_DATE_COMPARE_VIA_HANDLE(op, Type) \
  bool RVDate::operator op(Type other) const { return operator op(RVDate(other)); }
#define RV_DATE_COMPARE_BOTH(op)              \
  RV_DATE_COMPARE_VIA_HANDLE(op, NSDate*)     \
  RV_DATE_COMPARE_VIA_HANDLE(op, CFDateRef)
RV_DATE_COMPARE_BOTH(<)
RV_DATE_COMPARE_BOTH(>)
RV_DATE_COMPARE_BOTH(==)
RV_DATE_COMPARE_BOTH(<=)
RV_DATE_COMPARE_BOTH(>=)
RV_DATE_COMPARE_BOTH(!=)
#undef RV_DATE_COMPARE_BOTH
#undef RV_DATE_COMPARE_VIA_HANDLE

RVString RVDate::Description() const {
  return RVDateFormatter::CurrentLocaleDateFormatter().StringFromDate(*this);
}
