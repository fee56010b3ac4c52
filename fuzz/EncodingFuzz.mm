// Bytes read as text in each of the library's encodings, and written back.
#include <Rovani/Rovani.h>

#include "FuzzSupport.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  rovani_fuzz::Quiet();
  if (size == 0) return 0;
  @autoreleasepool {
    const unsigned int code = data[0] % 5;
    std::string bytes = rovani_fuzz::Bytes(data + 1, size - 1);  // NUL-terminated copy
    RVString text = RVString::StringWithCStringUsingEncoding(bytes.c_str(), code);
    for (unsigned int back = 0; back < 5; ++back) {
      (void)text.DataContainingStringUsingEncoding(back).Length();
      (void)text.DataContainingCStringUsingEncoding(back).Length();
    }
    RVData raw = RVData::DataWithBytes(bytes.data(), static_cast<unsigned int>(bytes.size()));
    RVString utf8(raw);
    (void)RVData(utf8).Length();
    (void)utf8.StringByReplacingOccurrencesOfStringWithString("a", "b").Length();
  }
  return 0;
}
