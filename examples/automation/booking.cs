// A booking from the sale to the signed receipt, in C#: booking [RESPONSE]
//
// RESPONSE is a text file with what the device answered, in Base64. Without it the program ends with the request, which
// is what the device gets. Add a COM reference to "Basis-System mit ZEL-Objekten, Datenmodelle, Protokolle etc.". The
// program has to have the width of the registered DLL: set the platform to x86 or x64.

using System;
using System.IO;
using VnZEL10cmn;

static class BookingExample
{
    [STAThread]
    static void Main(string[] arguments)
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
        Console.WriteLine("Request: " + booking.ZelRqstData);
        if (arguments.Length == 0) return;

        Array response = Convert.FromBase64String(File.ReadAllText(arguments[0]));
        start = 0;
        if (!booking.BinaryDataSet(ZELSerialType.Response, ref response, ref start))
            throw Failure(booking.ErrorObject);
        Console.WriteLine("Sequence number: " + booking.ZelRespSeqNr);

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
