' The numbers and texts of errors, as a script sees them.
Option Explicit
Dim spectrum, slot, value
Set spectrum = CreateObject("kvBandscope.kvBandscope")
Set slot = CreateObject("kvBandscope.FreqSlot")
slot.nIMComps = 2
slot.dIMCompFreq(1) = 2.5

On Error Resume Next
value = slot.dIMCompFreq(5)
WScript.Echo "read " & Err.Number & " " & Err.Description
Err.Clear
slot.dIMCompFreq(-1) = 1
WScript.Echo "write " & Err.Number & " " & Err.Description
Err.Clear
slot.dFreq = "no number"
WScript.Echo "text for a number " & Err.Number
Err.Clear
spectrum.AddTXChnl "no channel"
WScript.Echo "no channel " & Err.Number
Err.Clear
spectrum.NoSuchMember
WScript.Echo "unknown member " & Err.Number
Err.Clear
WScript.Echo "afterwards " & slot.dIMCompFreq(1)
If Err.Number = 0 Then WScript.Quit 42
WScript.Quit 1
