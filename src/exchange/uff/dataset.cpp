// The eleven lines of a dataset 58 and its values, as numbers in columns or as bytes.
// SPDX-License-Identifier: MIT
#include "exchange/uff/dataset.h"

#include <bit>
#include <cmath>
#include <optional>

#include "exchange/texts.h"

namespace kestrel::exchange {
namespace {

// How the values of a dataset 58b are laid out.
struct Binary {
  bool highByteFirst = false;
  std::uint64_t bytes = 0;
};

// What is said of the values before they come.
struct Form {
  bool isDouble = false;
  std::uint64_t count = 0;
  std::size_t line = 0;  // that tells the count
};

// The line "    58b     1     2          11        4096 ...".
std::optional<Binary> ReadKind(const UffCursor& cursor, std::string_view kind) {
  UffColumns columns(cursor, kind);
  columns.Text(6);
  const std::string_view letter = columns.Text(1);
  if (letter.empty()) return std::nullopt;
  const std::int64_t order = columns.Whole(6, "the byte order");
  const std::int64_t format = columns.Whole(6, "the floating point format");
  const std::int64_t lines = columns.Whole(12, "the number of lines before the data");
  const std::int64_t bytes = columns.Whole(12, "the number of bytes of data");
  if (order != 1 && order != 2) {
    cursor.Stop("the byte order is " + std::to_string(order) + ", and only 1 and 2 are known");
  }
  if (format != 2) {
    cursor.Stop("the floating point format is " + std::to_string(format) +
                ", and only 2 (IEEE 754) can be imported");
  }
  if (lines != kUffHeaderLines) {
    cursor.Stop("there should be 11 lines before the data, not " + std::to_string(lines));
  }
  if (bytes < 0) cursor.Stop("the number of bytes of data is " + std::to_string(bytes));
  return Binary{order == 2, static_cast<std::uint64_t>(bytes)};
}

void ReadDof(UffCursor& cursor, UffFunction& function) {
  UffColumns columns(cursor, cursor.Line());
  function.type = columns.Whole(5, "the function type");
  columns.Whole(10, "the function's number");
  columns.Whole(5, "the sequence number");
  columns.Whole(10, "the load case");
  columns.Text(1);
  function.entity = AsUtf8(columns.Text(10));
  function.node = columns.Whole(10, "the response node");
  function.direction = columns.Whole(4, "the response direction");
}

Form ReadForm(UffCursor& cursor, UffFunction& function) {
  UffColumns columns(cursor, cursor.Line());
  const std::int64_t type = columns.Whole(10, "the data type");
  const std::int64_t count = columns.Whole(10, "the number of values");
  const std::int64_t spacing = columns.Whole(10, "the abscissa spacing");
  function.first = columns.Real(13, "the first abscissa");
  function.step = columns.Real(13, "the abscissa increment");
  if (type == 5 || type == 6) {
    cursor.Stop("the data type is " + std::to_string(type) +
                ", complex values, and only real ones (2 and 4) can be imported");
  }
  if (type != kUffRealSingle && type != kUffRealDouble) {
    cursor.Stop("the data type is " + std::to_string(type) + ", which is none (2 and 4 are)");
  }
  if (count < 1) cursor.Stop("the number of values is " + std::to_string(count));
  if (spacing != 1) {
    cursor.Stop("the abscissa spacing is " + std::to_string(spacing) +
                ", and only evenly spaced values (1) can be imported");
  }
  if (function.step <= 0) {
    cursor.Stop("the abscissa increment is " + ExactText(function.step) +
                ", and has to be more than 0");
  }
  return {type == kUffRealDouble, static_cast<std::uint64_t>(count), cursor.Number()};
}

UffAxis ReadAxis(UffCursor& cursor) {
  UffColumns columns(cursor, cursor.Line());
  UffAxis axis;
  axis.type = columns.Whole(10, "the type of an axis");
  columns.Whole(5, "the length exponent");
  columns.Whole(5, "the force exponent");
  columns.Whole(5, "the temperature exponent");
  columns.Text(1);
  axis.label = AsUtf8(columns.Text(20));
  columns.Text(1);
  axis.unit = AsUtf8(columns.Text(20));
  if (axis.label == "NONE") axis.label.clear();
  if (axis.unit == "NONE") axis.unit.clear();
  return axis;
}

// Before anything is laid aside for them.
void CheckRoom(const UffCursor& cursor, const Form& form, std::uint64_t each) {
  if (form.count <= cursor.Left() / each) return;
  StopAtLine(form.line, "there should be " + std::to_string(form.count) +
                            " values, and the rest of the file, " + std::to_string(cursor.Left()) +
                            " bytes, does not hold as many; it may have been cut off.");
}

void ReadColumns(UffCursor& cursor, const Form& form, std::vector<double>& values) {
  const std::size_t width = form.isDouble ? kUffDoubleColumns : kUffSingleColumns;
  const std::size_t across = form.isDouble ? kUffDoubleAcross : kUffSingleAcross;
  CheckRoom(cursor, form, width);
  values.reserve(form.count);
  while (values.size() < form.count) {
    UffColumns columns(cursor, cursor.Line());
    for (std::size_t i = 0; i < across && values.size() < form.count; ++i) {
      const std::string what = "value " + std::to_string(values.size() + 1);
      if (columns.AtEnd()) {
        cursor.Stop(what + " of " + std::to_string(form.count) + " is missing");
      }
      values.push_back(columns.Value(width, what.c_str()));
    }
    if (!columns.AtEnd()) cursor.Stop("there is more behind the values of this line");
  }
}

template <typename Word>
Word WordAt(std::string_view bytes, bool highByteFirst) {
  Word word = 0;
  for (std::size_t i = 0; i < sizeof word; ++i) {
    const char byte = bytes[highByteFirst ? i : sizeof word - 1 - i];
    word = static_cast<Word>(word << 8U | static_cast<unsigned char>(byte));
  }
  return word;
}

void ReadBytes(UffCursor& cursor, const Form& form, const Binary& binary,
               std::vector<double>& values) {
  const std::size_t each = form.isDouble ? sizeof(double) : sizeof(float);
  if (binary.bytes / each != form.count || binary.bytes % each != 0) {
    cursor.Stop("there should be " + std::to_string(form.count) + " values of " +
                std::to_string(each) + " bytes, and the dataset has " +
                std::to_string(binary.bytes) + " bytes of data");
  }
  CheckRoom(cursor, form, each);
  std::string_view bytes = cursor.Bytes(binary.bytes);
  values.reserve(form.count);
  for (; !bytes.empty(); bytes.remove_prefix(each)) {
    const double value =
        form.isDouble ? std::bit_cast<double>(WordAt<std::uint64_t>(bytes, binary.highByteFirst))
                      : static_cast<double>(std::bit_cast<float>(
                            WordAt<std::uint32_t>(bytes, binary.highByteFirst)));
    if (!std::isfinite(value)) {
      cursor.Stop("value " + std::to_string(values.size() + 1) + " is " + ExactText(value) +
                  ", which is not a number");
    }
    values.push_back(value);
  }
  if (!cursor.AtMark()) cursor.SkipLineEnd();
}

}  // namespace

UffFunction ReadUffFunction(UffCursor& cursor, std::string_view kind) {
  UffFunction function;
  const std::optional<Binary> binary = ReadKind(cursor, kind);
  for (std::string& line : function.id) line = OneLine(AsUtf8(cursor.Line()));
  ReadDof(cursor, function);
  const Form form = ReadForm(cursor, function);
  function.abscissa = ReadAxis(cursor);
  function.ordinate = ReadAxis(cursor);
  for (int unused = 0; unused < 2; ++unused) static_cast<void>(ReadAxis(cursor));
  if (binary) {
    ReadBytes(cursor, form, *binary, function.values);
  } else {
    ReadColumns(cursor, form, function.values);
  }
  return function;
}

}  // namespace kestrel::exchange
