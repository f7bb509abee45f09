' The interface _BandscopeView as a script reaches it, with its errors.
Option Explicit
Dim spectrum, view, second, slot, rows(1, 2), objects(0), hits
Set spectrum = CreateObject("kvBandscope.kvBandscope")
Set view = CreateObject("kvBandscope.View")
WScript.Echo "without a control " & (view.Scope Is Nothing)
Set view.Scope = spectrum
WScript.Echo "same control " & (view.Scope Is spectrum)

rows(0, 0) = "TX1"
rows(0, 2) = 450
rows(1, 0) = "TX2"
rows(1, 2) = 451.5
WScript.Echo "rows " & view.AddTXChannels(rows) & " " & spectrum.NumTX
Set slot = CreateObject("kvBandscope.FreqSlot")
slot.sKey = "RX1"
slot.dFreq = 450
Set objects(0) = slot
WScript.Echo "objects " & view.AddRXChannels(objects) & " " & spectrum.NumRX
hits = view.HitTest(450)
WScript.Echo "hits " & UBound(hits) + 1 & " " & hits(0).sKey & " " & hits(1).sKey & " " & (hits(0) Is slot)
WScript.Echo "no hits " & UBound(view.HitTest(460)) + 1 & " near " & UBound(view.HitTest(452, 0.5)) + 1
WScript.Echo "before a drawing " & view.RenderTimeMs

view.ShowRange 440, 460
view.ZoomBy 2
view.PanBy -5
WScript.Echo "range " & spectrum.DisplayMinFreq & " " & spectrum.DisplayMaxFreq
WScript.Echo "after a drawing " & (view.RenderTimeMs > 0)

' A second view of the same control, and the first one after its release.
Set second = CreateObject("kvBandscope.View")
Set second.Scope = view.Scope
Set view.Scope = Nothing
second.ZoomBy 2, 440
WScript.Echo "second view " & spectrum.DisplayMinFreq & " " & spectrum.DisplayMaxFreq

On Error Resume Next
view.PanBy 1
WScript.Echo "released " & Err.Number & " " & Err.Description
Err.Clear
second.ShowRange 460, 440
WScript.Echo "wrong range " & Err.Number & " " & Left(Err.Description, 41)
Err.Clear
rows(1, 2) = "none"
second.AddTXChannels rows
WScript.Echo "wrong cell " & Err.Number & " " & Err.Description & " " & spectrum.NumTX
Err.Clear
Set second.Scope = slot
WScript.Echo "wrong scope " & Err.Number
Err.Clear
If second.Scope Is spectrum Then WScript.Quit 42
WScript.Quit 1
