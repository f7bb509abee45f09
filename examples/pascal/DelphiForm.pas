program DelphiForm;
// A Delphi program with the control on its form. Needs the unit kvBandscope_TLB, which Component > Import Component
// generates.
{$ifdef FPC}{$mode delphi}{$endif}

uses
  Classes, SysUtils, Forms, Controls, kvBandscope_TLB;

type
  TMainForm = class(TForm)
  public
    Scope: TkvBandscope;
    constructor Create(AOwner: TComponent); override;
  private
    procedure ShowChannels(Sender: TObject);
    procedure ScopeChgFreqRange(ASender: TObject; dMin, dMax: Double);
    procedure ScopeChgHeight(ASender: TObject; iHgt: Smallint);
  end;

constructor TMainForm.Create(AOwner: TComponent);
begin
  inherited CreateNew(AOwner);           // a form without a file of the designer
  Caption := 'Spectrum';
  SetBounds(100, 100, 900, 600);
  Scope := TkvBandscope.Create(Self);
  Scope.Parent := Self;
  Scope.Align := alClient;
  Scope.OnChgFreqRange := ScopeChgFreqRange;
  Scope.OnChgHeight := ScopeChgHeight;
  OnShow := ShowChannels;
end;

procedure TMainForm.ShowChannels(Sender: TObject);
var
  Channel: _FreqSlot;
begin
  if Scope.NumTX > 0 then
    Exit;
  Channel := CoFreqSlot.Create;          // a new object for each channel
  Channel.sKey := 'TX1';
  Channel.dFreq := 462.55;
  Channel.dFreqLo := 462.542;
  Channel.dFreqHi := 462.558;
  Channel.dBW := 16;
  Channel.dPwrDBM := 46.99;
  Channel.lColor := $B4771F;
  Scope.AddTXChnl(Channel);
  Scope.FreqEndBuffer := 0;
  Scope.nGridX := 10;
  Scope.DisplayMaxPwr := 60;
  Scope.DrawByRange(462.5, 462.7);
end;

procedure TMainForm.ScopeChgFreqRange(ASender: TObject; dMin, dMax: Double);
begin
  Caption := Format('%.3f to %.3f MHz', [dMin, dMax]);
end;

// The user collapsed or expanded the panel: the form takes the control's new height.
procedure TMainForm.ScopeChgHeight(ASender: TObject; iHgt: Smallint);
begin
  ClientHeight := Round(iHgt * Screen.PixelsPerInch / 1440);
end;

var
  MainForm: TMainForm;
begin
  Application.Initialize;
  Application.CreateForm(TMainForm, MainForm);
  Application.Run;
end.
