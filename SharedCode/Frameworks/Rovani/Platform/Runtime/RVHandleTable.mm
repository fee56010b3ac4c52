#import <Foundation/Foundation.h>

#include <iterator>

#include <Rovani/RVArray.h>
#include <Rovani/RVBool.h>
#include <Rovani/RVBundle.h>
#include <Rovani/RVData.h>
#include <Rovani/RVDate.h>
#include <Rovani/RVDictionary.h>
#include <Rovani/RVEnumerator.h>
#include <Rovani/RVError.h>
#include <Rovani/RVNumber.h>
#include <Rovani/RVString.h>
#include <Rovani/RVURL.h>
#include <Rovani/RVValue.h>

#include "Platform/Runtime/RVHandleTable.h"

namespace {

template <typename Handle, typename Held>
RVObject* Make(id obj) {
  return new Handle(static_cast<Held>(obj));
}

template <typename Handle, typename Held>
RVHandleKind Row(Class foundationClass, CFTypeID typeID) {
  return {foundationClass, &typeid(Handle), &Make<Handle, Held>, typeID};
}

RVHandleKind Unwrapped(Class foundationClass, CFTypeID typeID) {
  return {foundationClass, nullptr, nullptr, typeID};
}

// The order is binding: mutable classes match their immutable parents, the
// library's booleans and the platform's own come before numbers, and numbers
// come before their parent class NSValue. Classes are looked up on first
// use, after the runtime has loaded them.
struct HandleTable {
  RVHandleKind rows[14];

  HandleTable()
      : rows{
            Row<RVString, NSString*>([NSString class], CFStringGetTypeID()),
            Row<RVDictionary, NSDictionary*>([NSDictionary class], CFDictionaryGetTypeID()),
            Row<RVData, NSData*>([NSData class], CFDataGetTypeID()),
            Row<RVArray, NSArray*>([NSArray class], CFArrayGetTypeID()),
            Row<RVDate, NSDate*>([NSDate class], CFDateGetTypeID()),
            Row<RVBool, RVId>([BoolNumber class], CFBooleanGetTypeID()),
            // The platform's own boolean numbers are numbers to the factory
            // and booleans to Core Foundation.
            Row<RVNumber, NSNumber*>([[NSNumber numberWithBool:YES] class],
                                     CFBooleanGetTypeID()),
            Row<RVNumber, NSNumber*>([NSNumber class], CFNumberGetTypeID()),
            Row<RVValue, NSValue*>([NSValue class], 0),
            Row<RVURL, RVId>([NSURL class], CFURLGetTypeID()),
            Row<RVError, NSError*>([NSError class], 0),
            Row<RVEnumerator, NSEnumerator*>([NSEnumerator class], 0),
            Row<RVBundle, const NSBundle*>([NSBundle class], CFBundleGetTypeID()),
            // Not a factory row: date formatters are held as plain objects.
            Unwrapped([NSDateFormatter class], CFDateFormatterGetTypeID()),
        } {}
};

}  // namespace

const RVHandleKind* RVHandleKindFor(id obj) {
  if (obj == nil) return nullptr;
  static const HandleTable table;
  for (const RVHandleKind& kind : table.rows) {
    if ([obj isKindOfClass:kind.foundationClass]) return &kind;
  }
  return nullptr;
}

const std::type_info& RVHandleTypeFor(id obj) {
  const RVHandleKind* kind = RVHandleKindFor(obj);
  return kind != nullptr && kind->handleType != nullptr ? *kind->handleType : typeid(RVObject);
}
