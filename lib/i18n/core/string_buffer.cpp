#include "core/string_buffer.h"

#include <algorithm>
#include <new>

namespace i18n {

BufferImpl<char>::BufferImpl(int block_bytes) : store(block_bytes), block_size(block_bytes) {
  start();
}

BufferImpl<char>::~BufferImpl() = default;

void BufferImpl<char>::start() {
  head = current = store.add_link(nullptr);
  link_count = 1;
  write_pos = current->data;
}

StringBuffer<char>::StringBuffer(int block_bytes) : BufferImpl<char>(block_bytes) {}
StringBuffer<char>::~StringBuffer() = default;

void StringBuffer<char>::reserve(size_t bytes) {
  if (get_size() != 0) return;
  try {
    const size_t blocks = bytes / static_cast<size_t>(block_size) + 1;
    if (store.reserve(blocks)) start();
  } catch (const std::bad_alloc&) {
    // Blocks are then added as they are needed.
  }
}

void StringBuffer<char>::add_char(char byte) {
  if (get_room() == 0) next_block();
  *write_pos++ = byte;
  if (get_room() == 0) next_block();
}

void StringBuffer<char>::add_bytes(const char* text) { append(text, std::strlen(text)); }

void StringBuffer<char>::add_str(const std::string& text) { append(text.data(), text.size()); }

void StringBuffer<char>::append_across_blocks(const char* bytes, size_t length) {
  do {
    fill(bytes, length);
  } while (length != 0);
}

void StringBuffer<char>::fill_block(const char*& bytes, int& length) {
  if (length <= 0) return;
  size_t left = static_cast<size_t>(length);
  fill(bytes, left);
  length = static_cast<int>(left);
}

void StringBuffer<char>::fill(const char*& bytes, size_t& length) {
  const size_t fitting = std::min(length, get_room());
  std::memcpy(write_pos, bytes, fitting);
  write_pos += fitting;
  bytes += fitting;
  length -= fitting;
  if (length != 0) next_block();
}

void StringBuffer<char>::next_block() {
  current = current->next != nullptr ? current->next : store.add_link(current);
  write_pos = current->data;
  ++link_count;
}

StrLink<char>* StringBuffer<char>::last_char(char*& at) {
  if (write_pos != current->data) {
    at = write_pos - 1;
    return current;
  }
  StrLink<char>* previous = current->prev;
  at = previous != nullptr ? previous->data + block_size - 1 : nullptr;
  return previous;
}

char* StringBuffer<char>::back_char() {
  char* at;
  StrLink<char>* link = last_char(at);
  if (at == nullptr) return nullptr;
  if (link != current) {
    current = link;
    --link_count;
  }
  write_pos = at;
  return at;
}

std::string StringBuffer<char>::get_str() {
  std::string content(get_size(), '\0');
  copy_content(content.data());
  return content;
}

CString StringBuffer<char>::release_c_string() {
  const size_t size = get_size();
  CString text = store.release_bytes(head, static_cast<size_t>(link_count));
  if (!text) {
    text = allocate_c_string(get_block_total() + 1);
    copy_content(text.get());
  }
  text[size] = '\0';
  return text;
}

size_t StringBuffer<char>::get_size() const { return get_block_total() - get_room(); }

size_t StringBuffer<char>::get_block_total() const {
  return static_cast<size_t>(link_count) * static_cast<size_t>(block_size);
}

void StringBuffer<char>::copy_content(char* target) const {
  for (const StrLink<char>* link = head; link != current; link = link->next) {
    std::memcpy(target, link->data, static_cast<size_t>(block_size));
    target += block_size;
  }
  std::memcpy(target, current->data, get_used());
}

}  // namespace i18n
