// Device files of older versions are checked and brought up to date when they are opened.

#include <fstream>

#include "Support.h"
#include "softdevice/Check.h"
#include "softdevice/Verify.h"

namespace softdevice::test {
namespace {

/// Makes a device file what it would have been before records had digests.
constexpr const char* kBackToNoDigests = R"(
  ALTER TABLE device RENAME TO new_device;
  CREATE TABLE device (
         id INTEGER PRIMARY KEY CHECK (id = 1),
         taxpayer_id TEXT NOT NULL,
         running_number INTEGER NOT NULL,
         life_cycle INTEGER NOT NULL,
         private_key TEXT NOT NULL,
         last_sequence_number INTEGER NOT NULL,
         transport_pin TEXT NOT NULL DEFAULT '',
         wrong_pins INTEGER NOT NULL DEFAULT 0,
         last_report_number INTEGER NOT NULL DEFAULT 0,
         last_reported_number INTEGER NOT NULL DEFAULT 0
       ) STRICT;
  INSERT INTO device SELECT 1, taxpayer_id, running_number, life_cycle, private_key, last_sequence_number,
    transport_pin, wrong_pins, last_report_number, last_reported_number FROM new_device;
  DROP TABLE new_device;
  ALTER TABLE signed_request RENAME TO new_request;
  CREATE TABLE signed_request (
         sequence_number INTEGER PRIMARY KEY CHECK (sequence_number BETWEEN 1 AND 4294967295),
         command INTEGER NOT NULL,
         request BLOB NOT NULL,
         response BLOB NOT NULL
       ) STRICT;
  INSERT INTO signed_request SELECT sequence_number, command, request, response FROM new_request;
  DROP TABLE new_request;
  ALTER TABLE signed_report RENAME TO new_report;
  CREATE TABLE signed_report (
         report_number INTEGER PRIMARY KEY CHECK (report_number BETWEEN 1 AND 4294967295),
         command INTEGER NOT NULL,
         request BLOB NOT NULL,
         response BLOB NOT NULL
       ) STRICT;
  INSERT INTO signed_report SELECT report_number, command, request, response FROM new_report;
  DROP TABLE new_report;
  PRAGMA user_version = 2;
  VACUUM)";

/// From there to when devices knew bookings only.
constexpr const char* kBackToBookingsOnly = R"(
  ALTER TABLE device DROP COLUMN transport_pin;
  ALTER TABLE device DROP COLUMN wrong_pins;
  ALTER TABLE device DROP COLUMN last_report_number;
  ALTER TABLE device DROP COLUMN last_reported_number;
  DROP TABLE signed_report;
  DROP TABLE total;
  CREATE TABLE total (
         month INTEGER NOT NULL,
         container INTEGER NOT NULL,
         turnover INTEGER NOT NULL,
         turnover_negative INTEGER NOT NULL,
         vat INTEGER NOT NULL,
         vat_rate INTEGER NOT NULL,
         bookings INTEGER NOT NULL,
         overflow INTEGER NOT NULL,
         vat_changed INTEGER NOT NULL,
         PRIMARY KEY (month, container)
       ) STRICT, WITHOUT ROWID;
  INSERT INTO total VALUES (202612, 225, 1, 2, 3, 4, 5, 0, 0);
  PRAGMA user_version = 1)";

const std::string kJanuary = "CD 04 20 27 01 01 " + kTime + kOperator + kHash + kCurrency;
const std::string kThirdParty = "E1 0D D8 03 11 90 0C DB 02 16 00 D6 02 10 0C";

class OlderFile : public DeviceTest {
 protected:
  /// A file without digests: three transactions, of which a closing covers two.
  void MakeFileWithoutDigests() {
    {
      Device device = Open();
      Accepted(device, Command::SignBooking, kBooking);
      Accepted(device, Command::SignDataOnly, kHash);
      Accepted(device, Command::ReportSigned, kDate + kTime);
      Accepted(device, Command::SignBooking, kJanuary + kThirdParty);
      key_ = device.PublicKeyPem();
    }
    RunSql(kBackToNoDigests);
  }

  /// A file of the first version with two bookings.
  void MakeFileOfBookingsOnly() {
    {
      Device device = Open();
      Accepted(device, Command::SignBooking, kBooking);
      Accepted(device, Command::SignBooking, kJanuary + kThirdParty);
      key_ = device.PublicKeyPem();
    }
    RunSql(kBackToNoDigests);
    RunSql(kBackToBookingsOnly);
  }

  [[nodiscard]] std::string Read() const {
    std::ifstream file(File(), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  /// Opening says this behind the file's name, and changes nothing.
  void ExpectNotOpened(const std::string& reason) const {
    const std::string content = Read();
    try {
      static_cast<void>(Device::Open(File()));
      ADD_FAILURE() << "it opens, expected " << reason;
    } catch (const DeviceError& error) {
      EXPECT_EQ(error.what(), "device file '" + File().string() + "': " + reason);
    }
    EXPECT_EQ(Read(), content);
  }

  [[nodiscard]] std::vector<std::string> Damages() const { return CheckDeviceFile(File()).damages; }

  std::string key_;
};

TEST_F(OlderFile, WithoutDigestsIsBroughtUpToDate) {
  MakeFileWithoutDigests();
  EXPECT_EQ(Damages(), std::vector<std::string>{});
  {
    Device device = Device::Open(File());
    EXPECT_EQ(device.PublicKeyPem(), key_);
    EXPECT_EQ(device.TaxpayerId(), "DE123456789");
    EXPECT_EQ(device.State(), (DeviceState{LifeCycle::Activated, 0, 3, 2, 2}));
    EXPECT_EQ(device.Totals(), (std::vector<Total>{{202612, 225, 11900, 0, 1900, 1900, 1, false, false, 0},
                                                   {202701, 225, 11900, 0, 0, 1600, 1, false, false, 100},
                                                   {202701, 231, 100, 0, 0, 0, 1, false, false, 0}}));
    EXPECT_EQ(device.OpenTotals(), (std::vector<Total>{{0, 225, 11900, 0, 0, 1600, 1, false, false, 100},
                                                       {0, 231, 100, 0, 0, 0, 1, false, false, 0}}));
    EXPECT_TRUE(VerifyData(device.Find(2)->request, device.Find(2)->response, key_).ok);
    EXPECT_TRUE(VerifyReport(device.FindReport(2)->request, device.FindReport(2)->response, key_).ok);
    EXPECT_EQ(device.Execute(Command::SignBooking, Hex(kBooking)).sequenceNumber, 4U);
    EXPECT_EQ(device.Execute(Command::ReportSigned, Hex(kDate + kTime)).sequenceNumber, 3U);
  }
  EXPECT_EQ(Damages(), std::vector<std::string>{});
  EXPECT_EQ(Device::Open(File()).State(), (DeviceState{LifeCycle::Activated, 0, 4, 3, 4}));
}

TEST_F(OlderFile, KeepsPinAndWrongPins) {
  {
    Device device = OpenInactive();
    EXPECT_EQ(device.Activate("000000").code, RefusalCode::WrongPin);
  }
  RunSql(kBackToNoDigests);
  Device device = Device::Open(File());
  EXPECT_EQ(device.State(), (DeviceState{LifeCycle::Personalized, 1, 0, 0, 0}));
  EXPECT_TRUE(device.Activate("271828").accepted);
  EXPECT_EQ(Damages(), std::vector<std::string>{});
}

TEST_F(OlderFile, OfManyRecordsIsBroughtUpToDate) {
  constexpr std::uint32_t kRecords = 500;
  {
    Device device = Open();
    for (std::uint32_t i = 0; i < kRecords; ++i) {
      Accepted(device, Command::SignBooking, kBooking);
    }
  }
  RunSql(kBackToNoDigests);
  Device device = Device::Open(File());
  for (std::uint32_t number = kRecords + 1; number < kRecords + 40; ++number) {
    ASSERT_EQ(device.Execute(Command::SignBooking, Hex(kBooking)).sequenceNumber, number);
  }
  EXPECT_EQ(Damages(), std::vector<std::string>{});
}

TEST_F(OlderFile, OfTheVersionThatKnewBookingsOnlyIsBroughtUpToDate) {
  MakeFileOfBookingsOnly();
  EXPECT_EQ(Damages(), std::vector<std::string>{});
  Device device = Device::Open(File());
  EXPECT_EQ(device.PublicKeyPem(), key_);
  EXPECT_EQ(device.State(), (DeviceState{LifeCycle::Activated, 0, 2, 0, 0}));
  EXPECT_EQ(device.Totals(), (std::vector<Total>{{202612, 225, 11900, 0, 1900, 1900, 1, false, false, 0},
                                                 {202701, 225, 11900, 0, 0, 1600, 1, false, false, 100},
                                                 {202701, 231, 100, 0, 0, 0, 1, false, false, 0}}));
  EXPECT_EQ(device.OpenTotals(), (std::vector<Total>{{0, 225, 23800, 0, 1900, 1600, 2, false, true, 100},
                                                     {0, 231, 100, 0, 0, 0, 1, false, false, 0}}));
  ASSERT_TRUE(device.Find(2).has_value());
  EXPECT_TRUE(VerifyBooking(device.Find(2)->request, device.Find(2)->response, key_).ok);
  EXPECT_EQ(device.Execute(Command::SignBooking, Hex(kBooking)).sequenceNumber, 3U);
  EXPECT_EQ(device.Execute(Command::ReportSigned, Hex(kDate + kTime)).sequenceNumber, 1U);
  EXPECT_EQ(Device::Open(File()).State(), (DeviceState{LifeCycle::Activated, 0, 3, 1, 3}));
  EXPECT_EQ(Damages(), std::vector<std::string>{});
}

TEST_F(OlderFile, ThatIsDamagedStaysAsItIs) {
  const struct {
    const char* sql;
    const char* reason;
  } cases[] = {
      {"UPDATE signed_request SET request = x'CD' WHERE sequence_number = 1",
       "transaction 1: position 0, tag 0xCD (date): the request ends here, a length byte must follow"},
      {"UPDATE signed_request SET response = x'' WHERE sequence_number = 3",
       "transaction 3: the response is not that of this device and number"},
      {"UPDATE signed_request SET command = 3 WHERE sequence_number = 2",
       "transaction 2: the response is not that of this device and number"},
      {"UPDATE signed_request SET command = 5 WHERE sequence_number = 2",
       "transaction 2: command 5 doesn't belong here"},
      {"DELETE FROM signed_request WHERE sequence_number = 2", "transaction 2: it is missing"},
      {"UPDATE device SET last_sequence_number = 2",
       "transaction 3: stands beyond the last one, which is 2, and 1 more"},
      {"UPDATE device SET last_sequence_number = 5", "transactions 4 to 5: it is missing"},
      {"UPDATE device SET last_reported_number = 1", "device: the last closing covers number 2, expected 1"},
      {"UPDATE device SET taxpayer_id = 'DE0'",
       "transaction 1: the response is not that of this device and number, and 2 more"},
      {"UPDATE total SET turnover = turnover + 1 WHERE month = 202612",
       "totals: those of 2026-12 are not what the bookings add up to"},
      {"DELETE FROM total WHERE month = 0",
       "totals: those since the last closing are not what the bookings add up to"},
      {"DELETE FROM signed_report WHERE report_number = 1", "report 1: it is missing"},
      {"UPDATE signed_request SET response = CAST(substr(response, 1, 80) || x'0000000000' AS BLOB)"
       " WHERE sequence_number = 1",
       "transaction 1: the signature doesn't belong to this request, response and public key"},
  };
  MakeFileWithoutDigests();
  const std::string good = Read();
  for (const auto& [sql, reason] : cases) {
    std::ofstream(File(), std::ios::binary) << good;
    RunSql(sql);
    SCOPED_TRACE(sql);
    ExpectNotOpened(std::string("it is damaged, and not brought up to date (") + reason + ")");
  }
}

TEST_F(OlderFile, OfTheVersionThatKnewBookingsOnlyStaysAsItIsWhenABookingIsDamaged) {
  MakeFileOfBookingsOnly();
  RunSql("UPDATE signed_request SET request = x'CD'");
  ExpectNotOpened(
      "it is damaged, and not brought up to date (transactions 1 to 2: position 0, tag 0xCD (date): the "
      "request "
      "ends here, a length byte must follow)");
}

TEST_F(OlderFile, IsNoFileThatOnlySaysSo) {
  static_cast<void>(Open());
  for (const char* version : {"1", "2"}) {
    RunSql(std::string("PRAGMA user_version = ") + version);
    try {
      static_cast<void>(Device::Open(File()));
      ADD_FAILURE();
    } catch (const DeviceError& error) {
      EXPECT_NE(std::string(error.what()).find("its tables are not those of a device"), std::string::npos)
          << error.what();
    }
  }
}

}  // namespace
}  // namespace softdevice::test
