// What is damaged in a device file is told, with the numbers of the records, and nothing is signed on top of it.

#include "softdevice/Check.h"

#include <fstream>

#include "Support.h"
#include "softdevice/Verify.h"

namespace softdevice::test {
namespace {

using Lines = std::vector<std::string>;

class CheckTest : public DeviceTest {
 protected:
  /// Five transactions, of which the closing, which is report 2, covers four.
  void MakeDevice() const {
    Device device = Open();
    Accepted(device, Command::SignBooking, kBooking);
    Accepted(device, Command::SignDataOnly, kHash);
    Accepted(device, Command::SignDataAndTpId, kHash);
    Accepted(device, Command::SignBooking, kBooking);
    Accepted(device, Command::ReportSigned, kDate + kTime);
    Accepted(device, Command::SignBooking,
             "CD 04 20 27 01 01 " + kTime + kOperator + kHash + kCurrency + kContainer1);
  }

  [[nodiscard]] CheckResult Check() const { return CheckDeviceFile(File()); }

  /// What opening says behind the file's name; "" when it opens.
  [[nodiscard]] std::string ErrorOfOpening() const {
    try {
      static_cast<void>(Device::Open(File()));
      return "";
    } catch (const DeviceError& error) {
      const std::string start = "device file '" + File().string() + "': ";
      return std::string(error.what()).substr(start.size());
    }
  }

  [[nodiscard]] std::string Read() const {
    std::ifstream file(File(), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  void Write(const std::string& content) const { std::ofstream(File(), std::ios::binary) << content; }
};

TEST_F(CheckTest, FindsNothingInAnyStateOfADevice) {
  static_cast<void>(OpenInactive());
  EXPECT_EQ(Check().damages, Lines{});
  Device device = Device::Open(File());
  EXPECT_EQ(device.Activate("000000").code, RefusalCode::WrongPin);
  EXPECT_EQ(Check().damages, Lines{});
  EXPECT_TRUE(device.Activate("271828").accepted);
  EXPECT_EQ(Check().damages, Lines{});
  for (const char* date :
       {"CD 04 20 26 12 31 ", "CD 04 20 26 01 31 ", "CD 04 20 26 12 31 ", "CD 04 20 27 02 01 "}) {
    Accepted(device, Command::SignBooking, date + kTime + kOperator + kHash + kCurrency + kContainer1);
    EXPECT_EQ(Check().damages, Lines{});
  }
  Accepted(device, Command::ReportDeactivate, kDate + kTime);
  const CheckResult result = Check();
  EXPECT_EQ(result.damages, Lines{});
  EXPECT_TRUE(result.IsRight());
  EXPECT_EQ(result.transactions, 4U);
  EXPECT_EQ(result.reports, 2U);
}

TEST_F(CheckTest, SaysHowFarItIs) {
  MakeDevice();
  std::vector<std::pair<std::uint64_t, std::uint64_t>> steps;
  CheckOptions options;
  options.progress = [&steps](std::uint64_t done, std::uint64_t all) { steps.emplace_back(done, all); };
  static_cast<void>(CheckDeviceFile(File(), options));
  // Five transactions and two reports.
  EXPECT_EQ(steps.back(), std::pair(std::uint64_t{7}, std::uint64_t{7}));
}

TEST_F(CheckTest, ChangesNothing) {
  MakeDevice();
  const std::string before = Read();
  EXPECT_TRUE(Check().IsRight());
  EXPECT_EQ(Read(), before);
}

TEST_F(CheckTest, NamesWhatIsDamaged) {
  const std::string changed = "it is not what was recorded";
  const std::string state = "it is damaged (the device's state is not what was recorded)";
  const struct {
    std::string sql;
    Lines damages;
    std::string onOpening;
  } cases[] = {
      {"UPDATE signed_request SET request = CAST(x'00' || substr(request, 2) AS BLOB) WHERE sequence_number "
       "= 2",
       {"transaction 2: " + changed},
       "it is damaged (transaction 2 is not what was recorded)"},
      {"UPDATE signed_request SET response = CAST(substr(response, 1, 80) AS BLOB) WHERE sequence_number = 1",
       {"transaction 1: " + changed},
       "it is damaged (transaction 1 is not what was recorded)"},
      {"UPDATE signed_request SET command = 2 WHERE sequence_number = 3",
       {"transaction 3: " + changed},
       "it is damaged (transaction 3 is not what was recorded)"},
      {"UPDATE signed_request SET command = 258 WHERE sequence_number = 3",
       {"transaction 3: " + changed},
       "it is damaged (transaction 3 is not what was recorded)"},
      {"UPDATE signed_request SET digest = zeroblob(32) WHERE sequence_number = 3",
       {"transaction 3: " + changed},
       "it is damaged (transaction 4 is not what was recorded)"},
      {"UPDATE signed_request SET digest = x'00' WHERE sequence_number = 5",
       {"transaction 5: " + changed},
       "it is damaged (transaction 5 is not what was recorded)"},
      {"UPDATE signed_request SET digest = zeroblob(32) WHERE sequence_number = 5",
       {"transaction 5: " + changed},
       "it is damaged (transaction 5 is not what was recorded)"},
      {"UPDATE signed_report SET response = zeroblob(100) WHERE report_number = 2",
       {"report 2: " + changed},
       "it is damaged (report 2 is not what was recorded)"},
      {"DELETE FROM signed_request WHERE sequence_number IN (1, 2, 4)",
       {"transactions 1 to 2: it is missing", "transaction 4: it is missing"},
       "it is damaged (transaction 4 is missing)"},
      {"DELETE FROM signed_request WHERE sequence_number = 5",
       {"transaction 5: it is missing"},
       "it is damaged (transaction 5 is missing)"},
      {"DELETE FROM signed_report", {"reports 1 to 2: it is missing"}, "it is damaged (report 2 is missing)"},
      {"INSERT INTO signed_request VALUES (6, 1, x'', x'', zeroblob(32))",
       {"transaction 6: stands beyond the last one, which is 5"},
       "it is damaged (transaction 6 stands behind the last one, which is 5)"},
      {"UPDATE signed_request SET sequence_number = 10 WHERE sequence_number = 2",
       {"transaction 10: stands beyond the last one, which is 5", "transaction 2: it is missing"},
       "it is damaged (transaction 10 stands behind the last one, which is 5)"},
      {"UPDATE total SET vat = vat + 1 WHERE month = 202612",
       {"the totals are not what was recorded",
        "totals: those of 2026-12 are not what the bookings add up to"},
       "it is damaged (the totals are not what was recorded)"},
      {"UPDATE total SET vat = vat + 1 WHERE month = 202701",
       {"device: its state is not what was recorded"},
       state},
      {"DELETE FROM total WHERE month = 0", {"device: its state is not what was recorded"}, state},
      {"UPDATE total SET overflow = 2 WHERE month = 202612",
       {"a total is out of range", "a total is out of range"},
       "it is damaged (a total is out of range)"},
      {"UPDATE device SET last_sequence_number = 4", {"device: its state is not what was recorded"}, state},
      {"UPDATE device SET wrong_pins = 256",
       {"a number of the device is out of range"},
       "it is damaged (a number of the device is out of range)"},
      {"UPDATE device SET transport_pin = '271828'", {"device: its state is not what was recorded"}, state},
      {"UPDATE device SET life_cycle = 4", {"device: its state is not what was recorded"}, state},
      {"UPDATE device SET digest = x'00'",
       {"a digest of the device has another length"},
       "it is damaged (a digest of the device has another length)"},
      {"DELETE FROM device", {"the device is missing"}, "it is damaged (the device is missing)"},
      {"CREATE TRIGGER more AFTER INSERT ON signed_request BEGIN DELETE FROM signed_request; END",
       {"its tables are not those of a device"},
       "it is damaged (its tables are not those of a device)"},
  };
  MakeDevice();
  const std::string good = Read();
  for (const auto& [sql, damages, onOpening] : cases) {
    SCOPED_TRACE(sql);
    Write(good);
    RunSql(sql);
    EXPECT_EQ(Check().damages, damages);
    EXPECT_EQ(ErrorOfOpening(), onOpening);
  }
}

TEST_F(CheckTest, FindsWhatIsWrongUnderRightDigests) {
  MakeDevice();
  const struct {
    std::string sql;
    Lines damages;
  } cases[] = {
      {"UPDATE total SET turnover = 1 WHERE month = 202612",
       {"totals: those of 2026-12 are not what the bookings add up to"}},
      {"UPDATE total SET turnover = 1 WHERE month = 0",
       {"totals: those since the last closing are not what the bookings add up to"}},
      {"INSERT INTO total SELECT 202802, container, 1, 1, 1, 1, 1, 0, 0, 0 FROM total WHERE month = 0",
       {"totals: those of 2028-02 are not what the bookings add up to"}},
      {"UPDATE device SET last_reported_number = 5",
       {"device: the last closing covers number 4, expected 5",
        "totals: those since the last closing are not what the bookings add up to"}},
      {"UPDATE device SET last_sequence_digest = zeroblob(32)",
       {"device: its last transaction is not the one that was recorded"}},
      {"UPDATE device SET taxpayer_id = 'DE1'",
       {"transaction 1: the response is not that of this device and number",
        "transactions 3 to 5: the response is not that of this device and number",
        "reports 1 to 2: the response is not that of this device and number"}},
  };
  const std::string good = Read();
  for (const auto& [sql, damages] : cases) {
    SCOPED_TRACE(sql);
    Write(good);
    RunSqlAndSeal(sql);
    EXPECT_EQ(Check().damages, damages);
  }
}

TEST_F(CheckTest, FindsAForeignKey) {
  MakeDevice();
  static_cast<void>(Device::Open(folder_ / "other.zel", kCreate));
  const std::string attach = "ATTACH '" + (folder_ / "other.zel").string() + "' AS other;";
  RunSqlAndSeal(attach + "UPDATE device SET public_key = (SELECT public_key FROM other.device)");
  const std::string noFit = "the signature doesn't belong to this request, response and public key";
  EXPECT_EQ(Check().damages, (Lines{"device: its private and its public key don't fit",
                                    "transactions 1 to 5: " + noFit, "reports 1 to 2: " + noFit}));
  RunSqlAndSeal("UPDATE device SET public_key = 'none'");
  EXPECT_EQ(Check().damages, (Lines{"device: its public key can't be used (it is no key in PEM form)",
                                    "device: its private and its public key don't fit"}));
}

TEST_F(CheckTest, NamesTheRecordsOfAPageThatIsZeroed) {
  constexpr std::uint32_t kRecords = 60;
  {
    Device device = Open();
    for (std::uint32_t i = 0; i < kRecords; ++i) {
      Accepted(device, Command::SignBooking, kBooking);
    }
  }
  std::string content = Read();
  // The first page of transactions: the one that holds the first response.
  const std::string response = [&] {
    const Bytes bytes = Device::Open(File()).Find(1)->response;
    return std::string(bytes.begin(), bytes.end());
  }();
  const std::size_t page = content.find(response) / 4096 * 4096;
  std::fill_n(content.begin() + static_cast<std::ptrdiff_t>(page), 4096, '\0');
  Write(content);
  const CheckResult result = Check();
  ASSERT_FALSE(result.IsRight());
  const std::string last = result.damages.back();
  EXPECT_EQ(last.rfind("transactions 1 to ", 0), 0U) << last;
  EXPECT_NE(last.find(": it is damaged (database disk image is malformed)"), std::string::npos) << last;
}

TEST_F(CheckTest, ThrowsWhereThereIsNothingToCheck) {
  const auto errorOf = [this] {
    try {
      static_cast<void>(Check());
      return std::string();
    } catch (const DeviceError& error) {
      const std::string start = "device file '" + File().string() + "': ";
      EXPECT_EQ(std::string(error.what()).substr(0, start.size()), start);
      return std::string(error.what()).substr(start.size());
    }
  };
  EXPECT_EQ(errorOf(), "there is no such file");
  Write("");
  EXPECT_EQ(errorOf(), "it is empty, there is no device in it yet");
  Write("a shopping list");
  EXPECT_EQ(errorOf(), "it is no device file");
  Write(std::string(5000, 'x'));
  EXPECT_EQ(errorOf(), "it is no device file");
  std::filesystem::remove(File());
  std::filesystem::create_directory(File());
  EXPECT_EQ(errorOf(), "it is no regular file");
}

using Damaged = CheckTest;

TEST_F(Damaged, RecordsAreNotHandedOut) {
  MakeDevice();
  Device device = Device::Open(File());
  const auto errorOf = [this](auto&& read) {
    try {
      static_cast<void>(read());
      return std::string();
    } catch (const DeviceError& error) {
      const std::string start = "device file '" + File().string() + "': it is damaged ";
      EXPECT_EQ(std::string(error.what()).substr(0, start.size()), start);
      return std::string(error.what()).substr(start.size());
    }
  };
  RunSql("UPDATE signed_request SET request = x'00' WHERE sequence_number = 2");
  RunSql("DELETE FROM signed_request WHERE sequence_number = 4");
  RunSql("UPDATE signed_report SET digest = zeroblob(32) WHERE report_number = 1");
  EXPECT_EQ(errorOf([&] { return device.Find(1); }), "");
  EXPECT_EQ(errorOf([&] { return device.Find(2); }), "(transaction 2 is not what was recorded)");
  EXPECT_EQ(errorOf([&] { return device.Find(3); }), "");
  EXPECT_EQ(errorOf([&] { return device.Find(4); }), "(transaction 4 is missing)");
  EXPECT_EQ(errorOf([&] { return device.Find(5); }), "(transaction 4 is missing)");
  EXPECT_EQ(errorOf([&] { return device.FindReport(1); }), "(report 1 is not what was recorded)");
  EXPECT_EQ(errorOf([&] { return device.FindReport(2); }), "(report 2 is not what was recorded)");
  EXPECT_FALSE(device.Find(6).has_value());
  EXPECT_FALSE(device.Find(0).has_value());
}

TEST_F(Damaged, TotalsAreNotHandedOut) {
  MakeDevice();
  Device device = Device::Open(File());
  RunSql("UPDATE total SET turnover = 0 WHERE month = 202612");
  EXPECT_THROW(static_cast<void>(device.Totals()), DeviceError);
  const Answer answer =
      device.Execute(Command::ReportSpan, Hex(kDate + kTime + "D0 03 20 26 01 D1 03 20 26 12"));
  ExpectRefused(
      answer, RefusalCode::Storage,
      "device file '" + File().string() + "': it is damaged (the totals are not what was recorded)");
  // The present month is another one.
  EXPECT_EQ(device.OpenTotals().size(), 1U);
}

TEST_F(Damaged, FilesAreNotSignedOn) {
  const std::string january = "CD 04 20 27 01 01 " + kTime + kOperator + kHash + kCurrency + kContainer1;
  MakeDevice();
  const std::string good = Read();
  for (const char* sql :
       {"UPDATE signed_request SET request = x'00' WHERE sequence_number = 5",
        "UPDATE signed_request SET digest = zeroblob(32) WHERE sequence_number = 4",
        "DELETE FROM signed_request WHERE sequence_number = 3",
        "UPDATE total SET turnover = 0 WHERE month = 202701", "UPDATE total SET turnover = 0 WHERE month = 0",
        "INSERT INTO signed_request VALUES (6, 1, x'', x'', zeroblob(32))",
        "INSERT INTO signed_request VALUES (8, 1, x'', x'', zeroblob(32))",
        "UPDATE device SET last_sequence_number = 4", "UPDATE device SET last_reported_number = 5",
        "UPDATE device SET taxpayer_id = 'DE1'", "UPDATE device SET private_key = 'none'",
        "UPDATE device SET wrong_pins = 1"}) {
    SCOPED_TRACE(sql);
    Write(good);
    Device device = Device::Open(File());
    RunSql(sql);
    const std::string damaged = Read();
    const Answer answer = device.Execute(Command::SignBooking, Hex(january));
    EXPECT_EQ(answer.code, RefusalCode::Storage) << answer.reason;
    EXPECT_NE(answer.reason.find("it is damaged ("), std::string::npos) << answer.reason;
    EXPECT_EQ(Read(), damaged);
  }
}

TEST_F(Damaged, KeysAreNotSignedWith) {
  MakeDevice();
  const std::string publicKey = Device::Open(File()).PublicKeyPem();
  const std::string good = Read();
  int refused = 0;
  // A letter of Base64 for another one, from the first line of the key to the last.
  for (int position = 29; position < 220; position += 3) {
    Write(good);
    const std::string letter = "substr(private_key, " + std::to_string(position) + ", 1)";
    RunSqlAndSeal("UPDATE device SET private_key = substr(private_key, 1, " + std::to_string(position - 1) +
                  ") || CASE " + letter + " WHEN 'A' THEN 'B' ELSE 'A' END || substr(private_key, " +
                  std::to_string(position + 1) + ")");
    if (const std::string error = ErrorOfOpening(); !error.empty()) {
      ++refused;
      continue;
    }
    // Only a letter that says nothing of the key.
    Device device = Device::Open(File());
    const Bytes response = Accepted(device, Command::SignBooking, kBooking);
    EXPECT_TRUE(VerifyBooking(Hex(kBooking), response, publicKey).ok) << position;
  }
  EXPECT_GT(refused, 50);
}

constexpr std::size_t kPage = 4096;

/// The page of the file that a small table begins with, counted from 0.
std::size_t PageOf(const std::filesystem::path& file, const std::string& table) {
  const Database database(file, 1000);
  return static_cast<std::size_t>(
      database.Number("SELECT rootpage FROM sqlite_schema WHERE name = '" + table + "'") - 1);
}

/// Has SQLite read the pages again that it holds in memory.
void Touch(std::string& content) {
  constexpr std::size_t kChangeCounter = 24;
  constexpr std::size_t kVersionValidFor = 92;
  content[kChangeCounter + 1] = content[kVersionValidFor + 1] =
      static_cast<char>(content[kChangeCounter + 1] + 1);
}

TEST_F(Damaged, PagesThatNewRowsWouldOverwriteOthersOnAreToldOnOpening) {
  MakeDevice();
  const std::string good = Read();
  for (const char* table : {"device", "total"}) {
    // Where the rows of a page begin: further back, the next row would be written over the last ones.
    std::string content = good;
    content[PageOf(File(), table) * kPage + 6] ^= 0x20;
    Write(content);
    EXPECT_EQ(ErrorOfOpening().rfind("it is damaged (", 0), 0U) << ErrorOfOpening();
  }
}

TEST_F(Damaged, PagesAreNotWrittenOnThatBecameBadSinceOpening) {
  MakeDevice();
  const std::string good = Read();
  int refused = 0;
  // The amounts that are added need longer rows, which are written elsewhere on their page.
  const std::string january = "CD 04 20 27 01 01 " + kTime + kOperator + kHash + kCurrency +
                              "E1 14 D8 06 12 34 56 78 90 1C DA 06 12 34 56 78 90 1C DB 02 19 00";
  for (const char* table : {"device", "total", "signed_request"}) {
    for (const std::size_t position : {1U, 2U, 5U, 6U}) {
      for (int bit = 0; bit < 8; ++bit) {
        Write(good);
        Device device = Device::Open(File());
        std::string content = good;
        content[PageOf(File(), table) * kPage + position] ^= static_cast<char>(1 << bit);
        Touch(content);
        Write(content);
        const Answer answer = device.Execute(Command::SignBooking, Hex(january));
        if (!answer.accepted) {
          ++refused;
          EXPECT_EQ(answer.code, RefusalCode::Storage) << answer.reason;
          EXPECT_EQ(Read(), content);
          continue;
        }
        // What was built on and written is right then.
        EXPECT_EQ(device.State().lastSequenceNumber, 6U);
        EXPECT_EQ(device.Find(6)->response, answer.response);
        EXPECT_EQ(device.Find(5)->request.size(), Hex(kBooking).size());
      }
    }
  }
  EXPECT_GT(refused, 20);
}

TEST_F(Damaged, FilesThatSayTheyAreShorterSinceOpeningAreNotSignedOn) {
  MakeDevice();
  // The last page is one of reports, which no transaction has to do with.
  const std::uintmax_t before = std::filesystem::file_size(File());
  for (Device device = Device::Open(File()); std::filesystem::file_size(File()) == before;) {
    Accepted(device, Command::ReportSigned, kDate + kTime);
  }
  Device device = Device::Open(File());
  std::string content = Read();
  content[31] = static_cast<char>(content.size() / kPage - 1);
  Touch(content);
  Write(content);
  ExpectRefused(
      device.Execute(Command::SignDataOnly, Hex(kHash)), RefusalCode::Storage,
      "device file '" + File().string() + "': it is damaged (its length is not the one that it says)");
  EXPECT_EQ(Read(), content);
}

TEST_F(Damaged, FreePagesAreNotWrittenOn) {
  MakeDevice();
  const std::string good = Read();
  Device device = Device::Open(File());
  // The list of free pages begins with a page in use, and has one page.
  for (std::uint8_t page = 2; page <= 5; ++page) {
    std::string content = good;
    content.replace(32, 8, std::string({0, 0, 0, static_cast<char>(page), 0, 0, 0, 1}));
    Write(content);
    const Answer answer = device.Execute(Command::SignBooking, Hex(kBooking));
    EXPECT_EQ(answer.code, RefusalCode::Storage);
    EXPECT_NE(answer.reason.find("it is damaged ("), std::string::npos) << answer.reason;
    EXPECT_EQ(Read(), content);
  }
}

TEST_F(Damaged, FilesAreNotThoseWithFreePages) {
  MakeDevice();
  RunSql("CREATE TABLE more (content BLOB); INSERT INTO more VALUES (zeroblob(20000)); DROP TABLE more");
  EXPECT_TRUE(Check().IsRight());
  Device device = Device::Open(File());
  for (int i = 0; i < 100; ++i) {
    Accepted(device, Command::SignBooking, kBooking);
  }
  EXPECT_TRUE(Check().IsRight());
}

TEST_F(Damaged, FilesThatTookTheirDevicesBackAreNoticed) {
  MakeDevice();
  const std::string older = Read();
  Device device = Device::Open(File());
  Accepted(device, Command::SignDataOnly, kHash);
  Accepted(device, Command::SignDataOnly, kHash);
  const std::string newer = Read();
  Write(older);
  const std::string start = "device file '" + File().string() + "': ";
  ExpectRefused(device.Execute(Command::SignDataOnly, Hex(kHash)), RefusalCode::Storage,
                start + "it is an older one by now, without the transaction 7 that was there");
  // The same when the older one has been signed on elsewhere.
  {
    Device elsewhere = Device::Open(File());
    for (int i = 0; i < 3; ++i) {
      Accepted(elsewhere, Command::SignDataOnly, kHash);
    }
  }
  ExpectRefused(device.Execute(Command::SignDataOnly, Hex(kHash)), RefusalCode::Storage,
                start + "it is an older one by now, without the transaction 7 that was there");
  Write(newer);
  EXPECT_EQ(device.Execute(Command::SignDataOnly, Hex(kHash)).sequenceNumber, 8U);
}

TEST_F(Damaged, FilesThatBecameAnotherDeviceAreNoticed) {
  MakeDevice();
  Device device = Device::Open(File());
  static_cast<void>(Device::Open(folder_ / "other.zel", kCreate));
  std::filesystem::copy_file(folder_ / "other.zel", File(),
                             std::filesystem::copy_options::overwrite_existing);
  ExpectRefused(device.Execute(Command::SignDataOnly, Hex(kHash)), RefusalCode::Storage,
                "device file '" + File().string() + "': it holds another device by now");
}

}  // namespace
}  // namespace softdevice::test
