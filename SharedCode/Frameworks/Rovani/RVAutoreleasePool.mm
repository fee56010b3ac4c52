#import <Foundation/Foundation.h>

#include <Rovani/RVAutoreleasePool.h>

RVAutoreleasePool::RVAutoreleasePool() : pool_([[NSAutoreleasePool alloc] init]) {}

RVAutoreleasePool::~RVAutoreleasePool() { [pool_ drain]; }
