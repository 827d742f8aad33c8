#include <unistd.h>

#include <array>
#include <cctype>
#include <cstddef>
#include <cstdio>
#include <span>
#include <string>

#include "VnZEL10cmn/platform/internal/MessageBox.h"

namespace VnZEL10cmn::platform {

namespace {

struct Button {
  char letter;
  std::string_view name;
  std::int32_t code;
};

constexpr Button kOk{'O', "(O)K", 1};
constexpr Button kCancel{'B', "A(b)brechen", 2};
constexpr Button kAbort{'A', "(A)bbrechen", 3};
constexpr Button kRetry{'W', "(W)iederholen", 4};
constexpr Button kIgnore{'I', "(I)gnorieren", 5};
constexpr Button kYes{'J', "(J)a", 6};
constexpr Button kNo{'N', "(N)ein", 7};

constexpr std::array kOkOnly{kOk};
constexpr std::array kOkCancel{kOk, kCancel};
constexpr std::array kAbortRetryIgnore{kAbort, kRetry, kIgnore};
constexpr std::array kYesNoCancel{kYes, kNo, kCancel};
constexpr std::array kYesNo{kYes, kNo};
constexpr std::array kRetryCancel{kRetry, kCancel};

std::span<const Button> ButtonsOf(std::int32_t style) {
  switch (style & 0xF) {
    case 1: return kOkCancel;
    case 2: return kAbortRetryIgnore;
    case 3: return kYesNoCancel;
    case 4: return kYesNo;
    case 5: return kRetryCancel;
    default: return kOkOnly;
  }
}

const Button& DefaultOf(std::span<const Button> buttons, std::int32_t style) {
  const auto index = static_cast<std::size_t>((style >> 8) & 0xF);
  return buttons[index < buttons.size() ? index : 0];
}

void Print(std::string_view text) { std::fwrite(text.data(), 1, text.size(), stderr); }

}  // namespace

std::int32_t ShowMessageBox(std::string_view text, std::int32_t style, std::string_view title) {
  const std::span<const Button> buttons = ButtonsOf(style);
  const Button& chosenByDefault = DefaultOf(buttons, style);
  std::string box = std::string(title) + "\n";
  for (const char c : text) {
    if (c != '\r') {
      box.push_back(c);
    }
  }
  if (box.back() != '\n') {
    box.push_back('\n');
  }
  Print(box);
  if (::isatty(STDIN_FILENO) == 0) {
    return chosenByDefault.code;
  }
  while (true) {
    std::string prompt;
    for (const Button& button : buttons) {
      prompt.append(prompt.empty() ? "" : ", ").append(button.name);
    }
    Print(prompt + " [" + chosenByDefault.letter + "]: ");
    // A terminal goes on after its end of input; the mark would answer every later box.
    std::clearerr(stdin);
    int letter = std::getchar();
    for (int rest = letter; rest != '\n' && rest != EOF;) {
      rest = std::getchar();
    }
    if (letter == '\n' || letter == EOF) {
      return chosenByDefault.code;
    }
    letter = std::toupper(letter);
    for (const Button& button : buttons) {
      if (button.letter == letter) {
        return button.code;
      }
    }
  }
}

}  // namespace VnZEL10cmn::platform
