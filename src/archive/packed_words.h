// A record's words as bytes, and back.
// SPDX-License-Identifier: MIT
#pragma once

#include "database/database.h"
#include "record/record.h"

namespace kestrel::archive {

// Two bytes a word, low byte first, X then Y then Z, the points of the record's kind. Throws
// RuntimeError where a word is none of 16 bits.
[[nodiscard]] database::Bytes PackedWords(const Record& record);

// Whether words were decoded as numbers with a sign.
[[nodiscard]] bool AreSigned(const Record& record);

// Puts the words back, and their values by the record's weight. Throws DatabaseError where the
// bytes are not those of its kind.
void UnpackWords(const database::Bytes& bytes, bool areSigned, Record& record);

}  // namespace kestrel::archive
