' A first look at the control from a script: creates the control, adds channels and an intermodulation product, checks
' what the control reports about them, draws them, and saves the picture.
'
' Register the control first (regsvr32 kvBandscope.ocx), then:  cscript //nologo first-look.vbs
' The exit code is 42 when every step gave the expected result, and 1 otherwise. Success is not 0, because a script that
' stops at a run-time error may also end with 0.
Option Explicit

Dim failures
failures = 0

Sub Expect(what, got, wanted)
    If got = wanted Then
        WScript.Echo what & ": " & got
    Else
        WScript.Echo what & ": " & got & ", but " & wanted & " was expected"
        failures = failures + 1
    End If
End Sub

Sub ExpectNear(what, got, wanted)
    If Abs(got - wanted) < 0.000001 Then
        WScript.Echo what & ": " & FormatNumber(got, 5)
    Else
        WScript.Echo what & ": " & got & ", but " & wanted & " was expected"
        failures = failures + 1
    End If
End Sub

' A channel 12.5 kHz wide; frequency in MHz, power in dBm. The edges are set because a channel without edges is drawn
' with a whole bandwidth on each side of its center.
Function NewChannel(key, label, frequency, power, color)
    Dim slot
    Set slot = CreateObject("kvBandscope.FreqSlot")
    slot.sKey = key
    slot.sLabel = label
    slot.dFreq = frequency
    slot.dBW = 12.5
    slot.dFreqLo = frequency - 0.00625
    slot.dFreqHi = frequency + 0.00625
    slot.dPwrDBM = power
    slot.lColor = color
    slot.lColorLine = 0
    Set NewChannel = slot
End Function

Dim spectrum
Set spectrum = CreateObject("kvBandscope.kvBandscope")
Expect "Transmit channels of a new control", spectrum.NumTX, 0
ExpectNear "Bottom of its power range in dBm", spectrum.dPwrMin, 0
ExpectNear "Top of its power range in dBm", spectrum.dPwrMax, 3

' Two repeater outputs, the input of the first repeater, and a product of the outputs: 2 x 462.575 - 462.550 = 462.600.
Dim blue, green, orange
blue = RGB(43, 108, 176)
green = RGB(60, 154, 99)
orange = RGB(227, 160, 90)
Expect "Index of the first transmit channel", spectrum.AddTXChnl(NewChannel("TX15", "GMRS 15 output", 462.55, 47, blue)), 0
Expect "Index of the second", spectrum.AddTXChnl(NewChannel("TX16", "GMRS 16 output", 462.575, 44, blue)), 1
Expect "Index of the first receive channel", spectrum.AddRXChnl(NewChannel("RX15", "GMRS 15 input", 467.55, 37, green)), 0

Dim product
Set product = NewChannel("TXIM000001", "Intermod Product [third order product] 2A-B", 462.6, -5, orange)
product.nIMComps = 2
product.nIMComp(0) = 2
product.dIMCompFreq(0) = 462.575
product.sIMCompLabel(0) = "GMRS 16 output"
product.nIMComp(1) = -1
product.dIMCompFreq(1) = 462.55
product.sIMCompLabel(1) = "GMRS 15 output"
Expect "Index of the product", spectrum.AddTXChnl(product), 2
Expect "Coefficient of its first component", product.nIMComp(0), 2
Expect "Label of its second component", product.sIMCompLabel(1), "GMRS 15 output"
Expect "Frequency unit that the control set", product.sFreqUnits, "MHz"

Expect "Transmit channels", spectrum.NumTX, 3
Expect "Receive channels", spectrum.NumRX, 1
ExpectNear "Lowest edge of all channels in MHz", spectrum.dFreqMin, 462.54375
ExpectNear "Highest edge of all channels in MHz", spectrum.dFreqMax, 467.55625
ExpectNear "Highest edge of the transmit channels in MHz", spectrum.dTXFreqMax, 462.60625
ExpectNear "Lowest power in dBm", spectrum.dTXPwrDBMMin, -5
ExpectNear "Highest power in dBm", spectrum.dTXPwrDBMMax, 47
Expect "Label of the channel with key TX16", spectrum.GetChnlByKey("TX16").sLabel, "GMRS 16 output"
Expect "No channel has the key TX99", spectrum.GetChnlByKey("TX99") Is Nothing, True

' Show the transmit channels with grid lines on round frequencies: 10 divisions of 20 kHz. The bottom of the display is
' below the weakest channel. It is set last, because setting it applies the whole power scale.
spectrum.nGridX = 10
spectrum.FreqEndBuffer = 0
spectrum.DisplayMaxPwr = 60
spectrum.DisplayMinPwr = -20
spectrum.GridColor = RGB(213, 218, 225)
spectrum.DrawByRange 462.48, 462.68
ExpectNear "Left edge of the display in MHz", spectrum.DisplayMinFreq, 462.48
ExpectNear "Right edge of the display in MHz", spectrum.DisplayMaxFreq, 462.68
ExpectNear "Center of the display in MHz", spectrum.DisplayCenterFreq, 462.58
Expect "The first channel is on the picture", spectrum.GetTXChnl(0).bDrawn, True
Expect "The receive channel, outside the range, is not", spectrum.GetRXChnl(0).bDrawn, False
Expect "DrawDisplay returns", spectrum.DrawDisplay(), True

Dim height, width, file
height = 0
width = 0
file = ""
Expect "DisplayToBMP returns the name of the file", spectrum.DisplayToBMP(height, width, file) = file, True
WScript.Echo "Picture saved as " & file & ", " & width & " x " & height & " twips"
Expect "The name of the file is not empty", Len(file) > 0, True
Expect "The picture has a size", height > 0 And width > 0, True

spectrum.RemoveChnlByKey "TXIM000001"
Expect "Transmit channels without the product", spectrum.NumTX, 2
spectrum.ClearAllChnls
Expect "Channels after clearing", spectrum.NumTX + spectrum.NumRX, 0

If failures = 0 Then
    WScript.Echo "All results are as expected."
    WScript.Quit 42
End If
WScript.Echo failures & " results are not as expected."
WScript.Quit 1
