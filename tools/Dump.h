#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/Document.h"
#include "tools/JsonWriter.h"
#include "tools/Records.h"
#include "tools/Sink.h"

/// Shows any request, response, item list or XML document as a tree of records.
namespace zel {

/// How the records are written down.
enum class Form : std::uint8_t { Binary, Hexadecimal, Base64, Xml };

/// One run of records, before its records come.
struct DumpPart {
  std::string_view element{};  ///< of an XML document, else empty
  std::string_view profile{};  ///< of an item list in an XML document, mostly empty
  RunKind kind = RunKind::Any;
  std::int32_t size = 0;
};

/// Gets the tree from its top to its end.
class DumpOutput {
 public:
  DumpOutput() = default;
  virtual ~DumpOutput() = default;
  DumpOutput(const DumpOutput&) = delete;
  DumpOutput& operator=(const DumpOutput&) = delete;

  /// What stands above everything; `document` is that of an XML document.
  virtual void Begin(Form form, DocumentKind document) = 0;
  virtual void BeginPart(const DumpPart& part) = 0;

  /// An item groups its records. Its length is made by reading them all, and only asked for where it is wanted.
  [[nodiscard]] virtual bool WantsItemLengths() const = 0;
  virtual void BeginItem(std::size_t number, std::int32_t position, std::int32_t length) = 0;
  virtual void EndItem() = 0;

  virtual void Show(const Record& record) = 0;
  virtual void EndPart(const std::optional<Fault>& fault) = 0;
  virtual void End(const std::vector<Fault>& faults) = 0;
};

/// Reads everything that can be read, and returns what is wrong. Any content ends in a result.
std::vector<Fault> WriteDump(std::string_view content, DumpOutput& output);

/// The tree for people.
class TextDump final : public DumpOutput {
 public:
  explicit TextDump(Sink& out) : out_(out) {}

  void Begin(Form form, DocumentKind document) override;
  void BeginPart(const DumpPart& part) override;
  [[nodiscard]] bool WantsItemLengths() const override { return false; }
  void BeginItem(std::size_t number, std::int32_t position, std::int32_t length) override;
  void EndItem() override { --depth_; }
  void Show(const Record& record) override;
  void EndPart(const std::optional<Fault>& fault) override;
  void End(const std::vector<Fault>& faults) override;

 private:
  void AppendLine(const Record& record, std::size_t depth);

  Sink& out_;
  Form form_ = Form::Binary;
  std::size_t depth_ = 0;
  std::string lines_;
};

/// The tree as members of an object that is open.
class JsonDump final : public DumpOutput {
 public:
  explicit JsonDump(JsonWriter& json) : json_(json) {}

  void Begin(Form form, DocumentKind document) override;
  void BeginPart(const DumpPart& part) override;
  [[nodiscard]] bool WantsItemLengths() const override { return true; }
  void BeginItem(std::size_t number, std::int32_t position, std::int32_t length) override;
  void EndItem() override;
  void Show(const Record& record) override;
  void EndPart(const std::optional<Fault>& fault) override;
  void End(const std::vector<Fault>& faults) override;

 private:
  JsonWriter& json_;
};

}  // namespace zel
