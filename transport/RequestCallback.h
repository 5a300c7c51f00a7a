#pragma once

#include <chrono>

namespace Orvu {

class OrvuRestRequest;

/// What the application registered to receive requests.
using RequestCallback = void* (*)(OrvuRestRequest*);

/// The registered callback; null without one. Any thread.
RequestCallback registeredCallback();

/// Logs that a request is about to be handed over. Not part of notify(): writing a line may take its time.
void logNotification();

/// Hands `request` to `callback`; false without one: the request stays the caller's then. An exception that leaves the
/// callback is logged.
bool notify(RequestCallback callback, OrvuRestRequest* request);

/// Counts the callbacks of the process that have begun for a peer's request and have not ended. Any thread.
namespace RunningCallbacks {

void begin();
void end();
/// Waits until at most `own` run, and not longer than `patience`. False when the time was over.
bool waitFor(int own, std::chrono::milliseconds patience);

}  // namespace RunningCallbacks

}  // namespace Orvu
