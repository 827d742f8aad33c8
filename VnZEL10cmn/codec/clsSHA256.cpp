#include "VnZEL10cmn/codec/clsSHA256.h"

#include "VnZEL10cmn/codec/internal/Sha.h"
#include "VnZEL10cmn/codec/internal/TextCodecs.h"

namespace VnZEL10cmn {

std::string clsSHA256::SHA256(std::string_view Message) const {
  return internal::LowerHex(internal::Sha256OfText(Message));
}

}  // namespace VnZEL10cmn
