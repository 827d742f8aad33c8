' A booking from the sale to the signed receipt, by VBScript: cscript //nologo booking.vbs [RESPONSE]
'
' RESPONSE is a text file with what the device answered, in Base64. Without it the script ends with the request,
' which is what the device gets. On 64-bit Windows the script's host has to have the width of the registered DLL.

Option Explicit

Dim booking, rates, item, request, response, start, xml, text, helper

Set booking = CreateObject("VnZEL10cmn.clsZelTransAct")
Set rates = CreateObject("VnZEL10cmn.clsZelVatList")
Set booking.VatList = rates
booking.TransactionDate = DateSerial(2026, 11, 21) + TimeSerial(8, 5, 0)
booking.Operator = "Meier"

Set item = CreateObject("VnZEL10cmn.clsZelItemCash")
If Not item.SetItemData(2, "Kaffee", "Stk", 5.6) Then Fail item
If Not booking.AddItem(item) Then Fail booking

Set item = CreateObject("VnZEL10cmn.clsZelItemCash")
If Not item.SetItemData(4, "Br" & Chr(246) & "tchen", "Stk", 0, 1.8) Then Fail item
If Not booking.AddItem(item) Then Fail booking

' 2: the request; it replaces what the variable held.
start = 0
If Not booking.BinaryDataGet(2, request, start) Then Fail booking
WScript.Echo "Request: " & booking.ZelRqstData
If WScript.Arguments.Count = 0 Then WScript.Quit 0

' 3: the response.
Set helper = CreateObject("VnZEL10cmn.clsHelper01")
text = CreateObject("Scripting.FileSystemObject").OpenTextFile(WScript.Arguments(0)).ReadLine
If Not helper.FromBase64String(text, response) Then Fail helper
start = 0
If Not booking.BinaryDataSet(3, response, start) Then Fail booking
WScript.Echo "Sequence number: " & booking.ZelRespSeqNr

WScript.Echo booking.ToString()
If Not booking.XmlHandler(xml, True) Then Fail booking
WScript.Echo xml

Sub Fail(what)
  WScript.Echo what.ErrorObject.ErrorNr & ": " & what.ErrorObject.ErrorMsg
  WScript.Quit 1
End Sub
