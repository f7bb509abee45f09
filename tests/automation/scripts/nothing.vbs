' Where there is no channel there is Nothing.
Option Explicit
Dim spectrum, slot
Set spectrum = CreateObject("kvBandscope.kvBandscope")
WScript.Echo "by index " & (spectrum.GetTXChnl(0) Is Nothing) & " " & (spectrum.GetRXChnl(0) Is Nothing) & " " & (spectrum.GetTXChnl(-1) Is Nothing)
WScript.Echo "by key " & (spectrum.GetTXbyKey("TX1") Is Nothing) & " " & (spectrum.GetRXbyKey("RX1") Is Nothing) & " " & (spectrum.GetChnlByKey("") Is Nothing)
spectrum.AddTXChnl Nothing
WScript.Echo "add of Nothing " & spectrum.NumTX
WScript.Echo "match " & spectrum.nFindMatchRX(Nothing)
WScript.Echo "redraw " & spectrum.ReDrawChnl(Nothing)
Set slot = CreateObject("kvBandscope.FreqSlot")
slot.sKey = "TX1"
spectrum.AddTXChnl slot
WScript.Echo "present " & (spectrum.GetTXbyKey("TX1") Is Nothing)
WScript.Quit 42
