// A locale with a decimal comma, made for the test.
// SPDX-License-Identifier: MIT
#pragma once

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>

#include "support/environment.h"
#include "support/temporary_folder.h"

#if defined(__SANITIZE_ADDRESS__)
// The C library keeps what it makes of LOCPATH each time a locale is looked up.
extern "C" __attribute__((used)) inline const char* __lsan_default_suppressions() {
  return "leak:argz_add_sep";  // "__argz_add_sep" where the library's symbols are installed
}
#endif

namespace kestrel {

// Builds a locale "xx_XX" with a comma as decimal mark, dates 31.12.2026 and times 23.59.58, and
// points LOCPATH at it. Test systems seldom have any but the English one installed.
class CommaLocale {
 public:
  static constexpr const char* kName = "xx_XX";

  CommaLocale() {
    folder_.Write("charmap", Charmap());
    folder_.Write("source", kSource);
    const std::string folder = folder_.path().string();
    const std::string command = "localedef -c -f '" + folder + "/charmap' -i '" + folder +
                                "/source' '" + folder + "/" + kName + "' >'" + folder +
                                "/log' 2>&1";
    // It ends with a warning's code, since the locale lacks categories that no test needs.
    static_cast<void>(std::system(command.c_str()));
    environment_.Set("LOCPATH", folder);
    environment_.Set("LANGUAGE", std::nullopt);
  }

  // Whether the system could build it.
  [[nodiscard]] bool installed() const {
    const locale_t made = newlocale(LC_NUMERIC_MASK | LC_TIME_MASK, kName, locale_t{});
    if (made == locale_t{}) return false;
    freelocale(made);
    return true;
  }

  [[nodiscard]] Environment& environment() { return environment_; }

 private:
  static std::string Charmap() {
    std::string text =
        "<code_set_name> ANSI_X3.4-1968\n<comment_char> %\n<escape_char> /\nCHARMAP\n";
    for (unsigned code = 0; code < 128; ++code) {
      char line[40];
      std::snprintf(line, sizeof line, "<U%04X> /x%02x C%u\n", code, code, code);
      text += line;
    }
    return text + "END CHARMAP\n";
  }

  static constexpr const char* kSource = R"(comment_char %
escape_char /
LC_NUMERIC
decimal_point ","
thousands_sep "."
grouping 3;3
END LC_NUMERIC
LC_TIME
abday "a";"b";"c";"d";"e";"f";"g"
day "a";"b";"c";"d";"e";"f";"g"
abmon "a";"b";"c";"d";"e";"f";"g";"h";"i";"j";"k";"l"
mon "a";"b";"c";"d";"e";"f";"g";"h";"i";"j";"k";"l"
am_pm "";""
d_t_fmt "%d.%m.%Y %H.%M.%S"
d_fmt "%d.%m.%Y"
t_fmt "%H.%M.%S"
t_fmt_ampm ""
END LC_TIME
)";

  TemporaryFolder folder_;
  Environment environment_;
};

}  // namespace kestrel
