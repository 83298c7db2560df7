// Records what the library prints and the checks that fail in it, in place of the kernel services'
// own functions.
#pragma once

#include <string>
#include <vector>

// What was reported since the last call: the text of each message, and "expression @ source" for
// each failed check.
std::vector<std::string> take_diagnostics();
