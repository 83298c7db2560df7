// The blocks of an output buffer and their memory.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "core/c_string.h"

namespace i18n {

template <class T>
struct StrLink;

// One block in the chain of blocks.
template <>
struct StrLink<char> {
  char* data;
  StrLink* next;
  StrLink* prev;
  std::int32_t size;  // of data, in bytes
};

// Cuts links and their blocks from slabs, each with twice as many as the one before: allocating
// every block by itself took longer than encoding what goes into it. Within a slab, each block
// follows the one before it in memory.
class BlockStore {
 public:
  // The first slab has room for that many blocks.
  BlockStore(int block_bytes, size_t blocks);

  // A new link after last, which is null for the first one.
  StrLink<char>* add_link(StrLink<char>* last);

  // The bytes of the first blocks, in order, in one piece from malloc with room for a NUL. Null
  // when the blocks are in several pieces. Nothing is left in the store after that.
  CString release_bytes(size_t blocks);

 private:
  struct Slab {
    CString bytes;
    std::unique_ptr<StrLink<char>[]> links;
    size_t blocks;
    size_t used;
  };

  size_t slab_bytes(size_t blocks) const;
  void add_slab(size_t blocks);

  std::vector<Slab> slabs;
  std::int32_t block_size;
};

}  // namespace i18n
