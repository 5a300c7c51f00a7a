#pragma once

namespace OrvuBench {

/// The exchanges over loopback, at 1, 4 and 16 clients, by each program. With `logging` only those of the library, under a
/// name that says so: whether it logs is settled once a process.
void addExchangeRows(bool logging);

/// Reading and writing the list of 200 services, by the library and by cJSON.
void addMessageRows();

}  // namespace OrvuBench
