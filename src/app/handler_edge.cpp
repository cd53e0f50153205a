// Running a handler: refused, run, its fault shown, followed up.
// SPDX-License-Identifier: MIT
#include "app/handler_edge.h"

#include "numeric/runtime_error.h"

namespace kestrel {
namespace {

class Counted {
 public:
  explicit Counted(int& count) : count_(count) { ++count_; }
  ~Counted() { --count_; }
  Counted(const Counted&) = delete;
  Counted& operator=(const Counted&) = delete;

 private:
  int& count_;
};

}  // namespace

void HandlerEdge::Run(const char* name, const std::function<void()>& handler) {
  if (occupied_ > 0 || surroundings_.busy()) {
    surroundings_.refused();
    return;
  }
  const Counted running(running_);
  try {
    handler();
  } catch (const RuntimeError& error) {
    messages_.Show(std::string(name) + "\n" + error.what());
  }
  surroundings_.after();
}

bool HandlerEdge::Resting() const {
  return running_ == 0 && occupied_ == 0 && !surroundings_.busy();
}

void HandlerEdge::RunIdle(const char* name, const std::function<void()>& handler) {
  Run(name, [&] {
    if (surroundings_.idle()) handler();
  });
}

}  // namespace kestrel
