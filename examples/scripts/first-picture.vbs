' The first picture, in ten lines.
Set scope = CreateObject("kvBandscope.kvBandscope")
Set channel = CreateObject("kvBandscope.FreqSlot")
channel.sKey = "TX1"
channel.dFreq = 462.55                  ' MHz
channel.dBW = 20                        ' kHz
channel.dPwrDBM = 46.99                 ' dBm
channel.lColor = RGB(31, 119, 180)
scope.AddTXChnl channel
scope.DrawByRange 462.3, 462.8          ' MHz
file = scope.DisplayToBMP(height, width, name)
WScript.Echo "Picture saved as " & file & ", " & width & " x " & height & " twips"
If file <> "" Then WScript.Quit 42      ' 42: a script that stops at an error may end with 0
