{ A form with a grid and a button, in Lazarus. The unit Qvx_1_0_TLB is made by importqvx; docs/hosts.md says how. }
program stock;

{$mode objfpc}{$H+}

uses
  Interfaces, Classes, Forms, Controls, SysUtils, ActiveX, ActiveXContainer, Qvx_1_0_TLB;

type
  TStockForm = class(TForm)
  public
    Grid: TAxcComboGrid;
    Count: TAxcButton;
    procedure EnterContainer(Sender: TObject);
    procedure ActivateControl(Container: PtrInt);
    procedure CheckPieces(Sender: TObject; Row: Integer; Col: Integer; OldData: OleVariant; NewData: OleVariant;
      var Cancel: WordBool);
    procedure ShowSum(Sender: TObject);
    constructor Create(AOwner: TComponent); override;
  end;

const
  PiecesColumn = 2;
  VerbActivate = -4;

constructor TStockForm.Create(AOwner: TComponent);
begin
  inherited CreateNew(AOwner);
  Caption := 'Stock';
  SetBounds(100, 100, 480, 320);

  { What the columns accept is set before the grid is shown. }
  Grid := TAxcComboGrid.Create(Self);
  Grid.SetBounds(10, 10, 460, 250);
  Grid.Anchors := [akLeft, akTop, akRight, akBottom];
  Grid.OleServer.FormatString := '|<Article            |>Pieces';
  Grid.OleServer.ColumnsDataType := ';Pieces-0;';
  Grid.OleServer.Rows := 2;
  Grid.OleServer.AutoTab := True;
  Grid.OleServer.AutoAddNew := True;
  Grid.OnEnter := @EnterContainer;
  Grid.OnAfterCellChange := @CheckPieces;
  Grid.Active := True;

  Count := TAxcButton.Create(Self);
  Count.SetBounds(10, 275, 100, 30);
  Count.Anchors := [akLeft, akBottom];
  Count.OleServer.Caption := '&Count';
  Count.OnClick := @ShowSum;
  Count.Active := True;

  ActiveControl := Grid;
end;

{ A container that is entered keeps the keyboard for its own window. The control gets it once that has happened. }
procedure TStockForm.EnterContainer(Sender: TObject);
begin
  Application.QueueAsyncCall(@ActivateControl, PtrInt(Sender));
end;

procedure TStockForm.ActivateControl(Container: PtrInt);
var
  Entered: TActiveXContainer;
  Control: IOleObject;
begin
  Entered := TActiveXContainer(Container);
  Control := Entered.ComServer as IOleObject;
  Control.DoVerb(VerbActivate, nil, Entered as IOleClientSite, 0, Entered.Handle, Entered.ClientRect);
end;

{ What a handler puts into Cancel decides whether the cell keeps its new text. }
procedure TStockForm.CheckPieces(Sender: TObject; Row: Integer; Col: Integer; OldData: OleVariant; NewData: OleVariant;
  var Cancel: WordBool);
begin
  Cancel := (Col = PiecesColumn) and (NewData = '0');
end;

procedure TStockForm.ShowSum(Sender: TObject);
begin
  Caption := Format('Stock: %s pieces', [string(Grid.OleServer.GetSumOf(gdCol, PiecesColumn))]);
end;

var
  Form: TStockForm;
begin
  OleInitialize(nil);
  Application.Initialize;
  Application.CreateForm(TStockForm, Form);
  Application.Run;
end.
