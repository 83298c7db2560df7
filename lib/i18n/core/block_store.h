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

// Cuts links and their blocks from slabs: allocating every block by itself took longer than
// encoding what goes into it. The first slab lies in the object and is enough for a short header;
// each one after that is twice as large as the one before. Within a slab, each block follows the
// one before it in memory.
class BlockStore {
 public:
  explicit BlockStore(int block_bytes);
  BlockStore(const BlockStore&) = delete;
  BlockStore& operator=(const BlockStore&) = delete;
  ~BlockStore();

  // Makes sure that the next so many blocks are in one slab. Returns whether it is a new one.
  bool reserve(size_t blocks);

  // A new link after last, which is null for the first one.
  StrLink<char>* add_link(StrLink<char>* last);

  // The bytes of the first so many blocks of the chain, in order, in one piece from malloc with
  // room for a NUL. Null when they are not in one such piece. Otherwise nothing is left in the
  // store after that.
  CString release_bytes(const StrLink<char>* head, size_t blocks);

 private:
  struct Slab {
    CString bytes;
    std::unique_ptr<StrLink<char>[]> links;
    size_t blocks;
  };

  static constexpr size_t own_blocks = 4;
  static constexpr size_t own_size = 1024;

  size_t slab_size(size_t blocks) const;

  std::int32_t block_size;
  char* next_data;  // in the slab in use
  StrLink<char>* next_link;
  size_t blocks_left;
  std::vector<Slab> slabs;  // from the heap
  StrLink<char> own_links[own_blocks];
  char own_bytes[own_size];
};

}  // namespace i18n
