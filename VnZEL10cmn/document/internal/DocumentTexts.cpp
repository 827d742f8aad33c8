#include "VnZEL10cmn/document/internal/DocumentTexts.h"

#include "VnZEL10cmn/types/internal/Text.h"

namespace VnZEL10cmn::internal {

std::string Via(std::string_view function, std::string_view callee) {
  return Compose(function, ".[", callee, "]");
}

std::string_view HashType(bool useSha256) { return useSha256 ? "SHA256" : "SHA1"; }

Refusal HashOutputFailed() {
  return {ZELErrorCodes::Err_Cmn_NotSpec,
          Compose("Hashausgabe nicht möglich!", kCrLf, "Eine interne Funktion meldete einen Fehler")};
}

Refusal HashNotMade(std::string_view reason) {
  return {ZELErrorCodes::Err_Cmn_NotSpec, Compose("Posten-Hash-Erzeugung nicht möglich!", kCrLf, reason)};
}

}  // namespace VnZEL10cmn::internal
