#include "core/string_buffer.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace i18n {

StrLink<char>::StrLink(int block_bytes)
    : data(std::make_unique_for_overwrite<char[]>(static_cast<size_t>(block_bytes))),
      prev(nullptr),
      size(block_bytes) {}

StrLink<char>* StrLink<char>::add_next() {
  next = std::make_unique<StrLink>(size);
  next->prev = this;
  return next.get();
}

BufferImpl<char>::BufferImpl(int block_bytes)
    : write_pos(nullptr),
      head(block_bytes),
      current(&head),
      link_count(1),
      block_size(block_bytes) {
  write_pos = head.data.get();
}

// Link by link: a long chain that destroyed itself recursively would exhaust the stack.
BufferImpl<char>::~BufferImpl() {
  auto rest = std::move(head.next);
  while (rest) rest = std::move(rest->next);
}

StringBuffer<char>::StringBuffer(int block_bytes) : BufferImpl<char>(block_bytes) {}
StringBuffer<char>::~StringBuffer() = default;

void StringBuffer<char>::add_bytes(const char* bytes, int length) {
  if (length > 0) append(bytes, static_cast<size_t>(length));
}

void StringBuffer<char>::add_bytes(const char* text) { append(text, std::strlen(text)); }

void StringBuffer<char>::add_str(const std::string& text) { append(text.data(), text.size()); }

void StringBuffer<char>::fill_block(const char*& bytes, int& length) {
  if (length <= 0) return;
  size_t left = static_cast<size_t>(length);
  fill(bytes, left);
  length = static_cast<int>(left);
}

void StringBuffer<char>::append(const char* bytes, size_t length) {
  while (length != 0) fill(bytes, length);
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
  if (get_used() != 0) {
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
  copy_to(content.data());
  return content;
}

CString StringBuffer<char>::copy_content() const {
  CString content = allocate_c_string(get_block_total() + 1);
  copy_to(content.get());
  content[get_size()] = '\0';
  return content;
}

size_t StringBuffer<char>::get_size() const { return get_block_total() - get_room(); }

size_t StringBuffer<char>::get_block_total() const {
  return static_cast<size_t>(link_count) * static_cast<size_t>(block_size);
}

void StringBuffer<char>::copy_to(char* target) const {
  for (const StrLink<char>* link = &head; link != current; link = link->next.get()) {
    std::memcpy(target, link->data.get(), static_cast<size_t>(block_size));
    target += block_size;
  }
  std::memcpy(target, current->data.get(), get_used());
}

}  // namespace i18n
