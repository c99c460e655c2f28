{ Members with arguments and results of every kind, called through the imported unit's interfaces. }
unit bindings;

{$mode objfpc}{$H+}

interface

procedure CheckBindings;

implementation

uses
  Windows, SysUtils, Classes, Variants, Forms, ExtCtrls, ComObj, StdOle2, checks, stage, Qvx_1_0_TLB;

procedure CheckRows(const Grid: _ComboGrid);
var
  Column, First, Second: Integer;
  Columns: OleVariant;
begin
  Grid.AddItem(#9'Desk'#9'2'#9'250.50', EmptyParam);
  Grid.AddItem(#9'Chair'#9'4'#9'80', EmptyParam);
  Grid.RemoveItem(1);
  Grid.AddItem(#9'Chair'#9'4'#9'80', 1);
  Same('rows are inserted where they are wanted', Grid.TextMatrix[1, 1] + Grid.TextMatrix[2, 1], 'ChairDesk');
  Same('a column is added up', string(Grid.GetSumOf(gdCol, 2)), '10');
  Columns := VarArrayOf([2, 3]);
  Same('columns are multiplied', string(Grid.GetProductOf(-1, Columns)), '1141');
  Check('equal rows are found', Grid.DuplicateRecord(First, Second, False), 'they are not');
  Same('the equal rows are named', Format('%d %d', [First, Second]), '1 3');
  Column := 1;
  Same('the next column is found', Grid.GetNextColumn(Column), 1);
end;

{ One cast of a result in each procedure: of two, Free Pascal leaves one unreleased. }
procedure CheckIndex(const Grid: _ComboGrid);
var
  Index: IColumnIndex;
begin
  Index := Grid.ColIndex as IColumnIndex;
  Same('a column is found by its header text', string(Index.Item['Price']), '3');
end;

procedure CheckList(const Grid: _ComboGrid);
var
  List: IEditorCombo;
begin
  List := Grid.Lists[1] as IEditorCombo;
  List.AddItem('Lamp', EmptyParam);
  Same('a pick list has its entries', List.ListCount, 1);
end;

procedure CheckInside(const Grid: _ComboGrid);
var
  Inside: IFlexGrid;
  Typeface: IFontDisp;
begin
  Inside := Grid.Grid as IFlexGrid;
  Inside.Row := 2;
  Inside.Col := 1;
  Inside.CellBackColor := $00FF00;
  Same('the grid inside is the same grid', Inside.TextMatrix[Inside.Row, Inside.Col], 'Desk');
  Same('a cell has its colour', Inside.CellBackColor, $00FF00);
  Typeface := Inside.Font;
  Typeface.Bold := True;
  Typeface := Inside.Font;
  Check('the font that is returned is the grid''s own', Typeface.Bold, 'it is not bold');
end;

procedure CheckErrors(const Grid: _ComboGrid);
begin
  try
    Grid.Lists[2];
    Check('an error is an exception', False, 'there is none');
  except
    on Trouble: EOleException do
      Same('an error is an exception with its text', Trouble.Message, 'Not a valid ListColum Index.');
  end;
end;

procedure CheckGrid;
var
  Form: TForm;
  Grid: TAxcComboGrid;
begin
  Form := NewForm;
  try
    Grid := TAxcComboGrid.Create(Form);
    Grid.SetBounds(10, 10, 500, 300);
    Grid.OleServer.FormatString := '|<Article|>Pieces|>Price';
    Grid.OleServer.ListColumns := ';Article;';
    Grid.OleServer.Rows := 2;
    Grid.Active := True;
    Grid.OleServer.RefreshColIndex;
    Open(Form);
    CheckRows(Grid.OleServer);
    CheckIndex(Grid.OleServer);
    CheckList(Grid.OleServer);
    CheckInside(Grid.OleServer);
    CheckErrors(Grid.OleServer);
  finally
    Form.Free;
  end;
end;

type
  TDialogCloser = class(TTimer)
  public
    Title: string;
    procedure Look(Sender: TObject);
  end;

procedure TDialogCloser.Look(Sender: TObject);
begin
  if GetForegroundWindow = (Owner as TForm).Handle then
    Exit;
  SetLength(Title, 100);
  SetLength(Title, GetWindowText(GetForegroundWindow, PChar(Title), 100));
  Enabled := False;
  { The dialog handles its keys itself. }
  Queue(VK_ESCAPE);
end;

{ The importer's constant for -1 has more digits than the type of the argument. }
procedure CheckBackup;
var
  Form: TForm;
  Backup: TAxcBackup;
  Closer: TDialogCloser;
  Action: ActionType;
begin
  Form := NewForm;
  try
    Backup := TAxcBackup.Create(Form);
    Backup.Active := True;
    Closer := TDialogCloser.Create(Form);
    Closer.Interval := 200;
    Closer.OnTimer := @Closer.Look;
    Open(Form);
    Action := ActionType(Backup_);
    Backup.OleServer.Show(Action);
    Same('the backup dialog opens', Closer.Title, 'Backup');
    Same('the action comes back as it was', Integer(Action), -1);
  finally
    Form.Free;
  end;
end;

procedure CheckBindings;
begin
  CheckGrid;
  CheckBackup;
  Check('no interface is left over', ServerIsUnused, 'the server has objects left');
end;

end.
