// Property-list bytes of any format become a dictionary or the empty one.
#include <Rovani/Rovani.h>

#include "FuzzSupport.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  rovani_fuzz::Quiet();
  @autoreleasepool {
    RVData bytes = RVData::DataWithBytes(data, static_cast<unsigned int>(size));
    RVDictionary dictionary(bytes);
    // Walk what came back, as a caller would.
    RVEnumerator keys = dictionary.KeyEnumerator();
    for (RVString key = keys.NextStringObject(); !key.IsEmpty(); key = keys.NextStringObject()) {
      delete dictionary.ValueForKey(key);
    }
    (void)dictionary.Count();
  }
  return 0;
}
