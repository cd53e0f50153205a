// A register window's controls without a window.
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "device/manual_register.h"

namespace kestrel {

// Keeps what a register window would show.
class FakeRegisterView : public ManualRegisterView {
 public:
  struct Value {
    std::int16_t row;
    std::int32_t value;
    float scaled;
    bool operator==(const Value&) const = default;
  };

  void ShowRegister(std::int16_t row) override {
    shownRow = row;
    value.reset();
  }
  void ShowValue(std::int16_t row) override { value = Value{row, RegValue, RegScaled}; }
  void ShowList(const RegisterListing& listing) override {
    list = listing.text;
    ++listsShown;
  }
  void SetListNote(const std::string& text) override { listNote = text; }
  void SetNote(const std::string& text) override { note = text; }

  std::optional<std::int16_t> shownRow;
  std::optional<Value> value;
  std::string list;
  int listsShown = 0;
  std::string listNote;
  std::string note;
};

}  // namespace kestrel
