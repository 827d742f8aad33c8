// cscript //nologo script.js FOLDER: the same booking as script.vbs, by a language that sees nothing of what is handed back
// by reference. Every line that is printed stands in script_js.expected, which the C++ library wrote.

var folder = WScript.Arguments(0);
var files = new ActiveXObject("Scripting.FileSystemObject");

function escaped(text) {
  var result = "";
  for (var i = 0; i < text.length; i++) {
    var code = text.charCodeAt(i);
    result += code >= 32 && code < 127 ? text.charAt(i) : "<" + code + ">";
  }
  return result;
}

function show(name, value) {
  var text = typeof value == "boolean" ? (value ? "True" : "False") : String(value);
  WScript.Echo(name + ": " + escaped(text));
}

function scaled(value) {
  return Math.round(value * 10000);
}

function showError(object) {
  show("error", object.HasError());
  show("number", object.ErrorObject.ErrorNr);
  show("message", object.ErrorObject.ErrorMsg);
  show("function", object.ErrorObject.ErrorFunction);
  show("user-defined", object.ErrorObject.IsUserDef);
}

// The bytes of a Base64 text, as an array of this language.
function bytesOf(name) {
  var text = files.OpenTextFile(folder + "\\" + name).ReadLine();
  var letters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  var bytes = [], bits = 0, count = 0;
  for (var i = 0; i < text.length && text.charAt(i) != "="; i++) {
    bits = (bits << 6 | letters.indexOf(text.charAt(i))) & 0xFFFF;
    count += 6;
    if (count >= 8) {
      count -= 8;
      bytes.push(bits >> count & 255);
    }
  }
  return bytes;
}

var it = new ActiveXObject("VnZEL10cmn.clsZelTransAct");
it.VatList = new ActiveXObject("VnZEL10cmn.clsZelVatList");
it.TransactionDate = 46347 + 485 / 1440;  // 21 November 2026 08:05, as days since 30 December 1899
it.Operator = "Meier";
var item = new ActiveXObject("VnZEL10cmn.clsZelItemCash");
show("item", item.SetItemData(2, "Kaffee", "Stk", 5.6));
show("added", it.AddItem(item));
item = new ActiveXObject("VnZEL10cmn.clsZelItemCash");
show("item", item.SetItemData(4, "Br\u00F6tchen", "", 0, 1.8));
item.Price(3) = 0.25;
item.Price2(3) = 1.5;
show("price", scaled(item.Price(4)));
show("added", it.AddItem(item));
show("count", it.ItemCount);
for (var e = new Enumerator(it); !e.atEnd(); e.moveNext()) {
  show("element", e.item().ToString());
}
show("request made", it.BinaryDataGet(2, null, 0));
show("request kept", it.ZelRqstData);
show("hash", it.GetItemHash(1, false, 5));
show("response read", it.BinaryDataSet(3, bytesOf("booking.response"), 0));
showError(it);
show("taxpayer", it.ZelRespTpID);
show("sequence number", scaled(it.ZelRespSeqNr));
show("signature", it.ZelRespSignature);
show("receipt", it.ToString());
show("damaged", it.XmlHandler("<nothing/>", false));
showError(it);
try {
  item.Price2(9);
} catch (raised) {
  show("raised", raised.number & 0xFFFF);
}
