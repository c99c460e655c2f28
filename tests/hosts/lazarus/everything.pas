{ Names every unit that a program here uses, so that one run of the compiler makes them all. }
program everything;

uses
  Interfaces, Forms, Controls, StdCtrls, Dialogs, Menus, ActiveXContainer, EventSink, StdOle2, TypeLib, StrUtils;

begin
end.
