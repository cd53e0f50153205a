/* Stands for win95io.dll: records what is put out; an input reads its address's low byte.
   SPDX-License-Identifier: MIT */
#include "recorder.h"

static struct PortCall calls[kMostCalls];
static int count;

static void Record(short port, short value) {
  if (count < kMostCalls) calls[count++] = (struct PortCall){port, value};
}

__declspec(dllexport) void __stdcall vbOut(short port, short value) { Record(port, value); }

__declspec(dllexport) short __stdcall vbInp(short port) {
  Record(port, -1);
  return (short)(port & 0xFF);
}

__declspec(dllexport) int Calls(const struct PortCall** first) {
  *first = calls;
  return count;
}
