#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "VnZEL10cmn/platform/internal/RegionalSettings.h"
#include "VnZEL10cmn/types/Currency.h"
#include "VnZEL10cmn/types/Date.h"

namespace VnZEL10cmn::internal {

using platform::CurrentRegionalSettings;
using platform::RegionalSettings;

/// How a number is shown: at least one digit before the decimal separator, decimals between the two limits,
/// rounded half away from zero, in groups of three or not.
struct NumberPattern {
  int minDecimals;
  int maxDecimals;
  bool grouped;
};

inline constexpr NumberPattern kWhole{0, 0, false};             ///< "#0"
inline constexpr NumberPattern kOneDecimal{1, 1, false};        ///< "#0.0"
inline constexpr NumberPattern kTwoDecimals{2, 2, false};       ///< "#0.00"
inline constexpr NumberPattern kAmount{2, 2, true};             ///< "#,##0.00"
inline constexpr NumberPattern kGroupedWhole{0, 0, true};       ///< "#,##0"
inline constexpr NumberPattern kGroupedOneDecimal{1, 1, true};  ///< "#,##0.0"
inline constexpr NumberPattern kQuantity{0, 4, false};  ///< "#0.####" without a bare separator at the end

/// A number with these characters.
std::string FormatNumber(Currency value, NumberPattern pattern, std::string_view decimalSeparator,
                         std::string_view thousandsSeparator = {});

/// A number with the host's characters.
std::string FormatNumber(Currency value, NumberPattern pattern, const RegionalSettings& settings);

/// The number of a quantity as the device takes it, with a point before decimals other than zeros, in `buffer`.
std::string_view FormatQuantity(Currency value, std::array<char, 24>& buffer);

/// The hundredfold without its sign, rounded half away from zero to a whole number: an amount in cents.
std::uint64_t Hundredfold(Currency value);

/// "31.12.2026 08:05:09" with the host's characters.
std::string FormatDateTime(Date value, const RegionalSettings& settings);

/// The same without seconds.
std::string FormatDateMinutes(Date value, const RegionalSettings& settings);

/// "2026-12-31T08:05:09", whatever the host's characters.
std::string FormatIso(Date value);

}  // namespace VnZEL10cmn::internal
