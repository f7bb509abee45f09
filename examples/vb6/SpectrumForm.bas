' The code of a Visual Basic 6 form with one control on it, which is named Scope.
Option Explicit

Private Sub Form_Load()
    Dim channel As kvBandscope.FreqSlot
    Dim i As Integer
    For i = 0 To 3
        Set channel = New kvBandscope.FreqSlot      ' a new object for each channel
        channel.sKey = "TX" & (15 + i)
        channel.sLabel = "Repeater " & (15 + i)
        channel.dFreq = 462.55 + i * 0.025          ' MHz
        channel.dFreqLo = channel.dFreq - 0.008     ' the edges of the box
        channel.dFreqHi = channel.dFreq + 0.008
        channel.dBW = 16                            ' kHz
        channel.dPwrDBM = 46.99                     ' dBm
        channel.lColor = RGB(31, 119, 180)
        Scope.AddTXChnl channel
    Next
    AddProduct
    Scope.FreqEndBuffer = 0                         ' MHz
    Scope.nGridX = 10
    Scope.DisplayMaxPwr = 60                        ' dBm
    Scope.DrawByRange 462.5, 462.7                  ' MHz
End Sub

Private Sub AddProduct()
    Dim product As New kvBandscope.FreqSlot
    product.sKey = "TXIM1"
    product.sLabel = "Intermod Product [third order product] 2A-B"
    product.dFreq = 462.6
    product.dBW = 24                                ' kHz; the box is twice as wide
    product.dPwrDBM = 10
    product.lColor = RGB(227, 160, 90)
    product.nIMComps = 2                            ' set the number of components first
    product.nIMComp(0) = 2
    product.dIMCompFreq(0) = 462.575
    product.sIMCompLabel(0) = "Repeater 16"
    product.nIMComp(1) = -1
    product.dIMCompFreq(1) = 462.55
    product.sIMCompLabel(1) = "Repeater 15"
    Scope.AddTXChnl product
End Sub

Private Sub Form_Resize()
    If WindowState <> vbMinimized Then Scope.Move 0, 0, ScaleWidth, ScaleHeight
End Sub

Private Sub Scope_ChgFreqRange(ByVal dMin As Double, ByVal dMax As Double)
    Caption = Format$(dMin, "0.000") & " to " & Format$(dMax, "0.000") & " MHz"
End Sub

' The user collapsed or expanded the panel: the form takes the control's new height.
Private Sub Scope_ChgHeight(ByVal iHgt As Integer)
    If WindowState = vbNormal Then Height = Height - ScaleHeight + iHgt
End Sub

Private Sub mnuSavePicture_Click()
    Dim pictureHeight As Double, pictureWidth As Double, file As String
    file = App.Path & "\spectrum.bmp"
    Scope.DrawDisplay                               ' draw again, without the cursor line
    If Scope.DisplayToBMP(pictureHeight, pictureWidth, file) = "" Then MsgBox "The picture cannot be saved."
End Sub
