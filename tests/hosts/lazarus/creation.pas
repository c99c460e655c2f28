{ Every control in a container: properties that are set before and after its activation. }
unit creation;

{$mode objfpc}{$H+}

interface

procedure CheckCreation;

implementation

uses
  SysUtils, Variants, Forms, ComObj, ActiveXContainer, checks, stage;

procedure SetEarly(const ControlName: string; var Control: OleVariant);
begin
  case ControlName of
    'ComboGrid':
      begin
        Control.FormatString := '|<Article|>Pieces';
        Control.ColumnsDataType := ';Pieces-0;';
        Control.ListColumns := ';Article;';
      end;
    'TextEdit':
      begin
        Control.DataType := 2;
        Control.DecimalPlaces := 3;
        Control.Text := '1.5';
      end;
    'Button', 'RButton':
      begin
        { Late binding passes a plain string in the system's code page, whatever Lazarus has it in. }
        Control.Caption := UTF8Decode('Zażółć &gęślą');
        Control.ForeColor := $112233;
      end;
    'Backup': Control.DataPath := 'Q:\data\';
    'FlatBorder': Control.InnerBorder := $445566;
    'CMenus': Control.ImageList := 'imlMenus';
  end;
end;

function TextOf(const ControlName: string; var Control: OleVariant): string;
begin
  case ControlName of
    'ComboGrid': Result := Format('%s %s %d', [Control.FormatString, Control.ColumnsDataType, Integer(Control.Cols)]);
    'TextEdit': Result := Format('%d %s', [Integer(Control.DataType), Control.Text]);
    'Button', 'RButton': Result := Format('%s %x', [Control.Caption, Integer(Control.ForeColor)]);
    'Backup': Result := Control.DataPath;
    'FlatBorder': Result := IntToHex(Integer(Control.InnerBorder), 6);
    'CMenus': Result := Control.ImageList;
  end;
end;

procedure SetLate(const ControlName: string; var Control: OleVariant);
begin
  case ControlName of
    'ComboGrid':
      begin
        { Nothing is loaded in this container, so the index is not built by itself. }
        Control.RefreshColIndex;
        Control.Rows := 4;
        Control.TextMatrix[1, 1] := 'Desk';
        Control.ColWidth[1] := 3000;
        Control.Lists[1].AddItem('Chair');
      end;
    'TextEdit': Control.Text := '12345.6789';
    'Button': Control.Behavior := 2;
    'RButton': Control.FocusRect := False;
    'Backup': Control.CheckSecurity := True;
    'FlatBorder': Control.OuterBorder := $778899;
    'CMenus': Control.ImageList := '';
  end;
end;

function LateTextOf(const ControlName: string; var Control: OleVariant): string;
begin
  case ControlName of
    'ComboGrid': Result := Format('%s %d %d %d', [Control.TextMatrix[1, 1], Integer(Control.ColWidth[1]),
        Integer(Control.Lists[1].ListCount), Integer(Control.ColIndex.Item['Pieces'])]);
    'TextEdit': Result := Control.Text;
    'Button': Result := IntToStr(Control.Behavior);
    'RButton': Result := BoolToStr(Control.FocusRect, True);
    'Backup': Result := BoolToStr(Control.CheckSecurity, True);
    'FlatBorder': Result := IntToHex(Integer(Control.OuterBorder), 6);
    'CMenus': Result := '(' + Control.ImageList + ')';
  end;
end;

const
  EarlyTexts: array[0..6] of string = ('|<Article|>Pieces ;Pieces-0; 3', '2 1.500', 'Zażółć &gęślą 112233',
    'Zażółć &gęślą 112233', 'Q:\data\', '445566', 'imlMenus');
  LateTexts: array[0..6] of string = ('Desk 3000 1 2', '12345.679', '2', 'False', 'True', '778899', '()');

procedure CheckControl(Index: Integer);
var
  Form: TForm;
  Container: TActiveXContainer;
  Control: OleVariant;
  Name: string;
begin
  Name := ControlNames[Index];
  Control := CreateOleObject('Qvx.' + Name);
  SetEarly(Name, Control);
  Form := NewForm;
  try
    Container := Place(Form, Control, 10, 10, 300, 200);
    Open(Form);
    Container.Active := True;
    Settle;
    Same(Name + ' keeps what was set before activation', TextOf(Name, Control), EarlyTexts[Index]);
    SetLate(Name, Control);
    Settle;
    Same(Name + ' takes what is set while it is active', LateTextOf(Name, Control), LateTexts[Index]);
  finally
    Form.Free;
  end;
end;

{ Most programs name the class, and leave the object to the container. }
procedure CheckByClassName(Index: Integer);
var
  Form: TForm;
  Container: TActiveXContainer;
begin
  Form := NewForm;
  try
    Container := Place(Form, ControlNames[Index], 10, 10, 300, 200);
    Container.Active := True;
    Open(Form);
    Check(ControlNames[Index] + ' is created by its class name', Assigned(Container.ComServer), 'there is no object');
    Container.Active := False;
    Check(ControlNames[Index] + ' is released by its container', not Assigned(Container.ComServer), 'it is still there');
  finally
    Form.Free;
  end;
end;

procedure CheckCreation;
var
  Index: Integer;
begin
  for Index := Low(ControlNames) to High(ControlNames) do
  begin
    CheckControl(Index);
    CheckByClassName(Index);
  end;
end;

end.
