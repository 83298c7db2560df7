// Media types of files, by their names.
#pragma once

#include <string>

// From /etc/mime.types, or else from the shared MIME database. What neither knows, and types of
// which mail does not allow base64, are application/octet-stream.
std::string find_type(const std::string& file_name);
