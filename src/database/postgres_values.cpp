// The server's types, and numbers in network order.
// SPDX-License-Identifier: MIT
#include "database/postgres_values.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

namespace kestrel::database {
namespace {

// Of the server's catalogue of types.
constexpr Oid kBool = 16;
constexpr Oid kBytea = 17;
constexpr Oid kChar = 18;
constexpr Oid kName = 19;
constexpr Oid kInt8 = 20;
constexpr Oid kInt2 = 21;
constexpr Oid kInt4 = 23;
constexpr Oid kText = 25;
constexpr Oid kFloat4 = 700;
constexpr Oid kFloat8 = 701;
constexpr Oid kVarchar = 1043;

template <typename Number>
Number Swapped(Number number) {
  auto bytes = std::bit_cast<std::array<std::uint8_t, sizeof(Number)>>(number);
  std::reverse(bytes.begin(), bytes.end());
  return std::bit_cast<Number>(bytes);
}

template <typename Number>
Number Read(const char* bytes) {
  Number number{};
  std::memcpy(&number, bytes, sizeof number);
  return Swapped(number);
}

}  // namespace

PackedValues::PackedValues(const Values& values) : words_(values.size()) {
  for (std::size_t i = 0; i < values.size(); ++i) Add(i, values[i]);
}

void PackedValues::Add(std::size_t index, const Value& value) {
  if (const auto* whole = std::get_if<std::int64_t>(&value)) {
    words_[index] = Swapped(std::bit_cast<std::uint64_t>(*whole));
    Put(kInt8, &words_[index], sizeof(std::uint64_t));
  } else if (const auto* real = std::get_if<double>(&value)) {
    words_[index] = Swapped(std::bit_cast<std::uint64_t>(*real));
    Put(kFloat8, &words_[index], sizeof(std::uint64_t));
  } else if (const auto* text = std::get_if<std::string>(&value)) {
    Put(kText, text->data(), text->size());
  } else if (const auto* bytes = std::get_if<Bytes>(&value)) {
    Put(kBytea, bytes->empty() ? static_cast<const void*>("") : bytes->data(), bytes->size());
  } else {
    Put(0, nullptr, 0);
  }
}

void PackedValues::Put(Oid type, const void* bytes, std::size_t size) {
  types.push_back(type);
  data.push_back(static_cast<const char*>(bytes));
  sizes.push_back(static_cast<int>(size));
  binary.push_back(1);
}

Value UnpackedCell(const PGresult& outcome, int column) {
  if (PQgetisnull(&outcome, 0, column) != 0) return {};
  const char* bytes = PQgetvalue(&outcome, 0, column);
  const int size = PQgetlength(&outcome, 0, column);
  switch (PQftype(&outcome, column)) {
    case kBool:
      return std::int64_t{*bytes};
    case kInt2:
      return std::int64_t{Read<std::int16_t>(bytes)};
    case kInt4:
      return std::int64_t{Read<std::int32_t>(bytes)};
    case kInt8:
      return Read<std::int64_t>(bytes);
    case kFloat4:
      return double{Read<float>(bytes)};
    case kFloat8:
      return Read<double>(bytes);
    case kBytea:
      return Bytes(bytes, bytes + size);
    case kChar:
    case kName:
    case kText:
    case kVarchar:
      return std::string(bytes, bytes + size);
    default:
      throw DatabaseError(
          Fault::Other,
          "a column of type " + std::to_string(PQftype(&outcome, column)) + " is not understood");
  }
}

}  // namespace kestrel::database
