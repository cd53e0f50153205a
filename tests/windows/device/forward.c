/* Sends a device control over a loopback connection and waits for its answer.
   SPDX-License-Identifier: MIT
   A file of its own: the socket headers do not go together with those of the driver. */
#include <winsock2.h>
#include <windows.h>

enum { kPort = 45678, kLost = -2 };

static SOCKET connection = INVALID_SOCKET;

static int Connect(void) {
  WSADATA data;
  struct sockaddr_in address;
  if (connection != INVALID_SOCKET) return 1;
  for (unsigned i = 0; i < sizeof address; ++i) ((char*)&address)[i] = 0;
  WSAStartup(0x202, &data);
  address.sin_family = AF_INET;
  address.sin_port = htons(kPort);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  connection = socket(AF_INET, SOCK_STREAM, 0);
  if (connect(connection, (struct sockaddr*)&address, sizeof address) == 0) return 1;
  closesocket(connection);
  connection = INVALID_SOCKET;
  return 0;
}

static int Lost(void) {
  closesocket(connection);
  connection = INVALID_SOCKET;
  return kLost;
}

/* Both buffers go out, since the second may hold data for the device; only the second comes back. */
static int ForwardOnce(unsigned code, const unsigned char* input, unsigned inputSize, unsigned char* output,
                       unsigned outputSize) {
  unsigned head[3] = {code, inputSize, outputSize};
  int moved = 0;
  if (!Connect()) return -1;
  send(connection, (char*)head, sizeof head, 0);
  if (inputSize) send(connection, (const char*)input, (int)inputSize, 0);
  if (outputSize) send(connection, (const char*)output, (int)outputSize, 0);
  if (recv(connection, (char*)&moved, sizeof moved, MSG_WAITALL) != sizeof moved) return Lost();
  if (moved > (int)outputSize) return Lost();
  if (moved > 0 && recv(connection, (char*)output, moved, MSG_WAITALL) != moved) return Lost();
  return moved;
}

/* A simulated adapter that has taken the place of another one is found at the second try. */
int Forward(unsigned code, const unsigned char* input, unsigned inputSize, unsigned char* output,
            unsigned outputSize) {
  int moved = ForwardOnce(code, input, inputSize, output, outputSize);
  if (moved == kLost) moved = ForwardOnce(code, input, inputSize, output, outputSize);
  return moved < 0 ? -1 : moved;
}
