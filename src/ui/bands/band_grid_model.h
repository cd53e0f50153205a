// The bands of one sample-rate option as a table of texts and marks.
// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractTableModel>
#include <QString>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "alarms/band_cells.h"
#include "alarms/band_state.h"

namespace kestrel {

// Frequency of a bin at a sample-rate option, to about a tenth of a bin: "1,957 Hz", "3.82 Hz".
[[nodiscard]] QString BinFrequencyText(int bin, int option);

// The six bands of one sample-rate option as a table of 6 rows and 8 columns.
class BandGridModel : public QAbstractTableModel {
 public:
  enum Role {
    NoteRole = Qt::UserRole,  // text beside the value: the frequency of a bin
    MarksRole,                // Mark values, or-ed
  };
  enum Mark {
    NotWritten = 1,  // the sensor is known to hold another value
    EmptyBand = 2,   // the band's edges are the wrong way round
    Doubtful = 4,    // alarm 1 above alarm 2
  };

  struct Host {
    // What the sensor is known to hold.
    SensorValues inSensor;
    // A text was typed into a cell.
    std::function<void(BandCell cell, const std::string& text)> enter;
    // Why a typed text would not be taken as it is; "" when it would.
    std::function<std::string(BandCell cell, const std::string& text)> check;
  };

  BandGridModel(const BandTable& table, Host host, QObject* parent);

  // Shows the bands of this option in this range, as they are now.
  void Show(int option, const BandScale& scale);
  [[nodiscard]] int Option() const { return option_; }
  [[nodiscard]] const BandScale& Scale() const { return scale_; }

  [[nodiscard]] static BandCell CellAt(const QModelIndex& index) {
    return {index.row() + 1, index.column() + 1};
  }
  [[nodiscard]] QString Check(const QModelIndex& index, const QString& text) const;

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                    int role) const override;
  [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role) override;

 private:
  [[nodiscard]] std::int32_t Value(BandCell cell) const;
  [[nodiscard]] QString Text(BandCell cell) const;
  [[nodiscard]] int Marks(BandCell cell) const;
  [[nodiscard]] QString Explanation(BandCell cell) const;
  [[nodiscard]] QString SensorText(BandCell cell) const;

  const BandTable& table_;
  Host host_;
  int option_ = 0;
  BandScale scale_;
};

}  // namespace kestrel
