// The captures of a wide spectrum: which is next, how far they are, and the way back.
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "seams/clock.h"

namespace kestrel {

// What is wanted, and how the sensor is set before.
struct WideWish {
  unsigned options = 0b1111;  // rate options to capture at, a bit each; at least one of 0 to 3
  int present = 0;            // the option that the sensor is set to
  bool changesMore = false;   // mode, range, window or averages as well
  int averages = 1;           // of each capture
  std::chrono::nanoseconds readOut = std::chrono::seconds(1);  // about; learned from the first
};

// What is to be done.
struct WideStep {
  enum class Do {
    Set,         // the sensor to `option`, and whatever else is wanted
    Capture,     // as Start does
    PutBack,     // all settings to what they were
    SeekSensor,  // look whether it is back
    Nothing,     // something is under way
    End,
  };
  Do what = Do::Nothing;
  int option = 0;
  bool operator==(const WideStep&) const = default;
};

enum class WideState { Capturing, PuttingBack, Lost, Ended };

struct WideProgress {
  WideState state = WideState::Capturing;
  std::vector<int> order{};           // of the captures
  std::vector<int> done{};            // options that are complete
  std::optional<int> option{};        // whose capture is under way or next
  double share = 0;                   // 0 to 1
  std::optional<double> remaining{};  // seconds to the end of the last capture
  bool ending = false;                // no more will begin
  std::string reason{};               // of an end before the last capture
  std::string notPutBack{};           // what the settings are not, and why; empty where all is well
  bool operator==(const WideProgress&) const = default;
};

// The order with the fewest changes of the sensor's settings, which is the shortest: it begins with
// the option that the sensor is set to, where nothing else changes. Else the quickest capture comes
// first, so that a fault shows after a second and not after minutes.
[[nodiscard]] std::vector<int> WideOrder(const WideWish& wish);

// How long a capture takes at least: the samples of its transforms.
[[nodiscard]] std::chrono::nanoseconds SamplesOf(int option, int averages);

// Decides, told what happened, what is to be done next. Whatever ends it, the settings are put back
// when the sensor is there: a lost one is sought until it is back or somebody gives up. It does
// nothing itself.
class WideRun {
 public:
  WideRun(Clock& clock, const WideWish& wish);

  [[nodiscard]] WideStep Next() const;
  [[nodiscard]] WideProgress Progress();
  [[nodiscard]] bool Ended() const { return Next().what == WideStep::Do::End; }

  // What Next() asked for has begun; then one of the others.
  void Began();
  void SetDone();
  void CaptureDone();
  void CaptureStopped();  // before it was complete
  void PutBackDone();
  void Failed(const std::string& why);         // though the sensor is there: the end
  void PutBackFailed(const std::string& why);  // or a lost sensor is sought no longer
  void SensorLost(const std::string& why);     // at any time: the end of the captures
  void SensorBack();
  void StillLost() { began_.reset(); }  // sought in vain
  // The user wants no more; whoever carries out ends what is under way.
  void UserStopped();

 private:
  using Time = std::chrono::nanoseconds;

  [[nodiscard]] std::optional<int> Pending() const;
  [[nodiscard]] Time Expected(int option) const;
  [[nodiscard]] Time Elapsed();
  [[nodiscard]] WideState StateNow() const;

  Clock& clock_;
  WideWish wish_;
  std::vector<int> order_;
  std::size_t done_ = 0;
  std::optional<int> setTo_;   // none: more than the option has to be changed
  Time beside_;                // what a capture takes beside its samples
  std::optional<Time> began_;  // what is under way
  bool isCapture_ = false;     // it is one
  bool ending_ = false;
  bool dirty_ = false;  // the sensor's settings may be others than before
  bool lost_ = false;
  bool gaveUp_ = false;  // what is dirty stays so
  std::string reason_;
  std::string notPutBack_;
};

}  // namespace kestrel
