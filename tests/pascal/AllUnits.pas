unit AllUnits;
// Uses every unit of the libraries that a program of the tests or the examples uses.
interface
uses
  Interfaces, Forms, Controls, Variants, ActiveX, ComObj, EventSink, StdOle2, ActiveXContainer;
implementation
end.
