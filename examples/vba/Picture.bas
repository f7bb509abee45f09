' A picture without a form, from any Office program: put this into a module.
Option Explicit

Public Sub SavePicture()
    Dim scope As Object, channel As Object
    Dim pictureHeight As Double, pictureWidth As Double, file As String
    Set scope = CreateObject("kvBandscope.kvBandscope")
    Set channel = CreateObject("kvBandscope.FreqSlot")
    channel.sKey = "TX1"
    channel.dFreq = 462.55                          ' MHz
    channel.dFreqLo = 462.542                       ' the edges of the box
    channel.dFreqHi = 462.558
    channel.dPwrDBM = 46.99                         ' dBm
    channel.lColor = RGB(31, 119, 180)
    scope.AddTXChnl channel
    scope.FreqEndBuffer = 0                         ' MHz
    scope.nGridX = 10
    scope.DisplayMaxPwr = 60                        ' dBm
    scope.DrawByRange 462.5, 462.7                  ' MHz
    scope.DrawDisplay                               ' draw again, without the cursor line
    file = Environ$("TEMP") & "\spectrum.bmp"
    If scope.DisplayToBMP(pictureHeight, pictureWidth, file) = "" Then
        MsgBox "The picture cannot be saved."
    Else
        MsgBox "Picture saved as " & file
    End If
End Sub
