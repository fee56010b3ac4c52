// Helpers shared by the test files.
#ifndef ROVANI_TESTS_TESTSUPPORT_H
#define ROVANI_TESTS_TESTSUPPORT_H

#include <string>

#include <Rovani/RVData.h>
#include <Rovani/RVString.h>

// The UTF-8 text of a string; "<nil>" for a handle holding nil.
std::string Text(const RVString& s);

// Data holding the bytes of text, without its final NUL.
RVData DataFromText(const std::string& text);

// A fresh directory under /tmp, removed with everything in it when the
// object goes.
class ScratchDir {
 public:
  ScratchDir();
  ~ScratchDir();
  ScratchDir(const ScratchDir&) = delete;
  ScratchDir& operator=(const ScratchDir&) = delete;

  const std::string& Path() const { return path_; }
  // Path() + "/" + name.
  std::string File(const std::string& name) const { return path_ + "/" + name; }

 private:
  std::string path_;
};

#endif
