#import <Foundation/Foundation.h>

#include <Rovani/RVArray.h>
#include <Rovani/RVEnumerator.h>

#include "Platform/Runtime/RVClassType.h"

RVEnumerator::RVEnumerator() : RVObject() {}
RVEnumerator::RVEnumerator(const RVEnumerator& other) : RVObject(other) {}
RVEnumerator::RVEnumerator(NSEnumerator* enumerator) : RVObject(enumerator) {}
RVEnumerator::~RVEnumerator() {}

RVEnumerator& RVEnumerator::operator=(const RVEnumerator& other) {
  RVObject::operator=(other.Ref());
  return *this;
}

RVEnumerator& RVEnumerator::operator=(NSEnumerator* enumerator) {
  RVObject::operator=(enumerator);
  return *this;
}

RVEnumerator::operator NSEnumerator*() const { return Ref(); }

RVString RVEnumerator::ClassType() { return RVString(RVClassTypeText(typeid(RVEnumerator))); }

bool RVEnumerator::IsEmpty() const { return RVObject::IsEmpty(); }

void RVEnumerator::Empty() { RVObject::Empty(); }

RVObject* RVEnumerator::NextObject() { return RVObject::Create([Ref() nextObject]); }

RVString RVEnumerator::NextStringObject() {
  RVString next;
  next = static_cast<RVId>([Ref() nextObject]);
  return next;
}

RVArray RVEnumerator::AllObjects() const { return RVArray([Ref() allObjects]); }
