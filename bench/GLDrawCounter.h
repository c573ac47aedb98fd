#pragma once

// Counts the draw calls that reach the driver from any code in the process,
// Qt's own paint engines included: the program hands out counting wrappers for
// glDrawArrays and glDrawElements when GL functions are resolved by name, which
// is how Qt finds them.
namespace GLDrawCounter {
int draws();
void reset();
} // namespace GLDrawCounter
