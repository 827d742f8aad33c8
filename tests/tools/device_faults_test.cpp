// What the command line says of a device when the system's clock is wrong or its locks don't work.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <chrono>
#include <functional>
#include <ostream>

#include "Program.h"
#include "softdevice/Device.h"

namespace {

using softdevice::Device;
using testing::HasSubstr;

/// A program whose system misbehaves as these variables of the environment say.
test::Setting Faulty(const std::string& variable, const std::string& value) {
  test::Setting setting;
  setting.inChild = [=] {
    setenv("LD_PRELOAD", FAULTY_SYSTEM, 1);
    setenv(variable.c_str(), value.c_str(), 1);
    setenv("TZ", "UTC", 1);
    // A sanitizer would rather be loaded first.
    const char* const options = getenv("ASAN_OPTIONS");
    setenv("ASAN_OPTIONS",
           ((options == nullptr ? std::string() : options + std::string(":")) + "verify_asan_link_order=0")
               .c_str(),
           1);
  };
  return setting;
}

struct Clock {
  const char* name;
  const char* seconds;  ///< since 1970
  const char* text;
};

void PrintTo(const Clock& clock, std::ostream* out) { *out << clock.name; }

class WrongClock : public testing::TestWithParam<Clock> {
 protected:
  test::Outcome Zel(const std::vector<std::string>& arguments) const {
    return desk_.Zel(arguments, Faulty("FAULTY_CLOCK", GetParam().seconds));
  }

  test::Desk desk_;
};

TEST_P(WrongClock, SignsNothing) {
  const std::vector<std::string> onDevice = {"--device", "till.db"};
  ASSERT_EQ(desk_
                .Zel({"device", "init", "--taxpayer", "DE1", "--number", "1", "--pin", "271828", "--activate",
                      "--device", "till.db"})
                .status,
            0);
  desk_.WriteFile("undated.json",
                  R"({"operator": "Meier", "items": [{"name": "Kaffee", "price": 2.80, "class": "A"}]})");
  desk_.WriteFile("data.txt", "three crates of apples");
  const std::vector<std::vector<std::string>> commands = {
      {"sign", "undated.json", "--device", "till.db"},
      {"sign-data", "data.txt", "--type", "time", "--device", "till.db"},
      {"report", "--signed", "--device", "till.db"},
      {"report", "--deactivate", "--device", "till.db"}};
  const std::string reason =
      std::string("position 0, tag 0xCD (date): ") + GetParam().text +
      " can't be right, expected a time after 2000-01-01 00:00 and not after 2099-12-31 23:59";
  for (const auto& command : commands) {
    const test::Outcome outcome = Zel(command);
    EXPECT_NE(outcome.status, 0) << command[0];
    EXPECT_THAT(outcome.err, HasSubstr(reason)) << command[0];
  }
  EXPECT_EQ(Device::Open(desk_.File("till.db")).State(),
            (softdevice::DeviceState{softdevice::LifeCycle::Activated, 0, 0, 1, 0}));
  // Whoever says the time is believed.
  EXPECT_EQ(Zel({"sign", "sale.json", "--device", "till.db"}).status, 0);
}

TEST_P(WrongClock, ActivatesNothing) {
  const test::Outcome made = Zel({"device", "init", "--taxpayer", "DE1", "--number", "1", "--pin", "271828",
                                  "--activate", "--device", "till.db"});
  EXPECT_EQ(made.status, 3);
  EXPECT_EQ(made.err,
            std::string("zel: device file 'till.db': it can't be activated (position 0, tag 0xCD (date): ") +
                GetParam().text +
                " can't be right, expected a time after 2000-01-01 00:00 and not after 2099-12-31 23:59)\n");
  EXPECT_EQ(desk_.ReadFile("till.db"), "");
}

INSTANTIATE_TEST_SUITE_P(Shows, WrongClock,
                         testing::Values(Clock{"TheYear1970", "0", "1970-01-01 00:00"},
                                         Clock{"TheStartOf2000", "946684859", "2000-01-01 00:00"},
                                         Clock{"TheYear2100", "4102444800", "2100-01-01 00:00"}),
                         [](const testing::TestParamInfo<Clock>& info) { return info.param.name; });

/// The seconds that a command takes.
double SecondsOf(const std::function<void()>& command) {
  const auto start = std::chrono::steady_clock::now();
  command();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

class FaultyLocks : public testing::Test {
 protected:
  FaultyLocks() {
    EXPECT_EQ(desk_
                  .Zel({"device", "init", "--taxpayer", "DE1", "--number", "1", "--pin", "271828",
                        "--activate", "--device", "till.db"})
                  .status,
              0);
  }

  void ExpectRefused(const std::string& locks, const std::string& reason) const {
    const std::string before = desk_.ReadFile("till.db");
    for (const std::vector<std::string>& command :
         {std::vector<std::string>{"sign", "sale.json", "--device", "till.db"},
          {"report", "--signed", "--device", "till.db"},
          {"device", "check", "--device", "till.db"}}) {
      test::Outcome outcome;
      const double seconds = SecondsOf([&] { outcome = desk_.Zel(command, Faulty("FAULTY_LOCKS", locks)); });
      EXPECT_EQ(outcome.status, 3) << command[0];
      EXPECT_EQ(outcome.err, "zel: device file 'till.db': " + reason + "\n") << command[0];
      EXPECT_LT(seconds, 5) << "it waited for locks that will never be there";
    }
    EXPECT_EQ(desk_.ReadFile("till.db"), before);
  }

  test::Desk desk_;
};

TEST_F(FaultyLocks, ThatDoNothingAreRefused) {
  ExpectRefused("idle", "locks do nothing on its file system, two processes could give one number twice");
}

TEST_F(FaultyLocks, ThatAreNotThereAreNamedAtOnce) {
  ExpectRefused(std::to_string(ENOLCK), "its file system has no locks to give (No locks available)");
}

TEST_F(FaultyLocks, LeaveNoFileBehind) {
  const std::vector<std::string> before = desk_.Names();
  static_cast<void>(desk_.Zel({"sign", "sale.json", "--device", "till.db"}, Faulty("FAULTY_LOCKS", "idle")));
  EXPECT_EQ(desk_.Names(), before);
}

}  // namespace
