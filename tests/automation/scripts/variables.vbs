' What a script's variables hold after the export has filled them in.
Option Explicit
Dim spectrum, slot, height, width, file, result
Set spectrum = CreateObject("kvBandscope.kvBandscope")
Set slot = CreateObject("kvBandscope.FreqSlot")
slot.dFreq = 450
slot.sKey = "TX1"
spectrum.AddTXChnl slot
spectrum.DrawDisplay

' The variables are empty and get their types from the control.
result = spectrum.DisplayToBMP(height, width, file)
WScript.Echo "types " & TypeName(height) & " " & TypeName(width) & " " & TypeName(file)
WScript.Echo "same name " & (Len(result) > 0 And result = file)
WScript.Echo "sizes positive " & (height > 0 And width > 0)

' A name that the script gives is used and kept.
Dim again
again = file
result = spectrum.DisplayToBMP(height, width, again)
WScript.Echo "name kept " & (result = file And again = file)

Dim nowhere
nowhere = "Z:\kv no such folder\picture.bmp"
result = spectrum.DisplayToBMP(height, width, nowhere)
WScript.Echo "failed [" & result & "] " & height & " " & width

' Variables that hold other things get the same.
height = -1
width = "2.5"
file = Empty
result = spectrum.DisplayToBMP(height, width, file)
WScript.Echo "again " & TypeName(height) & " " & TypeName(width) & " " & TypeName(file) & " " & (result = file)
WScript.Quit 42
