' A channel of a class that the script has written itself.
Option Explicit

Class Slot
    Public dFreq
    Public dFreqAlt
    Public dBW
    Public dFreqHi
    Public dFreqLo
    Public dPwrDBM
    Public sLabel
    Public sFreqUnits
    Public sBWUnits
    Public sKey
    Public lColorLine
    Public lColor
    Public nIMComps
    Public bVisible
    Public bDrawn
    Public iFillStyle
End Class

Dim spectrum, own
Set spectrum = CreateObject("kvBandscope.kvBandscope")
Set own = New Slot
own.dFreq = 450
own.dBW = 12.5
own.dPwrDBM = 2
own.sKey = "TX1"
own.bVisible = True
own.lColor = RGB(200, 0, 0)
WScript.Echo "index " & spectrum.AddTXChnl(own)
WScript.Echo "same object " & (spectrum.GetTXbyKey("TX1") Is own)
WScript.Echo "edges " & own.dFreqLo & " " & own.dFreqHi
WScript.Echo "units " & own.sFreqUnits & " " & own.sBWUnits
WScript.Echo "fill style " & own.iFillStyle
spectrum.DrawDisplay
WScript.Echo "drawn " & own.bDrawn
WScript.Echo "found " & spectrum.GetChnlByKey("TX1").dFreq
spectrum.RemoveChnlByKey "TX1"
WScript.Echo "removed " & spectrum.NumTX
WScript.Quit 42
