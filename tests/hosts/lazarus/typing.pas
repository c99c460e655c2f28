{ What is typed into controls that have the keyboard, and how the keyboard moves between containers. }
unit typing;

{$mode objfpc}{$H+}

interface

procedure CheckTyping;

implementation

uses
  Windows, SysUtils, Forms, Controls, ComObj, ActiveXContainer, checks, stage;

procedure CheckTextEdit;
var
  Form: TForm;
  Digits: TActiveXContainer;
  Control: OleVariant;
begin
  Form := NewForm;
  try
    Digits := Place(Form, 'TextEdit', 10, 10, 200, 30);
    Digits.Active := True;
    Control := Digits.vObject;
    Control.DataType := 1;
    Control.Text := '';
    Open(Form);
    Enter(Digits);
    TypeText('4a2b7');
    Press(VK_BACK);
    Same('a digits box takes digits only', Control.Text, '42');
  finally
    Form.Free;
  end;
end;

procedure CheckGrid;
var
  Form: TForm;
  Container: TActiveXContainer;
  Grid: OleVariant;
begin
  Form := NewForm;
  try
    Container := Place(Form, CreateOleObject('Qvx.ComboGrid'), 10, 10, 500, 300);
    Grid := Container.vObject;
    Grid.FormatString := '|<Article|>Pieces|<Colour';
    Grid.ColumnsDataType := ';Pieces-0;';
    Grid.ListColumns := ';Colour;';
    Grid.UnChangableColumns := ';Colour;';
    Grid.AutoTab := True;
    Grid.AutoAddNew := True;
    Grid.Rows := 2;
    Container.Active := True;
    Grid.Lists[3].AddItem('Red');
    Grid.Lists[3].AddItem('Blue');
    Open(Form);
    Enter(Container);
    TypeText('Desk');
    Press(VK_TAB);
    TypeText('45%');
    Press(VK_RETURN);
    TypeText('bl');
    Press(VK_RETURN);
    Same('a cell keeps its text', Grid.TextMatrix[1, 1], 'Desk');
    Same('a digits column cleans its text', Grid.TextMatrix[1, 2], '45');
    Same('a pick list completes its text', Grid.TextMatrix[1, 3], 'Blue');
    Same('Enter in the last cell adds a row', Integer(Grid.Rows), 3);
    Press(VK_UP);
    Press(VK_F2);
    TypeText('x');
    Press(VK_ESCAPE);
    Same('Escape restores the old text', Grid.TextMatrix[1, 1], 'Desk');
  finally
    Form.Free;
  end;
end;

{ Keys arrive at the control's own window, so a form's key preview does not keep them from it. }
procedure CheckFocus;
var
  Form: TForm;
  First, Second: TActiveXContainer;
  FirstBox, SecondBox: OleVariant;
begin
  Form := NewForm;
  try
    First := Place(Form, 'TextEdit', 10, 10, 200, 30);
    Second := Place(Form, 'TextEdit', 10, 50, 200, 30);
    First.Active := True;
    Second.Active := True;
    FirstBox := First.vObject;
    SecondBox := Second.vObject;
    Open(Form);
    Enter(First);
    TypeText('one');
    Enter(Second);
    TypeText('two');
    Same('the first box has what was typed into it', FirstBox.Text, 'one');
    Same('the second box has what was typed into it', SecondBox.Text, 'two');
    FirstBox.AllowEmpty := False;
    FirstBox.AutoSelection := True;
    Enter(First);
    Press(VK_BACK);
    Press(VK_DELETE);
    Form.SelectNext(First, True, True);
    Settle;
    Check('an empty box that must not be empty keeps the keyboard',
      IsChild(First.Handle, Windows.GetFocus) or (First.Handle = Windows.GetFocus), 'the keyboard is elsewhere');
  finally
    Form.Free;
  end;
end;

procedure CheckTyping;
begin
  CheckTextEdit;
  CheckGrid;
  CheckFocus;
end;

end.
