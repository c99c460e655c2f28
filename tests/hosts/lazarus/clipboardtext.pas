{ Writes the clipboard's text. }
program clipboardtext;

{$mode objfpc}{$H+}

uses
  Windows;

var
  Text: PWideChar;
begin
  if not OpenClipboard(0) then
    Halt(1);
  Text := GlobalLock(GetClipboardData(CF_UNICODETEXT));
  WriteLn(UTF8Encode(UnicodeString(Text)));
  CloseClipboard;
end.
