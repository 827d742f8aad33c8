#pragma once

#include "fuzz/Objects.h"

namespace fuzz {

/// Whether two reports hold the same response.
inline bool AnswerTheSame(const VnZEL10cmn::clsZelReport& left, const VnZEL10cmn::clsZelReport& right) {
  bool same = left.ZelStatus() == right.ZelStatus() && left.TpID() == right.TpID() &&
              left.TpIdNbr() == right.TpIdNbr() && left.SequenceNbr() == right.SequenceNbr() &&
              left.TransSeqNrFirst() == right.TransSeqNrFirst() &&
              left.TransSeqNrLast() == right.TransSeqNrLast() && left.Signature() == right.Signature();
  for (std::int32_t number = 1; number <= 9; ++number) {
    const auto one = left.Container(number);
    const auto other = right.Container(number);
    same = same && HaveSameTurnover(*one, *other) && one->OverflowTO() == other->OverflowTO() &&
           one->VATchange() == other->VATchange() && one->Tag() == other->Tag();
  }
  return same;
}

}  // namespace fuzz
