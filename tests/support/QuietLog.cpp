#include <cstdlib>

namespace {

/// For programs that exchange so much that their log lines would only cost time. Before the first of them is written.
const int quiet = setenv("ORVU_LOG", "none", 1);

}  // namespace
