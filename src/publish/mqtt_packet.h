// What a broker's bytes are, as far as it matters before anybody reads them.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace kestrel::publish {

// The size of the first message, its head included; none while too little of it has come. A size
// that takes more than four bytes counts as the largest that there is.
[[nodiscard]] std::optional<std::size_t> SizeOfFirst(std::string_view bytes);

// Whether the additions to one whole message of MQTT 5 are of kinds that exist.
[[nodiscard]] bool HasKnownProperties(std::string_view message);

}  // namespace kestrel::publish
