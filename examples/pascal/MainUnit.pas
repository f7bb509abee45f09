unit MainUnit;
{$mode objfpc}{$H+}

interface

uses
  Classes, SysUtils, Forms, Controls, kvBandscope_1_0_TLB;

type
  TMainForm = class(TForm)
  public
    Scope: TAxckvBandscope;
    constructor Create(TheOwner: TComponent); override;
  private
    procedure ShowChannels(Sender: TObject);
    procedure ScopeChgFreqRange(Sender: TObject; dMin, dMax: Double);
  end;

var
  MainForm: TMainForm;

implementation

constructor TMainForm.Create(TheOwner: TComponent);
begin
  inherited CreateNew(TheOwner);         // a form without a file of the designer
  Caption := 'Spectrum';
  SetBounds(100, 100, 900, 600);
  Scope := TAxckvBandscope.Create(Self);
  Scope.Align := alClient;
  Scope.OnChgFreqRange := @ScopeChgFreqRange;
  OnShow := @ShowChannels;
end;

procedure TMainForm.ShowChannels(Sender: TObject);
var
  Channel: _FreqSlot;
begin
  if Scope.Active then
    Exit;
  Scope.Active := True;                  // puts the control into the window
  Channel := CoFreqSlot.Create;          // a new object for each channel
  Channel.sKey := 'TX1';
  Channel.dFreq := 462.55;
  Channel.dFreqLo := 462.542;
  Channel.dFreqHi := 462.558;
  Channel.dBW := 16;
  Channel.dPwrDBM := 46.99;
  Channel.lColor := $B4771F;
  Scope.OleServer.AddTXChnl(Channel);    // the members of the control are those of OleServer
  Scope.OleServer.FreqEndBuffer := 0;
  Scope.OleServer.nGridX := 10;
  Scope.OleServer.DisplayMaxPwr := 60;
  Scope.OleServer.DrawByRange(462.5, 462.7);
end;

procedure TMainForm.ScopeChgFreqRange(Sender: TObject; dMin, dMax: Double);
begin
  Caption := Format('%.3f to %.3f MHz', [dMin, dMax]);
end;

end.
