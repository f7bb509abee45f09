unit kvBandscope_TLB;
// Stands for the unit that Delphi generates, so that the compiler checks the example for Delphi. It does nothing.
{$mode delphi}

interface

uses
  Interfaces, Classes, Controls, kvBandscope_1_0_TLB;

type
  _FreqSlot = kvBandscope_1_0_TLB._FreqSlot;
  CoFreqSlot = kvBandscope_1_0_TLB.CoFreqSlot;
  TkvBandscopeChgHeight = procedure(ASender: TObject; iHgt: Smallint) of object;
  TkvBandscopeChgFreqRange = procedure(ASender: TObject; dMin, dMax: Double) of object;

  TkvBandscope = class(TWinControl)
  private
    FChgHeight: TkvBandscopeChgHeight;
    FChgFreqRange: TkvBandscopeChgFreqRange;
    FNumTX: Integer;
    FMargin, FMaxPwr: Double;
    FDivisions: Smallint;
  public
    function AddTXChnl(const chnl: _FreqSlot): Integer;
    procedure DrawByRange(dFMin, dFMax: Double);
    property NumTX: Integer read FNumTX;
  published
    property FreqEndBuffer: Double read FMargin write FMargin;
    property nGridX: Smallint read FDivisions write FDivisions;
    property DisplayMaxPwr: Double read FMaxPwr write FMaxPwr;
    property OnChgHeight: TkvBandscopeChgHeight read FChgHeight write FChgHeight;
    property OnChgFreqRange: TkvBandscopeChgFreqRange read FChgFreqRange write FChgFreqRange;
  end;

implementation

function TkvBandscope.AddTXChnl(const chnl: _FreqSlot): Integer;
begin
  Result := 0;
end;

procedure TkvBandscope.DrawByRange(dFMin, dFMax: Double);
begin
end;

end.
