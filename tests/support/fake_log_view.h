// The data log's controls without a window.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "logging/data_log.h"
#include "support/journal.h"

namespace kestrel {

class FakeLogView : public DataLogView {
 public:
  explicit FakeLogView(Journal& journal) : journal_(journal) {}

  void SetFileCountColour(double colour) override {
    colours.push_back(colour);
    journal_.Note("log colour");
  }
  void SetFileCount(const std::string& text) override {
    fileCount = text;
    journal_.Note("log count " + text);
  }

  std::vector<double> colours;
  std::string fileCount;

 private:
  Journal& journal_;
};

}  // namespace kestrel
