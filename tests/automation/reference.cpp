// reference FOLDER: what callers of the automation server have to see, by the C++ library and a software device of its
// own. Writes the device's answers (answers.bin) and what is seen (expected.txt) in the scenario; and the answers that
// the scripts get (*.response, Base64) with the lines that they have to print (script.expected, script_js.expected).

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>

#include "Scenario.h"
#include "VnZEL10cmn/VnZEL10cmn.h"
#include "softdevice/Device.h"

namespace {

softdevice::Device MakeDevice(const std::filesystem::path& path) {
  softdevice::OpenOptions options;
  options.create = true;
  options.taxpayerId = "DE123456789";
  options.activate = true;
  return softdevice::Device::Open(path, options);
}

class DeviceAnswers final : public scenario::Answers {
 public:
  explicit DeviceAnswers(const std::filesystem::path& folder)
      : device_(MakeDevice(folder / "device.db")), file_(folder / "answers.bin", std::ios::binary) {}

  VnZEL10cmn::ByteArray Next(const VnZEL10cmn::ByteArray& request, int command) override {
    const softdevice::Answer answer =
        device_.Execute(static_cast<softdevice::Command>(command), std::span(request.data(), request.size()));
    const auto size = static_cast<std::uint16_t>(answer.response.size());
    file_.write(reinterpret_cast<const char*>(&size), sizeof size);
    file_.write(reinterpret_cast<const char*>(answer.response.data()), size);
    return VnZEL10cmn::ByteArray(std::span<const std::uint8_t>(answer.response));
  }

  bool Close() {
    file_.close();
    return static_cast<bool>(file_);
  }

 private:
  softdevice::Device device_;
  std::ofstream file_;
};

/// Prints as the scripts do.
class Lines {
 public:
  Lines(const std::filesystem::path& path) : file_(path, std::ios::binary) {}

  void Show(const std::string& name, std::string_view value) {
    file_ << name << ": " << Escaped(value) << "\r\n";
  }
  void Show(const std::string& name, bool value) { Show(name, value ? "True" : "False"); }
  void Show(const std::string& name, std::int64_t value) { Show(name, std::to_string(value)); }
  void Show(const std::string& name, std::int32_t value) { Show(name, std::to_string(value)); }
  void Show(const std::string& name, const char* value) { Show(name, std::string_view(value)); }
  template <class Object>
  void Error(Object& object) {
    Show("error", object.HasError());
    Show("number", object.ErrorObject().ErrorNr());
    Show("message", object.ErrorObject().ErrorMsg());
    Show("function", object.ErrorObject().ErrorFunction());
    Show("user-defined", object.ErrorObject().IsUserDef());
  }

  bool Close() {
    file_.close();
    return static_cast<bool>(file_);
  }

 private:
  /// Characters outside printable ASCII as "<code>", in units of UTF-16. The texts here have none beyond two bytes
  /// of UTF-8.
  static std::string Escaped(std::string_view text) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
      const auto byte = static_cast<unsigned char>(text[i]);
      unsigned code = byte;
      if (byte >= 0xC0) code = (byte & 0x1FU) << 6 | (static_cast<unsigned char>(text[++i]) & 0x3FU);
      result += code >= 32 && code < 127 ? std::string(1, static_cast<char>(code))
                                         : "<" + std::to_string(code) + ">";
    }
    return result;
  }

  std::ofstream file_;
};

using VnZEL10cmn::ByteArray;
using VnZEL10cmn::Currency;
using VnZEL10cmn::Date;
using VnZEL10cmn::ZELHashFmt;
using VnZEL10cmn::ZELSerialType;

/// Has the device answer, keeps the answer for the scripts and gives it back.
ByteArray Answer(softdevice::Device& device, softdevice::Command command, const ByteArray& request,
                 const std::filesystem::path& path) {
  const softdevice::Answer answer = device.Execute(command, std::span(request.data(), request.size()));
  if (answer.response.empty()) throw std::runtime_error("the device refused: " + path.string());
  const ByteArray response{std::span<const std::uint8_t>(answer.response)};
  std::string text;
  VnZEL10cmn::clsHelper01().ToBase64String(response, text);
  std::ofstream(path, std::ios::binary) << text << "\r\n";
  return response;
}

/// The booking of the scripts, up to its items.
std::shared_ptr<VnZEL10cmn::clsZelItemCash> FillBooking(VnZEL10cmn::clsZelTransAct& it, Lines& lines,
                                                        bool byScript) {
  auto item = std::make_shared<VnZEL10cmn::clsZelItemCash>();
  lines.Show("item", item->SetItemData(2, "Kaffee", "Stk", Currency::FromScaled(56000)));
  lines.Show("added", it.AddItem(item));
  if (byScript) lines.Show("the same", it.ItemI(1) == item);
  item = std::make_shared<VnZEL10cmn::clsZelItemCash>();
  lines.Show("item", item->SetItemData(4, "Brötchen", "", 0, Currency::FromScaled(18000)));
  item->Price(3, Currency::FromScaled(2500));
  item->Price2(VnZEL10cmn::ZELVatClasses::NoVat, Currency::FromScaled(15000));
  lines.Show("price", item->Price(4).Scaled());
  lines.Show("added", it.AddItem(item));
  lines.Show("count", it.ItemCount());
  for (const auto& element : it) {
    lines.Show("element", element->ToString());
  }
  return item;
}

void ScriptBooking(const std::filesystem::path& folder, softdevice::Device& device, Lines& lines,
                   Lines& jsLines) {
  for (const bool byScript : {true, false}) {
    Lines& out = byScript ? lines : jsLines;
    VnZEL10cmn::clsZelTransAct it;
    it.VatList(std::make_shared<VnZEL10cmn::clsZelVatList>());
    it.TransactionDate(Date::FromCivil(2026, 11, 21, 8, 5));
    it.Operator("Meier");
    ByteArray bytes;
    if (byScript) {
      out.Show("log opened", true);
      out.Show("refused", it.BinaryDataGet(ZELSerialType::BinaryData, bytes, 0));
      out.Error(it);
      out.Show("same error object", true);
      out.Show("entry in the log", true);
    }
    const auto item = FillBooking(it, out, byScript);
    ByteArray request;
    std::int32_t length = 0;
    out.Show("request made", it.BinaryDataGet(ZELSerialType::Request, request, 0, &length));
    if (byScript) {
      std::string text;
      out.Show("length", length);
      out.Show("request to text", VnZEL10cmn::clsHelper01().ToBase64String(request, text));
      out.Show("request", text);
    }
    out.Show("request kept", it.ZelRqstData());
    out.Show("hash", it.GetItemHash(ZELHashFmt::Base32, false, 5));
    static ByteArray response;
    if (byScript)
      response = Answer(device, softdevice::Command::SignBooking, request, folder / "booking.response");
    out.Show("response read", it.BinaryDataSet(ZELSerialType::Response, response, 0));
    out.Error(it);
    out.Show("taxpayer", it.ZelRespTpID());
    out.Show("sequence number", it.ZelRespSeqNr().Scaled());
    out.Show("signature", it.ZelRespSignature());
    if (byScript) {
      Currency turnover;
      Currency vat;
      Currency rate;
      out.Show("values", it.GetContainerValues(2, turnover, vat, rate));
      out.Show("turnover", turnover.Scaled());
      out.Show("vat", vat.Scaled());
      out.Show("rate", rate.Scaled());
    }
    out.Show("receipt", it.ToString());
    VnZEL10cmn::clsZelTransAct other;
    VnZEL10cmn::clsZelTransAct& damaged = byScript ? other : it;
    if (byScript) {
      std::string xml;
      out.Show("out", it.XmlHandler(xml, true));
      out.Show("xml", xml);
      out.Show("in", other.XmlHandler(xml, false));
      out.Show("receipt of the other", other.ToString());
      out.Show("date", other.TransactionDate() == it.TransactionDate());
    }
    std::string nothing = "<nothing/>";
    out.Show("damaged", damaged.XmlHandler(nothing, false));
    out.Error(damaged);
  }
  jsLines.Show("raised", 9);
}

void ScriptReport(const std::filesystem::path& folder, softdevice::Device& device, Lines& lines) {
  VnZEL10cmn::clsZelReport it;
  it.ReportDate(Date::FromCivil(2026, 11, 21, 20, 0));
  ByteArray request;
  std::int32_t length = 0;
  lines.Show("report request made", it.BinaryDataGet(ZELSerialType::Request, request, 0,
                                                     VnZEL10cmn::ZelReportType::Signed, &length));
  lines.Show("length", length);
  const ByteArray response =
      Answer(device, softdevice::Command::ReportSigned, request, folder / "report.response");
  lines.Show("report response read", it.BinaryDataSet(ZELSerialType::Response, response, 0));
  lines.Error(it);
  lines.Show("state", static_cast<std::int32_t>(it.ZelStatus()));
  lines.Show("number", it.SequenceNbr().Scaled());
  lines.Show("turnover", it.Container(2)->Turnover().Scaled());
  lines.Show("text", it.ToString());
  std::string xml;
  lines.Show("out", it.XmlHandler(xml, true));
  lines.Show("xml", xml);
}

void ScriptDataRecord(const std::filesystem::path& folder, softdevice::Device& device, Lines& lines) {
  VnZEL10cmn::clsZelTransActData it;
  lines.Show("data", it.BinaryDataSet(ZELSerialType::BinaryData, ByteArray{72, 97, 108, 108, 111}, 0));
  lines.Show("kept", it.DataToSign());
  it.DataSignType(VnZEL10cmn::ZELDataSignTypes::DataAndTpID);
  ByteArray request = ByteArray::WithBounds(0, 63);
  std::int32_t length = 0;
  lines.Show("data request made", it.BinaryDataGet(ZELSerialType::Request, request, 0, &length));
  lines.Show("length", length);
  request.RedimPreserve(length - 1);
  const ByteArray response =
      Answer(device, softdevice::Command::SignDataAndTpId, request, folder / "data.response");
  lines.Show("data response read", it.BinaryDataSet(ZELSerialType::Response, response, 0));
  lines.Error(it);
  lines.Show("data receipt", it.ToString());
}

void ScriptArguments(const std::filesystem::path& folder, Lines& lines) {
  VnZEL10cmn::clsZelBaseCoding coder;
  std::ifstream file(folder / "booking.response", std::ios::binary);
  std::string base64;
  std::getline(file, base64, '\r');
  ByteArray buffer;
  VnZEL10cmn::clsHelper01().FromBase64String(base64, buffer);
  std::int32_t start = 0;
  std::string text;
  lines.Show("read", coder.GetZelTpID(buffer, start, text));
  lines.Show("text", text);
  lines.Show("start", start);
  start = 500;
  lines.Show("not read", coder.GetZelTpID(buffer, start, text));
  lines.Error(coder);
  lines.Show("quantity", 30000);
  lines.Show("flag", true);
  lines.Show("lines", true);
  lines.Show("count", 2);
  lines.Show("second", "b");
  lines.Show("line", "a");
  lines.Show("line", "b");
  lines.Show("raised", 9);
  lines.Show("by", "VnZEL10cmn.clsZelItemCash");
  lines.Show("too few", true);
  lines.Show("no number", 13);
  lines.Show("no member", 438);
}

void WriteForScripts(const std::filesystem::path& folder) {
  softdevice::Device device = MakeDevice(folder / "script.db");
  Lines lines(folder / "script.expected");
  Lines jsLines(folder / "script_js.expected");
  ScriptBooking(folder, device, lines, jsLines);
  ScriptReport(folder, device, lines);
  ScriptDataRecord(folder, device, lines);
  ScriptArguments(folder, lines);
  if (!lines.Close() || !jsLines.Close()) throw std::runtime_error("the lines can't be written");
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  try {
    const std::filesystem::path folder = argv[1];
    std::filesystem::remove_all(folder);
    std::filesystem::create_directories(folder);
    DeviceAnswers answers(folder);
    std::ofstream out(folder / "expected.txt", std::ios::binary);
    scenario::Run(out, answers);
    out.close();
    WriteForScripts(folder);
    return out && answers.Close() ? 0 : 1;
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "%s\n", failure.what());
    return 1;
  }
}
