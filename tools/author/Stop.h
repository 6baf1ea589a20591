// Stopping a run of author when the user asks: Ctrl-C (SIGINT), kill (SIGTERM), a closed
// terminal (SIGHUP) or a closed pipe it writes to (SIGPIPE). While a StopOnSignals lives, those signals only note that a stop was
// asked and wake whoever waits on StopPipe(); the run then stops its programs, throws from the
// next StopIfAsked() and unwinds, removing what it had begun, and the tool exits 128 + the
// signal's number. One per process; the handlers are restored when it ends.
#ifndef TOLVEX_TOOLS_AUTHOR_STOP_H
#define TOLVEX_TOOLS_AUTHOR_STOP_H

#include <signal.h>

namespace menutool::author {

class StopOnSignals {
 public:
  StopOnSignals();
  ~StopOnSignals();
  StopOnSignals(const StopOnSignals&) = delete;
  StopOnSignals& operator=(const StopOnSignals&) = delete;
};

// The signal that asked to stop, or 0.
int StopSignal();

// A descriptor that becomes readable once a stop was asked (-1 when no StopOnSignals lives).
int StopPipe();

// Throws ToolError "stopped by SIGINT ..." with status 128 + the signal when a stop was asked.
void StopIfAsked();

// Holds the stop signals back while a step that must not be cut in two runs (swapping the
// finished disc in); a stop asked meanwhile is noted and acted on after it.
class HoldStops {
 public:
  HoldStops();
  ~HoldStops();
  HoldStops(const HoldStops&) = delete;
  HoldStops& operator=(const HoldStops&) = delete;

 private:
  sigset_t m_saved;  // the thread's signal mask before
};

}  // namespace menutool::author

#endif  // TOLVEX_TOOLS_AUTHOR_STOP_H
