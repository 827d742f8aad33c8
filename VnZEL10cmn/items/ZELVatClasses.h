#pragma once

#include <cstdint>

namespace VnZEL10cmn {

/// The VAT classes. Where six values per class are numbered from one, number N is class N - 1.
enum class ZELVatClasses : std::int32_t {
  Standard = 0,  ///< standard rate
  Reduced1 = 1,  ///< reduced rate
  Reduced2 = 2,  ///< second reduced rate
  NoVat = 3,     ///< no VAT
  Special1 = 4,  ///< special rate
  Special2 = 5,  ///< second special rate
};

}  // namespace VnZEL10cmn
