' The code of a Microsoft Access form with one control on it, which is named Scope.
Option Compare Database
Option Explicit

Private Sub Form_Load()
    Dim view As kvBandscope.kvBandscope
    Dim channel As kvBandscope.FreqSlot
    Set view = Me.Scope.Object                      ' the control itself, without the object that Access puts around it
    Set channel = New kvBandscope.FreqSlot          ' a new object for each channel
    channel.sKey = "TX1"
    channel.dFreq = 462.55                          ' MHz
    channel.dFreqLo = 462.542                       ' the edges of the box
    channel.dFreqHi = 462.558
    channel.dBW = 16                                ' kHz
    channel.dPwrDBM = 46.99                         ' dBm
    channel.lColor = RGB(31, 119, 180)
    view.AddTXChnl channel
    view.FreqEndBuffer = 0                          ' MHz
    view.nGridX = 10
    view.DisplayMaxPwr = 60                         ' dBm
    view.DrawByRange 462.5, 462.7                   ' MHz
End Sub

Private Sub Form_Resize()
    Me.Scope.Width = Me.InsideWidth                 ' Access measures in twips
    If Me.InsideHeight < Me.Section(acDetail).Height Then Me.Scope.Height = Me.InsideHeight
End Sub

Private Sub Scope_ChgFreqRange(ByVal dMin As Double, ByVal dMax As Double)
    Me.Caption = Format$(dMin, "0.000") & " to " & Format$(dMax, "0.000") & " MHz"
End Sub
