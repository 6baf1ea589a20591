// A FIFO in the file system with a writer that never writes: an open of it for reading
// succeeds at once and a read then waits forever, the trap a careful reader must not fall into.
// Only where the system has FIFOs (MissingFeature(Feature::kFifos) is nullptr).
#ifndef TOLVEX_TESTS_SUPPORT_IDLEFIFO_H
#define TOLVEX_TESTS_SUPPORT_IDLEFIFO_H

#include <string>

namespace tolvex::test {

class IdleFifo {
 public:
  // Makes the FIFO at `path`; fails the test when it cannot.
  explicit IdleFifo(const std::string& path);
  // Closes the writer; the FIFO stays, for its temporary folder to remove.
  ~IdleFifo();
  IdleFifo(const IdleFifo&) = delete;
  IdleFifo& operator=(const IdleFifo&) = delete;

 private:
  [[maybe_unused]] int m_writer = -1;  // the writer's descriptor, where there are FIFOs
};

}  // namespace tolvex::test

#endif  // TOLVEX_TESTS_SUPPORT_IDLEFIFO_H
