// How much memory the commands take: of the largest documents no more than a few times their size, whatever they
// hold. A run is given an address space of that size more than it needs for almost nothing.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <functional>
#include <ostream>

#include "Hex.h"
#include "Program.h"

namespace {

constexpr std::size_t kMebibyte = std::size_t{1024} * 1024;

/// What the largest inputs here come to.
constexpr std::size_t kSize = 2 * kMebibyte;

std::string Bytes(std::string_view hexadecimal) {
  const std::vector<std::uint8_t> bytes = test::internal::HexBytes(hexadecimal);
  return {bytes.begin(), bytes.end()};
}

std::string Repeat(std::string_view piece, std::size_t size) {
  std::string text;
  text.reserve(size);
  while (text.size() + piece.size() <= size) {
    text += piece;
  }
  return text;
}

test::Setting WithAddressSpace(std::size_t bytes) {
  test::Setting setting;
  setting.standardOutput = "/dev/null";
  setting.inChild = [bytes] {
    const rlimit limit{bytes, bytes};
    setrlimit(RLIMIT_AS, &limit);
  };
  return setting;
}

/// The smallest address space in which a command comes to its end, to a quarter of a mebibyte.
std::size_t LeastAddressSpace(const test::Desk& desk, const std::vector<std::string>& arguments) {
  const int status = desk.Zel(arguments).status;
  std::size_t tooLittle = 0;
  std::size_t enough = 512 * kMebibyte;
  while (enough - tooLittle > kMebibyte / 4) {
    const std::size_t middle = (tooLittle + enough) / 2;
    (desk.Zel(arguments, WithAddressSpace(middle)).status == status ? enough : tooLittle) = middle;
  }
  return enough;
}

class Memory : public testing::Test {
 protected:
  void SetUp() override {
    if (test::kIsInstrumented) GTEST_SKIP() << "the build's own checks take memory";
  }

  Memory() {
    static const std::string document = desk_.SignedDocument();
    document_ = document;
    desk_.WriteFile("sale.xml", document_);
    desk_.WriteFile("till.pem", kKey);
  }

  /// Runs a command on a file with so much more than on a small one; the status is what it says of the file.
  void ExpectFits(const std::vector<std::string>& command, const std::string& small,
                  const std::string& content, std::size_t more, int status) const {
    std::vector<std::string> arguments = command;
    desk_.WriteFile("small", small);
    arguments.emplace_back("small");
    const std::size_t least = LeastAddressSpace(desk_, arguments);
    desk_.WriteFile("large", content);
    arguments.back() = "large";
    const test::Outcome outcome = desk_.Zel(arguments, WithAddressSpace(least + more));
    EXPECT_EQ(outcome.status, status) << testing::PrintToString(command) << outcome.err;
  }

  /// The document with an item list of many items.
  std::string WithItems(const std::string& items) const {
    return test::WithElement(document_, "itemListEncoded", test::ToBase64(items));
  }

  static constexpr std::string_view kKey =
      "-----BEGIN PUBLIC KEY-----\n"
      "MFkwEwYHKoZIzj0CAQYIKoZIzj0DAQcDQgAEZ8iMDzaACdeILXzNBHp6kYzAibSs\n"
      "/jIo/+RDfSDAlN7ylNyDQGWpt/+v151WCyONhfs/aJADaGfRgn2Bq3XWow==\n"
      "-----END PUBLIC KEY-----\n";

  test::Desk desk_;
  std::string document_;
};

// An item of nine bytes, and one that has as many records as there is room.
const std::string kItem = Bytes("A0 01 31 A2 01 61 B1 01 1C");
const std::string kLongItem = Bytes("A0 01 31 A2 01 61");

TEST_F(Memory, OfDumpIsTheInputAnd4MiB) {
  const std::string flags = Bytes("AA 00");
  const std::string small = Bytes("A0 01 31 A2 01 61");
  std::string bad = test::ToBase64(Repeat(flags, kSize * 3 / 4));
  bad.back() = '*';
  struct Case {
    std::string content;
    int status;
  };
  const Case cases[] = {
      {Repeat(flags, kSize), 0},
      {Repeat(kItem, kSize), 0},
      {kLongItem + Repeat(flags, kSize - kLongItem.size()), 0},
      {test::ToBase64(Repeat(flags, kSize * 3 / 4)), 0},
      {bad, 1},
      {Repeat("AA 00 ", kSize), 0},
      {Repeat("Kg==", kSize), 1},
      {WithItems(Repeat(kItem, kSize * 3 / 4)), 0},
      {test::WithBytes(document_, "transactionRequest",
                       [](std::string& bytes) { bytes += Repeat("\xC8\x01\x01", kSize * 3 / 4); }),
       0},
      {document_.replace(document_.find("List") + 11, 0, " profile='" + std::string(kSize, 'p') + "'"), 0},
  };
  for (const Case& one : cases) {
    for (const std::vector<std::string>& command : {std::vector<std::string>{"dump"}, {"dump", "--json"}}) {
      SCOPED_TRACE(testing::PrintToString(command) + one.content.substr(0, 60));
      ExpectFits(command, small, one.content, one.content.size() + 4 * kMebibyte, one.status);
    }
  }
}

TEST_F(Memory, OfVerifyIs8TimesTheInput) {
  // Everything is read to its end: the items are right, and the hash is another one.
  const std::vector<std::string> verify = {"verify", "--key", "till.pem"};
  for (const std::string& content :
       {WithItems(Repeat(kItem, kSize * 3 / 4)),
        WithItems(kLongItem + Repeat(Bytes("B1 01 1C"), kSize * 3 / 4)),
        test::WithBytes(document_, "transactionRequest",
                        [](std::string& bytes) { bytes += Repeat("\xC8\x01\x01", kSize * 3 / 4); }),
        test::WithBytes(document_, "transactionResponse",
                        [](std::string& bytes) { bytes += Repeat("\xCB\x01\x01", kSize * 3 / 4); })}) {
    ExpectFits(verify, document_, content, 8 * content.size(), 1);
  }
}

TEST_F(Memory, OfReceiptIs8TimesTheInput) {
  for (const std::vector<std::string>& command :
       {std::vector<std::string>{"receipt"}, {"receipt", "--json"}}) {
    for (const std::string& content :
         {WithItems(Repeat(kItem, kSize * 3 / 4)),
          // Written again, these have nearly twice the length.
          WithItems(Repeat(Bytes("A0 03 39 65 39 A2 01 61"), kSize * 3 / 4)),
          test::WithBytes(document_, "transactionRequest",
                          [](std::string& bytes) { bytes += Repeat("\xC8\x01\x01", kSize * 3 / 4); }),
          test::WithBytes(document_, "transactionResponse",
                          [](std::string& bytes) { bytes += Repeat("\xCB\x01\x01", kSize * 3 / 4); })}) {
      ExpectFits(command, document_, content, 8 * content.size(), 0);
    }
  }
}

TEST_F(Memory, OfASaleIs8TimesItsTextWhateverStandsInIt) {
  const std::vector<std::string> sign = {"sign", "--device", "till.db", "--out", "new.xml", "--force"};
  const std::string sale(test::Desk::kSale);
  for (const std::string& content :
       {"[" + Repeat("1,", kSize) + "1]", "{\"items\": [" + Repeat("{},", kSize) + "{}]}",
        "{\"items\": [" + Repeat("1,", kSize) + "1]}", "{\"operator\": [" + Repeat("[],", kSize) + "1]}",
        "{\"operator\": [" + Repeat("{\"a\":1,\"b\":{\"c\":1}},", kSize) + "1]}",
        "{\"operator\": \"" + std::string(kSize, 'x') + "\"}",
        "{\"operator\": \"A\", \"items\": [{\"prices\": {\"A\": [" + Repeat("1,", kSize) + "1]}}]}"}) {
    SCOPED_TRACE(content.substr(0, 60));
    ExpectFits(sign, "[]", content, 8 * content.size(), 1);
  }
}

TEST_F(Memory, OfALineIs8TimesTheLine) {
  for (const std::string& content :
       {"{\"document\": \"" + Repeat("AA00", kSize) + "\"}\n", "{\"id\": [" + Repeat("1,", kSize) + "1]}\n",
        "{\"id\": \"" + std::string(kSize, 'x') + "\", \"document\": \"AA 00\"}\n"}) {
    SCOPED_TRACE(content.substr(0, 60));
    ExpectFits({"dump", "--lines", "--jobs", "1"}, "{\"document\": \"AA 00\"}\n", content, 8 * content.size(),
               0);
  }
}

}  // namespace
