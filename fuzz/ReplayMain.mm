// Runs a fuzz target's entry point once on every file under the paths
// given (files, or directories walked recursively), as libFuzzer does with
// a corpus, without libFuzzer: the test suite replays the seed corpora so
// that each stays readable without a crash in every build. Exits non-zero
// when a path cannot be read or names no file at all.
#include <dirent.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

namespace {

bool Collect(const std::string& path, std::vector<std::string>* files) {
  struct stat info;
  if (stat(path.c_str(), &info) != 0) return false;
  if (!S_ISDIR(info.st_mode)) {
    files->push_back(path);
    return true;
  }
  DIR* dir = opendir(path.c_str());
  if (dir == nullptr) return false;
  bool ok = true;
  while (struct dirent* entry = readdir(dir)) {
    std::string name = entry->d_name;
    if (name != "." && name != "..") ok = Collect(path + "/" + name, files) && ok;
  }
  closedir(dir);
  return ok;
}

}  // namespace

int main(int argc, char** argv) {
  std::vector<std::string> files;
  for (int i = 1; i < argc; ++i) {
    if (!Collect(argv[i], &files)) {
      std::fprintf(stderr, "cannot read %s\n", argv[i]);
      return 1;
    }
  }
  std::sort(files.begin(), files.end());
  for (const std::string& file : files) {
    std::ifstream in(file, std::ios::binary);
    std::vector<uint8_t> bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    if (!in.eof() && in.fail()) {
      std::fprintf(stderr, "cannot read %s\n", file.c_str());
      return 1;
    }
    LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
  }
  std::printf("%zu inputs replayed\n", files.size());
  return files.empty() ? 1 : 0;
}
