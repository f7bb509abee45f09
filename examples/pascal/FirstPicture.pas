program FirstPicture;
// The first picture, late bound: no unit of the type library is needed. For Delphi and for Free Pascal.
{$ifdef FPC}{$mode delphi}{$endif}
{$apptype console}

uses
  SysUtils, Variants, ActiveX, ComObj;

// Saves a picture of one channel, and returns the name of the file.
function SavePicture: WideString;
var
  Scope, Channel: OleVariant;
  Height, Width: Double;
  Name: WideString;
begin
  Scope := CreateOleObject('kvBandscope.kvBandscope');
  Channel := CreateOleObject('kvBandscope.FreqSlot');
  Channel.sKey := 'TX1';
  Channel.dFreq := 462.55;              // MHz
  Channel.dFreqLo := 462.542;           // the edges of the box; without them the box is twice dBW wide
  Channel.dFreqHi := 462.558;
  Channel.dBW := 16;                    // kHz
  Channel.dPwrDBM := 46.99;             // dBm
  Channel.lColor := $B4771F;            // blue, green, red from left to right
  Scope.AddTXChnl(Channel);
  Scope.FreqEndBuffer := 0;             // MHz; no margin, so that exactly the range below is shown
  Scope.nGridX := 10;                   // 10 divisions of 20 kHz
  Scope.DisplayMaxPwr := 60;            // dBm
  Scope.DrawByRange(462.5, 462.7);      // MHz
  Scope.DrawDisplay;                    // draw again, without the cursor line that DrawByRange draws
  Height := 0;                          // receives the height of the picture, in twips
  Width := 0;
  Name := '';
  Result := Scope.DisplayToBMP(Height, Width, Name);
  WriteLn(Format('The picture is %.0f x %.0f twips.', [Width, Height]));
end;

var
  Written: WideString;
begin
  CoInitialize(nil);
  try
    Written := SavePicture;
    if Written = '' then
      raise Exception.Create('The picture cannot be saved. The log KVTECSUP.TXT says why.');
    WriteLn('Picture saved as ', Written);
  except
    on Problem: Exception do
    begin
      WriteLn(Problem.Message);
      ExitCode := 1;
    end;
  end;
  CoUninitialize;
end.
