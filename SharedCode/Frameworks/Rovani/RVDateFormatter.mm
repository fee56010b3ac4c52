#import <Foundation/Foundation.h>

#include <Rovani/RVDateFormatter.h>
#include <Rovani/RVUtilities.h>

#include "Platform/Runtime/RVClassType.h"

namespace {

enum : int { kNoStyle = 0, kShortStyle = 1 };
const NSDateFormatterBehavior kPatternBehavior = NSDateFormatterBehavior10_4;  // 1040

}  // namespace

RVDateFormatter::RVDateFormatter(int dateStyle, int timeStyle) : RVObject(), pattern_() {
  NSDateFormatter* formatter = [[[NSDateFormatter alloc] init] autorelease];
  [formatter setFormatterBehavior:kPatternBehavior];
  [formatter setDateStyle:(NSDateFormatterStyle)dateStyle];
  [formatter setTimeStyle:(NSDateFormatterStyle)timeStyle];
  [formatter setTimeZone:[NSTimeZone systemTimeZone]];
  RVObject::operator=(formatter);
}

RVDateFormatter::RVDateFormatter() : RVObject(), pattern_() {
  operator=(RVDateFormatter(kShortStyle, kShortStyle));
  SetDateFormat(RVDateFormat::MMddyyyyDateFormat());
}

RVDateFormatter::RVDateFormatter(RVId obj) : RVObject(obj), pattern_() {
  RVLog("RVDateFormatter::RVDateFormatter(RVId) called and probably does not work");
}

RVDateFormatter::RVDateFormatter(const RVDateFormatter& other)
    : RVObject(other), pattern_(other.pattern_) {}

RVDateFormatter::~RVDateFormatter() {}

RVDateFormatter& RVDateFormatter::operator=(const RVDateFormatter& other) {
  RVObject::operator=(other);
  pattern_ = other.pattern_;
  return *this;
}

RVDateFormatter& RVDateFormatter::operator=(RVId obj) {
  RVObject::operator=(obj);
  return *this;
}

RVString RVDateFormatter::ClassType() {
  return RVString(RVClassTypeText(typeid(RVDateFormatter)));
}

void RVDateFormatter::SetDateFormat(RVString format) { [Ref() setDateFormat:format.Ref()]; }

namespace {

// ICU divides by a power of ten as long as the digits a fractional-second
// field reads: past about thirty digits the power wraps to zero and the
// process dies of a division by zero. No date is written with such a run of
// digits, so such text is no date and is not handed over.
bool HasOverlongDigitRun(NSString* text) {
  const NSUInteger kLongestRun = 31;
  NSUInteger run = 0;
  const NSUInteger length = [text length];
  for (NSUInteger i = 0; i < length; ++i) {
    unichar c = [text characterAtIndex:i];
    run = (c >= '0' && c <= '9') ? run + 1 : 0;
    if (run > kLongestRun) return true;
  }
  return false;
}

}  // namespace

RVDate RVDateFormatter::DateFromString(const RVString& text) const {
  // One flag for the whole process: while a retry runs, nothing else
  // retries.
  static long tryAgain = 1;
  RVDate result;
  if (HasOverlongDigitRun(text.Ref())) return result;
  RVString first(text);
  result = [Ref() dateFromString:first.Ref()];
  if (tryAgain && result.IsEmpty()) {
    tryAgain = 0;
    RVString second = first.StringByReplacingOccurrencesOfStringWithString("/", "-");
    result = DateFromString(second);
    tryAgain = 1;
  }
  return result;
}

RVString RVDateFormatter::StringFromDate(const RVDate& date) const {
  RVString text;
  if (date.IsEmpty()) return text;
  text = [Ref() stringFromDate:date.Ref()];
  return text;
}

RVDateFormatter RVDateFormatter::CurrentLocaleDateFormatter() {
  return RVDateFormatter(kShortStyle, kShortStyle);
}

RVDateFormatter RVDateFormatter::DateFormatterUsingDateFormat(RVString format) {
  RVDateFormatter formatter(kShortStyle, kShortStyle);
  formatter.SetDateFormat(format);
  return formatter;
}

RVDateFormatter RVDateFormatter::DateFormatterUsingDateFormatDateStyleTimeStyle(RVString format,
                                                                                int dateStyle,
                                                                                int timeStyle) {
  RVDateFormatter formatter(dateStyle, timeStyle);
  formatter.SetDateFormat(format);
  return formatter;
}

RVDateFormatter RVDateFormatter::DateFormatterUsingDateFormatDateStyle(RVString format,
                                                                       int dateStyle) {
  return DateFormatterUsingDateFormatDateStyleTimeStyle(format, dateStyle, kNoStyle);
}

RVDateFormatter RVDateFormatter::DefaultFormatter() {
  return DateFormatterUsingDateFormatDateStyleTimeStyle(RVDateFormat::MMddyyyyDateFormat(),
                                                        kShortStyle, kNoStyle);
}

RVString RVDateFormat::ddMMyyyyDateFormat() { return RVString(@"dd-MM-yyyy"); }
RVString RVDateFormat::MMddyyyyDateFormat() { return RVString(@"MM-dd-yyyy"); }
RVString RVDateFormat::yyyyMMddDateFormat() { return RVString(@"yyyy-MM-dd"); }
RVString RVDateFormat::HHmmssSSSDateFormat() { return RVString(@"HH:mm:ss.SSS"); }
RVString RVDateFormat::HHmmssDateFormat() { return RVString(@"HH:mm:ss"); }
RVString RVDateFormat::HHmmDateFormat() { return RVString(@"HH:mm"); }
RVString RVDateFormat::MMddyyyyHHmmssSSSDateFormat() {
  return RVString::StringWithFormat("%@ %@", MMddyyyyDateFormat().Ref(),
                                    HHmmssSSSDateFormat().Ref());
}
