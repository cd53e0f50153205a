// A deed whose messages are kept for whoever caused it.
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "app/handler_edge.h"
#include "app/messages_aside.h"

namespace kestrel {

// Returns what the deed told. The user's own handlers, which run inside, tell the user what they
// have to tell.
[[nodiscard]] inline std::vector<std::string> Quietly(MessagesAside& messages,
                                                      const HandlerEdge& edge,
                                                      const std::function<void()>& deed) {
  const int depth = edge.Depth() + 1;
  const MessagesAside::Aside aside(messages, [&edge, depth] { return edge.Depth() <= depth; });
  deed();
  return aside.Texts();
}

}  // namespace kestrel
