#include "command.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <new>

#include <fcntl.h>
#include <unistd.h>

#include <qorvii18n/version.h>

namespace command {

namespace {

[[noreturn]] void fail_by_errno(const std::string& name) {
  throw Failure(failed, name + ": " + std::strerror(errno));
}

}  // namespace

void refuse(const std::string& message) { throw Failure(wrong_usage, message + " (see --help)"); }

int run(int argc, char** argv, void (*work)(int, char**)) noexcept {
  const std::string_view path = argc > 0 ? argv[0] : "";
  const std::string_view name = path.substr(path.rfind('/') + 1);
  const char* reason = "out of memory";
  const auto report = [&](int status) {
    std::fprintf(stderr, "%.*s: %s\n", static_cast<int>(name.size()), name.data(), reason);
    return status;
  };
  try {
    work(argc, argv);
    return 0;
  } catch (const Failure& failure) {
    reason = failure.what();
    return report(failure.status);
  } catch (const std::bad_alloc&) {
    return report(failed);
  } catch (const std::length_error&) {
    return report(failed);
  }
}

std::string describe_version(const std::string& program) {
  return program + " (qorvii18n) " QORVII18N_VERSION "\n";
}

Input::Input(std::string name)
    : name_(std::move(name)), descriptor_(name_ == "-" ? 0 : open(name_.c_str(), O_RDONLY)) {
  if (descriptor_ < 0) fail_by_errno(name_);
  if (name_ == "-") name_ = "standard input";
}

Input::~Input() {
  if (descriptor_ != 0) close(descriptor_);
}

size_t Input::read(std::span<char> room) {
  for (;;) {
    const ssize_t size = ::read(descriptor_, room.data(), room.size());
    if (size >= 0) return static_cast<size_t>(size);
    if (errno != EINTR) fail_by_errno(name_);
  }
}

std::string Input::read_all() {
  std::string bytes;
  for (;;) {
    constexpr size_t step = 65536;
    const size_t size = bytes.size();
    bytes.resize(size + step);
    const size_t read_size = read(std::span(bytes).subspan(size));
    bytes.resize(size + read_size);
    if (read_size == 0) return bytes;
  }
}

void write(std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t size = ::write(1, bytes.data(), bytes.size());
    if (size >= 0) {
      bytes.remove_prefix(static_cast<size_t>(size));
    } else if (errno != EINTR) {
      fail_by_errno("standard output");
    }
  }
}

}  // namespace command
