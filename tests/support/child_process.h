// A program that a test runs beside itself, ended with the test.
// SPDX-License-Identifier: MIT
#pragma once

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace kestrel {

// Its outputs go into a file.
class ChildProcess {
 public:
  ChildProcess(std::vector<std::string> words, const std::filesystem::path& output) {
    std::vector<char*> pointers;
    for (std::string& word : words) pointers.push_back(word.data());
    pointers.push_back(nullptr);
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_addopen(&files, 0, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&files, 1, output.c_str(), O_WRONLY | O_CREAT | O_APPEND,
                                     0600);
    posix_spawn_file_actions_adddup2(&files, 1, 2);
    posix_spawn_file_actions_addclosefrom_np(&files, 3);
    const int fault =
        posix_spawnp(&process_, pointers[0], &files, nullptr, pointers.data(), environ);
    posix_spawn_file_actions_destroy(&files);
    if (fault != 0) throw std::runtime_error("cannot start " + words[0]);
  }
  ~ChildProcess() { End(SIGKILL); }
  ChildProcess(ChildProcess&& other) noexcept : process_(std::exchange(other.process_, -1)) {}
  ChildProcess& operator=(ChildProcess&& other) noexcept {
    std::swap(process_, other.process_);
    return *this;
  }
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  void Signal(int number) const { kill(process_, number); }
  [[nodiscard]] bool IsRunning() {
    if (process_ < 0) return false;
    if (waitpid(process_, nullptr, WNOHANG) == 0) return true;
    process_ = -1;
    return false;
  }
  // With a signal; returns when it is gone.
  void End(int number) {
    if (process_ < 0) return;
    kill(process_, number);
    kill(process_, SIGCONT);
    waitpid(process_, nullptr, 0);
    process_ = -1;
  }
  [[nodiscard]] pid_t Id() const { return process_; }

 private:
  pid_t process_ = -1;
};

}  // namespace kestrel
