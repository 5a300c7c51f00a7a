#pragma once

/// \file
/// The version of these headers, for the preprocessor. Versions with the same major number are compatible: a program runs
/// with any later library of its major version.

#define ORVU_VERSION_MAJOR 1
#define ORVU_VERSION_MINOR 0
#define ORVU_VERSION_PATCH 0
