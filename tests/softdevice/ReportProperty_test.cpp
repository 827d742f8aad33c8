// Random days: each report equals a sum that shares nothing with the device's.

#include <gtest/gtest.h>
// Behind GoogleTest, which it needs.
#include <rapidcheck/gtest.h>

#include <array>
#include <cstdlib>
#include <map>

#include "Support.h"
#include "VnZEL10cmn/VnZEL10cmn.h"
#include "softdevice/Verify.h"

namespace softdevice::test {
namespace {

using VnZEL10cmn::ByteArray;
using VnZEL10cmn::clsZelReport;
using VnZEL10cmn::Currency;
using VnZEL10cmn::ZELSerialType;

/// What one VAT class of a booking holds, in cents; a rate of 0 to 2 stands for 7, 16 and 19 %.
struct Class {
  std::int64_t turnover = 0;
  std::int64_t negative = 0;
  std::int64_t vat = 0;
  std::int64_t thirdParty = 0;
  int rate = 0;
  bool present = false;
};

enum class Kind { Sale, Training, DeliveryNote, TrainingDeliveryNote, Data, Closing };

struct Step {
  Kind kind = Kind::Sale;
  int month = 1;
  std::array<Class, 6> classes;
};

/// "02 38 0D" for -2380.
std::string SignedBcd(std::int64_t cents) {
  std::string digits = std::to_string(std::abs(cents)) + (cents < 0 ? 'D' : 'C');
  return digits.size() % 2 == 0 ? digits : "0" + digits;
}

std::string Record(const std::string& tag, const std::string& hex) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  const std::size_t length = hex.size() / 2;
  return tag + kDigits[length / 16] + kDigits[length % 16] + hex;
}

std::string RequestOf(const Step& step) {
  std::string request =
      "CD0420260" + std::to_string(step.month) + "15" + kTime + kOperator + kHash + kCurrency;
  if (step.kind == Kind::Training || step.kind == Kind::TrainingDeliveryNote) {
    request += "CA00";
  }
  if (step.kind == Kind::DeliveryNote || step.kind == Kind::TrainingDeliveryNote) {
    request += "D700";
  }
  const std::array<std::string, 3> rates = {"DB020700", "DB021600", "DB021900"};
  const std::array<std::string, 6> tags = {"E1", "E2", "E3", "E4", "E5", "E6"};
  for (std::size_t i = 0; i < 6; ++i) {
    const Class& c = step.classes[i];
    if (c.present) {
      std::string value = Record("D8", SignedBcd(c.turnover)) + Record("D9", SignedBcd(c.negative)) +
                          Record("DA", SignedBcd(c.vat)) + rates[static_cast<std::size_t>(c.rate)];
      value += c.thirdParty != 0 ? Record("D6", SignedBcd(c.thirdParty)) : "";
      request += Record(tags[i], value);
    }
  }
  return request;
}

/// Turnover, negative turnover, VAT, third-party turnover and rates of a container.
struct Sum {
  std::int64_t turnover = 0;
  std::int64_t negative = 0;
  std::int64_t vat = 0;
  std::int64_t thirdParty = 0;
  std::vector<int> rates;
};

using Sums = std::array<Sum, 9>;

void Add(Sums& sums, const Step& step) {
  for (std::size_t i = 0; i < 6; ++i) {
    const Class& c = step.classes[i];
    if (!c.present) {
      continue;
    }
    const bool isTraining = step.kind == Kind::Training || step.kind == Kind::TrainingDeliveryNote;
    Sum& sum = sums[isTraining ? 8 : step.kind == Kind::DeliveryNote ? 7 : i];
    sum.turnover += c.turnover;
    sum.negative += c.negative;
    sum.vat += c.vat;
    sum.thirdParty += c.thirdParty;
    if (step.kind == Kind::Sale) {
      sum.rates.push_back(c.rate);
      sums[6].turnover += c.thirdParty;
      sums[6].negative += c.thirdParty < 0 ? -c.thirdParty : 0;
    }
  }
}

Currency Cents(std::int64_t cents) { return Currency::FromScaled(cents * 100); }

void CheckContainers(clsZelReport& report, const Bytes& response, const Sums& sums) {
  RC_ASSERT(report.BinaryDataSet(ZELSerialType::Response, ByteArray(response), 0));
  const std::array<int, 3> rates = {7, 16, 19};
  for (int i = 0; i < 9; ++i) {
    const Sum& sum = sums[static_cast<std::size_t>(i)];
    const auto container = report.Container(i + 1);
    RC_ASSERT(container->Turnover() == Cents(sum.turnover));
    RC_ASSERT(container->TurnoverNeg() == Cents(sum.negative));
    RC_ASSERT(container->VAT() == Cents(sum.vat));
    RC_ASSERT(container->TurnoverThrd() == Cents(sum.thirdParty));
    RC_ASSERT(!container->OverflowTO());
    bool changed = false;
    for (const int rate : sum.rates) {
      changed = changed || rate != sum.rates.front();
    }
    RC_ASSERT(container->VATchange() == changed);
    RC_ASSERT(
        container->VATrate() ==
        (sum.rates.empty() ? Currency(0) : Currency(rates[static_cast<std::size_t>(sum.rates.back())])));
  }
}

rc::Gen<Class> AnyClass() {
  const auto amount = rc::gen::inRange<std::int64_t>(-99'999'999'999, 100'000'000'000);
  return rc::gen::build<Class>(
      rc::gen::set(&Class::turnover, amount),
      rc::gen::set(&Class::negative, rc::gen::inRange<std::int64_t>(0, 100'000'000'000)),
      rc::gen::set(&Class::vat, amount),
      rc::gen::set(&Class::thirdParty, rc::gen::oneOf(rc::gen::just<std::int64_t>(0), amount)),
      rc::gen::set(&Class::rate, rc::gen::weightedElement<int>({{8, 2}, {1, 0}, {1, 1}})),
      rc::gen::set(&Class::present, rc::gen::arbitrary<bool>()));
}

rc::Gen<Step> AnyStep() {
  return rc::gen::build<Step>(
      rc::gen::set(&Step::kind, rc::gen::weightedElement<Kind>({{6, Kind::Sale},
                                                                {1, Kind::Training},
                                                                {1, Kind::DeliveryNote},
                                                                {1, Kind::TrainingDeliveryNote},
                                                                {1, Kind::Data},
                                                                {2, Kind::Closing}})),
      rc::gen::set(&Step::month, rc::gen::inRange(1, 4)),
      rc::gen::set(&Step::classes, rc::gen::container<std::array<Class, 6>>(AnyClass())));
}

using ReportProperty = DeviceTest;

RC_GTEST_FIXTURE_PROP(ReportProperty, EveryReportEqualsAnIndependentSum, ()) {
  const auto steps = *rc::gen::resize(14, rc::gen::container<std::vector<Step>>(AnyStep()));
  Device device = Open();
  clsZelReport report;
  Sums open;
  std::map<int, std::vector<Step>> salesByMonth;
  std::uint32_t number = 0;
  std::uint32_t first = 1;
  const auto close = [&] {
    const Bytes request = Hex(kDate + kTime);
    const Answer answer = device.Execute(Command::ReportSigned, request);
    RC_ASSERT(answer.accepted);
    CheckContainers(report, answer.response, open);
    RC_ASSERT(VerifyReport(request, answer.response, device.PublicKeyPem()).ok);
    const bool isEmpty = first > number;
    RC_ASSERT(report.TransSeqNrFirst() == Currency(isEmpty ? 0 : static_cast<int>(first)));
    RC_ASSERT(report.TransSeqNrLast() == Currency(isEmpty ? 0 : static_cast<int>(number)));
    open = {};
    first = number + 1;
  };
  for (const Step& step : steps) {
    if (step.kind == Kind::Closing) {
      close();
    } else if (step.kind == Kind::Data) {
      RC_ASSERT(device.Execute(Command::SignDataOnly, Hex(kHash)).sequenceNumber == ++number);
    } else {
      RC_ASSERT(device.Execute(Command::SignBooking, Hex(RequestOf(step))).sequenceNumber == ++number);
      Add(open, step);
      salesByMonth[step.month].push_back(step);
    }
  }
  close();
  // A report over months sees each of them in the order of its bookings, one month behind the other.
  for (int from = 1; from <= 3; ++from) {
    for (int upTo = from; upTo <= 3; ++upTo) {
      Sums sums;
      for (int month = from; month <= upTo; ++month) {
        for (const Step& step : salesByMonth[month]) {
          Add(sums, step);
        }
      }
      const std::string request =
          kDate + kTime + "D003 20260" + std::to_string(from) + "D103 20260" + std::to_string(upTo);
      CheckContainers(report, device.Execute(Command::ReportSpan, Hex(request)).response, sums);
    }
  }
}

}  // namespace
}  // namespace softdevice::test
