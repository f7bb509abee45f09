program FormTest;
// Uses the form of the example as a user does. FormTest PICTURE: saves a picture; the exit code is 42 when all is well.
{$mode objfpc}{$H+}
{$apptype console}

uses
  Interfaces, Windows, Messages, SysUtils, Math, Forms, MainUnit, kvBandscope_1_0_TLB;

procedure CoFreeUnusedLibrariesEx(Delay, Reserved: DWORD); stdcall; external 'ole32.dll';

procedure Expect(Holds: Boolean; const What: String);
begin
  WriteLn(What, ': ', Holds);
  if not Holds then
    Halt(1);
end;

procedure HandleMessages(Milliseconds: QWord);
var
  Last: QWord;
begin
  Last := GetTickCount64 + Milliseconds;
  repeat
    Application.ProcessMessages;
    Sleep(10);
  until GetTickCount64 > Last;
end;

// The window that draws the spectrum: the deepest one below the middle of the form's upper half.
function SpectrumWindow: HWND;
var
  Spot: TPoint;
begin
  Spot.X := MainForm.ClientWidth div 2;
  Spot.Y := MainForm.ClientHeight div 4;
  Windows.ClientToScreen(MainForm.Handle, Spot);
  Result := WindowFromPoint(Spot);
end;

function SpectrumHeight: Integer;
var
  Area: TRect;
begin
  Windows.GetWindowRect(SpectrumWindow, @Area);
  Result := Area.Bottom - Area.Top;
end;

procedure PressKey(Key: Word);
begin
  PostMessage(SpectrumWindow, WM_KEYDOWN, Key, 1);
  PostMessage(SpectrumWindow, WM_KEYUP, Key, LPARAM($C0000001));
  HandleMessages(500);
end;

procedure UseForm;
var
  Height, Width: Double;
  Name, Written: WideString;
  Before: Integer;
begin
  HandleMessages(1000);
  Expect(MainForm.Scope.OleServer.NumTX = 1, 'One channel is there');
  Expect(MainForm.Scope.OleServer.GetTXChnl(0).bDrawn, 'It was drawn');
  Expect(MainForm.Caption = 'Spectrum', 'Calls of the program raise no event');
  PressKey(VK_UP);
  Expect(MainForm.Caption = '462.550 to 462.650 MHz', 'A zoom by key raises ChgFreqRange');
  PressKey(VK_LEFT);
  Expect(MainForm.Caption = '462.540 to 462.640 MHz', 'A key moves the range by one division');
  Before := SpectrumHeight;
  PressKey(Ord('C'));
  Expect(SpectrumHeight > Before, 'The picture takes the room of the collapsed panel');
  PressKey(Ord('C'));
  Expect(SpectrumHeight = Before, 'The expanded panel takes it back');
  (MainForm.Scope.OleServer as _BandscopeView).ShowRange(462.54, 462.6);
  Expect(SameValue(MainForm.Scope.OleServer.DisplayMaxFreq, 462.6), 'The second interface shows an exact range');
  MainForm.SetBounds(50, 50, 1000, 700);
  HandleMessages(300);
  MainForm.Scope.OleServer.DrawDisplay;
  Height := 0;
  Width := 0;
  Name := WideString(ParamStr(1));
  Written := MainForm.Scope.OleServer.DisplayToBMP(Height, Width, Name);
  Expect(FileExists(String(Written)) and (Width > 10800), 'The picture is saved, as wide as the form');
end;

begin
  Application.Initialize;
  Application.CreateForm(TMainForm, MainForm);
  MainForm.Show;
  UseForm;
  MainForm.Close;
  HandleMessages(300);
  MainForm.Free;
  Expect(GetModuleHandle('kvBandscope.ocx') <> 0, 'The module is loaded');
  CoFreeUnusedLibrariesEx(0, 0);
  Expect(GetModuleHandle('kvBandscope.ocx') = 0, 'It is unloaded after the form has released the control');
  ExitCode := 42;
end.
