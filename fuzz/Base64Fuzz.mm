// Any bytes decode, and encode; decoding what was encoded never fails.
#include <Rovani/Rovani.h>

#include "FuzzSupport.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  rovani_fuzz::Quiet();
  @autoreleasepool {
    RVData bytes = RVData::DataWithBytes(data, static_cast<unsigned int>(size));
    RVData decoded = Base64Encoding::DecodeData(bytes);
    RVData encoded = Base64Encoding::EncodeData(bytes);
    RVData back = Base64Encoding::DecodeData(encoded);
    if (encoded.Length() != (size + 3) / 3 * 4) __builtin_trap();
    (void)decoded.Length();
    (void)back.Length();
  }
  return 0;
}
