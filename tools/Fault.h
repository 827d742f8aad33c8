#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace zel {

/// Where and why reading ended early.
struct Fault {
  std::string part{};                      ///< of an XML document, else empty
  std::optional<std::int64_t> position{};  ///< none where the reason says it
  std::string unit = "byte";               ///< what the position counts, from 0
  std::int32_t number = 0;                 ///< the library's error number
  std::string reason{};                    ///< one line
};

/// "transactionRequest, byte 15: reason".
std::string ToText(const Fault& fault);

}  // namespace zel
