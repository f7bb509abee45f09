program Product;
// An intermodulation product with its components: 2 x 462.575 - 462.550 = 462.600 MHz. For Delphi and for Free Pascal.
{$ifdef FPC}{$mode delphi}{$endif}
{$apptype console}

uses
  SysUtils, Variants, ActiveX, ComObj;

procedure ShowProduct;
var
  Scope, Slot: OleVariant;
begin
  Scope := CreateOleObject('kvBandscope.kvBandscope');
  Slot := CreateOleObject('kvBandscope.FreqSlot');
  Slot.sKey := 'TXIM1';
  Slot.sLabel := 'Intermod Product [third order product] 2A-B';
  Slot.dFreq := 462.6;                  // MHz
  Slot.dBW := 24;                       // kHz: the box is twice as wide
  Slot.dPwrDBM := 10;
  Slot.nIMComps := 2;                   // set the number of components first
  Slot.nIMComp[0] := 2;
  Slot.dIMCompFreq[0] := 462.575;
  Slot.sIMCompLabel[0] := 'Repeater 16';
  Slot.nIMComp[1] := -1;
  Slot.dIMCompFreq[1] := 462.55;
  Slot.sIMCompLabel[1] := 'Repeater 15';
  Scope.AddTXChnl(Slot);
  Scope.DrawInitialDisplay;
  WriteLn('The first component is ', Integer(Slot.nIMComp[0]), ' x ', Double(Slot.dIMCompFreq[0]):0:3, ' MHz, ',
    WideString(Slot.sIMCompLabel[0]));
end;

begin
  CoInitialize(nil);
  try
    ShowProduct;
  except
    on Problem: Exception do
    begin
      WriteLn(Problem.Message);
      ExitCode := 1;
    end;
  end;
  CoUninitialize;
end.
