{ Writes the unit Qvx_1_0_TLB, with which a program of Lazarus uses the controls early bound:

    importqvx Qvx.ocx FOLDER

  It is Free Pascal's own importer. Two things are corrected in what that writes: help texts of several lines, since a
  comment ends with its line, and the second index of TextMatrix, which would be missing. }
program importqvx;

{$mode objfpc}{$H+}

uses
  SysUtils, StrUtils, ActiveX, TypeLib;

type
  TImporter = class(TTypeLibImporter)
  protected
    procedure AddToInterface(const Lines: string); override;
  end;

{ A line that continues a help text is the only one that begins with neither a space nor a comment. }
function JoinHelpTexts(const Lines: string): string;
var
  At: Integer;
begin
  Result := Lines;
  At := Pos(#13#10, Result);
  while At > 0 do
  begin
    if (At + 2 <= Length(Result)) and not (Result[At + 2] in [' ', '/', #13]) then
      Delete(Result, At, 2);
    At := PosEx(#13#10, Result, At + 1);
  end;
end;

function AddColumns(const Lines: string): string;
begin
  Result := StringReplace(Lines, 'Get_TextMatrix(Row:Integer)', 'Get_TextMatrix(Row:Integer; Col:Integer)', []);
  Result := StringReplace(Result, 'Set_TextMatrix(const Row:Integer;', 'Set_TextMatrix(const Row:Integer; const Col:Integer;',
    []);
  Result := StringReplace(Result, 'TextMatrix[Row:Integer]', 'TextMatrix[Row:Integer; Col:Integer]', []);
end;

procedure TImporter.AddToInterface(const Lines: string);
begin
  if StartsText(#13#10'// ', Lines) then
    inherited AddToInterface(AddColumns(JoinHelpTexts(Lines)))
  else
    inherited AddToInterface(Lines);
end;

var
  Importer: TImporter;
begin
  if ParamCount <> 2 then
  begin
    WriteLn('importqvx Qvx.ocx FOLDER');
    Halt(1);
  end;
  OleInitialize(nil);
  Importer := TImporter.Create(nil);
  Importer.ActiveX := True;
  Importer.InputFileName := UnicodeString(ParamStr(1));
  Importer.OutputFileName := IncludeTrailingPathDelimiter(ParamStr(2)) + 'Qvx_1_0_TLB.pas';
  Importer.Execute;
  Importer.Free;
end.
