/* Stands for giveio.dll: counts the grants.
   SPDX-License-Identifier: MIT */
#include "recorder.h"

static struct PortCall calls[kMostCalls];
static int count;

__declspec(dllexport) void __stdcall giveio(void) {
  if (count < kMostCalls) calls[count++] = (struct PortCall){0, 0};
}

__declspec(dllexport) int Calls(const struct PortCall** first) {
  *first = calls;
  return count;
}
