{ A control fills its container whatever size the container gets. }
unit sizes;

{$mode objfpc}{$H+}

interface

procedure CheckSizes;

implementation

uses
  Windows, SysUtils, Forms, Controls, ActiveXContainer, checks, stage;

{ The place of a window on the screen; of a TextEdit, whose height is that of a line, without the height. }
function PlaceOf(Window: HWND; const Name: string): string;
var
  Place: TRect;
begin
  GetWindowRect(Window, Place);
  Result := Format('%d,%d %d', [Place.Left, Place.Top, Place.Width]);
  if Name <> 'TextEdit' then
    Result := Format('%s x %d', [Result, Place.Height]);
end;

procedure CheckSizes;
const
  WithWindows: array[0..3] of string = ('ComboGrid', 'TextEdit', 'Button', 'RButton');
  Widths: array[0..1] of Integer = (120, 300);
var
  Form: TForm;
  Container: TActiveXContainer;
  Control: OleVariant;
  Name: string;
  Width: Integer;
begin
  for Name in WithWindows do
  begin
    Form := NewForm;
    try
      Container := Place(Form, Name, 10, 10, 200, 100);
      Container.Active := True;
      Control := Container.vObject;
      Open(Form);
      for Width in Widths do
      begin
        Container.SetBounds(20, 30, Width, 50);
        Settle;
        Same(Format('%s is %d wide', [Name, Width]), PlaceOf(HWND(Integer(Control.hWnd)), Name),
          PlaceOf(Container.Handle, Name));
      end;
      Container.Align := alClient;
      Settle;
      Form.ClientWidth := Form.ClientWidth + 40;
      Settle;
      Same(Name + ' follows its form', Container.Width, Form.ClientWidth);
    finally
      Form.Free;
    end;
  end;
end;

end.
