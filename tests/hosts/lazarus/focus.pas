{ How the keyboard moves between containers: the way that the documentation shows, and the mouse. }
unit focus;

{$mode objfpc}{$H+}

interface

procedure CheckFocus;

implementation

uses
  Windows, SysUtils, Forms, Controls, StdCtrls, ActiveXContainer, checks, stage, Qvx_1_0_TLB;

type
  TTabbing = class
    Clicks: Integer;
    procedure EnterControl(Sender: TObject);
    procedure PassOn(Container: PtrInt);
    procedure LeaveWithTab(Sender: TObject; var KeyCode: SmallInt; var Shift: SmallInt);
    procedure LeaveWithCtrlTab(Sender: TObject; var KeyCode: SmallInt; var Shift: SmallInt);
    procedure Clicked(Sender: TObject);
  end;

{ For OnEnter: a container keeps the keyboard for its own window unless it passes it on once it has it. }
procedure TTabbing.EnterControl(Sender: TObject);
begin
  Application.QueueAsyncCall(@PassOn, PtrInt(Sender));
end;

procedure TTabbing.PassOn(Container: PtrInt);
begin
  Activate(TActiveXContainer(Container));
end;

{ For OnKeyDown: the container does not ask for the keys that leave a control. }
procedure TTabbing.LeaveWithTab(Sender: TObject; var KeyCode: SmallInt; var Shift: SmallInt);
var
  Container: TActiveXContainer;
begin
  if KeyCode <> VK_TAB then
    Exit;
  KeyCode := 0;
  Container := Sender as TActiveXContainer;
  GetParentForm(Container).SelectNext(Container, Shift and 1 = 0, True);
end;

{ For a grid, whose cells Tab visits. }
procedure TTabbing.LeaveWithCtrlTab(Sender: TObject; var KeyCode: SmallInt; var Shift: SmallInt);
begin
  if Shift = 2 then
    LeaveWithTab(Sender, KeyCode, Shift);
end;

procedure TTabbing.Clicked(Sender: TObject);
begin
  Inc(Clicks);
end;

procedure CheckTab(Tabbing: TTabbing);
var
  Form: TForm;
  First, Last: TAxcTextEdit;
  Between: TEdit;
begin
  Form := NewForm;
  try
    First := TAxcTextEdit.Create(Form);
    First.SetBounds(10, 10, 200, 30);
    Between := TEdit.Create(Form);
    Between.Parent := Form;
    Between.SetBounds(10, 50, 200, 30);
    Last := TAxcTextEdit.Create(Form);
    Last.SetBounds(10, 90, 200, 30);
    First.TabStop := True;
    Last.TabStop := True;
    First.TabOrder := 0;
    Between.TabOrder := 1;
    Last.TabOrder := 2;
    First.OnEnter := @Tabbing.EnterControl;
    Last.OnEnter := @Tabbing.EnterControl;
    First.OnKeyDown := @Tabbing.LeaveWithTab;
    Last.OnKeyDown := @Tabbing.LeaveWithTab;
    First.Active := True;
    Last.Active := True;
    First.OleServer.AutoSelection := False;
    Form.ActiveControl := First;
    Open(Form);
    TypeText('a');
    Press(VK_TAB);
    TypeText('b');
    Press(VK_TAB);
    TypeText('c');
    Press(VK_TAB, True);
    TypeText('d');
    Press(VK_TAB, True);
    TypeText('e');
    Same('Tab visits controls and boxes in turn',
      Format('%s %s %s', [First.OleServer.Text_, Between.Text, Last.OleServer.Text_]), 'ae d c');
  finally
    Form.Free;
  end;
end;

procedure CheckGrid(Tabbing: TTabbing);
var
  Form: TForm;
  Grid: TAxcComboGrid;
  Next: TEdit;
begin
  Form := NewForm;
  try
    Grid := TAxcComboGrid.Create(Form);
    Grid.SetBounds(10, 10, 400, 200);
    Grid.OleServer.FormatString := '|Article|Pieces';
    Grid.OleServer.Rows := 2;
    Grid.OleServer.AutoTab := True;
    Grid.OnEnter := @Tabbing.EnterControl;
    Grid.OnKeyDown := @Tabbing.LeaveWithCtrlTab;
    Grid.Active := True;
    Next := TEdit.Create(Form);
    Next.Parent := Form;
    Next.SetBounds(10, 250, 200, 30);
    Form.ActiveControl := Grid;
    Open(Form);
    TypeText('a');
    Press(VK_TAB);
    TypeText('b');
    Press(VK_RETURN);
    keybd_event(VK_CONTROL, 0, 0, 0);
    Press(VK_TAB);
    keybd_event(VK_CONTROL, 0, KEYEVENTF_KEYUP, 0);
    TypeText('c');
    Same('Tab visits the cells of a grid, and Ctrl+Tab leaves it',
      Format('%s %s %s', [Grid.OleServer.TextMatrix[1, 1], Grid.OleServer.TextMatrix[1, 2], Next.Text]), 'a b c');
  finally
    Form.Free;
  end;
end;

procedure CheckMouse(Tabbing: TTabbing);
var
  Form: TForm;
  Box: TAxcTextEdit;
  Button: TAxcButton;
begin
  Form := NewForm;
  try
    Box := TAxcTextEdit.Create(Form);
    Box.SetBounds(10, 10, 200, 30);
    Box.Active := True;
    Button := TAxcButton.Create(Form);
    Button.SetBounds(10, 60, 100, 40);
    Button.OnClick := @Tabbing.Clicked;
    Button.Active := True;
    Open(Form);
    Click(Button, 50, 20);
    Same('a click presses a button', Tabbing.Clicks, 1);
    Click(Box, 20, 10);
    TypeText('x');
    Same('a click gives the keyboard to a box', Box.OleServer.Text_, 'x');
    Press(VK_RETURN);
    Same('the button has no part in keys that are typed elsewhere', Tabbing.Clicks, 1);
  finally
    Form.Free;
  end;
end;

procedure CheckFocus;
var
  Tabbing: TTabbing;
begin
  Tabbing := TTabbing.Create;
  try
    CheckTab(Tabbing);
    CheckGrid(Tabbing);
    CheckMouse(Tabbing);
  finally
    Tabbing.Free;
  end;
end;

end.
