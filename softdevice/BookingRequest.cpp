#include "softdevice/BookingRequest.h"

namespace softdevice {

namespace {

constexpr Field kBookingFields[] = {
    {tag::kDate, true},
    {tag::kTime, true},
    {tag::kOperator, true},
    {tag::kItemHash, true},
    {tag::kCurrency, true},
    {tag::kTaxExclusive, false},
    {tag::kTraining, false},
    {tag::kDeliveryNote, false},
    {tag::kContainerVat1, false},
    {tag::kContainerVat1 + 1, false},
    {tag::kContainerVat1 + 2, false},
    {tag::kContainerVat1 + 3, false},
    {tag::kContainerVat1 + 4, false},
    {tag::kContainerVat6, false},
};

constexpr Field kContainerFields[] = {
    {tag::kTurnover, false}, {tag::kTurnoverNegative, false}, {tag::kVat, false},
    {tag::kVatRate, true},   {tag::kThirdParty, false},
};

constexpr std::size_t kRecordHeaderLength = 2;

BookedContainer ReadContainer(const Record& container) {
  BookedContainer result;
  result.tag = container.tag;
  RecordReader reader(container.value, DescribeTag(container.tag), container.position + kRecordHeaderLength);
  ReadInOrder(reader, kContainerFields, [&result](const Record& record) {
    switch (record.tag) {
      case tag::kTurnover: result.turnover = ReadAmount(record); break;
      case tag::kTurnoverNegative: result.turnoverNegative = ReadAmount(record); break;
      case tag::kVat: result.vat = ReadAmount(record); break;
      case tag::kVatRate: result.vatRate = ReadVatRate(record); break;
      default: result.thirdParty = ReadAmount(record); result.hasThirdParty = true;
    }
  });
  return result;
}

}  // namespace

BookingRequest ReadBookingRequest(ByteView request) {
  constexpr std::size_t kMaxOperatorLength = 16;
  BookingRequest booking;
  RecordReader reader(request, "the request");
  ReadInOrder(reader, kBookingFields, [&booking](const Record& record) {
    switch (record.tag) {
      case tag::kDate: booking.moment.date = ReadDate(record); break;
      case tag::kTime: booking.moment.time = ReadTime(record); break;
      case tag::kOperator: ReadText(record, kMaxOperatorLength); break;
      case tag::kItemHash: CheckHash(record); break;
      case tag::kCurrency: ReadCounter(record); break;
      case tag::kTaxExclusive: CheckFlag(record); break;
      case tag::kTraining:
        CheckFlag(record);
        booking.training = true;
        break;
      case tag::kDeliveryNote:
        CheckFlag(record);
        booking.deliveryNote = true;
        break;
      default: booking.containers.push_back(ReadContainer(record));
    }
  });
  return booking;
}

}  // namespace softdevice
