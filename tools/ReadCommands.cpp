#include "softdevice/Key.h"
#include "tools/Commands.h"
#include "tools/Common.h"
#include "tools/Dump.h"
#include "tools/Receipt.h"
#include "tools/Signer.h"
#include "tools/Verify.h"

namespace zel {

namespace {

/// Makes a text the member of an object, as it comes.
class MemberSink final : public Sink {
 public:
  MemberSink(JsonWriter& json, std::string_view name) : json_(json), name_(name) {}

  void Write(std::string_view piece) override {
    Begin();
    json_.AddToString(piece);
  }

  void End() {
    Begin();
    json_.EndString();
  }

 private:
  void Begin() {
    if (hasBegun_) return;
    json_.Key(name_);
    json_.BeginString();
    hasBegun_ = true;
  }

  JsonWriter& json_;
  std::string_view name_;
  bool hasBegun_ = false;
};

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
  const auto write = [wide](Input& input, const Output& output) {
    if (output.json == nullptr) {
      WriteReceipt(input.content, wide, *output.text);
    } else {
      MemberSink receipt(*output.json, "receipt");
      WriteReceipt(input.content, wide, receipt);
      receipt.End();
    }
    return std::string();
  };
  return ReadAll(inputs, {.answer = write, .titles = true});
}

ExitStatus RunDump(const InputOptions& inputs) {
  const auto dump = [](const Input& input, const Output& output) {
    std::vector<Fault> faults;
    if (output.json == nullptr) {
      TextDump text(*output.text);
      faults = WriteDump(input.content, text);
    } else {
      JsonDump json(*output.json);
      faults = WriteDump(input.content, json);
    }
    return faults.empty() ? std::string() : ToText(faults.front());
  };
  return ReadAll(inputs, {.answer = dump, .titles = true});
}

ExitStatus RunVerify(const VerifyOptions& options) {
  const softdevice::PublicKey key = ReadPublicKey(options);
  const auto verify = [&key](const Input& input, const Output& output) {
    const Verification verification = VerifyDocument(input.content, key, input.data);
    if (output.json != nullptr) {
      WriteVerification(verification, *output.json);
    } else if (verification.IsRight()) {
      output.text->Write(OneLine(input.name) + ": all is right, " + DescribeSigned(verification) + "\n");
    }
    return verification.IsRight() ? std::string()
                                  : std::string(CheckName(*verification.failed)) + ": " + verification.reason;
  };
  return ReadAll(options.inputs,
                 {.answer = verify,
                  .data = options.data ? std::optional(ReadFile(*options.data)) : std::nullopt,
                  .takesData = true});
}

}  // namespace zel
