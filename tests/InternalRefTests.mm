#import <Foundation/Foundation.h>

#include <gtest/gtest.h>

#include <Rovani/Rovani.h>

#include "support/LogCapture.h"

namespace {

TEST(Bridge, ConvertChecksTheTypeAndRetains) {
  NSString* string = [[NSString alloc] initWithFormat:@"cf %d", 1];
  {
    RVString converted = RVInternalRef::Convert((CFStringRef)string);
    EXPECT_EQ(converted.Ref(), string);
    EXPECT_EQ([string retainCount], 2u);
    EXPECT_EQ(RVInternalRef::Access(converted), (CFStringRef)string);
    EXPECT_EQ(RVInternalRef::ToRVId((CFStringRef)string), string);
  }
  // ConvertAndRelease leaves the handle as the only owner.
  RVString owner = RVInternalRef::ConvertAndRelease((CFStringRef)string);
  EXPECT_EQ(owner.RetainCount(), 1u);

  NSArray* array = [[NSArray alloc] initWithObjects:@"x", nil];
  RVString wrongType = RVInternalRef::Convert((CFStringRef)array);
  EXPECT_EQ(wrongType.Ref(), kgRVInternalEmptyString.Ref());
  EXPECT_EQ(RVInternalRef::Convert((CFArrayRef)array).Ref(), array);
  [array retain];
  RVDictionary mismatched = RVInternalRef::ConvertAndRelease((CFDictionaryRef)array);
  EXPECT_TRUE(mismatched.IsEmpty());
  EXPECT_EQ([array retainCount], 1u);  // released all the same
  [array release];

  RVString nothing = RVInternalRef::ConvertAndRelease(static_cast<CFStringRef>(nullptr));
  EXPECT_EQ(nothing.Ref(), kgRVInternalEmptyString.Ref());

  NSDictionary* dictionary = [NSDictionary dictionaryWithObject:@"v" forKey:@"k"];
  EXPECT_TRUE(RVInternalRef::Convert(static_cast<const void*>(@"string")).IsEmpty());
  EXPECT_EQ(RVInternalRef::Convert(static_cast<const void*>(dictionary)).Ref(), dictionary);
}

TEST(Bridge, DefaultsAndOtherKinds) {
  // A boolean's default is false, not empty.
  RVBool noBoolean = RVInternalRef::Convert(static_cast<CFBooleanRef>(nullptr));
  EXPECT_FALSE(noBoolean.IsEmpty());
  EXPECT_FALSE(noBoolean);
  EXPECT_EQ(RVInternalRef::Convert((CFBooleanRef)BoolToRVId(true)).Ref(), BoolToRVId(true));

  NSNumber* number = [NSNumber numberWithInt:12];
  EXPECT_TRUE(RVInternalRef::Convert((CFNumberRef)number) == 12);
  EXPECT_EQ(static_cast<int>(RVInternalRef::ConvertToValue((CFNumberRef)number)), 12);
  EXPECT_TRUE(RVInternalRef::ConvertToValue((CFNumberRef) @"no").IsEmpty());
  // The platform's boolean numbers are booleans, not numbers.
  EXPECT_TRUE(RVInternalRef::Convert((CFNumberRef)[NSNumber numberWithBool:YES]).IsEmpty());

  RVDictionary emptyDictionary;
  EXPECT_EQ(RVInternalRef::Access(&emptyDictionary), nullptr);

  RVRange back = RVInternalRef::Convert(RVInternalRef::Access(RVRange(3, 4)));
  EXPECT_EQ(back.Location(), 3u);
  EXPECT_EQ(back.Length(), 4u);

  NSDate* date = [NSDate dateWithTimeIntervalSinceReferenceDate:5];
  EXPECT_TRUE(RVInternalRef::Convert((CFDateRef) @"not a date").IsEmpty());
  RVDateFormatter formatter;
  EXPECT_EQ(RVInternalRef::Convert((CFDateFormatterRef)formatter.Ref()).Ref(), formatter.Ref());
  // A mistyped reference gives a default formatter: a working one.
  RVDateFormatter fallback = RVInternalRef::Convert((CFDateFormatterRef)date);
  EXPECT_NE(fallback.Ref(), nil);
  EXPECT_NE(fallback.Ref(), formatter.Ref());

  NSURL* url = [NSURL URLWithString:@"http://h/p"];
  EXPECT_EQ(RVInternalRef::Convert((CFURLRef)url).Ref(), url);
  EXPECT_TRUE(RVInternalRef::Convert((CFURLRef) @"not a url").IsEmpty());
  {
    LogCapture log;  // the bundle's own assignment from an object warns
    EXPECT_EQ(RVInternalRef::Convert((CFBundleRef)[NSBundle mainBundle]).Ref(),
              [NSBundle mainBundle]);
    EXPECT_EQ(log.Lines().size(), 1u);
    EXPECT_TRUE(RVInternalRef::Convert((CFBundleRef)url).IsEmpty());
  }

  RVString slot((const char*)nullptr);
  *RVInternalRef::Assign(slot) = (CFStringRef)[[NSString alloc] initWithFormat:@"made"];
  EXPECT_TRUE(slot == "made");
  EXPECT_EQ(slot.RetainCount(), 1u);
}

}  // namespace
