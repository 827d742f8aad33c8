Attribute VB_Name = "BookingExample"
' A booking from the sale to the signed receipt. Not run here: the tested example is booking.vbs.
' Tools, References: "Basis-System mit ZEL-Objekten, Datenmodelle, Protokolle etc."

Option Explicit

' What the device answers to a request, which is the host's own business.
Private Function AskDevice(Request() As Byte) As Byte()
    Err.Raise 5, "AskDevice", "put the way to your device here"
End Function

Public Sub SignABooking()
    Dim Booking As New VnZEL10cmn.clsZelTransAct
    Dim Item As VnZEL10cmn.clsZelItemCash
    Dim Request() As Byte
    Dim Response() As Byte
    Dim Start As Long
    Dim Xml As String

    Set Booking.VatList = New VnZEL10cmn.clsZelVatList
    Booking.TransactionDate = DateSerial(2026, 11, 21) + TimeSerial(8, 5, 0)
    Booking.Operator = "Meier"

    Set Item = New VnZEL10cmn.clsZelItemCash
    If Not Item.SetItemData(2, "Kaffee", "Stk", 5.6) Then Fail Item.ErrorObject
    If Not Booking.AddItem(Item) Then Fail Booking.ErrorObject
    Set Item = New VnZEL10cmn.clsZelItemCash
    If Not Item.SetItemData(4, "Brötchen", "Stk", Price2:=1.8) Then Fail Item.ErrorObject
    If Not Booking.AddItem(Item) Then Fail Booking.ErrorObject

    If Not Booking.BinaryDataGet(ZELSerialType.Request, Request, Start) Then Fail Booking.ErrorObject
    Response = AskDevice(Request)
    Start = 0
    If Not Booking.BinaryDataSet(ZELSerialType.Response, Response, Start) Then Fail Booking.ErrorObject

    Debug.Print Booking.ToString
    If Not Booking.XmlHandler(Xml, True) Then Fail Booking.ErrorObject
    Debug.Print Xml
End Sub

Private Sub Fail(Error As VnZEL10cmn.clsVnError)
    Err.Raise vbObjectError + Error.ErrorNr, Error.ErrorSource, Error.ErrorMsg
End Sub
