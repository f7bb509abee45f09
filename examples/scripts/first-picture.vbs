' The first picture: one channel, 16 kHz wide, between two grid lines.
Set scope = CreateObject("kvBandscope.kvBandscope")
Set channel = CreateObject("kvBandscope.FreqSlot")
channel.sKey = "TX1"
channel.dFreq = 462.55                  ' MHz
channel.dFreqLo = 462.542               ' the edges of the box; without them the box is twice dBW wide
channel.dFreqHi = 462.558
channel.dBW = 16                        ' kHz
channel.dPwrDBM = 46.99                 ' dBm
channel.lColor = RGB(31, 119, 180)
scope.AddTXChnl channel
scope.FreqEndBuffer = 0                 ' MHz; no margin, so that exactly the range below is shown
scope.nGridX = 10                       ' 10 divisions of 20 kHz
scope.DisplayMaxPwr = 60                ' dBm
scope.DrawByRange 462.5, 462.7          ' MHz
scope.DrawDisplay                       ' draw again, without the cursor line that DrawByRange draws
file = scope.DisplayToBMP(height, width, name)
WScript.Echo "Picture saved as " & file & ", " & width & " x " & height & " twips"
If file <> "" Then WScript.Quit 42      ' 42 means success: after a script error the exit code may be 0
