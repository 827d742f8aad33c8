Attribute VB_Name = "BookingExample"
' A booking from the sale to the signed receipt, in Visual Basic and VBA.
' Tools, References: "Basis-System mit ZEL-Objekten, Datenmodelle, Protokolle etc."

Option Explicit

' ResponseFile is a text file with what the device answered, in Base64. Without it the booking ends with the request,
' which is what the device gets.
Public Sub SignABooking(Optional ByVal ResponseFile As String)
    Dim Booking As VnZEL10cmn.clsZelTransAct
    Dim Rates As VnZEL10cmn.clsZelVatList
    Dim Item As VnZEL10cmn.clsZelItemCash
    Dim Helper As VnZEL10cmn.clsHelper01
    Dim Request() As Byte
    Dim Response() As Byte
    Dim Start As Long
    Dim Text As String
    Dim Xml As String

    Set Booking = New VnZEL10cmn.clsZelTransAct
    Set Rates = New VnZEL10cmn.clsZelVatList
    Set Booking.VatList = Rates
    Booking.TransactionDate = DateSerial(2026, 11, 21) + TimeSerial(8, 5, 0)
    Booking.Operator = "Meier"

    Set Item = New VnZEL10cmn.clsZelItemCash
    If Not Item.SetItemData(2, "Kaffee", "Stk", 5.6) Then Fail Item.ErrorObject
    If Not Booking.AddItem(Item) Then Fail Booking.ErrorObject

    Set Item = New VnZEL10cmn.clsZelItemCash
    If Not Item.SetItemData(4, "Br" & Chr(246) & "tchen", "Stk", 0, 1.8) Then Fail Item.ErrorObject
    If Not Booking.AddItem(Item) Then Fail Booking.ErrorObject

    Start = 0
    If Not Booking.BinaryDataGet(ZELSerialType.Request, Request, Start) Then Fail Booking.ErrorObject
    Debug.Print "Request: " & Booking.ZelRqstData
    If ResponseFile = "" Then Exit Sub

    Set Helper = New VnZEL10cmn.clsHelper01
    Open ResponseFile For Input As #1
    Line Input #1, Text
    Close #1
    If Not Helper.FromBase64String(Text, Response) Then Fail Helper.ErrorObject
    Start = 0
    If Not Booking.BinaryDataSet(ZELSerialType.Response, Response, Start) Then Fail Booking.ErrorObject
    Debug.Print "Sequence number: " & Booking.ZelRespSeqNr

    Debug.Print Booking.ToString()
    If Not Booking.XmlHandler(Xml, True) Then Fail Booking.ErrorObject
    Debug.Print Xml
End Sub

Private Sub Fail(ByVal Failure As VnZEL10cmn.clsVnError)
    Err.Raise vbObjectError + Failure.ErrorNr, Failure.ErrorSource, Failure.ErrorMsg
End Sub
