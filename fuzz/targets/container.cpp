// Reading of a turnover container.

#include "fuzz/Objects.h"
#include "fuzz/Targets.h"

namespace fuzz {

void Container(Bytes data) {
  using VnZEL10cmn::ByteArray;
  using VnZEL10cmn::ZelTags;
  Input input(data);
  VnZEL10cmn::clsZelContainer container;
  const auto tag = static_cast<ZelTags>(input.Byte());
  const bool isResponse = input.Flag();
  container.Tag(tag);
  container.IsZelResponse(isResponse);
  const Place place = TakePlace(input);
  std::int32_t start = place.start;
  const bool done = container.BinaryDataSet(place.buffer, start);
  CheckOutcome(container, done, "BinaryDataSet");
  FUZZ_CHECK(container.IsZelResponse() == isResponse);
  FUZZ_CHECK(container.CounterTO() == VnZEL10cmn::Currency());
  if (!done) {
    FUZZ_CHECK(start == place.start);
    FUZZ_CHECK(container.Tag() == tag);
    return;
  }
  const auto found = static_cast<ZelTags>(place.buffer[place.start]);
  FUZZ_CHECK(start == place.start + 2 + place.buffer[place.start + 1]);
  FUZZ_CHECK(container.Tag() == found && (tag == ZelTags{} || tag == found));

  // A container in the form of a request, unless its amounts are too large for it.
  constexpr std::int32_t kStart = 2;
  ByteArray record = Canary(0, 63);
  std::int32_t end = kStart;
  if (!container.BinaryDataGet(record, end)) {
    CheckOutcome(container, false, "BinaryDataGet");
    FUZZ_CHECK(end == kStart && IsIntactOutside(record, kStart, kStart + 40));
    return;
  }
  FUZZ_CHECK(IsIntactOutside(record, kStart, end));
  if (end == kStart) {
    FUZZ_CHECK(container.Turnover() == VnZEL10cmn::Currency() &&
               container.TurnoverNeg() == VnZEL10cmn::Currency());
    return;
  }
  VnZEL10cmn::clsZelContainer again;
  std::int32_t at = kStart;
  FUZZ_CHECK(again.BinaryDataSet(record, at) && at == end);
  FUZZ_CHECK(again.Tag() == found && HaveSameTurnover(container, again));
  ByteArray tooShort = Canary(0, kStart + 27);
  std::int32_t stopped = kStart;
  FUZZ_CHECK(!container.BinaryDataGet(tooShort, stopped) && stopped == kStart);
  FUZZ_CHECK(IsIntactOutside(tooShort, 0, 0));
  FUZZ_CHECK(container.Clear() && container.Tag() == found && container.Turnover() == VnZEL10cmn::Currency());
}

}  // namespace fuzz
