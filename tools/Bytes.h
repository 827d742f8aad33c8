#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "VnZEL10cmn/types/ByteArray.h"
#include "tools/Fault.h"

/// Bytes that can be large, read a piece at a time.
namespace zel {

/// Bytes that are read from anywhere.
class ByteSource {
 public:
  ByteSource() = default;
  virtual ~ByteSource() = default;
  ByteSource(const ByteSource&) = delete;
  ByteSource& operator=(const ByteSource&) = delete;

  [[nodiscard]] virtual std::int32_t Size() const noexcept = 0;

  /// Copies the bytes from `position` on, which must be there.
  virtual void Read(std::int32_t position, std::span<std::uint8_t> out) = 0;
};

/// Bytes that stand in memory, which has to stay.
class MemoryBytes final : public ByteSource {
 public:
  explicit MemoryBytes(std::span<const std::uint8_t> bytes) noexcept : bytes_(bytes) {}
  explicit MemoryBytes(const VnZEL10cmn::ByteArray& bytes) noexcept : bytes_(bytes.data(), bytes.size()) {}

  [[nodiscard]] std::int32_t Size() const noexcept override {
    return static_cast<std::int32_t>(bytes_.size());
  }
  void Read(std::int32_t position, std::span<std::uint8_t> out) override;

 private:
  std::span<const std::uint8_t> bytes_;
};

/// How bytes are written down as text.
enum class Encoding : std::uint8_t { Base64, Hexadecimal };

/// Bytes that are written down as a text, which has to stay. They are decoded each time they are read, so that nothing
/// but the text takes memory. What the library's decoders give and refuse is what this gives and refuses.
class EncodedBytes final : public ByteSource {
 public:
  EncodedBytes(std::string_view text, Encoding encoding);

  /// What is wrong with the text, if anything; its position is the first character that is no digit. The bytes are
  /// then those of the digits before it.
  [[nodiscard]] const std::optional<Fault>& TextFault() const noexcept { return fault_; }

  [[nodiscard]] std::int32_t Size() const noexcept override { return size_; }
  void Read(std::int32_t position, std::span<std::uint8_t> out) override;

 private:
  /// Where in the text a byte begins.
  struct Mark {
    std::int32_t position = 0;
    std::size_t offset = 0;
  };

  /// What the digits of one group give: up to three bytes.
  struct Group {
    std::array<std::uint8_t, 3> bytes{};
    std::uint8_t count = 0;
  };

  struct Survey;

  /// Decodes the group at `offset` and moves it behind; none at the end.
  Group NextGroup(std::size_t& offset) const;
  void SetMarks();

  std::string_view text_;
  std::size_t end_ = 0;  ///< of the part of the text that is decoded
  Encoding encoding_;
  std::int32_t decoded_ = 0;  ///< bytes that the groups give
  std::int32_t size_ = 0;     ///< the same, and the zeros behind them
  std::vector<Mark> marks_;
  Mark cursor_;  ///< behind what was read last
  std::optional<Fault> fault_;
};

/// An array's bytes as others take them.
inline std::span<const std::uint8_t> View(const VnZEL10cmn::ByteArray& bytes) {
  return {bytes.data(), bytes.size()};
}

/// A text's bytes.
inline std::span<const std::uint8_t> BytesOf(std::string_view text) {
  return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

}  // namespace zel
