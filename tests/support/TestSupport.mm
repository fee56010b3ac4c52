#import <Foundation/Foundation.h>

#include <cstdlib>

#include "support/TestSupport.h"

std::string Text(const RVString& s) {
  const char* text = [static_cast<NSString*>(s.Ref()) UTF8String];
  return text ? text : "<nil>";
}

RVData DataFromText(const std::string& text) {
  return RVData::DataWithBytes(text.data(), static_cast<unsigned int>(text.size()));
}

ScratchDir::ScratchDir() {
  char pattern[] = "/tmp/rovani-test-XXXXXX";
  const char* made = mkdtemp(pattern);
  path_ = made ? made : "";
}

ScratchDir::~ScratchDir() {
  if (path_.empty()) return;
  NSString* path = [[NSString alloc] initWithUTF8String:path_.c_str()];
  [[NSFileManager defaultManager] removeItemAtPath:path error:nullptr];
  [path release];
}
