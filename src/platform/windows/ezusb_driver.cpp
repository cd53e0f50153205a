// Device calls with a time limit, cancelled when it is over.
// SPDX-License-Identifier: MIT
#include "platform/windows/ezusb_driver.h"

#include <windows.h>

// The system's headers make macros of these names.
#undef CreateFile

namespace kestrel {
namespace {

constexpr DWORD kNoticeableMs = 150;
constexpr std::uint64_t kShortestPlugMs = 1000;

HANDLE AsHandle(UsbDriver::Handle device) {
  return reinterpret_cast<HANDLE>(device);
}

// Set when a request has ended.
class Event {
 public:
  Event() : handle_(CreateEventA(nullptr, TRUE, FALSE, nullptr)) {}
  ~Event() { ::CloseHandle(handle_); }
  Event(const Event&) = delete;
  Event& operator=(const Event&) = delete;
  [[nodiscard]] HANDLE handle() const { return handle_; }

 private:
  HANDLE handle_;
};

}  // namespace

UsbDriver::Handle EzusbDriver::CreateFile(const std::string& path, std::uint32_t access,
                                          std::uint32_t share, std::uint32_t creation) {
  const std::uint64_t now = GetTickCount64();
  if (now - lastUseMs_ >= kShortestPlugMs) ++plugging_;
  lastUseMs_ = now;
  const HANDLE device =
      CreateFileA(path.c_str(), access, share, nullptr, creation, FILE_FLAG_OVERLAPPED, nullptr);
  lastError_ = device == INVALID_HANDLE_VALUE ? static_cast<std::int32_t>(GetLastError()) : 0;
  return device == INVALID_HANDLE_VALUE ? -1 : reinterpret_cast<Handle>(device);
}

bool EzusbDriver::DeviceIoControl(Handle device, std::uint32_t code,
                                  std::span<const std::uint8_t> input,
                                  std::span<std::uint8_t> output, std::uint32_t& returned) {
  const Event done;
  OVERLAPPED request{};
  request.hEvent = done.handle();
  DWORD moved = 0;
  BOOL good = ::DeviceIoControl(AsHandle(device), code, const_cast<std::uint8_t*>(input.data()),
                                static_cast<DWORD>(input.size()), output.data(),
                                static_cast<DWORD>(output.size()), &moved, &request);
  if (good == 0 && GetLastError() == ERROR_IO_PENDING) {
    if (!Wait(done.handle())) CancelIoEx(AsHandle(device), &request);
    good = GetOverlappedResult(AsHandle(device), &request, &moved, TRUE);
  }
  lastError_ = good != 0 ? 0 : static_cast<std::int32_t>(GetLastError());
  returned = good != 0 ? moved : 0;
  return good != 0;
}

bool EzusbDriver::Wait(void* ended) {
  const auto start = std::chrono::steady_clock::now();
  const auto limit = static_cast<DWORD>(budget_.Left(start).count());
  const DWORD quiet = limit < kNoticeableMs ? limit : kNoticeableMs;
  if (WaitForSingleObject(ended, quiet) == WAIT_OBJECT_0) return true;
  if (waiting_) waiting_(true);
  const bool inTime = WaitForSingleObject(ended, limit - quiet) == WAIT_OBJECT_0;
  if (waiting_) waiting_(false);
  if (!inTime) budget_.GivenUp(start, std::chrono::steady_clock::now());
  return inTime;
}

// The name leads somewhere while a board stands behind it.
bool EzusbDriver::Attached(const std::string& name) {
  char target[MAX_PATH];
  return QueryDosDeviceA(name.c_str(), target, sizeof target) != 0 ||
         GetLastError() == ERROR_INSUFFICIENT_BUFFER;
}

void EzusbDriver::CloseHandle(Handle device) {
  lastUseMs_ = GetTickCount64();
  ::CloseHandle(AsHandle(device));
}

}  // namespace kestrel
