' The code of a Microsoft Access form with one control on it, which is named Scope.
Option Compare Database
Option Explicit

Private Sub Form_Load()
    Dim spectrum As kvBandscope.kvBandscope
    Dim channel As kvBandscope.FreqSlot
    Set spectrum = Me.Scope.Object                  ' the control itself, without the object that Access puts around it
    Set channel = New kvBandscope.FreqSlot          ' a new object for each channel
    channel.sKey = "TX1"
    channel.dFreq = 462.55                          ' MHz
    channel.dFreqLo = 462.542                       ' the edges of the box
    channel.dFreqHi = 462.558
    channel.dBW = 16                                ' kHz
    channel.dPwrDBM = 46.99                         ' dBm
    channel.lColor = RGB(31, 119, 180)
    spectrum.AddTXChnl channel
    spectrum.FreqEndBuffer = 0                      ' MHz
    spectrum.nGridX = 10
    spectrum.DisplayMaxPwr = 60                     ' dBm
    spectrum.DrawByRange 462.5, 462.7               ' MHz
End Sub

Private Sub Scope_ChgFreqRange(ByVal dMin As Double, ByVal dMax As Double)
    Me.Caption = Format$(dMin, "0.000") & " to " & Format$(dMax, "0.000") & " MHz"
End Sub
