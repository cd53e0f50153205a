// Starts or stops a kernel driver: loader.exe start|stop PATH.
// SPDX-License-Identifier: MIT
// Starts or stops a kernel driver: loader.exe start|stop PATH.

#include <windows.h>

#include <cstdio>
#include <cstring>

int main(int argc, char** argv) {
  constexpr const char* kService = "KestrelTestDevice";
  if (argc != 3) return 2;
  const SC_HANDLE manager = OpenSCManagerA(nullptr, nullptr, SC_MANAGER_ALL_ACCESS);
  SC_HANDLE service = OpenServiceA(manager, kService, SERVICE_ALL_ACCESS);
  if (std::strcmp(argv[1], "stop") == 0) {
    SERVICE_STATUS status{};
    ControlService(service, SERVICE_CONTROL_STOP, &status);
    return DeleteService(service) != 0 ? 0 : 1;
  }
  if (service == nullptr) {
    service = CreateServiceA(manager, kService, kService, SERVICE_ALL_ACCESS, SERVICE_KERNEL_DRIVER,
                             SERVICE_DEMAND_START, SERVICE_ERROR_NORMAL, argv[2], nullptr, nullptr,
                             nullptr, nullptr, nullptr);
  }
  if (StartServiceA(service, 0, nullptr) != 0) return 0;
  const DWORD error = GetLastError();
  if (error == ERROR_SERVICE_ALREADY_RUNNING) return 0;
  std::printf("the driver did not start: error %lu\n", error);
  return 1;
}
