{ A form on the screen with controls in TActiveXContainer, and the keyboard. }
unit stage;

{$mode objfpc}{$H+}

interface

uses
  Windows, Classes, Forms, Controls, ActiveXContainer;

const
  { The controls of the library, by the names under which they are registered. }
  ControlNames: array[0..6] of string =
    ('ComboGrid', 'TextEdit', 'Button', 'RButton', 'Backup', 'FlatBorder', 'CMenus');

function NewForm: TForm;
{ Shows the form and waits until it has the keyboard. }
procedure Open(Form: TForm);
{ A container that is not active yet, on the object or for the class. }
function Place(Form: TForm; const Server: IDispatch; Left, Top, Width, Height: Integer): TActiveXContainer;
function Place(Form: TForm; const ControlName: string; Left, Top, Width, Height: Integer): TActiveXContainer;
{ Passes the keyboard on to the control, which a container that is entered keeps for its own window. }
procedure Activate(Container: TActiveXContainer);
procedure Enter(Container: TActiveXContainer);

{ Handles messages until none has arrived for a while. }
procedure Settle;
{ Puts a key into the queue; Press also waits until it has been handled. }
procedure Queue(Key: Byte; Shifted: Boolean = False);
procedure Press(Key: Byte; Shifted: Boolean = False);
procedure TypeText(const Text: string);
{ Presses the left button at a point of the container. }
procedure Click(Container: TActiveXContainer; X, Y: Integer);

{ The windows of this thread with everything inside them. }
function CountWindows: Integer;
{ Whether the component server has no object left. }
function ServerIsUnused: Boolean;

implementation

uses
  SysUtils, ComObj, ActiveX;

const
  OLEIVERB_UIACTIVATE = -4;

var
  Handled: Integer;
  CountingHook: HHOOK;

function CountHandled(Code: Integer; Removed: WPARAM; Message: LPARAM): LRESULT; stdcall;
begin
  if (Code = HC_ACTION) and (Removed = PM_REMOVE) then
    Inc(Handled);
  Result := CallNextHookEx(CountingHook, Code, Removed, Message);
end;

function NewForm: TForm;
begin
  Result := TForm.CreateNew(nil);
  Result.Caption := 'Lazarus';
  Result.SetBounds(100, 100, 600, 400);
end;

procedure Open(Form: TForm);
var
  Deadline: QWord;
begin
  Form.Show;
  Deadline := GetTickCount64 + 20000;
  repeat
    Settle;
    if GetForegroundWindow = Form.Handle then
      Exit;
    SetForegroundWindow(Form.Handle);
  until GetTickCount64 > Deadline;
  raise Exception.Create('the form did not get the keyboard');
end;

function Place(Form: TForm; const Server: IDispatch; Left, Top, Width, Height: Integer): TActiveXContainer;
begin
  Result := TActiveXContainer.Create(Form);
  Result.SetBounds(Left, Top, Width, Height);
  Result.TabStop := True;
  Result.ComServer := Server;
end;

function Place(Form: TForm; const ControlName: string; Left, Top, Width, Height: Integer): TActiveXContainer;
begin
  Result := Place(Form, IDispatch(nil), Left, Top, Width, Height);
  Result.OleClassName := 'Qvx.' + ControlName;
end;

procedure Activate(Container: TActiveXContainer);
var
  Inside: IOleObject;
begin
  Inside := Container.ComServer as IOleObject;
  OleCheck(Inside.DoVerb(OLEIVERB_UIACTIVATE, nil, Container as IOleClientSite, 0, Container.Handle,
    Container.ClientRect));
end;

procedure Enter(Container: TActiveXContainer);
begin
  Container.SetFocus;
  Activate(Container);
  Settle;
end;

{ Asking the queue itself would hide its messages: Lazarus waits for new ones only. }
procedure Settle;
var
  Quiet, Before: Integer;
begin
  Quiet := 0;
  while Quiet < 5 do
  begin
    Before := Handled;
    Application.ProcessMessages;
    Sleep(10);
    if Handled = Before then
      Inc(Quiet)
    else
      Quiet := 0;
  end;
end;

procedure Queue(Key: Byte; Shifted: Boolean);
begin
  if Shifted then
    keybd_event(VK_SHIFT, 0, 0, 0);
  keybd_event(Key, 0, 0, 0);
  keybd_event(Key, 0, KEYEVENTF_KEYUP, 0);
  if Shifted then
    keybd_event(VK_SHIFT, 0, KEYEVENTF_KEYUP, 0);
end;

procedure Press(Key: Byte; Shifted: Boolean);
begin
  Queue(Key, Shifted);
  Settle;
end;

procedure TypeText(const Text: string);
var
  Letter: Char;
  Key: Word;
begin
  for Letter in Text do
  begin
    Key := Word(VkKeyScanW(WideChar(Letter)));
    Press(Lo(Key), Hi(Key) and 1 <> 0);
  end;
end;

procedure Click(Container: TActiveXContainer; X, Y: Integer);
var
  Point: Windows.TPoint;
begin
  Point.X := X;
  Point.Y := Y;
  ClientToScreen(Container.Handle, Point);
  SetCursorPos(Point.X, Point.Y);
  Settle;
  mouse_event(MOUSEEVENTF_LEFTDOWN, 0, 0, 0, 0);
  Settle;
  mouse_event(MOUSEEVENTF_LEFTUP, 0, 0, 0, 0);
  Settle;
end;

function CountInside(Window: HWND; Count: LPARAM): BOOL; stdcall;
begin
  Inc(PInteger(Count)^);
  Result := True;
end;

function CountOfThread(Window: HWND; Count: LPARAM): BOOL; stdcall;
begin
  Inc(PInteger(Count)^);
  EnumChildWindows(Window, @CountInside, Count);
  Result := True;
end;

function CountWindows: Integer;
begin
  Result := 0;
  EnumThreadWindows(GetCurrentThreadId, @CountOfThread, LPARAM(@Result));
end;

function ServerIsUnused: Boolean;
type
  TCanUnloadNow = function: HRESULT; stdcall;
var
  Module: HMODULE;
begin
  Module := GetModuleHandle('Qvx.ocx');
  Result := (Module = 0) or (TCanUnloadNow(GetProcAddress(Module, 'DllCanUnloadNow'))() = S_OK);
end;

initialization
  CountingHook := SetWindowsHookEx(WH_GETMESSAGE, @CountHandled, 0, GetCurrentThreadId);

end.
