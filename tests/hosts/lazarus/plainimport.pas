{ Free Pascal's importer as it is: plainimport FILE FOLDER. }
program plainimport;

{$mode objfpc}{$H+}

uses
  ActiveX, TypeLib;

var
  Importer: TTypeLibImporter;
begin
  OleInitialize(nil);
  Importer := TTypeLibImporter.Create(nil);
  Importer.ActiveX := True;
  Importer.InputFileName := UnicodeString(ParamStr(1));
  Importer.OutputFileName := ParamStr(2) + '\Qvx_1_0_TLB.pas';
  Importer.Execute;
  Importer.Free;
end.
