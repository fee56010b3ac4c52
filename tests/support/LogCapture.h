// Collects what the library logs through NSLogv while the object lives.
#ifndef ROVANI_TESTS_LOGCAPTURE_H
#define ROVANI_TESTS_LOGCAPTURE_H

#include <string>
#include <vector>

class LogCapture {
 public:
  LogCapture();
  ~LogCapture();
  // Logged lines without the platform's "date name[pid:tid] " prefix and
  // without the final newline.
  const std::vector<std::string>& Lines() const;
  // How many lines equal text exactly.
  int Count(const std::string& text) const;
};

#endif
