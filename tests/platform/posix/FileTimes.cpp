// File times on POSIX, in nanoseconds, through stat and utimensat.
#include "platform/FileTimes.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdlib>

namespace tolvex::test {

std::string ModifiedTime(const std::string& path) {
  struct stat info;
  if (stat(path.c_str(), &info) != 0) return "";
  return std::to_string(static_cast<long long>(info.st_mtim.tv_sec) * 1000000000 +
                        info.st_mtim.tv_nsec);
}

bool SetModifiedTime(const std::string& path, const std::string& time) {
  const long long ns = std::atoll(time.c_str());
  struct timespec times[2] = {{0, UTIME_OMIT}, {ns / 1000000000, ns % 1000000000}};
  return utimensat(AT_FDCWD, path.c_str(), times, 0) == 0;
}

int64_t LastChangeNs(const std::string& path) {
  struct stat info;
  if (stat(path.c_str(), &info) != 0) return 0;
  auto ns = [](const timespec& t) { return int64_t{t.tv_sec} * 1000000000 + t.tv_nsec; };
  return std::max(ns(info.st_mtim), ns(info.st_ctim));
}

bool CopyFileTimes(const std::string& from, const std::string& to) {
  struct stat info;
  if (stat(from.c_str(), &info) != 0) return false;
  struct timespec times[2] = {info.st_atim, info.st_mtim};
  return utimensat(AT_FDCWD, to.c_str(), times, 0) == 0;
}

}  // namespace tolvex::test
