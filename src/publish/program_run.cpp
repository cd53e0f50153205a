// Started with pipes, watched through a descriptor of the process, ended with its group.
// SPDX-License-Identifier: MIT
#include "publish/program_run.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <utility>

namespace kestrel::publish {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

// From the polite signal to the other one.
constexpr milliseconds kGrace{2000};

class Descriptor {
 public:
  explicit Descriptor(int number = -1) : number_(number) {}
  ~Descriptor() { Close(); }
  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(number_, other.number_);
    return *this;
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  void Close() {
    if (number_ >= 0) close(std::exchange(number_, -1));
  }
  [[nodiscard]] int Number() const { return number_; }

 private:
  int number_;
};

struct Pipe {
  Pipe() {
    std::array<int, 2> ends{-1, -1};
    if (pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) == 0) {
      out = Descriptor(ends[0]);
      in = Descriptor(ends[1]);
    }
  }
  Descriptor out;
  Descriptor in;
};

std::vector<char*> Pointers(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  pointers.reserve(texts.size() + 1);
  for (std::string& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

std::vector<std::string> EnvironmentWith(const std::map<std::string, std::string>& variables) {
  std::vector<std::string> all;
  for (char** next = environ; *next != nullptr; ++next) {
    const std::string entry = *next;
    if (!variables.contains(entry.substr(0, entry.find('=')))) all.push_back(entry);
  }
  for (const auto& [name, value] : variables) {
    if (!value.empty()) all.emplace_back(name).append("=").append(value);
  }
  return all;
}

// What the new process has: its three standard files, a group of its own, signals as usual.
class SpawnSettings {
 public:
  SpawnSettings(const Pipe& input, const Pipe& output) {
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_adddup2(&files, input.out.Number(), STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&files, output.in.Number(), STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&files, output.in.Number(), STDERR_FILENO);
    posix_spawn_file_actions_addclosefrom_np(&files, STDERR_FILENO + 1);
    posix_spawnattr_init(&attributes);
    sigset_t none;
    sigset_t all;
    sigemptyset(&none);
    sigfillset(&all);
    posix_spawnattr_setsigmask(&attributes, &none);
    posix_spawnattr_setsigdefault(&attributes, &all);
    posix_spawnattr_setpgroup(&attributes, 0);
    posix_spawnattr_setflags(
        &attributes, POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
  }
  ~SpawnSettings() {
    posix_spawn_file_actions_destroy(&files);
    posix_spawnattr_destroy(&attributes);
  }
  SpawnSettings(const SpawnSettings&) = delete;
  SpawnSettings& operator=(const SpawnSettings&) = delete;

  posix_spawn_file_actions_t files{};
  posix_spawnattr_t attributes{};
};

// The child reads and writes as programs usually do.
void LetBlock(const Descriptor& descriptor) {
  fcntl(descriptor.Number(), F_SETFL, fcntl(descriptor.Number(), F_GETFL) & ~O_NONBLOCK);
}

// A program that is at work.
class Run {
 public:
  Run(const ProgramChoice& choice, int stop) : choice_(choice), stop_(stop) {}

  ProgramEnd ToTheEnd() {
    const int fault = Start();
    if (fault != 0) return {.kind = ProgramEnd::Kind::NotStarted, .number = fault};
    const auto reason = Watch(steady_clock::now() + choice_.limit, true);
    if (reason != ProgramEnd::Kind::Exited) {
      kill(-process_, SIGTERM);
      Watch(steady_clock::now() + kGrace, false);
      kill(-process_, SIGKILL);
    }
    Collect(reason);
    return std::move(end_);
  }

 private:
  int Start() {
    const Pipe input;
    Pipe output;
    if (input.in.Number() < 0 || output.in.Number() < 0) return errno;
    const ssize_t written = write(input.in.Number(), choice_.input.data(), choice_.input.size());
    if (written < 0) return errno;
    LetBlock(input.out);
    LetBlock(output.in);
    std::vector<std::string> words = choice_.words;
    std::vector<std::string> environment = EnvironmentWith(choice_.variables);
    const SpawnSettings settings(input, output);
    const int fault =
        posix_spawnp(&process_, words.at(0).c_str(), &settings.files, &settings.attributes,
                     Pointers(words).data(), Pointers(environment).data());
    if (fault != 0) return fault;
    handle_ = Descriptor(static_cast<int>(syscall(SYS_pidfd_open, process_, 0)));
    if (handle_.Number() < 0) return Forsake(errno);
    output_ = std::move(output.out);
    return 0;
  }

  // Its end could not be seen: it has to be begun anew.
  int Forsake(int fault) const {
    kill(-process_, SIGKILL);
    waitpid(process_, nullptr, 0);
    return fault;
  }

  // Until it has exited, the time is over, or it is to be stopped.
  ProgramEnd::Kind Watch(steady_clock::time_point until, bool mayStop) {
    while (true) {
      const auto left = std::chrono::ceil<milliseconds>(until - steady_clock::now());
      if (left.count() <= 0) return ProgramEnd::Kind::TooLong;
      std::array<pollfd, 3> waits{{{handle_.Number(), POLLIN, 0},
                                   {output_.Number(), POLLIN, 0},
                                   {mayStop ? stop_ : -1, POLLIN, 0}}};
      poll(waits.data(), waits.size(), static_cast<int>(left.count()));
      if (waits[1].revents != 0) ReadOutput();
      if (waits[0].revents != 0) return ProgramEnd::Kind::Exited;
      if (waits[2].revents != 0) return ProgramEnd::Kind::Stopped;
    }
  }

  void ReadOutput() {
    std::array<char, 4096> part{};
    const ssize_t count = read(output_.Number(), part.data(), part.size());
    if (count == 0) output_.Close();  // poll leaves it out from now on
    if (count <= 0) return;
    const std::size_t room = choice_.mostOutput - end_.output.size();
    const std::size_t taken = std::min(room, static_cast<std::size_t>(count));
    end_.output.append(part.data(), taken);
    end_.isCut = end_.isCut || taken < static_cast<std::size_t>(count);
  }

  // What it wrote last is still in the pipe; what it left behind may write for ever.
  void Collect(ProgramEnd::Kind reason) {
    int status = 0;
    waitpid(process_, &status, 0);
    for (int i = 0; i < 16 && output_.Number() >= 0; ++i) {
      pollfd wait{output_.Number(), POLLIN, 0};
      if (poll(&wait, 1, 0) <= 0) break;
      ReadOutput();
    }
    end_.kind = reason;
    if (reason != ProgramEnd::Kind::Exited) return;
    end_.kind = WIFSIGNALED(status) ? ProgramEnd::Kind::Killed : ProgramEnd::Kind::Exited;
    end_.number = WIFSIGNALED(status) ? WTERMSIG(status) : WEXITSTATUS(status);
  }

  const ProgramChoice& choice_;
  const int stop_;
  pid_t process_ = -1;
  Descriptor handle_;
  Descriptor output_;
  ProgramEnd end_;
};

}  // namespace

ProgramEnd RunProgram(const ProgramChoice& choice, int stop) {
  return Run(choice, stop).ToTheEnd();
}

bool MayStartLater(const ProgramEnd& end) {
  constexpr std::array<int, 4> kNoRoom{EMFILE, ENFILE, ENOMEM, EAGAIN};
  return end.kind == ProgramEnd::Kind::NotStarted &&
         std::ranges::find(kNoRoom, end.number) != kNoRoom.end();
}

std::string TextOf(const ProgramEnd& end) {
  switch (end.kind) {
    case ProgramEnd::Kind::NotStarted:
      return std::string("cannot be started: ") + std::strerror(end.number);
    case ProgramEnd::Kind::TooLong:
      return "took too long and was ended";
    case ProgramEnd::Kind::Stopped:
      return "was ended with the program";
    case ProgramEnd::Kind::Killed:
      return "was ended by signal " + std::to_string(end.number);
    case ProgramEnd::Kind::Exited:
      break;
  }
  return "ended with status " + std::to_string(end.number);
}

}  // namespace kestrel::publish
