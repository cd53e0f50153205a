/* What the libraries that stand for the port drivers tell about the calls they got.
   SPDX-License-Identifier: MIT */
#pragma once

enum { kMostCalls = 256 };

struct PortCall {
  short port;  /* 0 for the grant of access */
  short value; /* put out, or -1 for an input */
};

/* Exported by each library: its calls in order. */
typedef int (*CallsFunction)(const struct PortCall** calls);
