#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <string_view>

#include "VnZEL10cmn/errors/ZELErrorCodes.h"
#include "VnZEL10cmn/errors/clsVnError.h"

namespace test {

/// Number, user-defined mark, function name and the whole message of a failure.
inline void ExpectError(const VnZEL10cmn::clsVnError& error, std::int32_t number, bool userDefined,
                        std::string_view function, std::string_view message,
                        const char* file = __builtin_FILE(), int line = __builtin_LINE()) {
  const testing::ScopedTrace trace(file, line, "expected error");
  EXPECT_TRUE(error.HasError());
  EXPECT_EQ(error.ErrorNr(), number);
  EXPECT_EQ(error.IsUserDef(), userDefined);
  EXPECT_EQ(error.ErrorFunction(), function);
  EXPECT_EQ(error.ErrorMsg(), message);
}

/// The same with a number of the library.
inline void ExpectError(const VnZEL10cmn::clsVnError& error, VnZEL10cmn::ZELErrorCodes number,
                        bool userDefined, std::string_view function, std::string_view message,
                        const char* file = __builtin_FILE(), int line = __builtin_LINE()) {
  ExpectError(error, static_cast<std::int32_t>(number), userDefined, function, message, file, line);
}

/// The text of a run-time number.
inline std::string_view FaultText(std::int32_t number) {
  switch (number) {
    case 5: return "Ungültiger Prozeduraufruf oder ungültiges Argument";
    case 6: return "Überlauf";
    case 7: return "Nicht genügend Speicher";
    case 9: return "Index außerhalb des gültigen Bereichs";
    case 13: return "Typen unverträglich";
    case 91: return "Objektvariable oder With-Blockvariable nicht festgelegt";
    default: return "no run-time number";
  }
}

/// A fault that the library did not foresee: its run-time number with its text under the operation's name, not
/// user-defined.
inline void ExpectFault(const VnZEL10cmn::clsVnError& error, std::int32_t number, std::string_view function,
                        const char* file = __builtin_FILE(), int line = __builtin_LINE()) {
  const testing::ScopedTrace trace(file, line, "expected fault");
  EXPECT_TRUE(error.HasError());
  EXPECT_EQ(error.ErrorNr(), number);
  EXPECT_FALSE(error.IsUserDef());
  EXPECT_EQ(error.ErrorFunction(), function);
  EXPECT_EQ(error.ErrorMsg(), FaultText(number));
}

/// The state that a successful operation leaves in its object.
template <class Object>
void ExpectNoError(Object& object, const char* file = __builtin_FILE(), int line = __builtin_LINE()) {
  const testing::ScopedTrace trace(file, line, "expected no error");
  EXPECT_FALSE(object.HasError()) << object.ErrorObject().ErrorMsg();
  EXPECT_EQ(object.ErrorObject().ErrorNr(), 0);
  EXPECT_EQ(object.ErrorObject().ErrorMsg(), "");
  EXPECT_EQ(object.ErrorObject().ErrorFunction(), "");
}

}  // namespace test
