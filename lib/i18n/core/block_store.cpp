#include "core/block_store.h"

#include <utility>

namespace i18n {

BlockStore::BlockStore(int block_bytes, size_t blocks) : block_size(block_bytes) {
  add_slab(blocks);
}

size_t BlockStore::slab_bytes(size_t blocks) const {
  constexpr size_t room_for_nul = 1;
  return blocks * static_cast<size_t>(block_size) + room_for_nul;
}

void BlockStore::add_slab(size_t blocks) {
  Slab slab{allocate_c_string(slab_bytes(blocks)),
            std::make_unique_for_overwrite<StrLink<char>[]>(blocks), blocks, 0};
  slabs.push_back(std::move(slab));
  // The analyzer does not follow the deleter of a CString.
}  // NOLINT(clang-analyzer-unix.Malloc)

StrLink<char>* BlockStore::add_link(StrLink<char>* last) {
  if (slabs.back().used == slabs.back().blocks) add_slab(2 * slabs.back().blocks);
  Slab& slab = slabs.back();
  StrLink<char>* link = &slab.links[slab.used];
  char* data = slab.bytes.get() + slab.used * static_cast<size_t>(block_size);
  *link = {data, nullptr, last, block_size};
  if (last != nullptr) last->next = link;
  ++slab.used;
  return link;
}

CString BlockStore::release_bytes(size_t blocks) {
  if (slabs.size() != 1) return nullptr;
  Slab& slab = slabs.front();
  return shrink_c_string(std::move(slab.bytes), slab_bytes(slab.blocks), slab_bytes(blocks));
}

}  // namespace i18n
