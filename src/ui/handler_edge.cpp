// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#include "ui/handler_edge.h"

#include "numeric/runtime_error.h"

namespace kestrel {

void HandlerEdge::Run(const char* name, const std::function<void()>& handler) {
  if (occupied_ > 0 || surroundings_.busy()) {
    surroundings_.refused();
    return;
  }
  try {
    handler();
  } catch (const RuntimeError& error) {
    messages_.Show(std::string(name) + "\n" + error.what());
  }
  surroundings_.after();
}

void HandlerEdge::RunIdle(const char* name, const std::function<void()>& handler) {
  Run(name, [&] {
    if (surroundings_.idle()) handler();
  });
}

}  // namespace kestrel
