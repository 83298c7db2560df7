// The output buffer of the encoders: grows by whole blocks, so that appending never moves what is
// already written, and can take back its last byte.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

#include "core/block_store.h"

namespace i18n {

template <class T>
class BufferImpl;
template <class T>
class StringBuffer;

// The chain. Every link before `current` is full; links after it hold nothing and are reused.
template <>
class BufferImpl<char> {
 public:
  explicit BufferImpl(int block_bytes);
  BufferImpl(const BufferImpl&) = delete;
  BufferImpl& operator=(const BufferImpl&) = delete;
  virtual ~BufferImpl();

 protected:
  void start();  // over, with a block from the store

  BlockStore store;
  char* write_pos;
  StrLink<char>* head;
  StrLink<char>* current;
  std::int32_t link_count;  // from head to current, both included
  std::int32_t block_size;
};

template <class T>
class Buffer {
 public:
  virtual ~Buffer() = default;
  virtual void add_str(const T& text) = 0;
  virtual T get_str() = 0;
};

template <>
class StringBuffer<char> : public BufferImpl<char>, public Buffer<std::string> {
 public:
  explicit StringBuffer(int block_bytes);
  ~StringBuffer() override;

  // Prepares an empty buffer for that much content; does nothing to another one. Content that keeps
  // within it, and has no room in the buffer as it was made, is in one piece of memory that can be
  // handed out without a copy.
  void reserve(size_t bytes);

  void add_char(char byte);
  void add_bytes(const char* bytes, int length) {  // nothing when length is below 1
    if (length > 0) append(bytes, static_cast<size_t>(length));
  }
  void add_bytes(const char* text);  // NUL-terminated
  void add_str(const std::string& text) override;
  std::string get_str() override;

  // Copies what fits into the current block, advances bytes and lowers length by it, and moves on
  // to the next block when some is left.
  void fill_block(const char*& bytes, int& length);
  void next_block();

  // The last byte written: its link, and its address through at; at is null in an empty buffer.
  StrLink<char>* last_char(char*& at);
  // Takes the last byte back and returns its address, null in an empty buffer. The byte can be read
  // there until the next append.
  char* back_char();

  std::int32_t get_link_count() const { return link_count; }
  size_t get_size() const;  // bytes of content
  // The content as a NUL-terminated string. The buffer can only be destroyed after that.
  CString release_c_string();

 private:
  void append(const char* bytes, size_t length) {
    if (length > get_room()) return append_across_blocks(bytes, length);
    std::memcpy(write_pos, bytes, length);
    write_pos += length;
  }
  void append_across_blocks(const char* bytes, size_t length);
  void fill(const char*& bytes, size_t& length);
  size_t get_block_total() const;  // bytes of the blocks up to the current one
  void copy_content(char* target) const;
  size_t get_used() const { return static_cast<size_t>(write_pos - current->data); }
  size_t get_room() const { return static_cast<size_t>(block_size) - get_used(); }
};

}  // namespace i18n
