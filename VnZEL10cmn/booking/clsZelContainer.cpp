#include "VnZEL10cmn/booking/clsZelContainer.h"

#include <string>

#include "VnZEL10cmn/device/clsZelBaseCoding.h"
#include "VnZEL10cmn/device/internal/Records.h"
#include "VnZEL10cmn/types/internal/Text.h"

namespace VnZEL10cmn {

using internal::Compose;
using internal::kCrLf;
using internal::kRecordHead;

namespace {

/// Room that a container wants before it writes anything.
constexpr std::int32_t kRoom = 28;

}  // namespace

clsZelContainer::clsZelContainer() : VnObject("clsZelContainer") {}

clsZelContainer::~clsZelContainer() = default;

ZelTags clsZelContainer::Tag() const noexcept { return tag_; }

void clsZelContainer::Tag(ZelTags Value) noexcept { tag_ = Value; }

bool clsZelContainer::IsZelResponse() const noexcept { return isZelResponse_; }

void clsZelContainer::IsZelResponse(bool Value) noexcept { isZelResponse_ = Value; }

Currency clsZelContainer::Turnover() const noexcept { return turnover_; }

Currency clsZelContainer::TurnoverNeg() const noexcept { return turnoverNeg_; }

void clsZelContainer::TurnoverNeg(Currency Value) noexcept { turnoverNeg_ = Value; }

Currency clsZelContainer::TurnoverThrd() const noexcept { return turnoverThrd_; }

void clsZelContainer::TurnoverThrd(Currency Value) noexcept { turnoverThrd_ = Value; }

Currency clsZelContainer::VAT() const noexcept { return vat_; }

void clsZelContainer::VAT(Currency Value) noexcept { vat_ = Value; }

Currency clsZelContainer::VATrate() const noexcept { return vatRate_; }

void clsZelContainer::VATrate(Currency Value) noexcept { vatRate_ = Value; }

Currency clsZelContainer::CounterTO() const noexcept { return counter_; }

bool clsZelContainer::OverflowTO() const noexcept { return overflow_; }

bool clsZelContainer::VATchange() const noexcept { return vatChange_; }

bool clsZelContainer::BinaryDataGet(ByteArray& Data, std::int32_t& Start) {
  return Run("BinaryDataGet", [&] { return WriteRecord(Data, Start); });
}

bool clsZelContainer::WriteRecord(ByteArray& data, std::int32_t& start) {
  constexpr std::string_view operation = "BinaryDataGet";
  if (turnover_ == Currency() && turnoverNeg_ == Currency()) {
    return true;
  }
  if (tag_ == ZelTags{}) {
    return Fail(ZELErrorCodes::Err_Ser_DataMismatch,
                Compose("Fehler in der Datenzusammensetzung!", kCrLf, "Es ist kein gültiges TAG angegeben!"),
                operation);
  }
  const std::int64_t end = std::int64_t{start} + kRoom;
  if (end > data.UBound()) {
    return Fail(ZELErrorCodes::Err_Zel_CnvDataSize,
                Compose(internal::kBufferTooSmall, internal::kStartLine, start, internal::kTagLine,
                        internal::HexByte(tag_), "\r\n    Länge (max.) ....: ", kRoom, internal::kReadEndLine,
                        end, internal::kUpperLine, data.UBound()),
                operation);
  }
  clsZelBaseCoding coder;
  const auto fail = [&](std::string_view accessor) {
    clsVnError& inner = coder.ErrorObject();
    return FailAs(inner, inner.ErrorMsg(), Compose(operation, ".[", accessor, "]"));
  };
  std::int32_t position = start + kRecordHead;
  const auto writeAmount = [&](ZelRqstAmounts tag, Currency amount) {
    return amount == Currency() || coder.SetZelAmountsSpc01(data, position, tag, amount, false) ||
           fail("SetZelAmountsScp01");
  };
  data[start] = static_cast<std::uint8_t>(tag_);
  const bool written = writeAmount(ZelRqstAmounts::Trnvr, turnover_) &&
                       writeAmount(ZelRqstAmounts::Trnvr_neg, turnoverNeg_) &&
                       writeAmount(ZelRqstAmounts::Trnvr_Vat, vat_) &&
                       (coder.SetZelVatRate(data, position, vatRate_) || fail("SetZelVatRate")) &&
                       writeAmount(ZelRqstAmounts::Trnvr_Thirdparty, turnoverThrd_);
  if (written) {
    data[start + 1] = static_cast<std::uint8_t>(position - start - kRecordHead);
    start = position;
  }
  return written;
}

bool clsZelContainer::BinaryDataSet(const ByteArray& Data, std::int32_t& Start) {
  return Run("BinaryDataSet", [&] { return ReadRecord(Data, Start); });
}

bool clsZelContainer::ReadRecord(const ByteArray& data, std::int32_t& start) {
  constexpr std::string_view operation = "BinaryDataSet";
  Clear();
  const auto found = static_cast<ZelTags>(data[start]);
  if (tag_ != ZelTags{} && tag_ != found) {
    return Fail(ZELErrorCodes::Err_Zel_CnvDataSize,
                Compose("Das TAG an der Startposition entspricht.", kCrLf, "nicht dem erwarteten TAG!",
                        internal::kStartLine, start, internal::kTagLine, internal::HexByte(found),
                        "\r\n    Tag erwartet ....: ", internal::HexByte(tag_)),
                operation);
  }
  if (const auto refusal = internal::CheckRecordEnd(data, start)) {
    return Fail(*refusal, operation);
  }
  clsZelBaseCoding coder;
  const auto fail = [&](std::string_view accessor) {
    clsVnError& inner = coder.ErrorObject();
    return FailAs(inner, inner.ErrorMsg(), Compose(operation, ".[", accessor, "]"));
  };
  std::int32_t position = start;
  internal::Advance(position, 0);
  const std::int64_t end = std::int64_t{position} + data[start + 1];
  const auto readAmount = [&](ZelTags tag, Currency& amount) {
    return coder.GetZelAmounts(data, position, tag, amount, isZelResponse_) || fail("GetZelAmountsSpec01");
  };
  const auto readFlag = [&](bool& flag) {
    flag = true;
    internal::Advance(position, 0);
    return true;
  };
  bool done = true;
  while (done && position < end) {
    const auto tag = static_cast<ZelTags>(data[position]);
    switch (tag) {
      case ZelTags::Trnvr_Thirdparty: done = readAmount(tag, turnoverThrd_); break;
      case ZelTags::Trnvr: done = readAmount(tag, turnover_); break;
      case ZelTags::Trnvr_neg: done = readAmount(tag, turnoverNeg_); break;
      case ZelTags::Trnvr_Vat: done = readAmount(tag, vat_); break;
      case ZelTags::Trnvr_Vat_Rate:
        done = coder.GetZelVatRate(data, position, vatRate_) || fail("GetZelVatRate");
        break;
      case ZelTags::Trnvr_Counter:
      case ZelTags::Trnvr_Overflow: done = readFlag(overflow_); break;
      case ZelTags::Trnvr_Vat_Changed: done = readFlag(vatChange_); break;
      default: done = Fail(internal::UnexpectedTag(static_cast<std::uint8_t>(tag)), operation); break;
    }
  }
  if (done && position > end) {
    // The last inner record claims bytes that no longer belong to the container.
    return Fail(ZELErrorCodes::Err_Zel_CnvDataSize,
                Compose(internal::kBufferTooSmall, internal::kStartLine, start, internal::kTagLine,
                        internal::HexByte(found), internal::kLengthLine, data[start + 1],
                        internal::kReadEndLine, position - 1, internal::kUpperLine, end - 1),
                operation);
  }
  if (done) {
    tag_ = found;
    start = position;
  }
  return done;
}

bool clsZelContainer::Clear() {
  ClearErr();
  turnoverThrd_ = turnover_ = turnoverNeg_ = vat_ = vatRate_ = counter_ = Currency();
  overflow_ = false;
  vatChange_ = false;
  return true;
}

}  // namespace VnZEL10cmn
