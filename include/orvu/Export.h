#pragma once

/// Marks what the shared library offers; everything without the mark stays inside it.
#define ORVU_EXPORT __attribute__((visibility("default")))

/// Marks what stays inside it all the same, in a class that is offered.
#define ORVU_LOCAL __attribute__((visibility("hidden")))
