// The charset that ICU reports as the process's default. ICU itself may be built to always say
// UTF-8.
#pragma once

void set_default_charset(const char* name);
