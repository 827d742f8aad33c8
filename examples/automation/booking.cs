// A booking from the sale to the signed receipt. Not run here: the tested example is booking.vbs.
// Add a COM reference to "Basis-System mit ZEL-Objekten, Datenmodelle, Protokolle etc.".

using System;
using VnZEL10cmn;

static class BookingExample
{
    // What the device answers to a request, which is the host's own business.
    static byte[] AskDevice(byte[] request) =>
        throw new NotImplementedException("put the way to your device here");

    [STAThread]
    static void Main()
    {
        var booking = new clsZelTransAct
        {
            VatList = new clsZelVatList(),
            TransactionDate = new DateTime(2026, 11, 21, 8, 5, 0),
            Operator = "Meier",
        };
        AddItem(booking, 2m, "Kaffee", price1: 5.60m);
        AddItem(booking, 4m, "Brötchen", price2: 1.80m);

        Array request = Array.Empty<byte>();
        int start = 0;
        int length = 0;
        if (!booking.BinaryDataGet(ZELSerialType.Request, ref request, ref start, ref length))
            throw Failure(booking.ErrorObject);

        Array response = AskDevice((byte[])request);
        start = 0;
        if (!booking.BinaryDataSet(ZELSerialType.Response, ref response, ref start))
            throw Failure(booking.ErrorObject);

        Console.WriteLine(booking.ToString());
        string xml = "";
        if (!booking.XmlHandler(ref xml, true)) throw Failure(booking.ErrorObject);
        Console.WriteLine(xml);
    }

    static void AddItem(clsZelTransAct booking, decimal quantity, string name, decimal price1 = 0, decimal price2 = 0)
    {
        var item = new clsZelItemCash();
        if (!item.SetItemData(quantity, name, "Stk", price1, price2)) throw Failure(item.ErrorObject);
        if (!booking.AddItem((IVnZelItem)item)) throw Failure(booking.ErrorObject);
    }

    static Exception Failure(clsVnError error) =>
        new InvalidOperationException($"{error.ErrorNr}: {error.ErrorMsg}");
}
