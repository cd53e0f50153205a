// Reading all of a set-up, and restoring what differs.
// SPDX-License-Identifier: MIT
#include "setup/sensor_setup.h"

#include <algorithm>

#include "regmap/command_words.h"
#include "regmap/register_table.h"
#include "setup/sensor_words.h"

namespace kestrel::setup {
namespace {

constexpr int kBandCount = kSampleRateOptions * kAlarmBands;
constexpr float kFlashUpdateMs = 250;
constexpr std::uint16_t kFlashUpdateFailed = 1U << 2U;  // of STATUS

template <typename Deed>
void ForEachBand(Deed deed) {
  for (int option = 0; option < kSampleRateOptions; ++option) {
    for (int band = 1; band <= kAlarmBands; ++band) deed(option, band);
  }
}

// Between two steps: whether to go on, while others may run.
class Steps {
 public:
  Steps(const SensorAccess& sensor, const Follow& follow, std::string activity, int total)
      : sensor_(sensor), follow_(follow), activity_(std::move(activity)), total_(total) {}

  void Next() {
    const bool isWanted = !follow_ || follow_(activity_, done_++, total_);
    sensor_.loop.Yield();
    if (!isWanted) throw Stopped{Stopped::Why::Cancelled, "Ended before it was complete."};
  }

 private:
  const SensorAccess& sensor_;
  const Follow& follow_;
  std::string activity_;
  int total_;
  int done_ = 0;
};

Setup ReadAll(const SensorAccess& sensor, const Follow& follow) {
  SensorWords words(sensor);
  Steps steps(sensor, follow, "Reading", kBandCount);
  Setup setup;
  setup.product = words.Read(row::PROD_ID);
  setup.revision = static_cast<std::uint16_t>(words.Read(row::REV) & 0xFFU);
  setup.registers = words.Registers();
  const BandWindow window(words);
  ForEachBand([&](int option, int band) {
    steps.Next();
    setup.Band(option, band) = words.Band(option, band);
  });
  return setup;
}

// How many names from `first` on are bands of one option that follow one another.
std::size_t RunOf(const std::vector<std::string>& names, std::size_t first) {
  std::size_t longest = 1;
  ForEachBand([&](int option, int band) {
    if (names[first] != BandName(option, band)) return;
    while (first + longest < names.size() &&
           names[first + longest] == BandName(option, band + static_cast<int>(longest))) {
      ++longest;
    }
  });
  return longest;
}

// "REC_CTRL; option 0, band 1 to band 6".
std::string Joined(const std::vector<std::string>& names) {
  std::string text;
  for (std::size_t first = 0; first < names.size();) {
    const std::size_t count = RunOf(names, first);
    text += (text.empty() ? "" : "; ") + names[first];
    const std::string& last = names[first + count - 1];
    if (count > 1) text += " to " + last.substr(last.find("band"));
    first += count;
  }
  return text;
}

}  // namespace

std::variant<Setup, Stopped> ReadSetup(const SensorAccess& sensor, const Follow& follow) {
  try {
    return ReadAll(sensor, follow);
  } catch (const Stopped& stopped) {
    return stopped;
  }
}

namespace {

// One restoring: what is to be done, and what has been.
class Restoring {
 public:
  Restoring(const SensorAccess& sensor, const Setup& saved, const RestoreChoice& choice,
            const Follow& follow)
      : sensor_(sensor), wanted_(saved), choice_(choice), follow_(follow), words_(sensor) {}

  RestoreReport Run() {
    try {
      now_ = ReadAll(sensor_, follow_);
      Plan();
      WriteBands();
      WriteRegisters();
      if (choice_.saveInFlash) SaveInFlash();
    } catch (const Stopped& stopped) {
      report_.stopped = stopped;
    }
    if (!isPlanned_) ListAllAsOpen();
    return report_;
  }

 private:
  struct BandPlace {
    int option;
    int band;
  };

  void Plan() {
    if (wanted_.product != now_.product) {
      throw Stopped{Stopped::Why::OtherProduct,
                    "The set-up is of product " + std::to_string(wanted_.product) +
                        ", the sensor is product " + std::to_string(now_.product) +
                        ": nothing was written."};
    }
    if (choice_.keepNulls) {
      for (const Register null : {Register::XNull, Register::YNull, Register::ZNull}) {
        wanted_.registers.at(Index(null)) = now_.Of(null);
      }
    }
    for (std::size_t index = 0; index < kRegisters; ++index) {
      const bool isEqual = wanted_.registers.at(index) == now_.registers.at(index);
      (isEqual ? report_.equal : report_.open).emplace_back(kRegisterNames.at(index));
      if (!isEqual) registers_.push_back(index);
    }
    ForEachBand([&](int option, int band) {
      const bool isEqual = wanted_.Band(option, band) == now_.Band(option, band);
      (isEqual ? report_.equal : report_.open).push_back(BandName(option, band));
      if (!isEqual) bands_.push_back({option, band});
    });
    isPlanned_ = true;
  }

  void WriteBands() {
    if (bands_.empty()) return;
    Steps steps(sensor_, follow_, "Writing", static_cast<int>(bands_.size()));
    const BandWindow window(words_);
    for (const auto& [option, band] : bands_) {
      steps.Next();
      const std::string name = BandName(option, band);
      Move(name, report_.open, report_.unsure);
      words_.SaveBand(option, band, wanted_.Band(option, band));
      now_.Band(option, band) = words_.Band(option, band);
      Take(name, DifferenceOfBand(wanted_, now_, option, band));
    }
  }

  // Read back when all are written: one may change another.
  void WriteRegisters() {
    if (registers_.empty()) return;
    for (const std::size_t index : registers_) {
      Move(kRegisterNames.at(index), report_.open, report_.unsure);
      words_.Write(RowOf(index), wanted_.registers.at(index));
    }
    now_.registers = words_.Registers();
    for (std::size_t index = 0; index < kRegisters; ++index) {
      const auto different = DifferenceOfRegister(wanted_, now_, index);
      const bool wasWritten = std::ranges::count(registers_, index) > 0;
      if (!wasWritten && !different.empty()) {
        Move(kRegisterNames.at(index), report_.equal, report_.unsure);
      }
      if (wasWritten || !different.empty()) Take(kRegisterNames.at(index), different);
    }
  }

  void SaveInFlash() {
    words_.Write(row::COMMAND, static_cast<std::uint16_t>(CommandWord(CommandBit::FlashUpdate)));
    words_.Wait(float{kFlashUpdateMs});
    const bool hasFailed = (words_.Read(row::STATUS) & kFlashUpdateFailed) != 0;
    report_.isInFlash = !hasFailed;
    if (hasFailed) report_.flashTrouble = "The sensor reports that its flash was not updated.";
  }

  // What was read back of something that was written.
  void Take(const std::string& name, const std::vector<Difference>& different) {
    std::erase(report_.unsure, name);
    if (different.empty()) report_.written.push_back(name);
    report_.notHeld.insert(report_.notHeld.end(), different.begin(), different.end());
  }

  static void Move(const std::string& name, std::vector<std::string>& from,
                   std::vector<std::string>& to) {
    std::erase(from, name);
    to.push_back(name);
  }

  void ListAllAsOpen() {
    report_.open.assign(kRegisterNames.begin(), kRegisterNames.end());
    ForEachBand([&](int option, int band) { report_.open.push_back(BandName(option, band)); });
  }

  SensorAccess sensor_;
  Setup wanted_;
  RestoreChoice choice_;
  const Follow& follow_;
  SensorWords words_;
  Setup now_;
  bool isPlanned_ = false;
  std::vector<std::size_t> registers_;  // to be written
  std::vector<BandPlace> bands_;
  RestoreReport report_;
};

}  // namespace

RestoreReport Restore(const SensorAccess& sensor, const Setup& saved, const RestoreChoice& choice,
                      const Follow& follow) {
  return Restoring(sensor, saved, choice, follow).Run();
}

bool RestoreReport::IsWhole() const {
  return !stopped && notHeld.empty() && flashTrouble.empty();
}

std::string RestoreReport::Text() const {
  std::string text;
  const auto line = [&text](const std::string& more) { text += (text.empty() ? "" : "\n") + more; };
  if (stopped) line(stopped->text);
  const bool isUntouched = written.empty() && unsure.empty() && notHeld.empty();
  if (isUntouched && !stopped) line("The sensor held all of it already: nothing was written.");
  if (isUntouched && stopped) line("Nothing was written.");
  if (!written.empty()) line("Written and read back: " + Joined(written) + ".");
  if (!written.empty() && !equal.empty()) line("All else was equal already.");
  for (const Difference& difference : notHeld) {
    line("Not held: " + difference.place + " is " + difference.now + ", not " + difference.saved +
         ".");
  }
  if (!unsure.empty()) line("Written, but not read back: " + Joined(unsure) + ".");
  if (!isUntouched && !open.empty()) line("Not restored: " + Joined(open) + ".");
  if (!flashTrouble.empty()) line(flashTrouble);
  if (stopped && stopped->why != Stopped::Why::OtherProduct) {
    line("Restoring once more goes on with what still differs.");
  }
  if (isInFlash) line("The registers are saved in the sensor's flash.");
  if (!stopped && !isInFlash && !isUntouched) {
    line("Registers last until the sensor loses power; bands are in its flash.");
  }
  return text;
}

}  // namespace kestrel::setup
