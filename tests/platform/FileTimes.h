// The modification time of a file to the system's full precision, as text that a child
// process can be handed, for the tests that try to fool the read cache with old times.
#ifndef TOLVEX_TESTS_PLATFORM_FILETIMES_H
#define TOLVEX_TESTS_PLATFORM_FILETIMES_H

#include <cstdint>
#include <string>

namespace tolvex::test {

// The modification time of `path`; "" when it cannot be read.
std::string ModifiedTime(const std::string& path);
// Sets the modification time of `path` to one ModifiedTime gave.
bool SetModifiedTime(const std::string& path, const std::string& time);
// The later of the modification and change times of `path`, in nanoseconds on the clock the
// platform layer stamps its reads with (SetClockForTests); 0 when it cannot be read.
int64_t LastChangeNs(const std::string& path);
// Gives `to` the access and modification times of `from`.
bool CopyFileTimes(const std::string& from, const std::string& to);

}  // namespace tolvex::test

#endif  // TOLVEX_TESTS_PLATFORM_FILETIMES_H
