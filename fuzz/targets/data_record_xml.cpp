// Import of a signed data record's document.

#include "fuzz/Objects.h"
#include "fuzz/Targets.h"

namespace fuzz {

void DataRecordXml(Bytes data) {
  using VnZEL10cmn::clsZelTransActData;
  Input input(data);
  const std::uint8_t options = input.Byte();
  std::string document;
  if ((options & 1) != 0) {
    document = Input::TextOf(input.Rest());
  } else {
    document = "<transactionEncoded>";
    document += XmlElement(input, "transactionRequest");
    document += XmlElement(input, "transactionResponse");
    document += (options & 2) != 0 ? "" : "</transactionEncoded>";
  }
  clsZelTransActData record;
  std::string text = document;
  const bool done = record.XmlHandler(text, false);
  CheckOutcome(record, done, "");
  FUZZ_CHECK(text == document);
  if (done) {
    CheckExport(record, [](clsZelTransActData& left, clsZelTransActData& right) {
      return left.DataHash() == right.DataHash() && left.DataSignType() == right.DataSignType() &&
             left.ZelRespTpID() == right.ZelRespTpID() && left.ZelRespTpIDNr() == right.ZelRespTpIDNr() &&
             left.ZelRespSeqNr() == right.ZelRespSeqNr() &&
             left.ZelRespSignature() == right.ZelRespSignature();
    });
  } else {
    FUZZ_CHECK(!record.ErrorObject().ErrorFunction().empty());
  }
  if ((options & 4) != 0) {
    CheckText(record);
  }
}

}  // namespace fuzz
