#pragma once

/// \file
/// The version of these headers, for the preprocessor. A program runs with every later library of its major version.

/// Grows when programs must be built again.
#define ORVU_VERSION_MAJOR 1
/// Grows when something is added.
#define ORVU_VERSION_MINOR 1
/// Grows when faults are fixed.
#define ORVU_VERSION_PATCH 0
