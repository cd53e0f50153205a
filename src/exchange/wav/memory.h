// A WAV file in memory, as libsndfile reads and writes it.
// SPDX-License-Identifier: MIT
#pragma once

#include <sndfile.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

namespace kestrel::exchange {

// The bytes of a file and the place at which it is read or written.
struct WavMemory {
  std::string bytes{};
  std::size_t place = 0;
};

struct CloseSound {
  void operator()(SNDFILE* file) const { sf_close(file); }
};
using SoundFile = std::unique_ptr<SNDFILE, CloseSound>;

inline sf_count_t WavLength(void* memory) {
  return static_cast<sf_count_t>(static_cast<WavMemory*>(memory)->bytes.size());
}

inline sf_count_t WavSeek(sf_count_t offset, int whence, void* memory) {
  auto& file = *static_cast<WavMemory*>(memory);
  const auto size = static_cast<sf_count_t>(file.bytes.size());
  const sf_count_t start = whence == SEEK_SET   ? 0
                           : whence == SEEK_CUR ? static_cast<sf_count_t>(file.place)
                                                : size;
  if (offset < -start || offset > size - start) return -1;
  file.place = static_cast<std::size_t>(start + offset);
  return start + offset;
}

inline sf_count_t WavRead(void* to, sf_count_t count, void* memory) {
  auto& file = *static_cast<WavMemory*>(memory);
  const std::size_t rest = file.bytes.size() - file.place;
  const std::size_t taken =
      std::min(rest, static_cast<std::size_t>(std::max<sf_count_t>(count, 0)));
  std::memcpy(to, file.bytes.data() + file.place, taken);
  file.place += taken;
  return static_cast<sf_count_t>(taken);
}

inline sf_count_t WavWrite(const void* from, sf_count_t count, void* memory) {
  auto& file = *static_cast<WavMemory*>(memory);
  const auto size = static_cast<std::size_t>(std::max<sf_count_t>(count, 0));
  if (file.bytes.size() < file.place + size) file.bytes.resize(file.place + size);
  std::memcpy(file.bytes.data() + file.place, from, size);
  file.place += size;
  return count;
}

inline sf_count_t WavTell(void* memory) {
  return static_cast<sf_count_t>(static_cast<WavMemory*>(memory)->place);
}

inline SoundFile OpenWav(WavMemory& memory, int mode, SF_INFO& info) {
  SF_VIRTUAL_IO io{WavLength, WavSeek, WavRead, WavWrite, WavTell};
  return SoundFile(sf_open_virtual(&io, mode, &info, &memory));
}

}  // namespace kestrel::exchange
