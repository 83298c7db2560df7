// The charsets that a text can be converted from and to.
#pragma once

#include <string>

// One a line: its name, and, where mail can be written in it, "mail: " and the name it then has.
std::string list_charsets();
