// Counting of heap allocations, those of every library in the process included.
#pragma once

#include <cstddef>
#include <functional>

namespace bench {

size_t count_allocations(const std::function<void()>& call);

}  // namespace bench
