#include "core/block_store.h"

#include <algorithm>
#include <utility>

namespace i18n {

BlockStore::BlockStore(int block_bytes)
    : block_size(block_bytes),
      next_data(own_bytes),
      next_link(own_links),
      blocks_left(std::min(own_blocks, own_size / static_cast<size_t>(block_bytes))) {}

BlockStore::~BlockStore() = default;

size_t BlockStore::slab_size(size_t blocks) const {
  constexpr size_t room_for_nul = 1;
  return blocks * static_cast<size_t>(block_size) + room_for_nul;
}

bool BlockStore::reserve(size_t blocks) {
  if (blocks <= blocks_left) return false;
  slabs.push_back({allocate_c_string(slab_size(blocks)),
                   std::make_unique_for_overwrite<StrLink<char>[]>(blocks), blocks});
  // Nothing fails any more: the slab is there to stay and can be used.
  next_data = slabs.back().bytes.get();
  next_link = slabs.back().links.get();
  blocks_left = blocks;
  return true;  // no leak: the analyzer does not follow the deleter of a CString
}  // NOLINT(clang-analyzer-unix.Malloc)

StrLink<char>* BlockStore::add_link(StrLink<char>* last) {
  if (blocks_left == 0) reserve(2 * (slabs.empty() ? own_blocks : slabs.back().blocks));
  StrLink<char>* link = next_link++;
  *link = {next_data, nullptr, last, block_size};
  if (last != nullptr) last->next = link;
  next_data += block_size;
  --blocks_left;
  return link;
}

CString BlockStore::release_bytes(const StrLink<char>* head, size_t blocks) {
  if (slabs.size() != 1 || head->data != slabs.front().bytes.get()) return nullptr;
  Slab& slab = slabs.front();
  return shrink_c_string(std::move(slab.bytes), slab_size(slab.blocks), slab_size(blocks));
}

}  // namespace i18n
