// What every fuzz target shares: a pool per input and silence for the
// library's log lines, which would otherwise cost more than the input.
#ifndef ROVANI_FUZZ_FUZZSUPPORT_H
#define ROVANI_FUZZ_FUZZSUPPORT_H

#import <Foundation/Foundation.h>

#include <cstddef>
#include <cstdint>
#include <string>

namespace rovani_fuzz {

inline void Discard(NSString*) {}

// GNUstep makes one object for good on the first of several first uses
// (the first line logged, the first date formatter). It is made here, by a
// line logged into the void, so the one-time leak has a name to suppress
// (fuzz/lsan.supp names this namespace).
inline void SetUpGNUstepOnce() {
  _NSLog_printf_handler = Discard;
  NSLog(@"set up");
}

inline void Quiet() {
  static bool done = false;
  if (!done) {
    SetUpGNUstepOnce();
    done = true;
  }
}

inline std::string Bytes(const uint8_t* data, size_t size) {
  return std::string(reinterpret_cast<const char*>(data), size);
}

}  // namespace rovani_fuzz

#endif
