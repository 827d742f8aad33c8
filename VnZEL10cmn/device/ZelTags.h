#pragma once

#include <cstdint>

namespace VnZEL10cmn {

/// The tags of device records. Any byte fits: `ZelTags{0xC5}`; `ZelTags{}` is none.
enum class ZelTags : std::uint8_t {
  Signature = 158,           ///< signature produced by the device
  Lifecycle = 192,           ///< lifecycle state of the device (`ZelLifeCycle`)
  Serial_No = 193,           ///< device serial number
  Version = 194,             ///< device version
  Transport_Pin = 195,       ///< transport PIN
  Tp_ID = 196,               ///< taxpayer identification
  Tp_ID_No = 197,            ///< running number of the device for that taxpayer
  Operator = 198,            ///< operator (cashier)
  Hash_Trans_Items = 199,    ///< hash over the items of a transaction
  Currency = 200,            ///< currency code
  Vat_AddOn = 201,           ///< VAT is added on top of the prices (flag)
  Training = 202,            ///< training booking (flag)
  Seq_Nr_Trans = 203,        ///< sequence number of the transaction
  Seq_Nr_Reprt = 204,        ///< sequence number of the report
  tDate = 205,               ///< date
  tTime = 206,               ///< time of day
  tMonth = 207,              ///< month
  Month_Start = 208,         ///< start of a report period
  Month_End = 209,           ///< end of a report period
  Seq_No_Trans_First = 210,  ///< first transaction sequence number covered by a report
  Seq_No_Trans_Last = 211,   ///< last transaction sequence number covered by a report
  Hash_Reprt_Items = 212,    ///< hash over the items of a report
  Country_Code = 213,        ///< country code
  Trnvr_Thirdparty = 214,    ///< third-party turnover
  Deliverynote = 215,        ///< delivery note (flag)
  Trnvr = 216,               ///< turnover
  Trnvr_neg = 217,           ///< negative turnover
  Trnvr_Vat = 218,           ///< VAT amount of a turnover
  Trnvr_Vat_Rate = 219,      ///< VAT rate of a turnover
  Trnvr_Counter = 220,       ///< turnover counter
  Trnvr_Overflow = 221,      ///< turnover overflow (flag)
  Trnvr_Vat_Changed = 222,   ///< VAT rate changed (flag)
  Container_Vat_1 = 225,     ///< turnover container of VAT class 1
  Container_Vat_2 = 226,     ///< turnover container of VAT class 2
  Container_Vat_3 = 227,     ///< turnover container of VAT class 3
  Container_Vat_4 = 228,     ///< turnover container of VAT class 4
  Container_Vat_5 = 229,     ///< turnover container of VAT class 5
  Container_Vat_6 = 230,     ///< turnover container of VAT class 6
  Container_ThrdP = 231,     ///< turnover container of third-party business
  Container_DlvNote = 232,   ///< turnover container of delivery notes
  Container_Training = 233,  ///< turnover container of training bookings
  Item_Quantity = 160,       ///< item quantity
  Item_Unit = 161,           ///< item unit
  Item_Name = 162,           ///< item name
  Item_DiscSurch = 170,      ///< item is a discount or surcharge (flag)
  Item_Voucher = 171,        ///< item is a voucher (flag)
  Item_Thirdparty = 172,     ///< item is a third-party sale (flag)
  Item_Price1 = 177,         ///< item price, VAT class 1
  Item_Price2 = 178,         ///< item price, VAT class 2
  Item_Price3 = 179,         ///< item price, VAT class 3
  Item_Price4 = 180,         ///< item price, VAT class 4
  Item_Price5 = 181,         ///< item price, VAT class 5
  Item_Price6 = 182,         ///< item price, VAT class 6
};

/// The tags that hold counters.
enum class ZelRqstCounter : std::int32_t {
  Seq_Nr_Trans = 203,        ///< sequence number of the transaction
  Seq_Nr_Reprt = 204,        ///< sequence number of the report
  Seq_No_Trans_First = 210,  ///< first transaction sequence number covered by a report
  Seq_No_Trans_Last = 211,   ///< last transaction sequence number covered by a report
  Trnvr_Counter = 220,       ///< turnover counter
};

/// The tags that hold amounts.
enum class ZelRqstAmounts : std::int32_t {
  Trnvr_Thirdparty = 214,  ///< third-party turnover
  Trnvr = 216,             ///< turnover
  Trnvr_neg = 217,         ///< negative turnover
  Trnvr_Vat = 218,         ///< VAT amount of a turnover
  Item_Price1 = 177,       ///< item price, VAT class 1
  Item_Price2 = 178,       ///< item price, VAT class 2
  Item_Price3 = 179,       ///< item price, VAT class 3
  Item_Price4 = 180,       ///< item price, VAT class 4
  Item_Price5 = 181,       ///< item price, VAT class 5
  Item_Price6 = 182,       ///< item price, VAT class 6
};

/// The tags that hold dates.
enum class ZelRqstDates : std::int32_t {
  tDate = 205,        ///< date
  Month_Start = 208,  ///< start of a report period
  Month_End = 209,    ///< end of a report period
};

}  // namespace VnZEL10cmn
