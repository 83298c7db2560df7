#include "core/string_buffer.h"

#include <algorithm>
#include <cstring>

namespace i18n {

StrLink<char>::StrLink(int block_size)
    : data(std::make_unique_for_overwrite<char[]>(static_cast<size_t>(block_size))),
      prev(nullptr),
      size(block_size) {}

// Takes the chain apart link by link: a long text has more links than the stack has room for calls.
StrLink<char>::~StrLink() {
  while (next) next = std::move(next->next);
}

StrLink<char>* StrLink<char>::add_next() {
  next = std::make_unique<StrLink>(size);
  next->prev = this;
  return next.get();
}

BufferImpl<char>::BufferImpl(int block_bytes)
    : head(std::make_unique<StrLink<char>>(block_bytes)), link_count(1), block_size(block_bytes) {
  current = head.get();
  write_pos = current->data.get();
}

BufferImpl<char>::~BufferImpl() = default;

StringBuffer<char>::StringBuffer(int block_bytes) : BufferImpl<char>(block_bytes) {}
StringBuffer<char>::~StringBuffer() = default;

void StringBuffer<char>::add_char(char byte) {
  if (get_room() == 0) next_block();
  *write_pos++ = byte;
  if (get_room() == 0) next_block();
}

void StringBuffer<char>::add_bytes(const char* bytes, int length) {
  if (length > 0) append(bytes, static_cast<size_t>(length));
}

void StringBuffer<char>::add_bytes(const char* text) { append(text, std::strlen(text)); }

void StringBuffer<char>::add_str(const std::string& text) { append(text.data(), text.size()); }

void StringBuffer<char>::append(const char* bytes, size_t length) {
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
  current = current->next ? current->next.get() : current->add_next();
  write_pos = current->data.get();
  ++link_count;
}

StrLink<char>* StringBuffer<char>::last_char(char*& at) {
  if (write_pos != current->data.get()) {
    at = write_pos - 1;
    return current;
  }
  StrLink<char>* previous = current->prev;
  at = previous != nullptr ? previous->data.get() + block_size - 1 : nullptr;
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

size_t StringBuffer<char>::get_size() const { return get_block_total() - get_room(); }

size_t StringBuffer<char>::get_block_total() const {
  return static_cast<size_t>(link_count) * static_cast<size_t>(block_size);
}

void StringBuffer<char>::copy_content(char* target) const {
  for (const StrLink<char>* link = head.get(); link != current; link = link->next.get()) {
    std::memcpy(target, link->data.get(), static_cast<size_t>(block_size));
    target += block_size;
  }
  std::memcpy(target, current->data.get(), get_used());
}

}  // namespace i18n
