#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "VnZEL10cmn/types/ByteArray.h"

namespace VnZEL10cmn::internal {

/// A text that stays as it is while an array is written: a copy of it if it stands in the array.
class KeptText {
 public:
  KeptText(std::string_view text, const ByteArray& array)
      : copy_(StandsIn(text, array) ? text : std::string_view()),
        text_(StandsIn(text, array) ? copy_ : text) {}
  KeptText(const KeptText&) = delete;
  KeptText& operator=(const KeptText&) = delete;

  operator std::string_view() const noexcept { return text_; }  // NOLINT(google-explicit-constructor)

 private:
  static bool StandsIn(std::string_view text, const ByteArray& array) noexcept {
    const auto* const first = reinterpret_cast<const char*>(array.data());
    const std::less<const char*> before;  // an order of all addresses
    return !text.empty() && before(first, text.data() + text.size()) &&
           before(text.data(), first + array.size());
  }

  std::string copy_;
  std::string_view text_;
};

}  // namespace VnZEL10cmn::internal
