#pragma once

namespace OrvuBench {

/// The exchanges over loopback, at 1, 4 and 16 clients, by each program. With `logging`, only those of the library,
/// under a name that says so: the library decides once per process whether it logs.
void addExchangeRows(bool logging);

/// Reading and writing messages, by the library and by cJSON: the list of 200 services, 500 events, capabilities, a
/// tree of nodes and the tokens of 200 services. Longer lists of events are only read.
void addMessageRows();

/// Texts that are hard to read in linear time, by the library at two sizes, one four times the other, and by cJSON at
/// the larger.
void addLinearRows();

/// Adding 20,000 events one by one to a schedule of the library, in both orders of time.
void addScheduleRows();

/// Pushes over TCP to 1, 8 and 64 clients, and of frames to a WebSocket client, by the library and by a loop of writes.
void addPushRows();

/// The same pushes without pause, to clients that read as fast as they can.
void addFloodRows();

/// A thousand messages of 1 KB that a saturated publisher pushes, received by a listener of the library, and by a loop
/// of recv that divides the stream by the same rule.
void addListeningRows();

}  // namespace OrvuBench
