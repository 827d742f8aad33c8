#include "softdevice/Key.h"
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
  const DocumentKind kind = GuessDocumentKind(xml);
  ExpectOneThing(xml, kind);
  switch (kind) {
    case DocumentKind::Booking: return ReceiptOf<clsZelTransAct>(xml);
    case DocumentKind::Data: return ReceiptOf<clsZelTransActData>(xml);
    case DocumentKind::Report: break;
  }
  const Document parts = SplitDocument(xml);
  clsZelReport report;
  TakeParts(parts, report);
  return ReportText(parts.request, parts.response, report, wide);
}

/// A key that can't be used is no fault of any document: it is said once, before the first one is read.
softdevice::PublicKey ReadPublicKey(const VerifyOptions& options) {
  if (!options.key) return OpenDevice(options.device).PublicKeyPem();
  const std::string name = InputName(*options.key);
  try {
    const std::string pem = ReadFile(*options.key);
    if (pem.find("-----BEGIN PUBLIC KEY-----") == std::string::npos) {
      throw Failure(ExitStatus::Trouble, name + " holds no public key (PEM)");
    }
    const softdevice::PublicKey key(pem);
    static_cast<void>(key.Value());
    return key;
  } catch (const softdevice::KeyError& error) {
    throw Failure(ExitStatus::Trouble, name + ": the public key can't be used: " + OneLine(error.what()));
  } catch (const Failure& failure) {
    throw Failure(ExitStatus::Trouble, failure.what());
  }
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
