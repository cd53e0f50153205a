// WAV files as time records: samples by libsndfile, their meaning by the text of our own files.
// SPDX-License-Identifier: MIT
#include <cmath>

#include "exchange/readers.h"
#include "exchange/texts.h"
#include "exchange/wav/layout.h"
#include "exchange/wav/text.h"
#ifdef KESTREL_SNDFILE
#include "exchange/wav/memory.h"
#endif

namespace kestrel::exchange {

#ifdef KESTREL_SNDFILE

namespace {

// Channel by channel.
std::vector<std::vector<double>> SamplesOf(SNDFILE* file, const SF_INFO& info,
                                           const WavLayout& layout) {
  std::vector<double> samples(layout.channels * layout.frames);
  const auto frames = static_cast<sf_count_t>(layout.frames);
  const bool fits = info.channels == static_cast<int>(layout.channels) && info.frames == frames;
  if (!fits || sf_readf_double(file, samples.data(), frames) != frames) {
    // The layout is stricter than the library, so that both count the same samples.
    throw ReadStop({.what = "libsndfile finds other samples in it."});  // GCOVR_EXCL_LINE
  }
  std::vector<std::vector<double>> channels(layout.channels);
  for (std::size_t i = 0; i < samples.size(); ++i) {
    if (!std::isfinite(samples[i])) {
      throw ReadStop({.what = "sample " + std::to_string(i / layout.channels + 1) + " of channel " +
                              std::to_string(i % layout.channels + 1) + " is " +
                              ExactText(samples[i]) + ", which is not a number."});
    }
    channels[i % layout.channels].push_back(samples[i]);
  }
  return channels;
}

void TakeOwnText(ImportedRecord& record, const WavTold& told) {
  record.gPerUnit = told.gPerUnit;
  record.step = 1 / told.rateHz;
  record.settings = told.settings;
  record.lsbWeight = told.lsbWeight;
  record.scaledRange = told.scaledRange;
  record.quantity = "Acceleration";
  record.unit = ExactText(told.gPerUnit) + " g";
  for (const Axis axis : kAxes) {
    ImportedTrace& trace = record.traces[Index(axis)];
    trace.axis = axis;
    trace.label = std::string(1, Letter(axis));
  }
}

}  // namespace

ImportedFile WavRead(std::string_view bytes) {
  const WavLayout layout = WavLayoutOf(bytes);
  WavMemory memory{.bytes = std::string(bytes)};
  SF_INFO info{};
  const SoundFile file = OpenWav(memory, SFM_READ, info);
  if (!file) {
    throw ReadStop({.what = std::string("libsndfile cannot read it: ") + sf_strerror(nullptr)});
  }
  ImportedRecord record{.kind = RecordKind::Time, .first = 0, .step = 1.0 / layout.rate};
  for (std::vector<double>& values : SamplesOf(file.get(), info, layout)) {
    record.traces.push_back({.label = "channel " + std::to_string(record.traces.size() + 1),
                             .values = std::move(values)});
  }
  const char* text = sf_get_string(file.get(), SF_STR_COMMENT);
  if (text != nullptr) record.note = CleanUtf8(AsUtf8(text));
  const auto told = WavToldBy(record.note);
  const bool isOurs = told && record.traces.size() == kAxes.size() &&
                      std::lround(told->rateHz) == static_cast<long>(layout.rate);
  if (isOurs) TakeOwnText(record, *told);
  ImportedFile imported{.records = {std::move(record)}};
  if (!isOurs) imported.notices.emplace_back("A WAV file tells neither unit nor scale nor range.");
  return imported;
}

#else

ImportedFile WavRead(std::string_view bytes) {
  static_cast<void>(WavLayoutOf(bytes));
  throw ReadStop({.what = "This program was built without libsndfile, which reads WAV files."});
}

#endif

}  // namespace kestrel::exchange
