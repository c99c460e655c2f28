{ Events that a program receives through the event sinks of the imported unit, and arguments that its handlers change. }
unit events;

{$mode objfpc}{$H+}

interface

procedure CheckEvents;

implementation

uses
  Windows, SysUtils, Forms, checks, stage, Qvx_1_0_TLB;

type
  { Writes down what arrives, and changes what a handler may change. }
  TListener = class
    Log: string;
    procedure Clicked(Sender: TObject);
    procedure TextChanged(Sender: TObject);
    procedure TextKeyDown(Sender: TObject; var KeyCode: SmallInt; var Shift: SmallInt);
    procedure TextKeyPress(Sender: TObject; var KeyAscii: SmallInt);
    procedure BeforeCell(Sender: TObject; Row: Integer; Col: Integer; Data: OleVariant; var Cancel: WordBool);
    procedure AfterCell(Sender: TObject; Row: Integer; Col: Integer; OldData: OleVariant; NewData: OleVariant;
      var Cancel: WordBool);
    procedure GridKeyDown(Sender: TObject; var KeyCode: SmallInt; var Shift: SmallInt);
    procedure Entered(Sender: TObject);
    procedure Left(Sender: TObject);
    function Take: string;
  end;

procedure TListener.Clicked(Sender: TObject);
begin
  Log := Log + 'click ';
end;

procedure TListener.TextChanged(Sender: TObject);
begin
  Log := Log + 'change ';
end;

procedure TListener.TextKeyDown(Sender: TObject; var KeyCode: SmallInt; var Shift: SmallInt);
begin
  Log := Log + Format('down %d,%d ', [KeyCode, Shift]);
  if KeyCode = VK_DELETE then
    KeyCode := 0;
end;

procedure TListener.TextKeyPress(Sender: TObject; var KeyAscii: SmallInt);
begin
  Log := Log + Format('press %d ', [KeyAscii]);
  case Chr(KeyAscii) of
    'a': KeyAscii := Ord('b');
    'x': KeyAscii := 0;
  end;
end;

procedure TListener.BeforeCell(Sender: TObject; Row: Integer; Col: Integer; Data: OleVariant; var Cancel: WordBool);
begin
  Log := Log + Format('before %d,%d ', [Row, Col]);
  Cancel := Col = 2;
end;

procedure TListener.AfterCell(Sender: TObject; Row: Integer; Col: Integer; OldData: OleVariant; NewData: OleVariant;
  var Cancel: WordBool);
begin
  Log := Log + Format('after %d,%d %s>%s ', [Row, Col, string(OldData), string(NewData)]);
  Cancel := NewData = '13';
end;

procedure TListener.GridKeyDown(Sender: TObject; var KeyCode: SmallInt; var Shift: SmallInt);
begin
  { The key that moves down moves to the right instead. }
  if KeyCode = VK_DOWN then
    KeyCode := VK_RIGHT;
end;

procedure TListener.Entered(Sender: TObject);
begin
  Log := Log + 'enter ';
end;

procedure TListener.Left(Sender: TObject);
begin
  Log := Log + 'leave ';
end;

function TListener.Take: string;
begin
  Result := Trim(Log);
  Log := '';
end;

procedure CheckButtons(Listener: TListener);
var
  Form: TForm;
  Flat: TAxcButton;
  Rounded: TAxcRButton;
begin
  Form := NewForm;
  try
    Flat := TAxcButton.Create(Form);
    Flat.SetBounds(10, 10, 100, 30);
    Flat.OnClick := @Listener.Clicked;
    Flat.Active := True;
    Rounded := TAxcRButton.Create(Form);
    Rounded.SetBounds(10, 60, 100, 30);
    Rounded.OnClick := @Listener.Clicked;
    Rounded.Active := True;
    Open(Form);
    Enter(Flat);
    Press(VK_SPACE);
    Same('the space bar clicks a Button', Listener.Take, 'click');
    Flat.OleServer.Value := True;
    Same('a program clicks a Button', Listener.Take, 'click');
    Enter(Rounded);
    Press(VK_SPACE);
    Same('the space bar clicks an RButton', Listener.Take, 'click');
  finally
    Form.Free;
  end;
end;

procedure CheckTextEdit(Listener: TListener);
var
  Form: TForm;
  Box: TAxcTextEdit;
begin
  Form := NewForm;
  try
    Box := TAxcTextEdit.Create(Form);
    Box.SetBounds(10, 10, 200, 30);
    Box.OnKeyPress := @Listener.TextKeyPress;
    Box.Active := True;
    Box.OleServer.Text_ := '';
    Open(Form);
    Enter(Box);
    TypeText('cax');
    Same('KeyPress names the characters', Listener.Take, 'press 99 press 97 press 120');
    Same('KeyPress replaces one character and refuses another', Box.OleServer.Text_, 'cb');
    Box.OnKeyPress := nil;
    Box.OnKeyDown := @Listener.TextKeyDown;
    Press(VK_HOME);
    Press(VK_DELETE);
    Same('KeyDown names the keys', Listener.Take, 'down 36,0 down 46,0');
    Same('KeyDown refuses a key', Box.OleServer.Text_, 'cb');
    Box.OnKeyDown := nil;
    Box.OnChange := @Listener.TextChanged;
    Box.OleServer.Text_ := 'new';
    Same('Change comes for a program''s text', Listener.Take, 'change');
  finally
    Form.Free;
  end;
end;

procedure CheckGrid(Listener: TListener);
var
  Form: TForm;
  Grid: TAxcComboGrid;
begin
  Form := NewForm;
  try
    Grid := TAxcComboGrid.Create(Form);
    Grid.SetBounds(10, 10, 500, 300);
    Grid.OleServer.FormatString := '|Article|Pieces';
    Grid.OleServer.Rows := 3;
    Grid.OnAfterCellChange := @Listener.AfterCell;
    Grid.OnBeforeCellChange := @Listener.BeforeCell;
    Grid.Active := True;
    Open(Form);
    Enter(Grid);
    Listener.Take;
    TypeText('12');
    Press(VK_RETURN);
    Same('a cell''s events have its row, column and texts', Listener.Take, 'before 1,1 after 1,1 >12');
    Grid.OleServer.Col := 1;
    TypeText('13');
    Press(VK_RETURN);
    Same('AfterCellChange has the old and the new text', Listener.Take, 'before 1,1 after 1,1 12>13');
    Same('AfterCellChange cancels an entry', Grid.OleServer.TextMatrix[1, 1], '12');
    Grid.OleServer.Row := 1;
    Grid.OleServer.Col := 2;
    TypeText('9');
    Same('BeforeCellChange keeps the editor closed', Listener.Take, 'before 1,2');
    Same('BeforeCellChange leaves the cell alone', Grid.OleServer.TextMatrix[1, 2], '');
    Grid.OnEnterCell := @Listener.Entered;
    Grid.OnLeaveCell := @Listener.Left;
    Grid.OnKeyDown := @Listener.GridKeyDown;
    Grid.OleServer.Col := 1;
    Listener.Take;
    Press(VK_DOWN);
    Same('a moved cell is left before the next is entered', Listener.Take, 'leave enter');
    Same('KeyDown replaces a key', Grid.OleServer.Col, 2);
    Same('the replaced key does nothing itself', Grid.OleServer.Row, 1);
  finally
    Form.Free;
  end;
end;

procedure CheckEvents;
var
  Listener: TListener;
begin
  Listener := TListener.Create;
  try
    CheckButtons(Listener);
    CheckTextEdit(Listener);
    CheckGrid(Listener);
    Settle;
    Check('no sink holds a control', ServerIsUnused, 'the server has objects left');
  finally
    Listener.Free;
  end;
end;

end.
