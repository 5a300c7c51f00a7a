#pragma once

namespace Orvu {

class OrvuRestRequest;

/// What the application registered to receive requests.
using RequestCallback = void* (*)(OrvuRestRequest*);

/// The callback of the facade that lives; null without one, and without a facade. Any thread, also while the facade
/// goes.
RequestCallback registeredCallback();

/// Logs that a request is about to be handed over. Not part of notify(): writing a line may take its time.
void logNotification();

/// Hands `request` to `callback`; false without one: the request stays the caller's then. An exception that leaves the
/// callback is logged.
bool notify(RequestCallback callback, OrvuRestRequest* request);

}  // namespace Orvu
