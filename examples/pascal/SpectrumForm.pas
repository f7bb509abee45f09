program SpectrumForm;
// A Lazarus program with the control on its form. Needs the package LazActiveX and the unit kvBandscope_1_0_TLB, which
// Tools > Import Type Library generates.
{$mode objfpc}{$H+}
{$apptype gui}

uses
  Interfaces, Forms, MainUnit;

begin
  Application.Initialize;
  Application.CreateForm(TMainForm, MainForm);
  Application.Run;
end.
