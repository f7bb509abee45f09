' The code of a UserForm (Excel, Word, PowerPoint) with one control on it, which is named Scope.
Option Explicit

Private Sub UserForm_Initialize()
    Dim channel As kvBandscope.FreqSlot
    Set channel = New kvBandscope.FreqSlot          ' a new object for each channel
    channel.sKey = "TX1"
    channel.dFreq = 462.55                          ' MHz
    channel.dFreqLo = 462.542                       ' the edges of the box
    channel.dFreqHi = 462.558
    channel.dBW = 16                                ' kHz
    channel.dPwrDBM = 46.99                         ' dBm
    channel.lColor = RGB(31, 119, 180)
    Scope.AddTXChnl channel
    Scope.FreqEndBuffer = 0                         ' MHz
    Scope.nGridX = 10
    Scope.DisplayMaxPwr = 60                        ' dBm
    Scope.DrawByRange 462.5, 462.7                  ' MHz
End Sub

Private Sub Scope_ChgFreqRange(ByVal dMin As Double, ByVal dMax As Double)
    Me.Caption = Format$(dMin, "0.000") & " to " & Format$(dMax, "0.000") & " MHz"
End Sub

' The user collapsed or expanded the panel. Forms measure in points, 20 twips each.
Private Sub Scope_ChgHeight(ByVal iHgt As Integer)
    Me.Height = Me.Height - Me.InsideHeight + Scope.Top + iHgt / 20
End Sub
