// Stopping author on SIGINT, SIGTERM and SIGHUP (see Stop.h). The handler only stores the
// signal and writes a byte to a non-blocking pipe (the self-pipe trick), both safe in a
// signal handler; everything else happens on the run's own path.
#include "tools/author/Stop.h"

#include "tools/cli/ToolError.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <string>

namespace menutool::author {
namespace {

// SIGPIPE too: output read by a program that has gone (`author ... | head`) ends the run as
// cleanly as a Ctrl-C.
constexpr int kSignals[] = {SIGINT, SIGTERM, SIGHUP, SIGPIPE};
constexpr size_t kCount = sizeof kSignals / sizeof kSignals[0];
volatile sig_atomic_t g_signal = 0;
int g_pipe[2] = {-1, -1};
struct sigaction g_previous[kCount];

void Note(int signal) {
  if (g_signal == 0) g_signal = signal;
  const int saved = errno;
  const char byte = 1;
  if (g_pipe[1] >= 0) (void)!write(g_pipe[1], &byte, 1);
  errno = saved;
}

sigset_t StopSet() {
  sigset_t set;
  sigemptyset(&set);
  for (int s : kSignals) sigaddset(&set, s);
  return set;
}

}  // namespace

StopOnSignals::StopOnSignals() {
  g_signal = 0;
  if (pipe2(g_pipe, O_CLOEXEC | O_NONBLOCK) != 0) g_pipe[0] = g_pipe[1] = -1;
  struct sigaction action {};
  action.sa_handler = Note;
  sigemptyset(&action.sa_mask);
  action.sa_flags = 0;  // no SA_RESTART: a blocking call returns EINTR and the run looks
  for (size_t i = 0; i < kCount; ++i) sigaction(kSignals[i], &action, &g_previous[i]);
  // A shell may start the tool with SIGINT ignored (a background job); a user who sends it
  // still means stop. The signals are also let through should the caller have blocked them.
  sigset_t set = StopSet();
  sigprocmask(SIG_UNBLOCK, &set, nullptr);
}

StopOnSignals::~StopOnSignals() {
  for (size_t i = 0; i < kCount; ++i) sigaction(kSignals[i], &g_previous[i], nullptr);
  for (int& fd : g_pipe) {
    if (fd >= 0) close(fd);
    fd = -1;
  }
}

int StopSignal() { return g_signal; }

int StopPipe() { return g_pipe[0]; }

void StopIfAsked() {
  const int signal = g_signal;
  if (signal == 0) return;
  const char* name = signal == SIGINT    ? "SIGINT"
                     : signal == SIGTERM ? "SIGTERM"
                     : signal == SIGHUP  ? "SIGHUP"
                                         : "SIGPIPE";
  throw ToolError("", std::string("stopped by ") + name + "; the unfinished disc was removed",
                  128 + signal);
}

HoldStops::HoldStops() {
  sigset_t set = StopSet();
  sigprocmask(SIG_BLOCK, &set, &m_saved);
}

HoldStops::~HoldStops() {
  sigprocmask(SIG_SETMASK, &m_saved, nullptr);
}

}  // namespace menutool::author
