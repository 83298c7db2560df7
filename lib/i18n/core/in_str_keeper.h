// Takes an input text, either as a copy of its own or by reference.
#pragma once

#include <string>
#include <string_view>

#include <qorvii18n/i18n.hpp>

namespace i18n {

template <class T>
class InStrKeeper : public InStrSetter<T> {
 public:
  void set_in_str(const std::basic_string<T>& text) override {
    in_str = text;
    borrow_in_str(in_str);
  }

  // Without a copy: the text must live until the object has read the last of it.
  virtual void borrow_in_str(std::basic_string_view<T> text) = 0;

 protected:
  InStrKeeper() = default;
  InStrKeeper(const InStrKeeper&) = delete;
  InStrKeeper& operator=(const InStrKeeper&) = delete;
  ~InStrKeeper() = default;

 private:
  std::basic_string<T> in_str;
};

}  // namespace i18n
