{ What a host program reports: one line for each check, and a closing line without which the run counts as failed. }
unit checks;

{$mode objfpc}{$H+}

interface

procedure Check(const Name: string; Holds: Boolean; const Why: string);
procedure Same(const Name, Got, Wanted: string);
procedure Same(const Name: string; Got, Wanted: Int64);
procedure Finish;

implementation

uses
  SysUtils;

procedure Check(const Name: string; Holds: Boolean; const Why: string);
begin
  if Holds then
    WriteLn('ok ', Name)
  else
    WriteLn('FAILED ', Name, ': ', Why);
  Flush(Output);
end;

procedure Same(const Name, Got, Wanted: string);
begin
  Check(Name, Got = Wanted, Format('"%s" instead of "%s"', [Got, Wanted]));
end;

procedure Same(const Name: string; Got, Wanted: Int64);
begin
  Same(Name, IntToStr(Got), IntToStr(Wanted));
end;

procedure Finish;
begin
  WriteLn('done');
  Flush(Output);
end;

end.
