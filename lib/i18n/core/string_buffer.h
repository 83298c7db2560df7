// The output buffer of the encoders: grows by whole blocks, so that appending never moves what is
// already written, and can take back its last byte.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "core/c_string.h"

namespace i18n {

template <class T>
struct StrLink;
template <class T>
class BufferImpl;
template <class T>
class StringBuffer;

// One block in the chain of blocks.
template <>
struct StrLink<char> {
  explicit StrLink(int block_bytes);
  StrLink* add_next();  // a block of the same size after this one

  std::unique_ptr<char[]> data;
  std::unique_ptr<StrLink> next;
  StrLink* prev;
  std::int32_t size;  // of data, in bytes
};

// The chain. Every link before `current` is full; links after it hold nothing and are reused.
template <>
class BufferImpl<char> {
 public:
  explicit BufferImpl(int block_bytes);
  BufferImpl(const BufferImpl&) = delete;
  BufferImpl& operator=(const BufferImpl&) = delete;
  virtual ~BufferImpl();

 protected:
  char* write_pos;
  StrLink<char> head;
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

  // A block that a byte fills is left at once, one that a run fills only when more comes.
  void add_char(char byte) {
    if (get_room() == 0) next_block();
    *write_pos++ = byte;
    if (get_room() == 0) next_block();
  }
  void add_bytes(const char* bytes, int length);  // nothing when length is below 1
  void add_bytes(const char* text);               // NUL-terminated
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
  // The content as a new NUL-terminated string.
  CString copy_content() const;

 private:
  void append(const char* bytes, size_t length);
  void fill(const char*& bytes, size_t& length);
  void copy_to(char* target) const;
  size_t get_used() const { return static_cast<size_t>(write_pos - current->data.get()); }
  size_t get_room() const { return static_cast<size_t>(block_size) - get_used(); }
  size_t get_size() const;         // bytes of content
  size_t get_block_total() const;  // bytes of the blocks up to the current one
};

}  // namespace i18n
