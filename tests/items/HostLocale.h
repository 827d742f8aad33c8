#pragma once

#include <ctime>
#include <locale>
#include <string>
#include <string_view>

namespace test {

/// The regional characters of a host, in force during its scope.
class HostLocale {
 public:
  struct Characters {
    char decimal;
    char thousands;
    char date;
    char time;
  };

  explicit HostLocale(const Characters& characters)
      : before_(std::locale::global(std::locale(std::locale(std::locale::classic(), new Numbers(characters)),
                                                new Times(characters)))) {}
  ~HostLocale() { std::locale::global(before_); }
  HostLocale(const HostLocale&) = delete;
  HostLocale& operator=(const HostLocale&) = delete;

 private:
  class Numbers : public std::numpunct<char> {
   public:
    explicit Numbers(const Characters& characters) : characters_(characters) {}

   protected:
    char do_decimal_point() const override { return characters_.decimal; }
    char do_thousands_sep() const override { return characters_.thousands; }
    std::string do_grouping() const override { return "\3"; }

   private:
    Characters characters_;
  };

  class Times : public std::time_put<char> {
   public:
    explicit Times(const Characters& characters) : characters_(characters) {}

   protected:
    iter_type do_put(iter_type out, std::ios_base& /*stream*/, char /*fill*/, const std::tm* /*time*/,
                     char format, char /*modifier*/) const override {
      const char separator = format == 'x' ? characters_.date : characters_.time;
      for (const std::string_view part : {"11", "12", "13"}) {
        if (part != "11") {
          *out++ = separator;
        }
        for (const char digit : part) {
          *out++ = digit;
        }
      }
      return out;
    }

   private:
    Characters characters_;
  };

  std::locale before_;
};

/// 1'234.50 and 31-12-2026 08h05, but with characters that are no letters.
inline constexpr HostLocale::Characters swissLike{'.', '\'', '-', '_'};

}  // namespace test
