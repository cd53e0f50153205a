// Asking for the list of fonts before it is needed.
// SPDX-License-Identifier: MIT
#include "start/fonts_ahead.h"

#ifndef _WIN32
#include <fontconfig/fontconfig.h>
#endif

namespace kestrel {

FontsAhead::FontsAhead() {
#ifndef _WIN32
  thread_ = std::thread([] { FcInit(); });
#endif
}

void FontsAhead::Wait() {
  if (thread_.joinable()) thread_.join();
}

}  // namespace kestrel
