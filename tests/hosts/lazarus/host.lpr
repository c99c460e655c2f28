{ Runs the checks of one topic: host TOPIC. }
program host;

{$mode objfpc}{$H+}

uses
  Interfaces, SysUtils, Forms, ActiveX, bindings, checks, closing, creation, events, focus, lives, sizes, typing;

begin
  OleInitialize(nil);
  Application.Initialize;
  try
    case ParamStr(1) of
      'creation': CheckCreation;
      'bindings': CheckBindings;
      'focus': CheckFocus;
      'lives': CheckLives;
      'typing': CheckTyping;
      'events': CheckEvents;
      'sizes': CheckSizes;
      'closing': CheckClosing;
    else
      raise Exception.Create('there is no such topic');
    end;
    Finish;
  except
    on Trouble: Exception do
    begin
      WriteLn('FAILED ', ParamStr(1), ' ended early: ', Trouble.Message);
      Halt(1);
    end;
  end;
end.
