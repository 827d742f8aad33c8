#include "VnZEL10cmn/errors/ZELErrorCodes.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <type_traits>

using VnZEL10cmn::ZELErrorCodes;

namespace {

TEST(ZELErrorCodes, HoldThePublishedValues) {
  static_assert(std::is_same_v<std::underlying_type_t<ZELErrorCodes>, std::int32_t>);
  const auto value = [](ZELErrorCodes code) { return static_cast<std::int32_t>(code); };
  EXPECT_EQ(value(ZELErrorCodes::No_Error), 0);
  EXPECT_EQ(value(ZELErrorCodes::Err_Cmn_NotSpec), 9000);
  EXPECT_EQ(value(ZELErrorCodes::Err_Cmn_InvalidParam), 9001);
  EXPECT_EQ(value(ZELErrorCodes::Err_Hlp_B64ReplEqual), 9101);
  EXPECT_EQ(value(ZELErrorCodes::Err_Hlp_CnvLBound), 9102);
  EXPECT_EQ(value(ZELErrorCodes::Err_Hlp_CnvRange), 9103);
  EXPECT_EQ(value(ZELErrorCodes::Err_Hlp_CnvLength), 9104);
  EXPECT_EQ(value(ZELErrorCodes::Err_Hlp_CnvNoData), 9105);
  EXPECT_EQ(value(ZELErrorCodes::Err_Hlp_CnvInvalidChar), 9106);
  EXPECT_EQ(value(ZELErrorCodes::Err_Zel_CnvLBound), 9202);
  EXPECT_EQ(value(ZELErrorCodes::Err_Zel_CnvRange), 9203);
  EXPECT_EQ(value(ZELErrorCodes::Err_Zel_CnvDataSize), 9204);
  EXPECT_EQ(value(ZELErrorCodes::Err_Zel_CnvInvalidStart), 9205);
  EXPECT_EQ(value(ZELErrorCodes::Err_Zel_CnvInvalidChar), 9206);
  EXPECT_EQ(value(ZELErrorCodes::Err_Zel_CnvInvalidLen), 9207);
  EXPECT_EQ(value(ZELErrorCodes::Err_Zel_CnvInvalidBCD), 9208);
  EXPECT_EQ(value(ZELErrorCodes::Err_Zel_CnvInvalidDtaFmt), 9209);
  EXPECT_EQ(value(ZELErrorCodes::Err_Zel_CnvInvalidTag), 9210);
  EXPECT_EQ(value(ZELErrorCodes::Err_Zel_CnvXmlTagMiss), 9211);
  EXPECT_EQ(value(ZELErrorCodes::Err_Zel_CnvXmlTagIncmpl), 9212);
  EXPECT_EQ(value(ZELErrorCodes::Err_Ser_Failed), 9301);
  EXPECT_EQ(value(ZELErrorCodes::Err_Ser_DataMissing), 9302);
  EXPECT_EQ(value(ZELErrorCodes::Err_Ser_SerTypeNotSprt), 9303);
  EXPECT_EQ(value(ZELErrorCodes::Err_Ser_DataMismatch), 9304);
  EXPECT_EQ(value(ZELErrorCodes::Err_Ser_TagUnexpected), 9305);
  EXPECT_EQ(value(ZELErrorCodes::Err_Ser_ItemNotAdded), 9306);
  EXPECT_EQ(value(ZELErrorCodes::Err_Ser_CodingError), 9307);
  EXPECT_EQ(value(ZELErrorCodes::Err_Log_FileOpen), 10001);
  EXPECT_EQ(value(ZELErrorCodes::Err_Log_NoFileName), 10002);
  EXPECT_EQ(value(ZELErrorCodes::Err_Log_FileNotOpen), 10010);
  EXPECT_EQ(value(ZELErrorCodes::Err_Log_NoObject), 10011);
  EXPECT_EQ(value(ZELErrorCodes::Err_Log_NoObjData), 10012);
  EXPECT_EQ(value(ZELErrorCodes::Err_Crd_NoRescConn), 10100);
}

}  // namespace
