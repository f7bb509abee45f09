program SpectrumForm;
// A Lazarus program with the control on its form. Needs the package LazActiveX and the unit kvBandscope_1_0_TLB, which
// Tools > Import Type Library generates.
{$mode objfpc}{$H+}
{$apptype gui}

uses
  Interfaces, Forms, Math, MainUnit;

begin
  // The control computes with infinite numbers, which Pascal programs otherwise treat as errors.
  SetExceptionMask([exInvalidOp, exDenormalized, exZeroDivide, exOverflow, exUnderflow, exPrecision]);
  Application.Initialize;
  Application.CreateForm(TMainForm, MainForm);
  Application.Run;
end.
