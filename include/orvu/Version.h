#pragma once

/// \file
/// The version of these headers, for the preprocessor. Versions with the same major number are compatible: a program
/// runs with any later library of its major version.

/// Raised when a program has to be built again, or changed.
#define ORVU_VERSION_MAJOR 1
/// Raised with what is new.
#define ORVU_VERSION_MINOR 0
/// Raised with what is mended.
#define ORVU_VERSION_PATCH 0
