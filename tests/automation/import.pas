// import DLL UNIT.pas: the unit by which Pascal programs use the classes of a type library early bound, as Delphi's
// Import Component makes it.

program Import;

{$MODE OBJFPC}{$H+}
{$APPTYPE CONSOLE}

uses
  SysUtils, Classes, ActiveX, TypeLib;

type
  TImporter = class(TTypeLibImporter)
  protected
    function ValidateID(Identifier: string): Boolean; override;
  end;

// An enumeration has a member Currency, which would hide the type of that name.
function TImporter.ValidateID(Identifier: string): Boolean;
begin
  Result := inherited ValidateID(Identifier) and not SameText(Identifier, 'Currency');
end;

var
  Importer: TImporter;

begin
  Importer := TImporter.Create(nil);
  try
    Importer.InputFileName := WideString(ParamStr(1));
    Importer.AppendVersionNumber := False;
    Importer.OutputFileName := ParamStr(2);
    Importer.Execute;
  finally
    Importer.Free;
  end;
end.
