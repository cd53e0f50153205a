// A time record as WAV, written by libsndfile into memory.
// SPDX-License-Identifier: MIT
#include <cmath>
#include <vector>

#include "exchange/wav/text.h"
#include "exchange/writers.h"
#include "record/frequency.h"
#ifdef KESTREL_SNDFILE
#include "exchange/wav/memory.h"
#endif

namespace kestrel::exchange {

#ifdef KESTREL_SNDFILE

namespace {

// X, Y and Z of the first sample, of the second, ...
std::vector<float> Interleaved(const Record& record) {
  const double scale = WavScale(record);
  std::vector<float> samples;
  for (std::size_t i = 0; i < record.Points(); ++i) {
    for (const Axis axis : kAxes) {
      samples.push_back(static_cast<float>(record.Values(axis)[i] / scale));
    }
  }
  return samples;
}

Fault NotWritten(const std::string& why) {
  return {.what = "libsndfile could not make the WAV file: " + why};
}

}  // namespace

bool CanWriteWav() {
  return true;
}

Exchanged<std::string> WavFile(const NotedRecord& noted) {
  SF_INFO info{};
  info.samplerate = static_cast<int>(std::lround(SampleFrequency(noted.record.settings.option)));
  info.channels = static_cast<int>(kAxes.size());
  info.format = SF_FORMAT_WAV | SF_FORMAT_FLOAT;
  WavMemory memory;
  SoundFile file = OpenWav(memory, SFM_WRITE, info);
  if (!file) return NotWritten(sf_strerror(nullptr));
  // The chunk of peaks holds the time of writing.
  sf_command(file.get(), SFC_SET_ADD_PEAK_CHUNK, nullptr, SF_FALSE);
  const std::vector<float> samples = Interleaved(noted.record);
  const auto frames = static_cast<sf_count_t>(noted.record.Points());
  const bool written = sf_set_string(file.get(), SF_STR_COMMENT, WavText(noted).c_str()) == 0 &&
                       sf_writef_float(file.get(), samples.data(), frames) == frames;
  if (sf_close(file.release()) != 0 || !written) {
    return NotWritten("too little memory");  // GCOVR_EXCL_LINE: memory takes all that there is
  }
  return std::move(memory.bytes);
}

#else

bool CanWriteWav() {
  return false;
}

Exchanged<std::string> WavFile(const NotedRecord& /*noted*/) {
  return Fault{.what =
                   "This program was built without libsndfile, which writes WAV files. uff58, "
                   "uff58b, mat, csv and json can be written."};
}

#endif

}  // namespace kestrel::exchange
