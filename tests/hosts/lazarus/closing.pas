{ What is left after forms with controls have been closed. }
unit closing;

{$mode objfpc}{$H+}

interface

procedure CheckClosing;

implementation

uses
  Windows, SysUtils, Variants, Forms, ComObj, ActiveXContainer, checks, stage;

procedure ShowAll;
var
  Form: TForm;
  Index: Integer;
begin
  Form := NewForm;
  try
    for Index := Low(ControlNames) to High(ControlNames) do
      Place(Form, ControlNames[Index], 10 + 80 * (Index mod 4), 10 + 90 * (Index div 4), 75, 80).Active := True;
    Open(Form);
  finally
    Form.Free;
    Settle;
  end;
end;

{ The form goes while its grid has an editor open, which still holds what was typed. }
procedure CloseInEditor(const Column: string);
var
  Form: TForm;
  Container: TActiveXContainer;
  Grid: OleVariant;
begin
  Form := NewForm;
  try
    Container := Place(Form, CreateOleObject('Qvx.ComboGrid'), 10, 10, 500, 300);
    Grid := Container.vObject;
    Grid.FormatString := '|' + Column;
    Grid.ListColumns := ';Colour;';
    Grid.Rows := 2;
    Container.Active := True;
    if Column = 'Colour' then
      Grid.Lists[1].AddItem('Red');
    Open(Form);
    Enter(Container);
    TypeText('r');
    Grid := Unassigned;
    Form.Close;
    Settle;
  finally
    Form.Free;
    Settle;
  end;
end;

function Handles: Integer;
begin
  Result := GetGuiResources(GetCurrentProcess, GR_USEROBJECTS);
end;

procedure CheckClosing;
var
  Windows, Objects, Round: Integer;
begin
  { The first round also creates what Lazarus keeps for the life of the program. }
  ShowAll;
  CloseInEditor('Article');
  CloseInEditor('Colour');
  Check('the server is unused once all forms are closed', ServerIsUnused, 'it has objects left');
  Windows := CountWindows;
  Objects := Handles;
  for Round := 1 to 5 do
  begin
    ShowAll;
    CloseInEditor('Article');
    CloseInEditor('Colour');
  end;
  Same('no window is left', CountWindows, Windows);
  Same('no menu, icon or hook is left', Handles, Objects);
  Check('the server is unused in the end', ServerIsUnused, 'it has objects left');
end;

end.
