#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <stdlib.h>
#include <termios.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "VnZEL10cmn/errors/clsVnError.h"
#include "VnZEL10cmn/platform/internal/MessageBox.h"

using VnZEL10cmn::clsVnError;

namespace {

/// One call of a host's own box.
struct Shown {
  std::string text;
  std::int32_t buttons;
  std::string title;
};

clsVnError::MsgBoxFunction Recorder(std::vector<Shown>& calls, std::int32_t answer) {
  return [&calls, answer](std::string_view text, std::int32_t buttons, std::string_view title) {
    calls.push_back({std::string(text), buttons, std::string(title)});
    return answer;
  };
}

/// Puts another file in the place of one of the standard streams.
class Redirect {
 public:
  Redirect(int stream, int file) : stream_(stream), saved_(dup(stream)) {
    std::fflush(nullptr);
    dup2(file, stream_);
  }
  ~Redirect() {
    std::fflush(nullptr);
    if (saved_ >= 0) {
      dup2(saved_, stream_);
      close(saved_);
    } else {
      close(stream_);
    }
  }
  Redirect(const Redirect&) = delete;
  Redirect& operator=(const Redirect&) = delete;

 private:
  int stream_;
  int saved_;
};

/// Standard input that is no terminal and at its end.
class NoTerminal {
 public:
  NoTerminal() : file_(open("/dev/null", O_RDONLY)), redirect_(0, file_) {}
  ~NoTerminal() { close(file_); }
  NoTerminal(const NoTerminal&) = delete;
  NoTerminal& operator=(const NoTerminal&) = delete;

 private:
  int file_;
  Redirect redirect_;
};

/// A terminal whose other end types and reads.
class Terminal {
 public:
  Terminal() : user_(posix_openpt(O_RDWR | O_NOCTTY)) {
    if (user_ < 0 || grantpt(user_) != 0 || unlockpt(user_) != 0) {
      throw std::runtime_error("no pseudo-terminal");
    }
    program_ = open(ptsname(user_), O_RDWR | O_NOCTTY);
    if (program_ < 0) {
      throw std::runtime_error("no pseudo-terminal");
    }
  }
  ~Terminal() {
    close(program_);
    close(user_);
  }
  Terminal(const Terminal&) = delete;
  Terminal& operator=(const Terminal&) = delete;

  int Program() const { return program_; }

  void Type(std::string_view keys) const {
    if (write(user_, keys.data(), keys.size()) != static_cast<ssize_t>(keys.size())) {
      throw std::runtime_error("typing failed");
    }
  }

  /// What stands on the screen so far.
  std::string Screen() const {
    std::string text;
    pollfd waiting{user_, POLLIN, 0};
    while (poll(&waiting, 1, 50) > 0 && (waiting.revents & POLLIN) != 0) {
      char bytes[4096];
      const ssize_t count = read(user_, bytes, sizeof bytes);
      if (count <= 0) {
        break;
      }
      text.append(bytes, static_cast<std::size_t>(count));
    }
    return text;
  }

 private:
  int user_;
  int program_ = -1;
};

TEST(ShowMsgBox, WithoutAnErrorNothingIsShownAndTheResultIsIgnore) {
  std::vector<Shown> calls;
  clsVnError error;
  error.MsgBox(Recorder(calls, 1));
  EXPECT_EQ(error.ShowMsgBox(), 5);
  EXPECT_EQ(error.ShowMsgBox(4), 5);
  EXPECT_TRUE(calls.empty());
}

TEST(ShowMsgBox, WithoutAnErrorTheTerminalStaysEmpty) {
  const NoTerminal input;
  clsVnError error;
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  const std::int32_t result = error.ShowMsgBox();
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  EXPECT_EQ(result, 5);
}

TEST(ShowMsgBox, TheHostsBoxGetsTextButtonsAndTitle) {
  std::vector<Shown> calls;
  clsVnError error;
  error.MsgBox(Recorder(calls, 4));
  error.SetError(9204, "Der Puffer ist zu klein!\r\n    Größe ...........: 12", true, "SetDataBinary",
                 "VnZEL10cmn.clsZelBaseCoding", "0F0E0D0C-0B0A-0908-0706-050403020100");
  EXPECT_EQ(error.ShowMsgBox(21), 4);
  ASSERT_EQ(calls.size(), 1U);
  EXPECT_EQ(calls[0].text,
            "Nummer: \t\t9204\r\n"
            "Benutzerdef.: \tJa\r\n"
            "Quelle: \t\tVnZEL10cmn.clsZelBaseCoding\r\n"
            "Funktion: \t\tSetDataBinary\r\n"
            "Instanz: \t\t0F0E0D0C-0B0A-0908-0706-050403020100\r\n"
            "\r\n"
            "Meldung: \t\tDer Puffer ist zu klein!\r\n"
            "\t\t    Größe ...........: 12\r\n");
  EXPECT_EQ(calls[0].buttons, 21);
  EXPECT_EQ(calls[0].title, "Verarbeitungsfehler [9204]");
}

TEST(ShowMsgBox, BareErrorsHaveTheirPlaceholders) {
  std::vector<Shown> calls;
  clsVnError error;
  error.MsgBox(Recorder(calls, 1));
  error.ErrorNr(-1);
  EXPECT_EQ(error.ShowMsgBox(), 1);
  ASSERT_EQ(calls.size(), 1U);
  EXPECT_EQ(calls[0].text,
            "Nummer: \t\t-1\r\n"
            "Benutzerdef.: \tNein\r\n"
            "Quelle: \t\t\r\n"
            "Funktion: \t\t./.\r\n"
            "Instanz: \t\t\r\n"
            "\r\n"
            "Meldung: \t\t\r\n");
  EXPECT_EQ(calls[0].buttons, 16);
  EXPECT_EQ(calls[0].title, "Verarbeitungsfehler [-1]");
}

// The system's box, whatever text it is given.
TEST(ShowMessageBox, EndsTheTextWithALine) {
  const NoTerminal input;
  for (const std::string_view text : {"one\r\ntwo", "one\r\ntwo\r\n", "one\ntwo\n"}) {
    testing::internal::CaptureStderr();
    EXPECT_EQ(VnZEL10cmn::platform::ShowMessageBox(text, 0, "Title"), 1);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Title\none\ntwo\n");
  }
}

TEST(ShowMessageBox, ADefaultButtonThatIsNotThereIsTheFirst) {
  const NoTerminal input;
  testing::internal::CaptureStderr();
  EXPECT_EQ(VnZEL10cmn::platform::ShowMessageBox("text", 1 + 512, "Title"), 1);
  EXPECT_EQ(VnZEL10cmn::platform::ShowMessageBox("text", 4 + 512, "Title"), 6);
  EXPECT_EQ(VnZEL10cmn::platform::ShowMessageBox("text", 2 + 15 * 256, "Title"), 3);
  testing::internal::GetCapturedStderr();
}

TEST(ShowMsgBox, WithoutATerminalTheStylesDefaultButtonIsTaken) {
  struct Style {
    std::int32_t buttons;
    std::int32_t result;
  };
  constexpr Style styles[] = {
      {16, 1},  // OK
      {0, 1},       {1, 1},
      {1 + 256, 2},  // OK, Cancel
      {2, 3},       {2 + 256, 4},
      {2 + 512, 5},  // Abort, Retry, Ignore
      {3, 6},       {3 + 256, 7},
      {3 + 512, 2},                     // Yes, No, Cancel
      {4, 6},       {4 + 256, 7},       // Yes, No
      {5, 4},       {5 + 256, 2},       // Retry, Cancel
      {48 + 4, 6},  {64 + 4 + 256, 7},  // icons change nothing
  };
  const NoTerminal input;
  clsVnError error;
  error.SetError(9204, "x");
  for (const Style& style : styles) {
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    const std::int32_t result = error.ShowMsgBox(style.buttons);
    testing::internal::GetCapturedStderr();
    testing::internal::GetCapturedStdout();
    EXPECT_EQ(result, style.result) << style.buttons;
  }
}

TEST(ShowMsgBox, WithoutATerminalNothingIsReadFromStandardInput) {
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  ASSERT_EQ(write(ends[1], "n\n", 2), 2);
  std::int32_t result = 0;
  {
    const Redirect input(0, ends[0]);
    clsVnError error;
    error.SetError(9204, "x");
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    result = error.ShowMsgBox(4);
    testing::internal::GetCapturedStderr();
    testing::internal::GetCapturedStdout();
  }
  EXPECT_EQ(result, 6);
  char left[3] = {};
  EXPECT_EQ(read(ends[0], left, 2), 2);
  EXPECT_EQ(std::string(left), "n\n");
  close(ends[0]);
  close(ends[1]);
}

/// Shows a box on a terminal where these keys are typed; the result, and what stands on the screen then.
std::int32_t Answer(clsVnError& error, std::string_view keys, std::int32_t buttons,
                    std::string* screen = nullptr) {
  const Terminal terminal;
  terminal.Type(keys);
  std::int32_t result = 0;
  {
    const Redirect input(0, terminal.Program());
    const Redirect output(1, terminal.Program());
    const Redirect errors(2, terminal.Program());
    result = error.ShowMsgBox(buttons);
  }
  if (screen != nullptr) {
    *screen = terminal.Screen();
  }
  return result;
}

TEST(ShowMsgBox, ShowsTitleAndTextOnATerminal) {
  clsVnError error;
  error.SetError(9204, "Der Puffer ist zu klein!\r\n    Größe ...........: 12", true, "SetDataBinary");
  std::string screen;
  EXPECT_EQ(Answer(error, "o\n", 16, &screen), 1);
  EXPECT_NE(screen.find("Verarbeitungsfehler [9204]"), std::string::npos) << screen;
  EXPECT_NE(screen.find("SetDataBinary"), std::string::npos) << screen;
  EXPECT_NE(screen.find("Der Puffer ist zu klein!"), std::string::npos) << screen;
  EXPECT_NE(screen.find("    Größe ...........: 12"), std::string::npos) << screen;
}

TEST(ShowMsgBox, AsksForALetterOfTheButtonsOnATerminal) {
  clsVnError error;
  error.SetError(9204, "x");
  std::string screen;
  EXPECT_EQ(Answer(error, "\n", 3 + 512, &screen), 2);
  EXPECT_NE(screen.find("\n(J)a, (N)ein, A(b)brechen [B]: "), std::string::npos) << screen;
  EXPECT_EQ(Answer(error, "\n", 2, &screen), 3);
  EXPECT_NE(screen.find("\n(A)bbrechen, (W)iederholen, (I)gnorieren [A]: "), std::string::npos) << screen;
  EXPECT_EQ(Answer(error, "\n", 0, &screen), 1);
  EXPECT_NE(screen.find("\n(O)K [O]: "), std::string::npos) << screen;
}

TEST(ShowMsgBox, ButtonsAreChosenByTheirLetterOnATerminal) {
  clsVnError error;
  error.SetError(9204, "x");
  EXPECT_EQ(Answer(error, "o\n", 1), 1);
  EXPECT_EQ(Answer(error, "b\n", 1), 2);
  EXPECT_EQ(Answer(error, "a\n", 2), 3);
  EXPECT_EQ(Answer(error, "w\n", 2), 4);
  EXPECT_EQ(Answer(error, "i\n", 2), 5);
  EXPECT_EQ(Answer(error, "j\n", 3), 6);
  EXPECT_EQ(Answer(error, "n\n", 3), 7);
  EXPECT_EQ(Answer(error, "b\n", 3), 2);
  EXPECT_EQ(Answer(error, "J\n", 4), 6);
  EXPECT_EQ(Answer(error, "N\n", 4), 7);
  EXPECT_EQ(Answer(error, "W\n", 5), 4);
  EXPECT_EQ(Answer(error, "B\n", 5), 2);
}

TEST(ShowMsgBox, AnEmptyLineChoosesTheDefaultButtonOnATerminal) {
  clsVnError error;
  error.SetError(9204, "x");
  EXPECT_EQ(Answer(error, "\n", 4), 6);
  EXPECT_EQ(Answer(error, "\n", 4 + 256), 7);
}

TEST(ShowMsgBox, AsksAgainForALetterThatNoButtonHas) {
  clsVnError error;
  error.SetError(9204, "x");
  EXPECT_EQ(Answer(error, "x\n?\nb\nn\n", 4), 7);
}

TEST(ShowMsgBox, TheEndOfInputOnATerminalChoosesTheDefaultButton) {
  clsVnError error;
  error.SetError(9204, "x");
  EXPECT_EQ(Answer(error, "\x04", 4 + 256), 7);
  EXPECT_EQ(Answer(error, "j\n", 4 + 256), 6) << "the next box asks again";
}

TEST(ShowMsgBox, AnEmptyFunctionTakesTheHostsBoxAway) {
  std::vector<Shown> calls;
  clsVnError error;
  error.MsgBox(Recorder(calls, 4));
  error.MsgBox({});
  error.SetError(9204, "x");
  const NoTerminal input;
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  const std::int32_t result = error.ShowMsgBox(1);
  testing::internal::GetCapturedStderr();
  testing::internal::GetCapturedStdout();
  EXPECT_EQ(result, 1);
  EXPECT_TRUE(calls.empty());
}

}  // namespace
