// The test seam over the OS primitives: a test plans the failure of the nth call of one
// primitive with a chosen errno (or an action before it), or sets the clock that stamps reads,
// then checks that the file it was changing is unchanged.
// Thread-safe; when nothing is planned a primitive pays one relaxed atomic load.
#ifndef TOLVEX_PLATFORM_FAULTINJECTION_H
#define TOLVEX_PLATFORM_FAULTINJECTION_H

#include <cstdint>

namespace tolvex::platform {

enum class Primitive { Open, Read, Write, Sync, Rename, Lock };

// Makes the nth call from now (1 = the next one) of `primitive` fail with errno `error`.
void FailNthCall(Primitive primitive, int nth, int error);
void ClearFaults();  // forgets every planned failure and gives back the system clock

// Runs `action` just before the nth call from now of `primitive`, which then goes ahead. A
// test child uses it to die at an exact step of a write.
void RunBeforeNthCall(Primitive primitive, int nth, void (*action)());

// Sets the clock that stamps a read, in nanoseconds since the epoch, so that a test can place
// a read at a chosen distance from a file's last change; 0 gives back the system clock.
void SetClockForTests(int64_t nowNs);
int64_t ClockForTests();  // 0 while the system clock runs

// Called by the OS wrapper before each primitive: the errno it must fail with, or 0 to go on.
int TakePlannedFailure(Primitive primitive);

}  // namespace tolvex::platform

#endif  // TOLVEX_PLATFORM_FAULTINJECTION_H
