#pragma once

/// Marks what the shared library offers; everything without the mark stays inside it.
#define ORVU_EXPORT __attribute__((visibility("default")))
