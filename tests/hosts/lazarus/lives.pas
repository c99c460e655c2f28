{ What happens to containers during the life of a program: they are deactivated, hidden, disabled, put on
  pages, and get new windows. }
unit lives;

{$mode objfpc}{$H+}

interface

procedure CheckLives;

implementation

uses
  Windows, SysUtils, Classes, Variants, Forms, Controls, ComCtrls, ComObj, ActiveXContainer, checks, stage;

function NewGrid(Form: TForm): TActiveXContainer;
var
  Grid: OleVariant;
begin
  Result := Place(Form, CreateOleObject('Qvx.ComboGrid'), 10, 10, 400, 200);
  Grid := Result.vObject;
  Grid.FormatString := '|Article|Pieces';
  Grid.Rows := 3;
end;

procedure TypeInto(Container: TActiveXContainer; const Text: string);
var
  Grid: OleVariant;
begin
  Grid := Container.vObject;
  Grid.Row := 1;
  Grid.Col := 1;
  Enter(Container);
  TypeText(Text);
  Press(VK_RETURN);
end;

function CellOf(Container: TActiveXContainer): string;
var
  Grid: OleVariant;
begin
  Grid := Container.vObject;
  Result := Grid.TextMatrix[1, 1];
end;

{ An object that the program owns goes through several activations. }
procedure CheckReactivation;
var
  Form: TForm;
  Container: TActiveXContainer;
  Round: Integer;
begin
  Form := NewForm;
  try
    Container := NewGrid(Form);
    Open(Form);
    for Round := 1 to 3 do
    begin
      Container.Active := True;
      TypeInto(Container, 'desk' + IntToStr(Round));
      TypeText('o');
      Container.Active := False;
      Settle;
    end;
    Same('a grid lives through several activations', CellOf(Container), 'desk3');
  finally
    Form.Free;
  end;
end;

procedure CheckPages;
var
  Form: TForm;
  Book: TPageControl;
  First, Second: TTabSheet;
  Container: TActiveXContainer;
begin
  Form := NewForm;
  try
    Book := TPageControl.Create(Form);
    Book.Parent := Form;
    Book.SetBounds(0, 0, 500, 300);
    First := Book.AddTabSheet;
    Second := Book.AddTabSheet;
    Container := NewGrid(Form);
    Container.Parent := Second;
    Container.Active := True;
    Book.ActivePage := First;
    Open(Form);
    Book.ActivePage := Second;
    Settle;
    TypeInto(Container, 'lamp');
    TypeText('x');
    Book.ActivePage := First;
    Settle;
    Book.ActivePage := Second;
    Settle;
    Same('a grid on a page keeps its cells', CellOf(Container), 'lamp');
    TypeInto(Container, 'sofa');
    Same('a grid on a page that was left is typed into', CellOf(Container), 'sofa');
  finally
    Form.Free;
  end;
end;

procedure CheckHiding;
var
  Form: TForm;
  Container: TActiveXContainer;
begin
  Form := NewForm;
  try
    Container := NewGrid(Form);
    Container.Active := True;
    Open(Form);
    TypeInto(Container, 'a');
    TypeText('bc');
    Container.Visible := False;
    Settle;
    Container.Visible := True;
    Settle;
    TypeInto(Container, 'd');
    Same('a grid that was hidden is typed into', CellOf(Container), 'd');
    Container.Enabled := False;
    Click(Container, 100, 25);
    TypeText('e');
    Press(VK_RETURN);
    Same('a grid in a disabled container takes no input', CellOf(Container), 'd');
    Container.Enabled := True;
    Click(Container, 100, 25);
    TypeText('f');
    Press(VK_RETURN);
    Same('an enabled container takes it again', CellOf(Container), 'f');
  finally
    Form.Free;
  end;
end;

{ Lazarus creates all windows of a form anew when its border changes, and the container lets go of its control. }
procedure CheckNewWindow;
var
  Form: TForm;
  Container: TActiveXContainer;
begin
  Form := NewForm;
  try
    Container := NewGrid(Form);
    Container.Active := True;
    Open(Form);
    TypeInto(Container, 'a');
    TypeText('b');
    Form.BorderStyle := bsDialog;
    Settle;
    Same('a grid keeps its cells when its window goes', CellOf(Container), 'a');
    Container.Active := False;
    Container.Active := True;
    TypeInto(Container, 'c');
    Same('it is activated on the new window', CellOf(Container), 'c');
  finally
    Form.Free;
  end;
end;

procedure CheckLives;
begin
  CheckReactivation;
  CheckPages;
  CheckHiding;
  CheckNewWindow;
  Check('no grid is left over', ServerIsUnused, 'the server has objects left');
end;

end.
