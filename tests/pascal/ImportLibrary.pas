program ImportLibrary;
// ImportLibrary MODULE FOLDER: writes the unit that the command Tools > Import Type Library generates, with a visual
// component for each class. Prints the unit's name.
{$mode objfpc}{$H+}
{$apptype console}

uses
  Classes, SysUtils, TypeLib;

var
  Dependencies, Text: TStringList;
  UnitName, PackageText, PackageUnit: String;
begin
  Dependencies := TStringList.Create;
  Text := TStringList.Create;
  Text.Text := ImportTypeLib(WideString(ParamStr(1)), UnitName, Dependencies, True, False, False, PackageText,
    PackageUnit);
  Text.SaveToFile(IncludeTrailingPathDelimiter(ParamStr(2)) + UnitName + '.pas');
  WriteLn(UnitName);
end.
