// SPDX-License-Identifier: MIT
// Ctrl-C: the first asks the program to end in good order, the second ends it at once. A terminal
// that is closed, and a reader of the output that leaves, ask for the same.
#pragma once

namespace ipodctl {

void CatchInterrupts();
bool Interrupted();
/// Asks the program to end in good order, as the first Ctrl-C does. The next one ends it at once.
void Interrupt();

/// Asks for it when so much time has passed.
void InterruptAfter(double seconds);

/// Pauses. @return false when interrupted, then sooner
bool PauseMs(unsigned duration_ms);

/// Throws a CommandFailure once interrupted; for use between the steps of a command.
void StopIfInterrupted();

}  // namespace ipodctl
