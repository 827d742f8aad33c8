// A booking from the sale to the signed receipt, by Delphi or Free Pascal: booking early|late [RESPONSE]
//
// early takes the interfaces of the type library (early bound), late names alone (late bound). RESPONSE is a text file
// with what the device answered, in Base64. Without it the program ends with the request, which is what the device gets.
// The program has to have the width of the registered DLL.
//
// VnZEL10cmn_TLB is the unit that is imported from the type library: in Delphi by Component, Import Component, in Free
// Pascal by TTypeLibImporter. What Free Pascal reserves gets an underscore there: Operator_.

program BookingExample;

{$APPTYPE CONSOLE}
{$IFDEF FPC}{$MODE DELPHI}{$ENDIF}

uses
{$IFDEF FPC}
  SysUtils, Classes, Variants, ActiveX, ComObj, VnZEL10cmn_TLB;
{$ELSE}
  System.SysUtils, System.Classes, System.Variants, Winapi.ActiveX, System.Win.ComObj, VnZEL10cmn_TLB;
{$ENDIF}

const
  Rolls: WideString = 'Br'#$00F6'tchen';
  RequestData = 2;
  ResponseData = 3;

// What the device answered to the request, which is the host's own business.
function AnswerOfDevice: WideString;
var
  Lines: TStringList;
begin
  Lines := TStringList.Create;
  try
    Lines.LoadFromFile(ParamStr(2));
    Result := WideString(Lines[0]);
  finally
    Lines.Free;
  end;
end;

procedure CheckEarlyBound(Succeeded: WordBool; const Error: _clsVnError);
begin
  if not Succeeded then
    raise Exception.CreateFmt('%d: %s', [Error.ErrorNr, Error.ErrorMsg]);
end;

procedure SignEarlyBound;
var
  Booking: _clsZelTransAct;
  Item: _clsZelItemCash;
  Helper: _clsHelper01;
  Request, Response: PSafeArray;
  Start, Length: Integer;
  Xml: WideString;
begin
  Booking := CoclsZelTransAct.Create;
  Booking.VatList := CoclsZelVatList.Create;
  Booking.TransactionDate := EncodeDate(2026, 11, 21) + EncodeTime(8, 5, 0, 0);
  Booking.{$IFDEF FPC}Operator_{$ELSE}Operator{$ENDIF} := 'Meier';

  Item := CoclsZelItemCash.Create;
  CheckEarlyBound(Item.SetItemData(2, 'Kaffee', 'Stk', 5.6, 0, 0, False, False, False, 0, 0, 0), Item.ErrorObject);
  CheckEarlyBound(Booking.AddItem(Item as IVnZelItem), Booking.ErrorObject);
  Item := CoclsZelItemCash.Create;
  CheckEarlyBound(Item.SetItemData(4, Rolls, 'Stk', 0, 1.8, 0, False, False, False, 0, 0, 0), Item.ErrorObject);
  CheckEarlyBound(Booking.AddItem(Item as IVnZelItem), Booking.ErrorObject);

  // Arrays belong to the program, those that an operation has made as well.
  Request := nil;
  Response := nil;
  try
    Start := 0;
    Length := 0;
    CheckEarlyBound(Booking.BinaryDataGet(RequestData, Request, Start, Length), Booking.ErrorObject);
    Writeln('Request: ', Booking.ZelRqstData);
    if ParamCount < 2 then
      Exit;

    Helper := CoclsHelper01.Create;
    CheckEarlyBound(Helper.FromBase64String(AnswerOfDevice, Response, '+', '/'), Helper.ErrorObject);
    Start := 0;
    CheckEarlyBound(Booking.BinaryDataSet(ResponseData, Response, Start, 0), Booking.ErrorObject);
  finally
    SafeArrayDestroy(Request);
    SafeArrayDestroy(Response);
  end;
  Writeln('Sequence number: ', CurrToStr(Booking.ZelRespSeqNr));

  Writeln(Booking.ToString);
  CheckEarlyBound(Booking.XmlHandler(Xml, True, 4), Booking.ErrorObject);
  Writeln(Xml);
end;

procedure CheckLateBound(Succeeded: Boolean; const What: OleVariant);
begin
  if not Succeeded then
    raise Exception.CreateFmt('%s: %s', [string(What.ErrorObject.ErrorNr), string(What.ErrorObject.ErrorMsg)]);
end;

procedure SignLateBound;
var
  Booking, Item, Helper, Request, Response, Start, Xml: OleVariant;
begin
  Booking := CreateOleObject('VnZEL10cmn.clsZelTransAct');
  Booking.VatList := CreateOleObject('VnZEL10cmn.clsZelVatList');
  Booking.TransactionDate := VarFromDateTime(EncodeDate(2026, 11, 21) + EncodeTime(8, 5, 0, 0));
  Booking.&Operator := 'Meier';

  Item := CreateOleObject('VnZEL10cmn.clsZelItemCash');
  CheckLateBound(Item.SetItemData(2, 'Kaffee', 'Stk', 5.6), Item);
  CheckLateBound(Booking.AddItem(Item), Booking);
  Item := CreateOleObject('VnZEL10cmn.clsZelItemCash');
  CheckLateBound(Item.SetItemData(4, Rolls, 'Stk', 0, 1.8), Item);
  CheckLateBound(Booking.AddItem(Item), Booking);

  Start := 0;
  CheckLateBound(Booking.BinaryDataGet(RequestData, Request, Start), Booking);
  Writeln('Request: ', string(Booking.ZelRqstData));
  if ParamCount < 2 then
    Exit;

  Helper := CreateOleObject('VnZEL10cmn.clsHelper01');
  CheckLateBound(Helper.FromBase64String(AnswerOfDevice, Response), Helper);
  Start := 0;
  CheckLateBound(Booking.BinaryDataSet(ResponseData, Response, Start), Booking);
  Writeln('Sequence number: ', string(Booking.ZelRespSeqNr));

  Writeln(WideString(Booking.ToString));
  CheckLateBound(Booking.XmlHandler(Xml, True), Booking);
  Writeln(WideString(Xml));
end;

begin
  try
    if ParamStr(1) = 'early' then
      SignEarlyBound
    else if ParamStr(1) = 'late' then
      SignLateBound
    else
      raise Exception.Create('booking early|late [RESPONSE]');
  except
    on E: Exception do
    begin
      Writeln(E.Message);
      ExitCode := 1;
    end;
  end;
end.
