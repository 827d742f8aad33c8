// Reports: what they hold, what a closing closes, and who else can read and verify them.

#include <memory>

#include "Support.h"
#include "VnZEL10cmn/VnZEL10cmn.h"
#include "softdevice/Verify.h"

namespace softdevice::test {
namespace {

using VnZEL10cmn::ByteArray;
using VnZEL10cmn::clsZelContainer;
using VnZEL10cmn::clsZelReport;
using VnZEL10cmn::Currency;
using VnZEL10cmn::Date;
using VnZEL10cmn::ZelLifeCycle;
using VnZEL10cmn::ZelReportType;
using VnZEL10cmn::ZELSerialType;

const std::string kPlainReport = kDate + kTime;
const std::string kReportHash = "D4 14 00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F 10 11 12 13 ";
const std::string kActivated = "C0 01 03 C4 0B 44 45 31 32 33 34 35 36 37 38 39 C5 01 01 ";
const std::string kDeactivated = "C0 01 04 C4 0B 44 45 31 32 33 34 35 36 37 38 39 C5 01 01 ";
const std::string kNoTransactions = "D2 01 00 D3 01 00 ";
const std::string kEmptyContainers = "E1 00 E2 00 E3 00 E4 00 E5 00 E6 00 E7 00 E8 00 E9 00 ";
constexpr const char* kNoFit = "the signature doesn't belong to this request, response and public key";

// A day in December, added up by hand.
// Sale: class 1 119.00, VAT 19.00; class 2 10.70, VAT 0.70, of which third party 5.35.
const std::string kSale = kHead + kContainer1 + "E2 11 D8 03 01 07 0C DA 02 07 0C DB 02 07 00 D6 02 53 5C";
// Sale: class 1 -23.80, with 35.70 in negative prices, VAT -3.80.
const std::string kReturn = kHead + "E1 12 D8 03 02 38 0D D9 03 03 57 0C DA 02 38 0D DB 02 19 00";
// Delivery note: class 1 7.00 at 16 %, VAT 1.12; class 3 1.00 without VAT.
const std::string kDelivery =
    kHead + "D7 00 E1 0C D8 02 70 0C DA 02 11 2C DB 02 16 00 E3 07 D8 02 10 0C DB 01 00";
// Training: class 2 2.14, VAT 0.14, all of it third party.
const std::string kTraining = kHead + "CA 00 E2 10 D8 02 21 4C DA 02 01 4C DB 02 07 00 D6 02 21 4C";
// Class 1: 95.20, negative 35.70, VAT 15.20, 19 %. Class 2: 10.70, VAT 0.70, 7 %, third party 5.35.
// Third party: 5.35. Delivery notes: 8.00, VAT 1.12. Training: 2.14, VAT 0.14, third party 2.14.
const std::string kDecember =
    "E1 13 D8 03 09 52 0C D9 03 03 57 0C DA 03 01 52 0C DB 02 19 00 "
    "E2 11 D8 03 01 07 0C DA 02 07 0C DB 02 07 00 D6 02 53 5C "
    "E3 00 E4 00 E5 00 E6 00 E7 04 D8 02 53 5C E8 08 D8 02 80 0C DA 02 11 2C "
    "E9 0C D8 02 21 4C DA 02 01 4C D6 02 21 4C ";

// A sale in January: class 1 11.60 at 16 %, VAT 1.60, third party -1.00.
const std::string kJanuarySale = "CD 04 20 27 01 01 " + kTime + kOperator + kHash + kCurrency +
                                 "E1 11 D8 03 01 16 0C DA 02 16 0C DB 02 16 00 D6 02 10 0D";
const std::string kJanuary =
    "E1 11 D8 03 01 16 0C DA 02 16 0C DB 02 16 00 D6 02 10 0D "
    "E2 00 E3 00 E4 00 E5 00 E6 00 E7 08 D8 02 10 0D D9 02 10 0C E8 00 E9 00 ";

// Both together. Class 1: 106.80, negative 35.70, VAT 16.80, 16 %, third party -1.00, rate changed.
// Third party: 4.35, of which 1.00 negative.
const std::string kBothMonths =
    "E1 19 D8 03 10 68 0C D9 03 03 57 0C DA 03 01 68 0C DB 02 16 00 D6 02 10 0D DE 00 "
    "E2 11 D8 03 01 07 0C DA 02 07 0C DB 02 07 00 D6 02 53 5C "
    "E3 00 E4 00 E5 00 E6 00 E7 08 D8 02 43 5C D9 02 10 0C E8 08 D8 02 80 0C DA 02 11 2C "
    "E9 0C D8 02 21 4C DA 02 01 4C D6 02 21 4C ";

std::string Span(const std::string& first, const std::string& last) {
  return kPlainReport + "D0 03 " + first + " D1 03 " + last;
}

class Report : public DeviceTest {
 protected:
  Report() : device_(Open()) {}

  void BookDecember() {
    for (const std::string& request : {kSale, kReturn, kDelivery, kTraining}) {
      Accepted(device_, Command::SignBooking, request);
    }
  }

  Device device_;
};

TEST_F(Report, ClosesWhatWasSignedSinceTheLastClosing) {
  BookDecember();
  Accepted(device_, Command::SignDataOnly, kHash);
  ExpectSigned(Accepted(device_, Command::ReportSigned, kPlainReport),
               kActivated + "CC 01 02 D2 01 01 D3 01 05 " + kDecember);
  Accepted(device_, Command::SignBooking, kJanuarySale);
  ExpectSigned(Accepted(device_, Command::ReportSigned, kPlainReport + kReportHash),
               kActivated + "CC 01 03 D2 01 06 D3 01 06 " + kJanuary);
  ExpectSigned(Accepted(device_, Command::ReportSigned, kPlainReport),
               kActivated + "CC 01 04 " + kNoTransactions + kEmptyContainers);
}

TEST_F(Report, OfAClosingMayCoverMonths) {
  BookDecember();
  Accepted(device_, Command::SignBooking, kJanuarySale);
  ExpectSigned(Accepted(device_, Command::ReportSigned, kPlainReport),
               kActivated + "CC 01 02 D2 01 01 D3 01 05 " + kBothMonths);
}

TEST_F(Report, ThatIsUnsignedShowsWhatIsOpenAndChangesNothing) {
  EXPECT_EQ(Accepted(device_, Command::ReportUnsigned, kPlainReport),
            Hex(kActivated + kNoTransactions + kEmptyContainers));
  BookDecember();
  for (int i = 0; i < 2; ++i) {
    const Answer answer = device_.Execute(Command::ReportUnsigned, Hex(kPlainReport));
    EXPECT_TRUE(answer.accepted);
    EXPECT_EQ(answer.sequenceNumber, 0U);
    EXPECT_EQ(answer.response, Hex(kActivated + "D2 01 01 D3 01 04 " + kDecember));
  }
  EXPECT_EQ(device_.State(), (DeviceState{LifeCycle::Activated, 0, 4, 1, 0}));
  EXPECT_FALSE(device_.FindReport(2).has_value());
  Accepted(device_, Command::ReportSigned, kPlainReport);
  EXPECT_EQ(Accepted(device_, Command::ReportUnsigned, kPlainReport),
            Hex(kActivated + kNoTransactions + kEmptyContainers));
}

TEST_F(Report, OverMonthsAddsThemUpWhateverWasClosed) {
  BookDecember();
  Accepted(device_, Command::ReportSigned, kPlainReport);
  Accepted(device_, Command::SignBooking, kJanuarySale);
  const DeviceState before = device_.State();
  const struct {
    const char* first;
    const char* last;
    std::string containers;
  } cases[] = {{"20 26 12", "20 26 12", kDecember},        {"20 27 01", "20 27 01", kJanuary},
               {"20 26 12", "20 27 01", kBothMonths},      {"00 01 01", "99 99 12", kBothMonths},
               {"20 26 01", "20 26 11", kEmptyContainers}, {"20 27 02", "20 28 12", kEmptyContainers},
               {"20 26 01", "20 26 12", kDecember}};
  for (const auto& [first, last, containers] : cases) {
    const Answer answer = device_.Execute(Command::ReportSpan, Hex(Span(first, last)));
    EXPECT_TRUE(answer.accepted) << answer.reason;
    EXPECT_EQ(answer.sequenceNumber, 0U);
    EXPECT_EQ(answer.response, Hex(kActivated + containers)) << first << " to " << last;
  }
  EXPECT_EQ(device_.State(), before);
}

TEST_F(Report, GivesTheTotalsThatTheDeviceHas) {
  BookDecember();
  Accepted(device_, Command::SignBooking, kJanuarySale);
  EXPECT_EQ(device_.OpenTotals(), (std::vector<Total>{{0, 225, 10680, 3570, 1680, 1600, 3, false, true, -100},
                                                      {0, 226, 1070, 0, 70, 700, 1, false, false, 535},
                                                      {0, 231, 435, 100, 0, 0, 2, false, false, 0},
                                                      {0, 232, 800, 0, 112, 0, 1, false, false, 0},
                                                      {0, 233, 214, 0, 14, 0, 1, false, false, 214}}));
  EXPECT_EQ(device_.Totals(), (std::vector<Total>{{202612, 225, 9520, 3570, 1520, 1900, 2, false, false, 0},
                                                  {202612, 226, 1070, 0, 70, 700, 1, false, false, 535},
                                                  {202612, 231, 535, 0, 0, 0, 1, false, false, 0},
                                                  {202612, 232, 800, 0, 112, 0, 1, false, false, 0},
                                                  {202612, 233, 214, 0, 14, 0, 1, false, false, 214},
                                                  {202701, 225, 1160, 0, 160, 1600, 1, false, false, -100},
                                                  {202701, 231, -100, 100, 0, 0, 1, false, false, 0}}));
  const std::vector<Total> months = device_.Totals();
  Accepted(device_, Command::ReportSigned, kPlainReport);
  EXPECT_TRUE(device_.OpenTotals().empty());
  EXPECT_EQ(device_.Totals(), months);
}

TEST_F(Report, MarksRatesThatChangedSinceTheLastClosing) {
  const std::string at19 = kHead + "E1 07 D8 01 1C DB 02 19 00";
  const std::string at16 = kHead + "E1 07 D8 01 1C DB 02 16 00";
  const auto firstContainer = [this] {
    const Bytes response = Accepted(device_, Command::ReportSigned, kPlainReport);
    const auto start = response.begin() + 28;
    return Bytes(start, start + 2 + start[1]);
  };
  Accepted(device_, Command::SignBooking, at19);
  EXPECT_EQ(firstContainer(), Hex("E1 07 D8 01 1C DB 02 19 00"));
  Accepted(device_, Command::SignBooking, at16);  // changed, but not since the last closing
  EXPECT_EQ(firstContainer(), Hex("E1 07 D8 01 1C DB 02 16 00"));
  Accepted(device_, Command::SignBooking, at16);
  Accepted(device_, Command::SignBooking, at19);
  Accepted(device_, Command::SignBooking, at19);
  EXPECT_EQ(firstContainer(), Hex("E1 09 D8 01 3C DB 02 19 00 DE 00"));
  EXPECT_EQ(
      Accepted(device_, Command::ReportSpan, Span("20 26 12", "20 26 12")),
      Hex(kActivated + "E1 09 D8 01 5C DB 02 19 00 DE 00 E2 00 E3 00 E4 00 E5 00 E6 00 E7 00 E8 00 E9 00"));
}

TEST_F(Report, MarksSumsBeyondFifteenDigits) {
  const std::string oneCent = kHead + "E1 07 D8 01 1C DB 02 19 00";
  const std::string others = "E2 00 E3 00 E4 00 E5 00 E6 00 E7 00 E8 00 E9 00";
  const std::string head = kActivated + "D2 01 01 D3 01 ";
  Accepted(device_, Command::SignBooking, oneCent);
  RunSqlAndSeal("UPDATE total SET turnover = 999999999999998");
  Accepted(device_, Command::SignBooking, oneCent);
  const Bytes full = Accepted(device_, Command::ReportUnsigned, kPlainReport);
  EXPECT_EQ(full, Hex(head + "02 E1 0E D8 08 99 99 99 99 99 99 99 9C DB 02 19 00 " + others));
  clsZelReport report;
  ASSERT_TRUE(report.BinaryDataSet(ZELSerialType::Response, ByteArray(full), 0));
  EXPECT_EQ(report.Container(1)->Turnover(), Currency::FromScaled(99'999'999'999'999'900));
  EXPECT_FALSE(report.Container(1)->OverflowTO());
  Accepted(device_, Command::SignBooking, oneCent);
  EXPECT_EQ(Accepted(device_, Command::ReportUnsigned, kPlainReport),
            Hex(head + "03 E1 06 DB 02 19 00 DD 00 " + others));
  // A report over two months overflows although neither of them does.
  RunSqlAndSeal("UPDATE total SET turnover = -999999999999999, overflow = 0 WHERE month = 202612");
  RunSqlAndSeal(
      "INSERT INTO total SELECT 202701, container, turnover, 0, 0, 1900, 1, 0, 0, 0 FROM total WHERE month = "
      "202612");
  EXPECT_EQ(Accepted(device_, Command::ReportSpan, Span("20 26 12", "20 26 12")),
            Hex(kActivated + "E1 0E D8 08 99 99 99 99 99 99 99 9D DB 02 19 00 " + others));
  EXPECT_EQ(Accepted(device_, Command::ReportSpan, Span("20 26 12", "20 27 01")),
            Hex(kActivated + "E1 10 D8 08 99 99 99 99 99 99 99 8D DB 02 19 00 DD 00 " + others));
}

TEST_F(Report, IsWhatTheLibraryReads) {
  BookDecember();
  Accepted(device_, Command::SignBooking, kJanuarySale);
  clsZelReport report;
  ASSERT_TRUE(report.BinaryDataSet(ZELSerialType::Response,
                                   ByteArray(Accepted(device_, Command::ReportSigned, kPlainReport)), 0))
      << report.ErrorObject().ErrorMsg();
  EXPECT_EQ(report.ZelStatus(), ZelLifeCycle::Activated);
  EXPECT_EQ(report.TpID(), "DE123456789");
  EXPECT_EQ(report.TpIdNbr(), Currency(1));
  EXPECT_EQ(report.SequenceNbr(), Currency(2));
  EXPECT_EQ(report.TransSeqNrFirst(), Currency(1));
  EXPECT_EQ(report.TransSeqNrLast(), Currency(5));
  EXPECT_EQ(report.Signature().size(), 88U);
  const struct {
    std::int64_t turnover, negative, vat, rate, thirdParty;  // in cents, hundredths of a percent
    bool changed;
  } expected[] = {{10680, 3570, 1680, 1600, -100, true},
                  {1070, 0, 70, 700, 535, false},
                  {0, 0, 0, 0, 0, false},
                  {0, 0, 0, 0, 0, false},
                  {0, 0, 0, 0, 0, false},
                  {0, 0, 0, 0, 0, false},
                  {435, 100, 0, 0, 0, false},
                  {800, 0, 112, 0, 0, false},
                  {214, 0, 14, 0, 214, false}};
  for (int i = 0; i < 9; ++i) {
    const clsZelContainer& container = *report.Container(i + 1);
    EXPECT_EQ(container.Turnover(), Currency::FromScaled(expected[i].turnover * 100)) << i;
    EXPECT_EQ(container.TurnoverNeg(), Currency::FromScaled(expected[i].negative * 100)) << i;
    EXPECT_EQ(container.VAT(), Currency::FromScaled(expected[i].vat * 100)) << i;
    EXPECT_EQ(container.VATrate(), Currency::FromScaled(expected[i].rate * 100)) << i;
    EXPECT_EQ(container.TurnoverThrd(), Currency::FromScaled(expected[i].thirdParty * 100)) << i;
    EXPECT_EQ(container.VATchange(), expected[i].changed) << i;
    EXPECT_FALSE(container.OverflowTO()) << i;
  }
  // All nine containers are in every report, so that an object that reads another holds nothing of this one.
  ASSERT_TRUE(report.BinaryDataSet(ZELSerialType::Response,
                                   ByteArray(Accepted(device_, Command::ReportDeactivate, kPlainReport)), 0));
  EXPECT_EQ(report.ZelStatus(), ZelLifeCycle::Deactivated);
  EXPECT_EQ(report.SequenceNbr(), Currency(3));
  EXPECT_EQ(report.TransSeqNrFirst(), Currency(0));
  EXPECT_EQ(report.TransSeqNrLast(), Currency(0));
  for (int i = 1; i <= 9; ++i) {
    EXPECT_EQ(report.Container(i)->Turnover(), Currency(0));
    EXPECT_FALSE(report.Container(i)->VATchange());
  }
  ASSERT_TRUE(report.BinaryDataSet(
      ZELSerialType::Response,
      ByteArray(Accepted(device_, Command::ReportSpan, Span("20 27 01", "20 27 01"))), 0));
  EXPECT_EQ(report.Container(1)->Turnover(), Currency::FromScaled(116'000));
  ASSERT_TRUE(report.BinaryDataSet(ZELSerialType::Response,
                                   ByteArray(Accepted(device_, Command::ReportUnsigned, kPlainReport)), 0));
  EXPECT_EQ(report.Signature(), "");
}

TEST_F(Report, IsWhatTheLibraryAsksFor) {
  std::filesystem::remove(File());
  Device device = OpenInactive();
  const struct {
    ZelReportType type;
    Command command;
  } cases[] = {{ZelReportType::Unsigned, Command::ReportUnsigned},
               {ZelReportType::ActivateZEL, Command::ReportActivate},
               {ZelReportType::Signed, Command::ReportSigned},
               {ZelReportType::Span, Command::ReportSpan},
               {ZelReportType::DeactivateZEL, Command::ReportDeactivate}};
  for (const auto& [type, command] : cases) {
    clsZelReport report;
    report.ReportDate(Date::FromCivil(2026, 12, 31, 8, 5));
    report.TransportPIN("271828");
    report.SpanMonthFrom(Date::FromCivil(2026, 11, 30));
    report.SpanMonthUpTo(Date::FromCivil(2026, 12, 1));
    ByteArray request;
    ASSERT_TRUE(report.BinaryDataGet(ZELSerialType::Request, request, 0, type))
        << report.ErrorObject().ErrorMsg();
    const Answer answer = device.Execute(command, {request.data(), static_cast<std::size_t>(request.size())});
    ASSERT_TRUE(answer.accepted) << static_cast<int>(command) << ": " << answer.reason;
    EXPECT_TRUE(report.BinaryDataSet(ZELSerialType::Response, ByteArray(answer.response), 0))
        << report.ErrorObject().ErrorMsg();
  }
}

TEST_F(Report, ThatIsSignedIsVerified) {
  const std::string key = device_.PublicKeyPem();
  BookDecember();
  Accepted(device_, Command::SignBooking, kJanuarySale);
  std::filesystem::path other = folder_ / "other.zel";
  OpenOptions inactive = kCreate;
  inactive.activate = false;
  Device second = Device::Open(other, inactive);
  const std::string activation = kPlainReport + "C3 06 31 32 33 34 35 36";
  const struct {
    std::string request;
    Bytes response;
    std::string key;
  } cases[] = {
      {kPlainReport, Accepted(device_, Command::ReportSigned, kPlainReport), key},
      {kPlainReport + kReportHash, Accepted(device_, Command::ReportSigned, kPlainReport + kReportHash), key},
      {kPlainReport, Accepted(device_, Command::ReportDeactivate, kPlainReport), key},
      {activation, Accepted(second, Command::ReportActivate, activation), second.PublicKeyPem()}};
  for (const auto& [request, response, publicKey] : cases) {
    const Bytes good = Hex(request);
    const Verdict verdict = VerifyReport(good, response, publicKey);
    EXPECT_TRUE(verdict.ok) << verdict.reason;
    EXPECT_EQ(verdict.reason, "");
    for (const std::uint8_t change : {0x01, 0x10, 0xFF}) {
      for (std::size_t i = 0; i < good.size(); ++i) {
        Bytes changed = good;
        changed[i] = static_cast<std::uint8_t>(changed[i] ^ change);
        EXPECT_FALSE(VerifyReport(changed, response, publicKey).ok) << i;
      }
      for (std::size_t i = 0; i < response.size(); ++i) {
        Bytes changed = response;
        changed[i] = static_cast<std::uint8_t>(changed[i] ^ change);
        EXPECT_FALSE(VerifyReport(good, changed, publicKey).ok) << i;
      }
    }
    for (std::size_t length = 0; length < response.size(); ++length) {
      EXPECT_FALSE(
          VerifyReport(good, Bytes(response.begin(), response.begin() + static_cast<int>(length)), key).ok);
    }
  }
  // One closing's response for another's request.
  EXPECT_EQ(VerifyReport(Hex(kPlainReport), cases[1].response, key).reason, kNoFit);
  EXPECT_EQ(VerifyReport(Hex(kPlainReport + kReportHash), cases[2].response, key).reason, kNoFit);
}

TEST_F(Report, ThatIsNotSignedIsNotVerified) {
  const std::string key = device_.PublicKeyPem();
  const Bytes open = Accepted(device_, Command::ReportUnsigned, kPlainReport);
  const Bytes span = Accepted(device_, Command::ReportSpan, Span("20 26 12", "20 26 12"));
  const Bytes closing = Accepted(device_, Command::ReportSigned, kPlainReport);
  EXPECT_EQ(VerifyReport(Hex(kPlainReport), open, key).reason, "an unsigned report is not signed");
  EXPECT_EQ(VerifyReport(Hex(Span("20 26 12", "20 26 12")), span, key).reason,
            "a report over months is not signed");
  EXPECT_EQ(VerifyReport(Hex(kPlainReport), span, key).reason, "an unsigned report is not signed");
  EXPECT_EQ(VerifyReport({}, closing, key).reason,
            "the request is no signed report: position 0: the request ends here, expected tag 0xCD (date)");
  EXPECT_EQ(
      VerifyReport(Hex(kPlainReport), {}, key).reason,
      "the response is no answer to a signed report: position 0: the response ends here, expected tag 0xC0 "
      "(state)");
  EXPECT_EQ(
      VerifyReport(Hex(kPlainReport), Joined(closing, Hex("DD 00")), key).reason,
      "the response is no answer to a signed report: position 112, tag 0xDD (overflow): not expected here, "
      "expected the end of the response");
  EXPECT_EQ(VerifyReport(Hex(kPlainReport), closing, "").reason,
            "the public key can't be used: it is no key in PEM form");
  const std::string start = kActivated + "CC 01 02 D2 01 00 D3 01 00 ";
  const auto reason = [&](const std::string& containers) {
    return VerifyReport(Hex(kPlainReport), Hex(start + containers), key).reason;
  };
  const std::string no = "the response is no answer to a signed report: ";
  EXPECT_EQ(reason("E2 00"), no + "position 28, tag 0xE2 (container 2): not expected here, expected tag 0xE1 "
                                  "(container 1)");
  EXPECT_EQ(reason("E1 0B D8 09 00 00 00 00 00 00 00 00 0C"),
            no + "position 30, tag 0xD8 (turnover): length 9, expected 1 to 8");
  EXPECT_EQ(
      reason("E1 02 DC 00"),
      no + "position 30, tag 0xDC (unknown): not expected here, expected tag 0xD8 (turnover), tag 0xD9 "
           "(negative turnover), tag 0xDA (VAT), tag 0xDB (VAT rate), tag 0xD6 (third-party turnover), tag "
           "0xDD (overflow), tag 0xDE (VAT rate changed) or the end of tag 0xE1 (container 1)");
  EXPECT_EQ(reason("E1 03 DE 01 00"), no + "position 30, tag 0xDE (VAT rate changed): length 1, expected 0");
}

}  // namespace
}  // namespace softdevice::test
