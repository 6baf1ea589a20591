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
};

std::atomic<int> g_pending{0};

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
  Plans().push_back({primitive, nth, error});
  g_pending.store(static_cast<int>(Plans().size()), std::memory_order_release);
}

void ClearFaults() {
  std::lock_guard<std::mutex> guard(PlanMutex());
  Plans().clear();
  g_pending.store(0, std::memory_order_release);
}

int TakePlannedFailure(Primitive primitive) {
  if (g_pending.load(std::memory_order_acquire) == 0) return 0;
  std::lock_guard<std::mutex> guard(PlanMutex());
  int error = 0;
  auto& plans = Plans();
  // Every plan of this primitive counts the call; the first one to reach zero decides.
  for (auto it = plans.begin(); it != plans.end();) {
    if (it->primitive == primitive && --it->callsLeft == 0) {
      if (error == 0) error = it->error;
      it = plans.erase(it);
    } else {
      ++it;
    }
  }
  g_pending.store(static_cast<int>(plans.size()), std::memory_order_release);
  return error;
}

}  // namespace tolvex::platform
