#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <cstddef>
#include <ctime>
#include <string>
#include <string_view>

#include "VnZEL10cmn/types/Date.h"

namespace test {

/// Whether something that happened after the object was made carries the present local time.
class Moment {
 public:
  Moment() : before_(Clock()) {}

  /// "dd.mm.yyyy hh:mm:ss" with other separators where given.
  bool Matches(std::string_view stamp, const char* pattern = "%d.%m.%Y %H:%M:%S") const {
    for (std::time_t moment = before_; moment <= Clock(); ++moment) {
      char text[32];
      const std::size_t length = std::strftime(text, sizeof text, pattern, std::localtime(&moment));
      if (std::string_view(text, length) == stamp) {
        return true;
      }
    }
    return false;
  }

  bool Matches(VnZEL10cmn::Date date) const {
    for (std::time_t moment = before_; moment <= Clock(); ++moment) {
      const std::tm local = *std::localtime(&moment);
      const VnZEL10cmn::Date expected = VnZEL10cmn::Date::FromCivil(
          local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec);
      if (date == expected) {
        return true;
      }
    }
    return false;
  }

 private:
  /// std::time may lag behind this clock by a tick and so show the second before.
  static std::time_t Clock() {
    return std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
  }

  std::time_t before_;
};

}  // namespace test
