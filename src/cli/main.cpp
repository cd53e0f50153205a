// Entry point of the command-line program, which starts without a toolkit.
// SPDX-License-Identifier: MIT
#include "cli/entry.h"

int main(int argc, char** argv) {
  return kestrel::Enter(argc, argv, nullptr);
}
