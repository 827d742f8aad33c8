#include "tools/Commands.h"
#include "tools/Common.h"
#include "tools/Document.h"
#include "tools/Dump.h"
#include "tools/Signer.h"
#include "tools/Verify.h"

namespace zel {

using VnZEL10cmn::clsZelReport;
using VnZEL10cmn::clsZelTransAct;
using VnZEL10cmn::clsZelTransActData;

namespace {

template <typename Object>
std::string ReceiptOf(const std::string& xml) {
  Object object;
  ImportDocument(xml, object);
  return TextOf(object);
}

std::string Receipt(const std::string& xml, bool wide) {
  switch (GuessDocumentKind(xml)) {
    case DocumentKind::Booking: return ReceiptOf<clsZelTransAct>(xml);
    case DocumentKind::Data: return ReceiptOf<clsZelTransActData>(xml);
    case DocumentKind::Report: break;
  }
  const Document parts = SplitDocument(xml);
  clsZelReport report;
  TakeParts(parts, report);
  return ReportText(parts.request, parts.response, report, wide);
}

std::string ReadPublicKey(const VerifyOptions& options) {
  if (!options.key) return OpenDevice(options.device).PublicKeyPem();
  std::string pem = ReadFile(*options.key);
  if (pem.find("-----BEGIN PUBLIC KEY-----") == std::string::npos) {
    throw Failure(ExitStatus::NotRight, Quoted(*options.key) + " holds no public key (PEM)");
  }
  return pem;
}

}  // namespace

ExitStatus RunReceipt(const InputOptions& inputs, bool wide) {
  return ReadAll(inputs, {.answer =
                              [wide](const Input& input, bool json) {
                                std::string receipt = Receipt(input.content, wide);
                                return json ? Answer{.json = {{"receipt", std::move(receipt)}}}
                                            : Answer{.text = std::move(receipt)};
                              },
                          .titles = true});
}

ExitStatus RunDump(const InputOptions& inputs) {
  return ReadAll(inputs, {.answer =
                              [](const Input& input, bool json) {
                                const Dump dump = ReadDump(input.content);
                                Answer answer;
                                if (json) {
                                  answer.json = DumpToJson(dump);
                                } else {
                                  answer.text = DumpToText(dump);
                                }
                                if (!dump.faults.empty()) answer.fault = ToText(dump.faults.front());
                                return answer;
                              },
                          .titles = true});
}

ExitStatus RunVerify(const VerifyOptions& options) {
  const softdevice::PublicKey key = ReadPublicKey(options);
  const auto verify = [&key](const Input& input, bool json) {
    const Verification verification = VerifyDocument(input.content, key, input.data);
    Answer answer;
    if (!verification.IsRight()) {
      answer.fault = std::string(CheckName(*verification.failed)) + ": " + verification.reason;
    }
    if (json) {
      answer.json = VerificationToJson(verification);
    } else if (verification.IsRight()) {
      answer.text = OneLine(input.name) + ": all is right, " + DescribeSigned(verification) + "\n";
    }
    return answer;
  };
  return ReadAll(options.inputs,
                 {.answer = verify,
                  .data = options.data ? std::optional(ReadFile(*options.data)) : std::nullopt,
                  .takesData = true});
}

}  // namespace zel
