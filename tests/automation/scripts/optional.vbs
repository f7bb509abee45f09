' Bounds that are not given come from the channels.
Option Explicit
Dim spectrum

Sub AddAt(frequency)
    Dim slot
    Set slot = CreateObject("kvBandscope.FreqSlot")
    slot.dFreq = frequency
    slot.sKey = "TX" & frequency
    spectrum.AddTXChnl slot
End Sub

Sub Tell(what)
    WScript.Echo what & " " & spectrum.DisplayMinFreq & " " & spectrum.DisplayMaxFreq
End Sub

Set spectrum = CreateObject("kvBandscope.kvBandscope")
spectrum.FreqEndBuffer = 1
AddAt 450
AddAt 480
spectrum.DrawByRange
Tell "none"
spectrum.DrawByRange 420
Tell "one"
spectrum.DrawByRange 420, 500
Tell "two"
spectrum.DrawByRange , 500
Tell "second only"
WScript.Quit 42
