/* Stands for inpoutx64.dll: notes its calls; its driver is there unless the environment denies it.
   SPDX-License-Identifier: MIT */
#include <stdlib.h>

#include "recorder.h"

static struct PortCall calls[kMostCalls];
static int count;

static void Record(short port, short value) {
  if (count < kMostCalls) calls[count++] = (struct PortCall){port, value};
}

__declspec(dllexport) void __stdcall Out32(short port, short value) { Record(port, value); }

__declspec(dllexport) short __stdcall Inp32(short port) {
  Record(port, -1);
  return (short)(port & 0xFF);
}

__declspec(dllexport) int __stdcall IsInpOutDriverOpen(void) {
  return getenv("KESTREL_TEST_NO_DRIVER") == NULL;
}

__declspec(dllexport) int Calls(const struct PortCall** first) {
  *first = calls;
  return count;
}
