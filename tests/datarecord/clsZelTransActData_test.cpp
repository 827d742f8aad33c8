// What a data record holds, its data and hash, and what emptying it leaves.

#include "VnZEL10cmn/datarecord/clsZelTransActData.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "VnZEL10cmn/render/clsZelItemPrint.h"
#include "tests/datarecord/Support.h"
#include "tests/support/Stamp.h"

namespace VnZEL10cmn {
namespace {

using test::BytesOf;
using test::FillAbc;
using test::HandIn;

TEST(DataRecord, StartsEmpty) {
  const test::Moment moment;
  clsZelTransActData record;
  test::ExpectNoError(record);
  EXPECT_EQ(record.ErrorObject().ErrorSource(), "VnZEL10cmn.clsZelTransActData");
  EXPECT_EQ(record.ErrorObject().ErrorInstanceID().size(), 36U);
  EXPECT_EQ(record.LogHandler(), nullptr);
  EXPECT_TRUE(moment.Matches(record.TransactionDate()));
  EXPECT_EQ(record.DataSignType(), ZELDataSignTypes::DataOnly);
  EXPECT_TRUE(record.UseSHA256());
  EXPECT_EQ(record.DataToSign(), "");
  EXPECT_EQ(record.DataHash(), "");
  EXPECT_EQ(record.ZelRqstData(), "");
  EXPECT_EQ(record.ZelRespData(), "");
  EXPECT_EQ(record.ZelRespTpID(), "");
  EXPECT_EQ(record.ZelRespTpIDNr(), Currency(0));
  EXPECT_EQ(record.ZelRespSeqNr(), Currency(0));
  EXPECT_EQ(record.ZelRespSignature(), "");
}

TEST(DataRecord, SignTypesHaveTheirNumbers) {
  EXPECT_EQ(static_cast<int>(ZELDataSignTypes::DataOnly), 1);
  EXPECT_EQ(static_cast<int>(ZELDataSignTypes::DataAndTpID), 2);
  EXPECT_EQ(static_cast<int>(ZELDataSignTypes::DataAndTime), 3);
}

TEST(DataRecord, DateIsKeptWithinItsBounds) {
  clsZelTransActData record;
  const auto keeps = [&record](Date value, Date expected) {
    record.TransactionDate(value);
    EXPECT_EQ(record.TransactionDate().Value(), expected.Value());
  };
  keeps(Date::FromCivil(1999, 12, 31, 23, 59, 59), Date::FromCivil(2000, 1, 1));
  keeps(Date::FromCivil(2000, 1, 1), Date::FromCivil(2000, 1, 1));
  keeps(Date::FromCivil(2024, 2, 29, 8, 5, 3), Date::FromCivil(2024, 2, 29, 8, 5, 3));
  keeps(Date(73050.99998842593), Date(73050.99998842593));
  keeps(Date::FromCivil(2100, 1, 1), Date(73050.99998842593));
}

TEST(DataRecord, PropertiesAreStored) {
  clsZelTransActData record;
  record.DataSignType(ZELDataSignTypes::DataAndTime);
  EXPECT_EQ(record.DataSignType(), ZELDataSignTypes::DataAndTime);
  record.UseSHA256(false);
  EXPECT_FALSE(record.UseSHA256());
}

// Data

TEST(DataRecordData, IsStoredWithItsHash) {
  clsZelTransActData record;
  FillAbc(record);
  test::ExpectNoError(record);
  EXPECT_EQ(record.DataToSign(), "YWJj");
  EXPECT_EQ(record.DataHash(), test::kAbcSha256Base64);
  EXPECT_EQ(record.ZelRqstData(), "");
  EXPECT_EQ(record.DataSignType(), ZELDataSignTypes::DataOnly);
  EXPECT_EQ(BytesOf(record, ZELSerialType::BinaryData), test::kAbc);
}

TEST(DataRecordData, Sha1Hash) {
  clsZelTransActData record;
  record.UseSHA256(false);
  FillAbc(record);
  EXPECT_EQ(record.DataToSign(), "YWJj");
  EXPECT_EQ(record.DataHash(), test::kAbcSha1Base64);
}

TEST(DataRecordData, Bytes80To9FAreHashedAsTheirCharacters) {
  clsZelTransActData record;
  // 80 is the euro sign, of which the low byte is AC.
  EXPECT_TRUE(HandIn(record, ZELSerialType::BinaryData, "80"));
  EXPECT_EQ(record.DataHash(), "7mu4a0Qzk5K65jHI9h3Y8AkkPGNa2rM8CyCSOieUvyI=");
  EXPECT_EQ(record.DataToSign(), "gA==");
  EXPECT_EQ(BytesOf(record, ZELSerialType::BinaryData), "80");
}

TEST(DataRecordData, LongData) {
  ByteArray data = ByteArray::WithBounds(0, 99999);
  std::uint8_t next = 0;
  for (std::uint8_t& byte : data) {
    byte = next++;
  }
  clsZelTransActData record;
  EXPECT_TRUE(record.BinaryDataSet(ZELSerialType::BinaryData, data, 0));
  EXPECT_EQ(record.DataToSign(), test::Base64(data));
  EXPECT_EQ(record.DataHash(), test::Base64(test::ItemSha256(data)));
  record.UseSHA256(false);
  EXPECT_TRUE(record.BinaryDataSet(ZELSerialType::BinaryData, data, 0));
  EXPECT_EQ(record.DataHash(), test::Base64(test::ItemSha1(data)));
  ByteArray read = ByteArray::WithBounds(0, 99999);
  EXPECT_TRUE(record.BinaryDataGet(ZELSerialType::BinaryData, read, 0));
  EXPECT_EQ(read, data);
}

TEST(DataRecordData, IsReplacedByTheNext) {
  clsZelTransActData record;
  EXPECT_TRUE(HandIn(record, ZELSerialType::BinaryData, "01 02 03 04"));
  FillAbc(record);
  EXPECT_EQ(record.DataToSign(), "YWJj");
  EXPECT_EQ(record.DataHash(), test::kAbcSha256Base64);
}

TEST(DataRecordData, ThatIsNotThere) {
  test::TestLog log;
  clsZelTransActData record;
  record.LogHandler(log.Handler());
  test::ExpectWriteFailure(record, ZELSerialType::BinaryData, ZELErrorCodes::Err_Ser_Failed,
                           "EncodeData.[GetZelOperator]",
                           "Buchung (Data): Das Verarbeiten der Binärdaten ist nicht möglich!\r\n"
                           "Die Daten konnen nicht aus dem Base64-Format gelesen werden.");
  EXPECT_EQ(log.Functions().back(), "EncodeData.[GetZelOperator]");
  EXPECT_EQ(test::LogSources(log).back(), "clsZelTransActData");
}

// Hash as text

TEST(DataRecordHash, Formats) {
  clsZelTransActData record;
  FillAbc(record);
  for (const bool fromMem : {false, true}) {
    EXPECT_EQ(record.GetDataHash(ZELHashFmt::Base64, fromMem),
              "ungWv48Bz+pBQUDeXa4iI7ADYaOWF3qctBD/YfIAFa0=");
    EXPECT_EQ(record.GetDataHash(ZELHashFmt::Base32H, fromMem),
              "ungWv48Bz+pBQUDeXa4iI7ADYaOWF3qctBD/YfIAFa0=");
    EXPECT_EQ(record.GetDataHash(ZELHashFmt{9}, fromMem), "ungWv48Bz+pBQUDeXa4iI7ADYaOWF3qctBD/YfIAFa0=");
    EXPECT_EQ(record.GetDataHash(ZELHashFmt::Base32, fromMem),
              "XJ4BNP4PAHH6UQKBIDPF3LRCEOYAGYNDSYLXVHFUCD7WD4QACWWQ====");
    EXPECT_EQ(record.GetDataHash(ZELHashFmt::Base16, fromMem),
              "BA7816BF8F01CFEA414140DE5DAE2223B00361A396177A9CB410FF61F20015AD");
    test::ExpectNoError(record);
  }
}

TEST(DataRecordHash, Groups) {
  clsZelTransActData record;
  FillAbc(record);
  EXPECT_EQ(record.GetDataHash(ZELHashFmt::Base32, false, 5),
            "XJ4BN-P4PAH-H6UQK-BIDPF-3LRCE-OYAGY-NDSYL-XVHFU-CD7WD-4QACW-WQ===-=");
  EXPECT_EQ(record.GetDataHash(ZELHashFmt::Base64, true, 5),
            "ungWv-48Bz+-pBQUD-eXa4i-I7ADY-aOWF3-qctBD-/YfIA-Fa0=");
  EXPECT_EQ(record.GetDataHash(ZELHashFmt::Base64, true, -1), "ungWv48Bz+pBQUDeXa4iI7ADYaOWF3qctBD/YfIAFa0=");
  // Grouped hexadecimal text leaves out its last group.
  EXPECT_EQ(record.GetDataHash(ZELHashFmt::Base16, false, 8),
            "BA7816BF-8F01CFEA-414140DE-5DAE2223-B00361A3-96177A9C-B410FF61");
}

TEST(DataRecordHash, WithoutDataIsEmpty) {
  clsZelTransActData record;
  for (const ZELHashFmt format :
       {ZELHashFmt::Base64, ZELHashFmt::Base32, ZELHashFmt::Base32H, ZELHashFmt::Base16}) {
    EXPECT_EQ(record.GetDataHash(format), "");
    EXPECT_EQ(record.GetDataHash(format, true, 5), "");
    test::ExpectNoError(record);
  }
}

TEST(DataRecordHash, StoredAndMadeAnew) {
  clsZelTransActData record;
  FillAbc(record);
  record.UseSHA256(false);
  EXPECT_EQ(record.GetDataHash(ZELHashFmt::Base64, true), test::kAbcSha256Base64);
  EXPECT_EQ(record.GetDataHash(ZELHashFmt::Base64), test::kAbcSha1Base64);
  // The stored hash stays.
  EXPECT_EQ(record.DataHash(), test::kAbcSha256Base64);
}

TEST(DataRecordHash, OfAReadRequestIsStoredWithoutData) {
  clsZelTransActData record;
  EXPECT_TRUE(HandIn(record, ZELSerialType::Request, test::Join("C7 14", test::kAbcSha1)));
  EXPECT_EQ(record.DataHash(), test::kAbcSha1Base64);
  EXPECT_EQ(record.GetDataHash(ZELHashFmt::Base64, true), test::kAbcSha1Base64);
  EXPECT_EQ(record.GetDataHash(ZELHashFmt::Base64), "");
  test::ExpectNoError(record);
}

// Emptying

TEST(DataRecordClear, EmptiesAllButDateHashSelectionAndPrintEngine) {
  clsZelTransActData record;
  FillAbc(record);
  record.UseSHA256(false);
  record.DataSignType(ZELDataSignTypes::DataAndTime);
  EXPECT_NE(BytesOf(record, ZELSerialType::Request), "");
  ASSERT_TRUE(HandIn(record, ZELSerialType::Response,
                     test::Join(test::kSequence, test::kTaxpayer, test::kDevice, test::kSigned)));
  EXPECT_TRUE(record.Clear());
  test::ExpectNoError(record);
  EXPECT_EQ(record.DataToSign(), "");
  EXPECT_EQ(record.DataHash(), "");
  EXPECT_EQ(record.ZelRqstData(), "");
  EXPECT_EQ(record.ZelRespData(), "");
  EXPECT_EQ(record.ZelRespTpID(), "");
  EXPECT_EQ(record.ZelRespTpIDNr(), Currency(0));
  EXPECT_EQ(record.ZelRespSeqNr(), Currency(0));
  EXPECT_EQ(record.ZelRespSignature(), "");
  EXPECT_EQ(record.DataSignType(), ZELDataSignTypes::DataOnly);
  EXPECT_FALSE(record.UseSHA256());
  EXPECT_EQ(record.TransactionDate(), Date::FromCivil(2024, 3, 15, 14, 37, 25));
}

TEST(DataRecordClear, ClearsTheError) {
  clsZelTransActData record;
  std::string document = "x";
  EXPECT_FALSE(record.XmlHandler(document, false));
  EXPECT_TRUE(record.Clear());
  test::ExpectNoError(record);
}

// Text

class OwnPrint : public clsZelItemPrint {
 public:
  using clsZelItemPrint::ToStringTRdata;
  std::string ToStringTRdata(std::shared_ptr<clsZelTransActData> BookItem, clsVnError* ErrObj) override {
    record = BookItem.get();
    errorObject = ErrObj;
    return "own text";
  }
  clsZelTransActData* record = nullptr;
  clsVnError* errorObject = nullptr;
};

TEST(DataRecordText, ComesFromItsPrintEngine) {
  clsZelTransActData record;
  const auto print = std::make_shared<OwnPrint>();
  record.PrintEngine(print);
  EXPECT_EQ(record.ToString(), "own text");
  EXPECT_EQ(print->record, &record);
  EXPECT_EQ(print->errorObject, &record.ErrorObject());
  EXPECT_TRUE(record.Clear());
  EXPECT_EQ(record.ToString(), "own text");
  record.PrintEngine(nullptr);
  EXPECT_EQ(record.ToString().substr(0, 42), "      Kassen-Signaturbeleg (Basisversion)\r");
  test::ExpectNoError(record);
}

}  // namespace
}  // namespace VnZEL10cmn
