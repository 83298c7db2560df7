// What the commands share: how they end, and files.
#pragma once

#include <span>
#include <stdexcept>
#include <string>
#include <string_view>

namespace command {

inline constexpr int failed = 1;
inline constexpr int wrong_usage = 2;

// A message for standard error, which ends the command.
struct Failure : std::runtime_error {
  Failure(int exit_status, const std::string& message)
      : std::runtime_error(message), status(exit_status) {}
  int status;
};

// Names an argument, and points to the help.
[[noreturn]] void refuse(const std::string& message);

// Does the work, and says why it failed.
int run(int argc, char** argv, void (*work)(int, char**)) noexcept;

// The version, as --version prints it.
std::string describe_version(const std::string& program);

// What is read: a file, or standard input for "-".
class Input {
 public:
  explicit Input(std::string name);
  Input(const Input&) = delete;
  Input& operator=(const Input&) = delete;
  ~Input();

  // As messages name it.
  const std::string& name() const { return name_; }

  // How many bytes were read; 0 at the end.
  size_t read(std::span<char> room);
  std::string read_all();

 private:
  std::string name_;
  int descriptor_;
};

// Writes to standard output.
void write(std::string_view bytes);

}  // namespace command
