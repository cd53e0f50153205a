// Carries out what the run decides, and says what became of it.
// SPDX-License-Identifier: MIT
#include "station/wide_capture.h"

#include <array>
#include <utility>

#include "acquisition/readings.h"
#include "numeric/number_format.h"
#include "regmap/register_table.h"

namespace kestrel {
namespace {

using std::chrono::nanoseconds;

constexpr std::int16_t kManualSpectrum = 0;
constexpr std::chrono::milliseconds kSeekEvery{500};
constexpr nanoseconds kGlance{1};  // an interrupt is looked for

template <typename Number>
bool Changes(const std::optional<Number>& wanted, const std::optional<Number>& now) {
  return wanted && wanted != now;
}

bool Changes(const RecordSetup& wanted, const RecordSetup& now) {
  return now.mode != kManualSpectrum || Changes(wanted.range, now.range) ||
         Changes(wanted.window, now.window) || Changes(wanted.averages, now.averages);
}

// "sample-rate option 0, 0 to 70 g, Hanning, 8 averages".
std::string TextOf(const RecordSetup& setup) {
  constexpr std::array<const char*, 4> kRanges{"0 to 1 g", "0 to 5 g", "0 to 20 g", "0 to 70 g"};
  constexpr std::array<const char*, 4> kWindows{"rectangular", "Hanning", "flat top", "no window"};
  constexpr std::array<const char*, 4> kModes{"manual", "timer", "time record", "reserved"};
  const auto word = [](const auto& words, std::int16_t code) {
    return std::string(words.at(static_cast<std::size_t>(code) & 3U));
  };
  return "sample-rate option " + std::to_string(*setup.option) + ", " +
         word(kRanges, *setup.range) + ", " + word(kWindows, *setup.window) + ", " +
         std::to_string(*setup.averages) + " averages, mode " + word(kModes, *setup.mode);
}

}  // namespace

WideCapture::WideCapture(Station& station, WideCaptureWish wish)
    : station_(station), wish_(std::move(wish)), return_(station.Road()) {}

WideCaptured WideCapture::Run() {
  captured_.failure = ReadBefore();
  if (captured_.failure) return captured_;
  return_.NoteRoad();
  run_.emplace(station_.Road().seams.clock,
               WideWish{.options = wish_.options,
                        .present = *before_.option,
                        .changesMore = Changes(wish_.setup, before_),
                        .averages = wish_.setup.averages.value_or(*before_.averages)});
  const auto before = station_.TellProgressTo([this](const Progress&) { Tell(); });
  while (!run_->Ended()) {
    const WideStep step = run_->Next();
    run_->Began();
    Tell();
    Take(step);
  }
  station_.TellProgressTo(before);
  captured_.end = run_->Progress();
  return captured_;
}

void WideCapture::Tell() {
  told_(run_->Progress());
}

// Whatever was worth a message belongs to the failure.
Failure WideCapture::Lost() {
  std::string text;
  for (const std::string& note : station_.TakeNotes()) text += (text.empty() ? "" : "\n") + note;
  return {FailureKind::NoSensor, text.empty() ? "The sensor cannot be reached." : text};
}

std::optional<WideCapture::Words> WideCapture::ReadWords() {
  RegisterAccess& registers = station_.Road().registers;
  const auto recCtrl = ReadWord(registers, row::REC_CTRL);
  const auto fftAvg = recCtrl ? ReadWord(registers, row::FFT_AVG) : std::nullopt;
  if (!fftAvg) return std::nullopt;
  return Words{*recCtrl, *fftAvg};
}

// Twice: what is put back has to be right.
std::optional<Failure> WideCapture::ReadBefore() {
  const auto setup = station_.Records().Configure({});
  if (!setup) return setup.Why();
  before_ = *setup;
  const auto words = ReadWords();
  const auto again = words ? ReadWords() : std::nullopt;
  if (!again) return Lost();
  wordsBefore_ = *words;
  if (*words == *again) return std::nullopt;
  return Failure{FailureKind::Refused,
                 "The sensor's settings read differently twice, so they could not be put back "
                 "afterwards. See to the cable and try again."};
}

void WideCapture::Take(const WideStep& step) {
  switch (step.what) {
    case WideStep::Do::Set:
      return Set(step.option);
    case WideStep::Do::Capture:
      return Capture(step.option);
    case WideStep::Do::PutBack:
      return PutBack();
    default:
      return Seek();
  }
}

void WideCapture::Fail(const Failure& failure) {
  if (!captured_.failure) captured_.failure = failure;
  if (failure.kind == FailureKind::NoSensor) {
    run_->SensorLost(failure.text);
  } else {
    run_->Failed(failure.text);
  }
}

void WideCapture::Set(int option) {
  RecordSetup change = wish_.setup;
  change.mode = kManualSpectrum;
  change.option = static_cast<std::int16_t>(option);
  const auto setup = station_.Records().Configure(change);
  if (!setup) return Fail(setup.Why());
  if (Changes(change, *setup) || setup->option != change.option) {
    return Fail({FailureKind::Refused, "The sensor did not take the settings for option " +
                                           std::to_string(option) + ": it has " + TextOf(*setup) +
                                           "."});
  }
  run_->SetDone();
  if (!station_.Pause(kGlance)) run_->UserStopped();
}

void WideCapture::Capture(int option) {
  const auto taken = station_.Records().Capture();
  if (!taken) return Fail(taken.Why());
  const Record& record = taken->record;
  if (taken->interrupted && !captured_.failure) {
    captured_.failure = Failure{FailureKind::Interrupted, "Stopped."};
  }
  if (record.origin.stopped) return run_->CaptureStopped();
  if (record.settings.option != option) {
    return Fail({FailureKind::Refused,
                 "The record says sample-rate option " + std::to_string(record.settings.option) +
                     ", though the sensor was set to " + std::to_string(option) + "."});
  }
  captured_.records.push_back(record);
  taken_(record);
  run_->CaptureDone();
  if (taken->interrupted) run_->UserStopped();
}

void WideCapture::PutBack() {
  RegisterAccess& registers = station_.Road().registers;
  const bool written = registers.Write(row::REC_CTRL, wordsBefore_.recCtrl) &&
                       registers.Write(row::FFT_AVG, wordsBefore_.fftAvg);
  const auto words = written ? ReadWords() : std::nullopt;
  const auto setup = words ? station_.Records().Configure({}) : Result<RecordSetup>(Lost());
  if (!setup) return Fail(setup.Why());
  if (*words == wordsBefore_) return run_->PutBackDone();
  run_->PutBackFailed("The sensor did not take its settings back: it has " + TextOf(*setup) +
                      "; before it had " + TextOf(before_) + ". Set them by hand.");
}

// What is said while nobody answers was said when it was lost.
void WideCapture::Seek() {
  const nanoseconds now = station_.Road().seams.clock.Monotonic();
  if (!soughtUntil_) soughtUntil_ = now + wish_.patience;
  const bool goesOn = now < *soughtUntil_ && station_.Pause(kSeekEvery);
  const bool isBack = goesOn && return_.Look() && return_.SameRoad();
  (void)station_.TakeNotes();
  if (isBack) return run_->SensorBack();
  if (goesOn) return run_->StillLost();
  run_->PutBackFailed(
      "The sensor did not come back, so its settings could not be put back. Before "
      "it had " +
      TextOf(before_) + ". Set them by hand when it is there.");
}

}  // namespace kestrel
