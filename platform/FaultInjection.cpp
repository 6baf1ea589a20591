// Planned failures of the OS primitives, kept in one mutex-guarded list. An atomic count of
// pending plans lets every primitive skip the mutex when no test has planned anything.
#include "platform/FaultInjection.h"

#include <atomic>
#include <mutex>
#include <vector>

namespace tolvex::platform {
namespace {

struct PlannedFailure {
  Primitive primitive;
  int callsLeft;  // this plan fires on the call that brings it to 0
  int error;
  void (*action)();
};

std::atomic<int> g_pending{0};
std::atomic<int64_t> g_clock{0};

std::mutex& PlanMutex() {
  static std::mutex mutex;
  return mutex;
}

std::vector<PlannedFailure>& Plans() {
  static std::vector<PlannedFailure> plans;
  return plans;
}

}  // namespace

void FailNthCall(Primitive primitive, int nth, int error) {
  if (nth < 1 || error == 0) return;
  std::lock_guard<std::mutex> guard(PlanMutex());
  Plans().push_back({primitive, nth, error, nullptr});
  g_pending.store(static_cast<int>(Plans().size()), std::memory_order_release);
}

void RunBeforeNthCall(Primitive primitive, int nth, void (*action)()) {
  if (nth < 1 || !action) return;
  std::lock_guard<std::mutex> guard(PlanMutex());
  Plans().push_back({primitive, nth, 0, action});
  g_pending.store(static_cast<int>(Plans().size()), std::memory_order_release);
}

void SetClockForTests(int64_t nowNs) { g_clock.store(nowNs, std::memory_order_relaxed); }
int64_t ClockForTests() { return g_clock.load(std::memory_order_relaxed); }

void ClearFaults() {
  std::lock_guard<std::mutex> guard(PlanMutex());
  Plans().clear();
  g_pending.store(0, std::memory_order_release);
  g_clock.store(0, std::memory_order_relaxed);
}

int TakePlannedFailure(Primitive primitive) {
  if (g_pending.load(std::memory_order_acquire) == 0) return 0;
  int error = 0;
  std::vector<void (*)()> actions;
  {
    std::lock_guard<std::mutex> guard(PlanMutex());
    auto& plans = Plans();
    // Every plan of this primitive counts the call; the first failure to reach zero decides.
    for (auto it = plans.begin(); it != plans.end();) {
      if (it->primitive == primitive && --it->callsLeft == 0) {
        if (it->action) actions.push_back(it->action);
        if (error == 0) error = it->error;
        it = plans.erase(it);
      } else {
        ++it;
      }
    }
    g_pending.store(static_cast<int>(plans.size()), std::memory_order_release);
  }
  for (auto action : actions) action();
  return error;
}

}  // namespace tolvex::platform
