' cscript //nologo script.vbs FOLDER: what a script sees of a booking, a report and a data record. The folder holds what
' the device answered; every line that is printed stands in script.expected, which the C++ library wrote.

Option Explicit

Dim folder, files, helper
folder = WScript.Arguments(0)
Set files = CreateObject("Scripting.FileSystemObject")
Set helper = CreateObject("VnZEL10cmn.clsHelper01")

Booking
Report
DataRecord
Arguments

Sub Show(name, value)
  WScript.Echo name & ": " & Escaped(CStr(value))
End Sub

' Only what every code page has; the texts here have nothing beyond code page 1252.
Function Escaped(text)
  Dim i, code, result
  result = ""
  For i = 1 To Len(text)
    code = Asc(Mid(text, i, 1))
    If code >= 32 And code < 127 Then
      result = result & Mid(text, i, 1)
    Else
      result = result & "<" & code & ">"
    End If
  Next
  Escaped = result
End Function

Function Scaled(value)
  Scaled = CStr(CLng(value * 10000))
End Function

Function ReadBytes(name)
  Dim bytes, text
  text = files.OpenTextFile(folder & "\" & name).ReadLine
  If Not helper.FromBase64String(text, bytes) Then WScript.Echo "not read: " & name
  ReadBytes = bytes
End Function

Sub ShowError(object)
  Show "error", object.HasError()
  Show "number", object.ErrorObject.ErrorNr
  Show "message", object.ErrorObject.ErrorMsg
  Show "function", object.ErrorObject.ErrorFunction
  Show "user-defined", object.ErrorObject.IsUserDef
End Sub

Sub Booking
  Dim it, rates, item, request, length, text, xml, other, element, start, bytes, log, line, found
  Set it = CreateObject("VnZEL10cmn.clsZelTransAct")
  Set rates = CreateObject("VnZEL10cmn.clsZelVatList")
  Set it.VatList = rates
  it.TransactionDate = DateSerial(2026, 11, 21) + TimeSerial(8, 5, 0)
  it.Operator = "Meier"

  ' A failure, in the error object and in the log.
  Set log = CreateObject("VnZEL10cmn.clsVnLogFile")
  Show "log opened", log.FileOpen(folder & "\script.log", True)
  Set it.LogHandler = log
  Show "refused", it.BinaryDataGet(6, bytes, 0)
  ShowError it
  Show "same error object", it.ErrorObject Is it.ErrorObject
  log.FileClose
  found = False
  With files.OpenTextFile(folder & "\script.log")
    Do Until .AtEndOfStream
      line = .ReadLine
      If InStr(line, "FEHLER:") > 0 Then found = True
    Loop
    .Close
  End With
  Show "entry in the log", found
  Set it.LogHandler = Nothing

  Set item = CreateObject("VnZEL10cmn.clsZelItemCash")
  Show "item", item.SetItemData(2, "Kaffee", "Stk", 5.6)
  Show "added", it.AddItem(item)
  Show "the same", it.ItemI(1) Is item
  Set item = CreateObject("VnZEL10cmn.clsZelItemCash")
  Show "item", item.SetItemData(4, "Br" & Chr(246) & "tchen", , , 1.8)
  item.Price(3) = 0.25
  item.Price2(3) = CCur(1.5)
  Show "price", Scaled(item.Price(4))
  Show "added", it.AddItem(item)
  Show "count", it.ItemCount
  For Each element In it
    Show "element", element.ToString()
  Next

  Show "request made", it.BinaryDataGet(2, request, 0, length)
  Show "length", length
  Show "request to text", helper.ToBase64String(request, text)
  Show "request", text
  Show "request kept", it.ZelRqstData
  Show "hash", it.GetItemHash(1, False, 5)
  Show "response read", it.BinaryDataSet(3, ReadBytes("booking.response"), 0)
  ShowError it
  Show "taxpayer", it.ZelRespTpID
  Show "sequence number", Scaled(it.ZelRespSeqNr)
  Show "signature", it.ZelRespSignature
  Dim turnover, vat, rate
  Show "values", it.GetContainerValues(2, turnover, vat, rate)
  Show "turnover", Scaled(turnover)
  Show "vat", Scaled(vat)
  Show "rate", Scaled(rate)
  Show "receipt", it.ToString()

  Show "out", it.XmlHandler(xml, True)
  Show "xml", xml
  Set other = CreateObject("VnZEL10cmn.clsZelTransAct")
  Show "in", other.XmlHandler(xml, False)
  Show "receipt of the other", other.ToString()
  Show "date", other.TransactionDate = it.TransactionDate
  Show "damaged", other.XmlHandler("<nothing/>", False)
  ShowError other
End Sub

Sub Report
  Dim it, request, length, xml
  Set it = CreateObject("VnZEL10cmn.clsZelReport")
  it.ReportDate = DateSerial(2026, 11, 21) + TimeSerial(20, 0, 0)
  Show "report request made", it.BinaryDataGet(2, request, 0, 1, length)
  Show "length", length
  Show "report response read", it.BinaryDataSet(3, ReadBytes("report.response"), 0)
  ShowError it
  Show "state", it.ZelStatus
  Show "number", Scaled(it.SequenceNbr)
  Show "turnover", Scaled(it.Container(2).Turnover)
  Show "text", it.ToString()
  Show "out", it.XmlHandler(xml, True)
  Show "xml", xml
End Sub

Sub DataRecord
  Dim it, data, request, i, length
  Set it = CreateObject("VnZEL10cmn.clsZelTransActData")
  ' An array of variants is what scripts can make themselves.
  data = Array(72, 97, 108, 108, 111)
  Show "data", it.BinaryDataSet(6, data, 0)
  Show "kept", it.DataToSign
  it.DataSignType = 2
  ReDim request(63)
  For i = 0 To 63
    request(i) = CByte(0)
  Next
  Show "data request made", it.BinaryDataGet(2, request, 0, length)
  Show "length", length
  Show "data response read", it.BinaryDataSet(3, ReadBytes("data.response"), 0)
  ShowError it
  Show "data receipt", it.ToString()
End Sub

' Types as automation converts them.
Sub Arguments
  Dim coder, buffer, start, text, item, lines, line
  Set coder = CreateObject("VnZEL10cmn.clsZelBaseCoding")
  buffer = ReadBytes("booking.response")
  start = "0"
  Show "read", coder.GetZelTpID(buffer, start, text)
  Show "text", text
  Show "start", start
  Show "not read", coder.GetZelTpID(buffer, 500, text)
  ShowError coder
  Set item = CreateObject("VnZEL10cmn.clsZelItemCash")
  item.Quantity = "3"
  Show "quantity", Scaled(item.Quantity)
  item.DiscSurc = 1
  Show "flag", item.DiscSurc
  Show "lines", helper.GetLinesOfString("a" & vbCrLf & "b", lines)
  Show "count", lines.Count
  Show "second", lines(2)
  For Each line In lines
    Show "line", line
  Next
  On Error Resume Next
  text = item.Price2(9)
  Show "raised", Err.Number
  Show "by", Err.Source
  Err.Clear
  coder.GetZelTpID buffer
  Show "too few", Err.Number <> 0
  Err.Clear
  item.Quantity = "many"
  Show "no number", Err.Number
  Err.Clear
  item.NoSuchMember
  Show "no member", Err.Number
End Sub
