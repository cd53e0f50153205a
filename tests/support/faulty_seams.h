// Seams that throw at one of their calls, whichever it is, and serve all others.
// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <utility>

#include "connection/core.h"

namespace kestrel {

// Counts the calls over all seams; the first is number 1.
class CallCount {
 public:
  // What happens instead of this call; 0 for none. Counts anew.
  void FaultAt(int number, std::function<void()> fault) {
    faultAt_ = number;
    fault_ = std::move(fault);
    calls_ = 0;
  }
  [[nodiscard]] bool Met() const { return faultAt_ > 0 && calls_ >= faultAt_; }
  // The seam that was called when the fault happened.
  [[nodiscard]] const std::string& Place() const { return place_; }

  void Note(const char* place) {
    if (++calls_ != faultAt_) return;
    place_ = place;
    fault_();
  }

 private:
  int calls_ = 0;
  int faultAt_ = 0;
  std::function<void()> fault_;
  std::string place_;
};

class FaultyClock : public Clock {
 public:
  FaultyClock(Clock& inner, CallCount& count) : inner_(inner), count_(count) {}
  double SecondsSinceMidnight() override {
    count_.Note("Clock::SecondsSinceMidnight");
    return inner_.SecondsSinceMidnight();
  }
  std::chrono::system_clock::time_point UtcNow() override {
    count_.Note("Clock::UtcNow");
    return inner_.UtcNow();
  }
  std::chrono::nanoseconds Monotonic() override {
    count_.Note("Clock::Monotonic");
    return inner_.Monotonic();
  }
  void WaitUntil(std::chrono::nanoseconds deadline) override {
    count_.Note("Clock::WaitUntil");
    inner_.WaitUntil(deadline);
  }
  void RunEmptyLoop(std::int32_t passes, std::int32_t iterations) override {
    count_.Note("Clock::RunEmptyLoop");
    inner_.RunEmptyLoop(passes, iterations);
  }

 private:
  Clock& inner_;
  CallCount& count_;
};

class FaultyLoop : public EventLoop {
 public:
  FaultyLoop(EventLoop& inner, CallCount& count) : inner_(inner), count_(count) {}
  // Called while something else ends.
  void StopTimer() override { inner_.StopTimer(); }
  void Yield() override {
    count_.Note("EventLoop::Yield");
    inner_.Yield();
  }
  void YieldUntilEvent() override {
    count_.Note("EventLoop::YieldUntilEvent");
    inner_.YieldUntilEvent();
  }
  void YieldToPaint() override {
    count_.Note("EventLoop::YieldToPaint");
    inner_.YieldToPaint();
  }
  void StartTimer(std::chrono::milliseconds interval, std::function<void()> tick) override {
    count_.Note("EventLoop::StartTimer");
    inner_.StartTimer(interval, std::move(tick));
  }

 private:
  EventLoop& inner_;
  CallCount& count_;
};

class FaultyPointer : public MousePointer {
 public:
  FaultyPointer(MousePointer& inner, CallCount& count) : inner_(inner), count_(count) {}
  // Called while something else ends.
  void ShowDefault() override { inner_.ShowDefault(); }
  void ShowHourglass() override {
    count_.Note("MousePointer::ShowHourglass");
    inner_.ShowHourglass();
  }

 private:
  MousePointer& inner_;
  CallCount& count_;
};

class FaultyMessages : public Messages {
 public:
  FaultyMessages(Messages& inner, CallCount& count) : inner_(inner), count_(count) {}
  using Messages::Show;
  void Show(const std::string& text, const std::string& title) override {
    count_.Note("Messages::Show");
    inner_.Show(text, title);
  }
  void ShowExplained(const std::string& text, const std::string& title,
                     const std::string& explanation) override {
    count_.Note("Messages::Show");
    inner_.ShowExplained(text, title, explanation);
  }

 private:
  Messages& inner_;
  CallCount& count_;
};

class FaultyFiles : public Files {
 public:
  FaultyFiles(Files& inner, CallCount& count) : inner_(inner), count_(count) {}
  std::filesystem::path ProgramFolder() override {
    count_.Note("Files::ProgramFolder");
    return inner_.ProgramFolder();
  }
  std::filesystem::path WorkingFolder() override {
    count_.Note("Files::WorkingFolder");
    return inner_.WorkingFolder();
  }
  std::filesystem::path DocumentsFolder() override {
    count_.Note("Files::DocumentsFolder");
    return inner_.DocumentsFolder();
  }
  bool CanWriteIn(const std::filesystem::path& folder) override {
    count_.Note("Files::CanWriteIn");
    return inner_.CanWriteIn(folder);
  }
  std::optional<std::string> Read(const std::filesystem::path& file, std::size_t limit) override {
    count_.Note("Files::Read");
    return inner_.Read(file, limit);
  }
  std::vector<std::string> List(const std::filesystem::path& folder) override {
    count_.Note("Files::List");
    return inner_.List(folder);
  }
  void ReplaceWhole(const std::filesystem::path& file, std::string_view content) override {
    count_.Note("Files::ReplaceWhole");
    inner_.ReplaceWhole(file, content);
  }
  void MakeFolder(const std::filesystem::path& folder) override {
    count_.Note("Files::MakeFolder");
    inner_.MakeFolder(folder);
  }
  void Remove(const std::filesystem::path& file) override {
    count_.Note("Files::Remove");
    inner_.Remove(file);
  }

 private:
  Files& inner_;
  CallCount& count_;
};

class FaultyLocale : public Locale {
 public:
  FaultyLocale(Locale& inner, CallCount& count) : inner_(inner), count_(count) {}
  char DecimalMark() override {
    count_.Note("Locale::DecimalMark");
    return inner_.DecimalMark();
  }
  std::string ShortDate() override {
    count_.Note("Locale::ShortDate");
    return inner_.ShortDate();
  }
  std::string Time() override {
    count_.Note("Locale::Time");
    return inner_.Time();
  }

 private:
  Locale& inner_;
  CallCount& count_;
};

class FaultyUsbDriver : public UsbDriver {
 public:
  FaultyUsbDriver(UsbDriver& inner, CallCount& count) : inner_(inner), count_(count) {}
  // Called while something else ends.
  void CloseHandle(Handle device) override { inner_.CloseHandle(device); }
  Handle CreateFile(const std::string& path, std::uint32_t access, std::uint32_t share,
                    std::uint32_t creation) override {
    count_.Note("UsbDriver::CreateFile");
    return inner_.CreateFile(path, access, share, creation);
  }
  bool DeviceIoControl(Handle device, std::uint32_t code, std::span<const std::uint8_t> input,
                       std::span<std::uint8_t> output, std::uint32_t& returned) override {
    count_.Note("UsbDriver::DeviceIoControl");
    return inner_.DeviceIoControl(device, code, input, output, returned);
  }
  bool Attached(const std::string& name) override {
    count_.Note("UsbDriver::Attached");
    return inner_.Attached(name);
  }
  std::uint32_t Plugging(Handle device) override {
    count_.Note("UsbDriver::Plugging");
    return inner_.Plugging(device);
  }
  std::int32_t LastError() override {
    count_.Note("UsbDriver::LastError");
    return inner_.LastError();
  }

 private:
  UsbDriver& inner_;
  CallCount& count_;
};

class FaultyPort : public PortIo {
 public:
  FaultyPort(PortIo& inner, CallCount& count) : inner_(inner), count_(count) {}
  void giveio() override {
    count_.Note("PortIo::giveio");
    inner_.giveio();
  }
  bool IsHeld(std::int16_t base) override {
    count_.Note("PortIo::IsHeld");
    return inner_.IsHeld(base);
  }
  void vbOut(std::int16_t port, std::int16_t value) override {
    count_.Note("PortIo::vbOut");
    inner_.vbOut(port, value);
  }
  std::int16_t vbInp(std::int16_t port) override {
    count_.Note("PortIo::vbInp");
    return inner_.vbInp(port);
  }

 private:
  PortIo& inner_;
  CallCount& count_;
};

class FaultyDriverService : public DriverService {
 public:
  FaultyDriverService(DriverService& inner, CallCount& count) : inner_(inner), count_(count) {}
  std::string ReadRegistryValue(const std::string& key, const std::string& name) override {
    count_.Note("DriverService::ReadRegistryValue");
    return inner_.ReadRegistryValue(key, name);
  }
  void WriteRegistryValue(const std::string& key, const std::string& name, std::int32_t type,
                          const std::string& value) override {
    count_.Note("DriverService::WriteRegistryValue");
    inner_.WriteRegistryValue(key, name, type, value);
  }
  std::string ProgramFolder() override {
    count_.Note("DriverService::ProgramFolder");
    return inner_.ProgramFolder();
  }
  void WriteBatchFile(const std::string& path, const std::string& content) override {
    count_.Note("DriverService::WriteBatchFile");
    inner_.WriteBatchFile(path, content);
  }
  std::int32_t RunAndWait(const std::string& commandLine) override {
    count_.Note("DriverService::RunAndWait");
    return inner_.RunAndWait(commandLine);
  }
  std::string Explanation() override {
    count_.Note("DriverService::Explanation");
    return inner_.Explanation();
  }

 private:
  DriverService& inner_;
  CallCount& count_;
};

// All of them over seams that work.
class FaultySeams {
 public:
  explicit FaultySeams(const Seams& inner)
      : clock_(inner.clock, count_),
        loop_(inner.loop, count_),
        pointer_(inner.pointer, count_),
        messages_(inner.messages, count_),
        files_(inner.files, count_),
        locale_(inner.locale, count_),
        usb_(inner.usb, count_),
        port_(inner.port, count_),
        service_(inner.driverService, count_) {}

  [[nodiscard]] CallCount& Count() { return count_; }
  [[nodiscard]] Seams All() {
    return {clock_, loop_, pointer_, messages_, files_, locale_, usb_, port_, service_};
  }

 private:
  CallCount count_;
  FaultyClock clock_;
  FaultyLoop loop_;
  FaultyPointer pointer_;
  FaultyMessages messages_;
  FaultyFiles files_;
  FaultyLocale locale_;
  FaultyUsbDriver usb_;
  FaultyPort port_;
  FaultyDriverService service_;
};

}  // namespace kestrel
