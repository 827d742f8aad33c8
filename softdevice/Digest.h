#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "softdevice/Records.h"

/// The digests by which a device file shows that it holds what was recorded.
namespace softdevice {

/// A SHA-256 digest.
using Digest = std::array<std::uint8_t, 32>;

/// Numbers, texts and bytes one behind the other, of which a digest is made. No two sequences of them make the same
/// message, as each part has its length.
class DigestMessage {
 public:
  /// 8 bytes, big-endian, two's complement.
  DigestMessage& Add(std::int64_t number);
  /// The length as a number, then the bytes.
  DigestMessage& Add(ByteView bytes);
  DigestMessage& Add(std::string_view text);

  /// Of all that was added so far. Throws `std::runtime_error` when it can't be made.
  [[nodiscard]] Digest Sha256() const;

 private:
  Bytes bytes_;
};

}  // namespace softdevice
