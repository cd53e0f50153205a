// Files, servers and the user's data folder.
// SPDX-License-Identifier: MIT
#include "archive/place.h"

#include <algorithm>

#include "database/postgres_database.h"

namespace kestrel::archive {
namespace {

namespace fs = std::filesystem;
using database::Access;
using database::DatabaseError;
using database::Fault;

#ifdef _WIN32
constexpr const char* kDataVariable = "LOCALAPPDATA";
#else
constexpr const char* kDataVariable = "XDG_DATA_HOME";
#endif

fs::path PathOf(const std::string& utf8) {
  return {std::u8string(utf8.begin(), utf8.end())};
}

std::string TextOf(const fs::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

std::unique_ptr<database::Database> Connect(const Place& place, Access access) {
  if (!place.IsServer()) {
    std::error_code ignored;  // opening the file tells the reason
    const fs::path folder = PathOf(place.text).parent_path();
    if (access == Access::ReadWrite && !folder.empty()) fs::create_directories(folder, ignored);
    return std::make_unique<database::SqliteDatabase>(
        database::SqliteChoice{.file = place.text, .access = access});
  }
  return std::make_unique<database::PostgresDatabase>(place.text);
}

const char* CureOf(Fault fault, bool isServer) {
  switch (fault) {
    case Fault::Busy:
      return "Another program is writing to it; try again when it is done.";
    case Fault::Full:
      return "Make room on its disk.";
    case Fault::Corrupt:
      return "Keep a copy of it, then save what can be read with \"kestrel-cli archive rescue\".";
    case Fault::Forbidden:
      return isServer ? "Ask whoever runs the server for the right to use it."
                      : "Choose a place that you may write in.";
    case Fault::Lost:
      return isServer ? "See whether the server runs and can be reached." : "See to its disk.";
    default:
      return "Choose another place.";
  }
}

template <typename Make>
Archive Opened(const Place& place, Access access, const Make& make) {
  try {
    return make(Connect(place, access));
  } catch (const DatabaseError& error) {
    throw DatabaseError(error.fault, "The archive " + Shown(place) +
                                         " cannot be opened: " + error.what() + ". " +
                                         CureOf(error.fault, place.IsServer()));
  }
}

// Throws where there is no such file: whoever only reads makes none.
void ExpectThere(const Place& place) {
  std::error_code ignored;  // opening the file tells the reason
  if (place.IsServer() || fs::exists(PathOf(place), ignored) || ignored) return;
  throw DatabaseError(Fault::Other, "There is no archive " + Shown(place) +
                                        " yet. It is made with the first record that is kept "
                                        "there, where its folder can be written.");
}

}  // namespace

bool Place::IsServer() const {
  return text.starts_with("postgresql://") || text.starts_with("postgres://");
}

std::string Shown(const Place& place) {
  if (!place.IsServer()) return place.text;
  const std::size_t user = place.text.find("//") + 2;
  const std::size_t end = std::min(place.text.find('/', user), place.text.size());
  const std::size_t at = place.text.rfind('@', end);
  const std::size_t colon = place.text.find(':', user);
  std::string shown = place.text.substr(0, place.text.find('?'));
  if (at != std::string::npos && at > user && colon < at) {
    shown.replace(colon, at - colon, ":***");
  }
  return shown;
}

Place UsualPlace(const std::function<std::string(const char* name)>& environment) {
  std::string data = environment(kDataVariable);
  if (data.empty() || !PathOf(data).is_absolute()) {
    const std::string home = environment("HOME");
    if (home.empty()) return {};
    data = TextOf(PathOf(home) / ".local" / "share");
  }
  return {TextOf(PathOf(data) / "kestrel" / "archive.db")};
}

Place WaitingPlace(const Place& usual, const std::string& name) {
  return {TextOf(PathOf(usual).parent_path() / ("waiting-" + name + ".db"))};
}

fs::path PathOf(const Place& place) {
  return PathOf(place.text);
}

std::string Trouble(const Place& place, const DatabaseError& error) {
  return "The archive " + Shown(place) + " cannot be used: " + error.what() + ". " +
         CureOf(error.fault, place.IsServer());
}

Archive Open(const Place& place, Access access) {
  if (access == Access::ReadOnly) ExpectThere(place);
  return Opened(place, access, [&](auto connection) {
    return access == Access::ReadOnly ? Archive::ForReading(std::move(connection))
                                      : Archive(std::move(connection));
  });
}

Archive OpenForRescue(const Place& place) {
  ExpectThere(place);
  return Opened(place, Access::ReadOnly,
                [](auto connection) { return Archive::ForRescue(std::move(connection)); });
}

}  // namespace kestrel::archive
