// A booking from the sale to the signed receipt. Not run here: the tested example is booking.vbs.
// VnZEL10cmn_TLB is the unit that Component, Import Component makes of the type library.

program BookingExample;

{$APPTYPE CONSOLE}

uses
  System.SysUtils, System.Variants, Winapi.ActiveX, VnZEL10cmn_TLB;

procedure Check(Succeeded: WordBool; const Error: _clsVnError);
begin
  if not Succeeded then
    raise Exception.CreateFmt('%d: %s', [Error.ErrorNr, Error.ErrorMsg]);
end;

// What the device answers to a request, which is the host's own business.
function AskDevice(Request: PSafeArray): PSafeArray;
begin
  raise Exception.Create('put the way to your device here');
end;

procedure SignABooking;
var
  Booking: _clsZelTransAct;
  Item: _clsZelItemCash;
  Request, Response: PSafeArray;
  Start, Length: Integer;
  Xml: WideString;
begin
  Booking := CoclsZelTransAct.Create;
  Booking.VatList := CoclsZelVatList.Create;
  Booking.TransactionDate := EncodeDate(2026, 11, 21) + EncodeTime(8, 5, 0, 0);
  Booking.Operator := 'Meier';

  Item := CoclsZelItemCash.Create;
  Check(Item.SetItemData(2, 'Kaffee', 'Stk', 5.6, 0, 0, False, False, False, 0, 0, 0), Item.ErrorObject);
  Check(Booking.AddItem(Item as IVnZelItem), Booking.ErrorObject);
  Item := CoclsZelItemCash.Create;
  Check(Item.SetItemData(4, 'Brötchen', 'Stk', 0, 1.8, 0, False, False, False, 0, 0, 0), Item.ErrorObject);
  Check(Booking.AddItem(Item as IVnZelItem), Booking.ErrorObject);

  Request := nil;
  Start := 0;
  Length := 0;
  Check(Booking.BinaryDataGet(2 {request}, Request, Start, Length), Booking.ErrorObject);
  Response := AskDevice(Request);
  Start := 0;
  Check(Booking.BinaryDataSet(3 {response}, Response, Start, 0), Booking.ErrorObject);

  Writeln(Booking.ToString);
  Check(Booking.XmlHandler(Xml, True, 4), Booking.ErrorObject);
  Writeln(Xml);
end;

begin
  CoInitialize(nil);
  try
    SignABooking;
  except
    on E: Exception do Writeln(E.Message);
  end;
  CoUninitialize;
end.
