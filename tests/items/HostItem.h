#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>

#include "VnZEL10cmn/errors/clsVnError.h"
#include "VnZEL10cmn/errors/clsVnLogFile.h"
#include "VnZEL10cmn/items/IVnZelItem.h"
#include "VnZEL10cmn/types/ByteArray.h"

/// An item class as a host would bring it: it writes the bytes that it is told and fails on demand. It stands
/// in the global namespace so that its class name is the plain one.
class HostItem : public VnZEL10cmn::IVnZelItem {
 public:
  explicit HostItem(std::string id) : id_(std::move(id)) {}

  std::string InstanceID() override { return id_; }
  VnZEL10cmn::clsVnError& ErrorObject() override { return error_; }
  std::shared_ptr<VnZEL10cmn::clsVnLogFile> LogHandler() override { return logHandler_; }
  void LogHandler(std::shared_ptr<VnZEL10cmn::clsVnLogFile> Value) override {
    logHandler_ = std::move(Value);
  }
  bool HasError() override { return error_.HasError(); }

  /// Copies `bytes` to `Start`; a failing item copies them too and then gives up.
  bool BinaryDataGet(VnZEL10cmn::ByteArray& Data, std::int32_t& Start) override {
    error_.ClearErr();
    for (const std::uint8_t byte : bytes) {
      Data[Start++] = byte;
    }
    return !failGet || Fail("BinaryDataGet");
  }

  /// Takes everything up to the next quantity record or the end, without looking into it.
  bool BinaryDataSet(const VnZEL10cmn::ByteArray& Data, std::int32_t& Start) override {
    error_.ClearErr();
    if (failSet) {
      return Fail("BinaryDataSet");
    }
    const std::int32_t first = Start;
    while (Start <= Data.UBound() && (Start == first || Data[Start] != 0xA0)) {
      ++Start;
    }
    bytes.Redim(0, Start - first - 1);
    for (std::int32_t i = first; i < Start; ++i) {
      bytes[i - first] = Data[i];
    }
    return true;
  }

  bool Clear() override { return true; }

  bool GetPrices(VnZEL10cmn::CurrencyArray& Prices, bool& IsThrdPrt) override {
    Prices[0] = price;
    IsThrdPrt = false;
    return !failPrices || Fail("GetPrices");
  }

  std::string ToString() override { return text; }

  VnZEL10cmn::ByteArray bytes;
  VnZEL10cmn::Currency price;
  std::string text = "Eigener Posten";
  bool failGet = false;
  bool failSet = false;
  bool failPrices = false;

 private:
  bool Fail(const char* function) {
    error_.SetError(4711, "Posten kaputt", true, function);
    return false;
  }

  std::string id_;
  VnZEL10cmn::clsVnError error_;
  std::shared_ptr<VnZEL10cmn::clsVnLogFile> logHandler_;
};
