#pragma once

#include <ctime>
#include <ios>
#include <locale>
#include <string>

namespace test {

/// A host's number characters; thousands grouped by three.
class NumberCharacters : public std::numpunct<char> {
 public:
  NumberCharacters(char decimal, char thousands) : decimal_(decimal), thousands_(thousands) {}

 protected:
  char do_decimal_point() const override { return decimal_; }
  char do_thousands_sep() const override { return thousands_; }
  std::string do_grouping() const override { return "\3"; }

 private:
  char decimal_;
  char thousands_;
};

/// A host's separators in dates and times.
class DateCharacters : public std::time_put<char> {
 public:
  DateCharacters(char date, char time) : date_(date), time_(time) {}

 protected:
  iter_type do_put(iter_type out, std::ios_base& stream, char fill, const std::tm* moment, char format,
                   char modifier) const override {
    if (format != 'x' && format != 'X') {
      return std::time_put<char>::do_put(out, stream, fill, moment, format, modifier);
    }
    const char separator = format == 'x' ? date_ : time_;
    for (const char character : {'1', '2', separator, '1', '1', separator, '1', '0'}) {
      *out++ = character;
    }
    return out;
  }

 private:
  char date_;
  char time_;
};

/// Sets the global locale, as a host does, until the end of the scope.
class GlobalLocale {
 public:
  explicit GlobalLocale(const std::locale& locale) : before_(std::locale::global(locale)) {}
  ~GlobalLocale() { std::locale::global(before_); }
  GlobalLocale(const GlobalLocale&) = delete;
  GlobalLocale& operator=(const GlobalLocale&) = delete;

 private:
  std::locale before_;
};

}  // namespace test
