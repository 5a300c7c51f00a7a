#pragma once

/// \file
/// The typed interface: a thin layer of headers over the library. Applications neither cast nor delete messages.
///
/// - `Receiver` answers requests by handlers, `Request` is one that is answered later, `Answer` one of several answers.
/// - `Client` sends requests, `Reply` is what came of one, `Reason` why there is no message.
/// - `Publisher` pushes messages, `Listener` hears what is pushed, by handlers.
/// - `append()` and `make()` give a message its children.
///
/// It exports nothing and has no binary interface: it is compiled into the application, with or without exceptions and
/// run-time type information.

#include "orvu/Orvu.h"
#include "orvu/typed/Children.h"
#include "orvu/typed/Client.h"
#include "orvu/typed/Listener.h"
#include "orvu/typed/Publisher.h"
#include "orvu/typed/Receiver.h"
