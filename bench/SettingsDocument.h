// The settings document the JSON and property-list benchmarks share.
#ifndef ROVANI_BENCH_SETTINGSDOCUMENT_H
#define ROVANI_BENCH_SETTINGSDOCUMENT_H

#include <cstdio>
#include <string>

// A settings-like document of about 1 MB: nested objects and arrays, short
// strings, integers, reals, booleans and nulls.
inline std::string SettingsDocument() {
  std::string text = "{\"version\": 3, \"profiles\": [";
  char buffer[512];
  for (int i = 0; text.size() < 1000000; ++i) {
    if (i > 0) text += ", ";
    std::snprintf(buffer, sizeof buffer,
                  "{\"id\": %d, \"name\": \"profile-%d\", \"enabled\": %s, \"ratio\": %d.%d, "
                  "\"owner\": null, \"tags\": [\"a%d\", \"b\", \"c\"], "
                  "\"window\": {\"x\": %d, \"y\": %d, \"width\": 640, \"height\": 480, "
                  "\"title\": \"Window %d\", \"scale\": 1.25, \"visible\": true}, "
                  "\"recent\": [%d, %d, %d, {\"path\": \"/home/user/doc%d.txt\", \"line\": %d}], "
                  "\"limits\": {\"low\": -%d, \"high\": %d, \"unit\": \"ms\", \"strict\": false}}",
                  i, i, i % 2 ? "true" : "false", i % 10, i % 7, i, i * 3, i * 5, i, i, i + 1,
                  i + 2, i, i * 11, i, i * 100);
    text += buffer;
  }
  text += "], \"theme\": {\"name\": \"dark\", \"fontSize\": 12}}";
  return text;
}

#endif
