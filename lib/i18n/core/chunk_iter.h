// The protocol by which text is pulled chunk by chunk.
#pragma once

namespace i18n {

// Call next_chunk() first, then again for as long as has_next_chunk() is true: an empty text, too,
// has one chunk.
template <class T>
class ChunkIter {
 public:
  virtual ~ChunkIter() = default;
  virtual void next_chunk() = 0;
  virtual bool has_next_chunk() = 0;

  // The current chunk, valid until the next next_chunk().
  const T& get_chunk() const { return chunk; }

 protected:
  T chunk;
};

}  // namespace i18n
