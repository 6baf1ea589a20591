// A FIFO with an idle writer on POSIX: mkfifo, and the writer opened read-write without
// blocking (see IdleFifo.h).
#include "support/IdleFifo.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

namespace tolvex::test {

IdleFifo::IdleFifo(const std::string& path) {
  EXPECT_EQ(mkfifo(path.c_str(), 0600), 0) << path;
  m_writer = ::open(path.c_str(), O_RDWR | O_NONBLOCK);
  EXPECT_GE(m_writer, 0) << path;
}

IdleFifo::~IdleFifo() {
  if (m_writer >= 0) ::close(m_writer);
}

}  // namespace tolvex::test
