// Rows whose two sides run in processes of their own, started for the row, which take their text
// and then numbers of calls from a socket.
#include "wanted.h"

#include <sched.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace bench {

namespace {

constexpr const char* reference_side = "reference";

void stay_on(int processor) {
  cpu_set_t allowed;
  CPU_ZERO(&allowed);
  CPU_SET(processor, &allowed);
  require(sched_setaffinity(0, sizeof allowed, &allowed) == 0, "a processor");
}

// False at the end of what is sent.
bool receive(int socket, void* data, size_t size) {
  return recv(socket, data, size, MSG_WAITALL) == static_cast<ssize_t>(size);
}

void transmit(int socket, const void* data, size_t size) {
  require(send(socket, data, size, MSG_NOSIGNAL) == static_cast<ssize_t>(size), "a fresh process");
}

class Process {
 public:
  Process(int processor, const std::string& row, const std::string& conversion, const char* side,
          const std::string& text) {
    int ends[2];
    require(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) == 0, "socket");
    child_ = fork();
    require(child_ >= 0, "fork");
    if (child_ == 0) {
      stay_on(processor);
      dup2(ends[1], STDIN_FILENO);
      execl("/proc/self/exe", "qorvii18n_bench", serve_option, row.c_str(), conversion.c_str(),
            side, nullptr);
      _exit(1);
    }
    close(ends[1]);
    socket_ = ends[0];
    const size_t size = text.size();
    transmit(socket_, &size, sizeof size);
    transmit(socket_, text.data(), size);
  }
  Process(const Process&) = delete;
  Process& operator=(const Process&) = delete;
  ~Process() {
    close(socket_);  // which ends the child
    waitpid(child_, nullptr, 0);
  }

  Slice run(size_t calls) const {
    Slice slice;
    transmit(socket_, &calls, sizeof calls);
    require(receive(socket_, &slice, sizeof slice), "a fresh process");
    return slice;
  }

 private:
  pid_t child_;
  int socket_;
};

}  // namespace

Comparison compare_in_fresh_processes(const Row& row, const Conversion& conversion,
                                      const std::string& text) {
  const std::string number = std::to_string(&row - fresh_rows.data());
  const std::string which = std::to_string(&conversion - row.conversions.data());
  const int processor = sched_getcpu();  // one for both: another can be slower for a while
  const Process library(processor, number, which, "library", text);
  const Process reference(processor, number, which, reference_side, text);
  return compare([&](size_t calls) { return library.run(calls); },
                 [&](size_t calls) { return reference.run(calls); });
}

void serve(const char* row_number, const char* conversion_number, std::string_view side) {
  const Row& row = fresh_rows[std::stoul(row_number)];
  const Conversion& conversion = row.conversions[std::stoul(conversion_number)];
  const auto make = side == reference_side ? row.work.reference : row.work.library;
  const Function function = make(conversion.from, conversion.to);
  size_t size = 0;
  require(receive(STDIN_FILENO, &size, sizeof size), "text");
  std::string text(size, '\0');
  require(receive(STDIN_FILENO, text.data(), size), "text");
  for (size_t calls; receive(STDIN_FILENO, &calls, sizeof calls);) {
    const Slice slice = run_calls(function, text, calls);
    transmit(STDIN_FILENO, &slice, sizeof slice);
  }
}

}  // namespace bench
